#include "dom/WQXMLReader.h"

#include <libxml/xmlreader.h>

#include <climits>

#include "dom/Binding.h"

using wq::Bytes;

// ---- The one way into libxml2

namespace {
// Nobody can reach the nodes that a reader makes, so they get no wrappers. What it raises, it raises when
// libxml2 has returned and `clean` has freed what came back.
template <class Call, class Clean> auto asked(Call&& call, Clean&& clean) {
    const wq::WithoutRegistration scope;
    return wq::guarded(call, clean);
}

constexpr auto nothing = [](auto) {};
}  // namespace

template <class... P, class... A> int32_t WQXMLReader::integer(int (*function)(_xmlTextReader*, P...), A&&... arguments) const {
    if (isNil()) return 0;
    return asked([&] { return function(my._reader, std::forward<A>(arguments)...); }, nothing);
}

// The low byte of libxml2's number, so that -1 is true: wanted.
bool WQXMLReader::boolean(int (*function)(_xmlTextReader*)) const { return static_cast<uint8_t>(integer(function)) != 0; }

NSString WQXMLReader::string(const unsigned char* (*function)(_xmlTextReader*)) const {
    return wq::fromUTF8(asked([&] { return function(my._reader); }, nothing));
}

template <class... P, class... A>
NSString WQXMLReader::freedString(unsigned char* (*function)(_xmlTextReader*, P...), A&&... arguments) const {
    return wq::takeString(asked([&] { return function(my._reader, std::forward<A>(arguments)...); }, xmlFree));
}

// ---- Making one

bool WQXMLReader::initWithURL_options_error(const Ref<NSURL>& url, int32_t, Ref<NSError>*) {
    wq::startLibrary();
    my._url = url;
    const Bytes text(url->absoluteString());
    auto open = [&] {
        const int previous = std::exchange(xmlLoadExtDtdDefaultValue, 0);  // whatever was parsed before
        xmlTextReaderPtr reader = xmlNewTextReaderFilename(text.characters());
        xmlLoadExtDtdDefaultValue = previous;
        return reader;
    };
    my._reader = asked(open, xmlFreeTextReader);
    return true;
}

bool WQXMLReader::initWithData_baseURL_error(const Ref<NSData>& data, const Ref<NSURL>& baseURL, Ref<NSError>*) {
    wq::startLibrary();
    my._url = baseURL;
    my._data = data;
    bytes = data->snapshot();
    if (!bytes || bytes->view().size() > INT_MAX) return true;
    const std::string_view input = bytes->view();
    const Bytes base(baseURL->absoluteString());
    auto open = [&] { return xmlReaderForMemory(input.data(), static_cast<int>(input.size()), base.characters(), nullptr, 0); };
    my._reader = asked(open, xmlFreeTextReader);
    return true;
}

// ---- The end

void WQXMLReader::teardown() {
    flags |= kDying;
    if (my._reader) {
        wq::GuardedCall guard;
        const wq::WithoutRegistration scope;
        xmlFreeTextReader(my._reader);
    }
    delete this;
}

// ---- Going on

int32_t WQXMLReader::read() { return integer(xmlTextReaderRead); }
int32_t WQXMLReader::next() { return integer(xmlTextReaderNext); }
int32_t WQXMLReader::nextSibling() { return integer(xmlTextReaderNextSibling); }
int32_t WQXMLReader::close() { return integer(xmlTextReaderClose); }

// ---- The node

int32_t WQXMLReader::nodeType() const { return integer(xmlTextReaderNodeType); }
int32_t WQXMLReader::depth() const { return integer(xmlTextReaderDepth); }
NSString WQXMLReader::name() const { return string(xmlTextReaderConstName); }
NSString WQXMLReader::localName() const { return string(xmlTextReaderConstLocalName); }
NSString WQXMLReader::prefix() const { return string(xmlTextReaderConstPrefix); }
NSString WQXMLReader::namespaceURI() const { return string(xmlTextReaderConstNamespaceUri); }
NSString WQXMLReader::value() const { return string(xmlTextReaderConstValue); }
bool WQXMLReader::hasValue() const { return boolean(xmlTextReaderHasValue); }
bool WQXMLReader::isEmptyElement() const { return boolean(xmlTextReaderIsEmptyElement); }
bool WQXMLReader::isDefault() const { return boolean(xmlTextReaderIsDefault); }
bool WQXMLReader::isNamespaceDecl() const { return boolean(xmlTextReaderIsNamespaceDecl); }
NSString WQXMLReader::baseURI() const { return string(xmlTextReaderConstBaseUri); }
NSString WQXMLReader::xmlLang() const { return string(xmlTextReaderConstXmlLang); }

// ---- The attributes of the element

bool WQXMLReader::hasAttributes() const { return boolean(xmlTextReaderHasAttributes); }
int32_t WQXMLReader::attributeCount() const { return integer(xmlTextReaderAttributeCount); }
NSString WQXMLReader::getAttributeNo(int32_t index) const { return freedString(xmlTextReaderGetAttributeNo, index); }
NSString WQXMLReader::getAttribute(const NSString& qualifiedName) const {
    return freedString(xmlTextReaderGetAttribute, Bytes(qualifiedName));
}
NSString WQXMLReader::getAttribute_namespace(const NSString& localName, const NSString& uri) const {
    return freedString(xmlTextReaderGetAttributeNs, Bytes(localName), Bytes(uri));
}
NSString WQXMLReader::lookupNamespace(const NSString& prefix) const { return freedString(xmlTextReaderLookupNamespace, Bytes(prefix)); }
int32_t WQXMLReader::moveToAttributeNo(int32_t index) { return integer(xmlTextReaderMoveToAttributeNo, index); }
int32_t WQXMLReader::moveToAttribute(const NSString& qualifiedName) { return integer(xmlTextReaderMoveToAttribute, Bytes(qualifiedName)); }
int32_t WQXMLReader::moveToAttribute_namespace(const NSString& localName, const NSString& uri) {
    return integer(xmlTextReaderMoveToAttributeNs, Bytes(localName), Bytes(uri));
}
int32_t WQXMLReader::moveToFirstAttribute() { return integer(xmlTextReaderMoveToFirstAttribute); }
int32_t WQXMLReader::moveToNextAttribute() { return integer(xmlTextReaderMoveToNextAttribute); }
int32_t WQXMLReader::moveToElement() { return integer(xmlTextReaderMoveToElement); }
int32_t WQXMLReader::readAttributeValue() { return integer(xmlTextReaderReadAttributeValue); }
int32_t WQXMLReader::quoteChar() const { return integer(xmlTextReaderQuoteChar); }

// ---- The document

int32_t WQXMLReader::readState() const { return integer(xmlTextReaderReadState); }
NSString WQXMLReader::encoding() const { return string(xmlTextReaderConstEncoding); }
NSString WQXMLReader::xmlVersion() const { return string(xmlTextReaderConstXmlVersion); }
bool WQXMLReader::standalone() const { return boolean(xmlTextReaderStandalone); }
bool WQXMLReader::isValid() const { return boolean(xmlTextReaderIsValid); }
