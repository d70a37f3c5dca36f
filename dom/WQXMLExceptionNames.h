// The names of the DOM's exceptions, in the order of the DOM's codes: the first is code 1.
// The library raises WQXMLNamespaceException alone; the others are for applications.
#pragma once

// ---- The value of each is its own name, which WQXMLException::name() answers.

inline constexpr const char16_t* WQXMLIndexSizeException = u"WQXMLIndexSizeException";
inline constexpr const char16_t* WQXMLDOMStringSizeException = u"WQXMLDOMStringSizeException";
inline constexpr const char16_t* WQXMLHierarchyRequestException = u"WQXMLHierarchyRequestException";
inline constexpr const char16_t* WQXMLWrongDocumentException = u"WQXMLWrongDocumentException";
inline constexpr const char16_t* WQXMLInvalidCharacterException = u"WQXMLInvalidCharacterException";
inline constexpr const char16_t* WQXMLNoDataAllowedException = u"WQXMLNoDataAllowedException";
inline constexpr const char16_t* WQXMLNoModificationAllowedException = u"WQXMLNoModificationAllowedException";
inline constexpr const char16_t* WQXMLNotFoundException = u"WQXMLNotFoundException";
inline constexpr const char16_t* WQXMLNotSupportedException = u"WQXMLNotSupportedException";
inline constexpr const char16_t* WQXMLInUseAttributeException = u"WQXMLInUseAttributeException";
inline constexpr const char16_t* WQXMLInvalidStateException = u"WQXMLInvalidStateException";
inline constexpr const char16_t* WQXMLSyntaxException = u"WQXMLSyntaxException";
inline constexpr const char16_t* WQXMLInvalidModificationException = u"WQXMLInvalidModificationException";
inline constexpr const char16_t* WQXMLNamespaceException = u"WQXMLNamespaceException";
inline constexpr const char16_t* WQXMLInvalidAccessException = u"WQXMLInvalidAccessException";
