// Null answers null: each public operation of the object layer is called on null.
#include <cstring>
#include <functional>
#include <map>

#include "dom/WQXMLAttr.h"
#include "dom/WQXMLDragEvent.h"
#include "dom/WQXMLEventListenerData.h"
#include "dom/WQXMLRange.h"
#include "dom/WQXMLReader.h"
#include "dom/WQXMLWriter.h"
#include "html/WQHTMLWriter.h"
#include "mac/Frameworks/WQCSS/WQCSSComputedStyleDeclaration.h"
#include "mac/Frameworks/WQCSS/WQCSSMutableStyleDeclaration.h"
#include "mac/Frameworks/WQCSS/WQCSSPrimitiveValue.h"
#include "mac/Frameworks/WQCSS/WQCSSStyleResolver.h"
#include "mac/Frameworks/WQCSS/WQCSSValueList.h"
#include "platform/Log.h"
#include "platform/NSColor.h"
#include "platform/NSDraggingInfo.h"
#include "platform/NSFontManager.h"
#include "platform/NSMutableAttributedString.h"
#include "platform/NSMutableParagraphStyle.h"
#include "tests/dom/Support.h"
#include "tests/tree/Headers.h"

namespace {

using namespace test;

// Operations that a program uses on objects only, or that are no class of the layer.
bool isOfTheObjectLayer(const std::string& operation) {
    for (const char* prefix :
         {"WQXMLException::", "WQXMLEventListener::", "NSString::", "NSValue::", "NSBundle::", "NSCharacterSet::", "NSColorSpace::",
          "NSDraggingInfo::"})
        if (operation.rfind(prefix, 0) == 0) return false;
    return operation.starts_with("WQXML") || operation.starts_with("WQHTML") || operation.starts_with("WQCSS") ||
           operation.starts_with("NS");
}

const Ref<WQXMLNode> node;
const Ref<WQXMLElement> element;
const Ref<WQXMLDocument> document;
const Ref<WQXMLText> text;
const Ref<WQXMLAttr> attribute;
const Ref<WQXMLEvent> event;
const Ref<WQXMLMutationEvent> mutation;
const Ref<WQXMLDragEvent> drag;
const Ref<WQXMLEventListenerData> record;
const Ref<NSDictionary> dictionary;
const Ref<NSData> bytes;
const Ref<NSError> error;
const Ref<NSURL> url;
const Ref<NSFont> font;
const Ref<NSFontDescriptor> descriptor;
const Ref<NSFontManager> fonts;
const Ref<NSColor> color;
const Ref<NSTextBlock> block;
const Ref<NSParagraphStyle> style;
const Ref<NSMutableParagraphStyle> mutableStyle;
const Ref<NSTextList> list;
const Ref<NSAttributedString> attributed;
const Ref<NSMutableAttributedString> mutableAttributed;
const Ref<WQXMLWriter> writer;
const Ref<WQXMLWriterElement> open;
const Ref<WQXMLReader> reader;
const Ref<WQXMLRange> range;
const Ref<WQHTMLWriter> htmlWriter;
const NSString none;

// Null, and around nothing of the engine's in one test.
Ref<WQCSSStyle> cssStyle;
Ref<WQCSSStyleDeclaration> declaration;
Ref<WQCSSMutableStyleDeclaration> mutableDeclaration;
Ref<WQCSSComputedStyleDeclaration> computedDeclaration;
Ref<WQCSSStyleResolver> resolver;
Ref<WQCSSStyleSheet> sheet;
Ref<WQCSSValue> cssValue;
Ref<WQCSSPrimitiveValue> primitiveValue;
Ref<WQCSSValueList> valueList;

Ref<WQXMLText> some() { return WQXMLText::textWithString(u"x"); }
Ref<WQXMLElement> someElement() { return WQXMLElement::elementWithName(u"e"); }
Ref<NSError> noError;
NSDraggingInfo drop;
Ref<WQCSSMutableStyleDeclaration> someDeclaration() {
    const auto made = WQCSSMutableStyleDeclaration::newStyleDeclaration();
    made->setCssText(u"color: red");
    return made;
}
Ref<WQCSSStyle> someStyle() { return WQCSSStyleResolver::newStyleResolver()->defaultStyle(); }
constexpr _WQCSSLength noLength{0, 0};
constexpr _WQCSSLength half{50, WQCSSLengthTypePercentage};
Log* listener() {
    static Log log;
    return &log;
}

#define ROW(operation, ...)             \
    {                                   \
#operation, [] { __VA_ARGS__; } \
    }

const std::map<std::string, std::function<void()>>& rows() {
    static const std::map<std::string, std::function<void()>> all {
        ROW(WQXMLNode::nodeType, EXPECT_EQ(node->nodeType(), 0)), ROW(WQXMLNode::nodeName, EXPECT_EQ(node->nodeName(), none)),
            ROW(WQXMLNode::nodeValue, EXPECT_EQ(node->nodeValue(), none)), ROW(WQXMLNode::localName, EXPECT_EQ(node->localName(), none)),
            ROW(WQXMLNode::prefix, EXPECT_EQ(node->prefix(), none)), ROW(WQXMLNode::namespaceURI, EXPECT_EQ(node->namespaceURI(), none)),
            ROW(WQXMLNode::parentNode, EXPECT_FALSE(node->parentNode())), ROW(WQXMLNode::firstChild, EXPECT_FALSE(node->firstChild())),
            ROW(WQXMLNode::lastChild, EXPECT_FALSE(node->lastChild())),
            ROW(WQXMLNode::previousSibling, EXPECT_FALSE(node->previousSibling())),
            ROW(WQXMLNode::nextSibling, EXPECT_FALSE(node->nextSibling())), ROW(WQXMLNode::next, EXPECT_FALSE(node->next())),
            ROW(WQXMLNode::previous, EXPECT_FALSE(node->previous())), ROW(WQXMLNode::ownerDocument, EXPECT_FALSE(node->ownerDocument())),
            ROW(WQXMLNode::childNodes, EXPECT_FALSE(node->childNodes())),
            ROW(WQXMLNode::hasChildNodes, EXPECT_FALSE(node->hasChildNodes())),
            ROW(WQXMLNode::hasAttributes, EXPECT_FALSE(node->hasAttributes())),
            ROW(WQXMLNode::attributes, EXPECT_FALSE(node->attributes())), ROW(WQXMLNode::childAtIndex, EXPECT_FALSE(node->childAtIndex(0))),
            ROW(WQXMLNode::indexOfChild, EXPECT_EQ(node->indexOfChild(some()), 0u)),
            ROW(WQXMLNode::numberOfChildren, EXPECT_EQ(node->numberOfChildren(), 0u)),
            ROW(WQXMLNode::isAncestorOfNode, EXPECT_FALSE(node->isAncestorOfNode(some()))),
            ROW(WQXMLNode::isDescendantOfNode, EXPECT_FALSE(node->isDescendantOfNode(some()))),
            ROW(WQXMLNode::commonAncestorWithNode, EXPECT_FALSE(node->commonAncestorWithNode(node))),
            ROW(WQXMLNode::ancestorAtDepth, EXPECT_FALSE(node->ancestorAtDepth(0))),
            ROW(WQXMLNode::childAncestorOfNode, EXPECT_FALSE(node->childAncestorOfNode(some()))),
            ROW(WQXMLNode::depth, EXPECT_EQ(node->depth(), 0u)), ROW(WQXMLNode::XPath, EXPECT_EQ(node->XPath(), u"")),
            ROW(WQXMLNode::insertChild_before, EXPECT_FALSE(node->insertChild_before(some(), nullptr))),
            ROW(WQXMLNode::insertChild_atIndex, node->insertChild_atIndex(some(), 0)),
            ROW(WQXMLNode::appendChild, EXPECT_FALSE(node->appendChild(some()))),
            ROW(WQXMLNode::removeChild, EXPECT_FALSE(node->removeChild(some()))), ROW(WQXMLNode::removeChildren, node->removeChildren()),
            ROW(WQXMLNode::appendChildrenFromNode, auto full = parse("<a><b/></a>"); node->appendChildrenFromNode(full->documentElement());
                EXPECT_EQ(dump(full), "a[b]")),
            ROW(WQXMLNode::splitAtIndex_intoNode, EXPECT_FALSE(node->splitAtIndex_intoNode(0, someElement()))),
            ROW(WQXMLNode::splitAtIndex, EXPECT_FALSE(node->splitAtIndex(0))),
            ROW(WQXMLNode::mergeWithNode, node->mergeWithNode(someElement())),
            ROW(WQXMLNode::copyWithZone, EXPECT_FALSE(node->copyWithZone())), ROW(WQXMLNode::copy, EXPECT_FALSE(node->copy())),
            ROW(WQXMLNode::copyNode, EXPECT_FALSE(node->copyNode(true))), ROW(WQXMLNode::range, EXPECT_EQ(node->range(), (NSRange{0, 0}))),
            ROW(WQXMLNode::setRange, node->setRange({3, 4}); EXPECT_EQ(node->range(), (NSRange{0, 0}))),
            ROW(WQXMLNode::printDescription, EXPECT_EQ(node->printDescription(), none)), ROW(WQXMLNode::printTree, node->printTree()),
            ROW(WQXMLNode::print, node->print()),
            ROW(WQXMLNode::addListener_forEvent_useCapture, node->addListener_forEvent_useCapture(listener(), 4, true);
                EXPECT_EQ(node->listeners(), nullptr)),
            ROW(WQXMLNode::removeListener_forEvent_useCapture, node->removeListener_forEvent_useCapture(listener(), 4, true)),
            ROW(WQXMLNode::listeners, EXPECT_EQ(node->listeners(), nullptr)),
            ROW(WQXMLNode::captureEvents, EXPECT_EQ(node->captureEvents(), 0u)), ROW(WQXMLNode::events, EXPECT_EQ(node->events(), 0u)),
            ROW(WQXMLNode::dispatchEvent, auto sent = WQXMLEvent::newEvent(); sent->setPreventDefault(true);
                EXPECT_FALSE(node->dispatchEvent(sent)); EXPECT_EQ(sent->phase(), 0)),
            ROW(WQXMLNode::initWithXMLNode, EXPECT_FALSE(node->initWithXMLNode(some()->xmlNode()))),

            ROW(WQXMLElement::tagName, EXPECT_EQ(element->tagName(), none)),
            ROW(WQXMLElement::hasChildNodes, EXPECT_FALSE(element->hasChildNodes())),
            ROW(WQXMLElement::hasAttributes, EXPECT_FALSE(element->hasAttributes())),
            ROW(WQXMLElement::firstAttribute, EXPECT_FALSE(element->firstAttribute())),
            ROW(WQXMLElement::getAttribute, EXPECT_EQ(element->getAttribute(u"x"), none)),
            ROW(WQXMLElement::getAttribute_namespaceURI, EXPECT_EQ(element->getAttribute_namespaceURI(u"x", u"u:1"), none)),
            ROW(WQXMLElement::hasAttribute, EXPECT_FALSE(element->hasAttribute(u"x"))),
            ROW(WQXMLElement::hasAttribute_namespaceURI, EXPECT_FALSE(element->hasAttribute_namespaceURI(u"x", u"u:1"))),
            ROW(WQXMLElement::innerText, EXPECT_EQ(element->innerText(), none)),
            ROW(WQXMLElement::childElementWithLocalName_namespaceURI,
                EXPECT_FALSE(element->childElementWithLocalName_namespaceURI(u"x", u"u:1"))),
            ROW(WQXMLElement::setAttribute_value, element->setAttribute_value(u"x", u"1")),
            ROW(WQXMLElement::removeAttribute, element->removeAttribute(u"x")),
            ROW(WQXMLElement::setAttribute_namespaceURI_value, element->setAttribute_namespaceURI_value(u"p:x", nullptr, u"1")),
            ROW(WQXMLElement::removeAttribute_namespaceURI, element->removeAttribute_namespaceURI(u"x", u"u:1")),
            ROW(WQXMLElement::splitAtIndex_intoNode, EXPECT_FALSE(element->splitAtIndex_intoNode(0, nullptr))),
            ROW(WQXMLElement::splitAtIndex, EXPECT_FALSE(element->splitAtIndex(0))),
            ROW(WQXMLElement::mergeWithNode, auto full = parse("<a><b/></a>"); element->mergeWithNode(full->documentElement());
                EXPECT_EQ(dump(full), "a[b]")),
            ROW(WQXMLElement::copyWithZone, EXPECT_FALSE(element->copyWithZone())),
            ROW(WQXMLElement::initWithName, EXPECT_FALSE(element->initWithName(u"e"))),
            ROW(WQXMLElement::initWithQualifiedName_namespaceURI,
                EXPECT_FALSE(element->initWithQualifiedName_namespaceURI(u"p:e", u"u:1"))),

            ROW(WQXMLCharacterData::string, EXPECT_EQ(text->string(), none)),
            ROW(WQXMLCharacterData::length, EXPECT_EQ(text->length(), 0u)),
            ROW(WQXMLCharacterData::substringWithRange, EXPECT_EQ(text->substringWithRange({1, 1}), none)),
            ROW(WQXMLCharacterData::setString, text->setString(u"x")), ROW(WQXMLCharacterData::appendString, text->appendString(u"x")),
            ROW(WQXMLCharacterData::insertString_atIndex, text->insertString_atIndex(u"x", 0)),
            ROW(WQXMLCharacterData::deleteCharactersInRange, text->deleteCharactersInRange({1, 1})),
            ROW(WQXMLCharacterData::replaceCharactersInRange_withString, text->replaceCharactersInRange_withString({1, 1}, u"x")),
            ROW(WQXMLCharacterData::printDescription, EXPECT_EQ(text->printDescription(), none)),
            ROW(WQXMLText::nodeName, EXPECT_EQ(text->nodeName(), none)), ROW(WQXMLText::nodeValue, EXPECT_EQ(text->nodeValue(), none)),
            ROW(WQXMLText::normalized, EXPECT_FALSE(text->normalized())), ROW(WQXMLText::splitAtIndex, EXPECT_FALSE(text->splitAtIndex(0))),
            ROW(WQXMLText::copyWithZone, EXPECT_FALSE(text->copyWithZone())), ROW(WQXMLText::init, EXPECT_FALSE(text->init())),
            ROW(WQXMLText::initWithString, EXPECT_FALSE(text->initWithString(u"x"))),

            ROW(WQXMLAttr::name, EXPECT_EQ(attribute->name(), none)), ROW(WQXMLAttr::value, EXPECT_EQ(attribute->value(), none)),
            ROW(WQXMLAttr::ownerElement, EXPECT_FALSE(attribute->ownerElement())),
            ROW(WQXMLAttr::specified, EXPECT_FALSE(attribute->specified())),

            ROW(WQXMLDocument::nodeType, EXPECT_EQ(document->nodeType(), 0)),
            ROW(WQXMLDocument::baseURI, EXPECT_EQ(document->baseURI(), none)),
            ROW(WQXMLDocument::documentElement, EXPECT_FALSE(document->documentElement())),
            ROW(WQXMLDocument::setDocumentElement, auto root = someElement(); document->setDocumentElement(std::move(root))),
            ROW(WQXMLDocument::createElement, EXPECT_FALSE(document->createElement(u"e"))),
            ROW(WQXMLDocument::createElement_namespaceURI, EXPECT_FALSE(document->createElement_namespaceURI(u"p:e", u"u:1"))),
            ROW(WQXMLDocument::createTextNode, EXPECT_FALSE(document->createTextNode(u"x"))),
            ROW(WQXMLDocument::printTree, document->printTree()), ROW(WQXMLDocument::init, EXPECT_FALSE(document->init())),
            ROW(WQXMLDocument::initWithArguments, EXPECT_FALSE(document->initWithArguments(nullptr))),
            ROW(WQXMLDocument::initWithContentsOfURL_arguments_error,
                EXPECT_FALSE(document->initWithContentsOfURL_arguments_error(nullptr, nullptr, &noError))),
            ROW(WQXMLDocument::initWithData_baseURL_arguments_error,
                EXPECT_FALSE(document->initWithData_baseURL_arguments_error(data("<a/>"), nullptr, nullptr, &noError))),
            ROW(WQXMLDocument::defaultNodeClasses, EXPECT_FALSE(document->defaultNodeClasses())),

            ROW(WQXMLEvent::target, EXPECT_FALSE(event->target())),
            ROW(WQXMLEvent::setTarget, event->setTarget(some()); EXPECT_FALSE(event->target())),
            ROW(WQXMLEvent::eventID, EXPECT_EQ(event->eventID(), 0)),
            ROW(WQXMLEvent::setEventID, event->setEventID(4); EXPECT_EQ(event->eventID(), 0)),
            ROW(WQXMLEvent::phase, EXPECT_EQ(event->phase(), 0)),
            ROW(WQXMLEvent::setPhase, event->setPhase(2); EXPECT_EQ(event->phase(), 0)),
            ROW(WQXMLEvent::stopPropagation, EXPECT_FALSE(event->stopPropagation())),
            ROW(WQXMLEvent::setStopPropagation, event->setStopPropagation(true); EXPECT_FALSE(event->stopPropagation())),
            ROW(WQXMLEvent::preventDefault, EXPECT_FALSE(event->preventDefault())),
            ROW(WQXMLEvent::setPreventDefault, event->setPreventDefault(true); EXPECT_FALSE(event->preventDefault())),
            ROW(WQXMLEvent::canBubble, EXPECT_FALSE(event->canBubble())),
            ROW(WQXMLEvent::setCanBubble, event->setCanBubble(true); EXPECT_FALSE(event->canBubble())),
            ROW(WQXMLEvent::canCancel, EXPECT_FALSE(event->canCancel())),
            ROW(WQXMLEvent::setCanCancel, event->setCanCancel(true); EXPECT_FALSE(event->canCancel())),
            ROW(WQXMLEvent::init, EXPECT_FALSE(event->init())),

            ROW(WQXMLMutationEvent::relatedNode, EXPECT_FALSE(mutation->relatedNode())),
            ROW(WQXMLMutationEvent::setRelatedNode, mutation->setRelatedNode(some()); EXPECT_FALSE(mutation->relatedNode())),
            ROW(WQXMLMutationEvent::prevValue, EXPECT_EQ(mutation->prevValue(), none)),
            ROW(WQXMLMutationEvent::setPrevValue, mutation->setPrevValue(u"x"); EXPECT_EQ(mutation->prevValue(), none)),
            ROW(WQXMLMutationEvent::newValue, EXPECT_EQ(mutation->newValue(), none)),
            ROW(WQXMLMutationEvent::setNewValue, mutation->setNewValue(u"x"); EXPECT_EQ(mutation->newValue(), none)),
            ROW(WQXMLMutationEvent::attrName, EXPECT_EQ(mutation->attrName(), none)),
            ROW(WQXMLMutationEvent::setAttrName, mutation->setAttrName(u"x"); EXPECT_EQ(mutation->attrName(), none)),
            ROW(WQXMLMutationEvent::attrChange, EXPECT_EQ(mutation->attrChange(), 0)),
            ROW(WQXMLMutationEvent::setAttrChange, mutation->setAttrChange(2); EXPECT_EQ(mutation->attrChange(), 0)),
            ROW(WQXMLMutationEvent::range, EXPECT_EQ(mutation->range(), (NSRange{0, 0}))),
            ROW(WQXMLMutationEvent::setRange, mutation->setRange({1, 2}); EXPECT_EQ(mutation->range(), (NSRange{0, 0}))),
            ROW(WQXMLMutationEvent::string, EXPECT_EQ(mutation->string(), none)),
            ROW(WQXMLMutationEvent::setString, mutation->setString(u"x"); EXPECT_EQ(mutation->string(), none)),
            ROW(WQXMLDragEvent::draggingInfo, EXPECT_EQ(drag->draggingInfo(), nullptr)),
            ROW(WQXMLDragEvent::setDraggingInfo, drag->setDraggingInfo(&drop); EXPECT_EQ(drag->draggingInfo(), nullptr)),

            ROW(WQXMLEventListenerData::initWithListener, EXPECT_FALSE(record->initWithListener(listener()))),
            ROW(WQXMLEventListenerData::listener, EXPECT_EQ(record->listener(), nullptr)),
            ROW(WQXMLEventListenerData::setListener, record->setListener(listener()); EXPECT_EQ(record->listener(), nullptr)),
            ROW(WQXMLEventListenerData::data, EXPECT_EQ(record->data(), nullptr)),
            ROW(WQXMLEventListenerData::setData, record->setData(&drop); EXPECT_EQ(record->data(), nullptr)),
            ROW(WQXMLEventListenerData::captureEvents, EXPECT_EQ(record->captureEvents(), 0u)),
            ROW(WQXMLEventListenerData::setCaptureEvents, record->setCaptureEvents(4); EXPECT_EQ(record->captureEvents(), 0u)),
            ROW(WQXMLEventListenerData::events, EXPECT_EQ(record->events(), 0u)),
            ROW(WQXMLEventListenerData::setEvents, record->setEvents(4); EXPECT_EQ(record->events(), 0u)),
            ROW(WQXMLEventListenerData::addEvent_useCapture, record->addEvent_useCapture(4, true); EXPECT_EQ(record->captureEvents(), 0u)),
            ROW(WQXMLEventListenerData::removeEvent_useCapture, record->removeEvent_useCapture(4, false)),
            ROW(WQXMLEventListenerData::isEmpty, EXPECT_FALSE(record->isEmpty())),

            ROW(NSDictionary::objectForKey, EXPECT_FALSE(dictionary->objectForKey(u"k"))),
            ROW(NSDictionary::containsKey, EXPECT_FALSE(dictionary->containsKey(u"k"))),
            ROW(NSDictionary::count, EXPECT_EQ(dictionary->count(), 0u)),
            ROW(NSDictionary::setObject_forKey, dictionary->setObject_forKey(true, u"k"); EXPECT_EQ(dictionary->count(), 0u)),
            ROW(NSDictionary::removeObjectForKey, dictionary->removeObjectForKey(u"k")),
            ROW(NSDictionary::begin, EXPECT_TRUE(dictionary->begin() == dictionary->end())),
            ROW(NSDictionary::end, EXPECT_TRUE(dictionary->begin() == dictionary->end())), ROW(NSData::view, EXPECT_EQ(bytes->view(), "")),
            ROW(NSData::length, EXPECT_EQ(bytes->length(), 0u)), ROW(NSData::append, bytes->append("x"); EXPECT_EQ(bytes->length(), 0u)),
            ROW(NSError::domain, EXPECT_EQ(error->domain(), none)), ROW(NSError::code, EXPECT_EQ(error->code(), 0)),
            ROW(NSError::localizedDescription, EXPECT_EQ(error->localizedDescription(), none)),
            ROW(NSError::description, EXPECT_EQ(error->description(), none)),
            ROW(NSURL::absoluteString, EXPECT_EQ(url->absoluteString(), none)), ROW(NSURL::scheme, EXPECT_EQ(url->scheme(), none)),
            ROW(NSURL::host, EXPECT_EQ(url->host(), none)), ROW(NSURL::fragment, EXPECT_EQ(url->fragment(), none)),
            ROW(NSURL::path, EXPECT_EQ(url->path(), none)), ROW(NSURL::isFileURL, EXPECT_FALSE(url->isFileURL())),
            ROW(NSURL::description, EXPECT_EQ(url->description(), none)),
            ROW(NSFontDescriptor::familyName, EXPECT_EQ(descriptor->familyName(), none)),
            ROW(NSFontDescriptor::pointSize, EXPECT_EQ(descriptor->pointSize(), 0)),
            ROW(NSFontDescriptor::symbolicTraits, EXPECT_EQ(descriptor->symbolicTraits(), 0u)),
            ROW(NSFont::familyName, EXPECT_EQ(font->familyName(), none)), ROW(NSFont::pointSize, EXPECT_EQ(font->pointSize(), 0)),
            ROW(NSFont::fontDescriptor, EXPECT_FALSE(font->fontDescriptor())), ROW(NSFont::path, EXPECT_EQ(font->path(), none)),
            ROW(NSFont::faceIndex, EXPECT_EQ(font->faceIndex(), 0)), ROW(NSFont::description, EXPECT_EQ(font->description(), none)),
            ROW(NSFontManager::availableFontFamilies, EXPECT_TRUE(fonts->availableFontFamilies().empty())),
            ROW(NSFontManager::fontWithFamily_traits_weight_size,
                EXPECT_FALSE(fonts->fontWithFamily_traits_weight_size(u"DejaVu Sans", 0, 5, 12))),
            ROW(NSColor::colorUsingType, EXPECT_FALSE(color->colorUsingType(0))),
            ROW(NSColor::colorUsingColorSpace, EXPECT_FALSE(color->colorUsingColorSpace(NSColorSpace::sRGBColorSpace()))),
            ROW(NSColor::redComponent, EXPECT_EQ(color->redComponent(), 0)),
            ROW(NSColor::greenComponent, EXPECT_EQ(color->greenComponent(), 0)),
            ROW(NSColor::blueComponent, EXPECT_EQ(color->blueComponent(), 0)),
            ROW(NSColor::alphaComponent, EXPECT_EQ(color->alphaComponent(), 0)),
            ROW(NSColor::getRed_green_blue_alpha, double red = 1; color->getRed_green_blue_alpha(&red, nullptr, nullptr, nullptr);
                EXPECT_EQ(red, 0)),
            ROW(NSColor::colorSpace, EXPECT_FALSE(color->colorSpace())), ROW(NSColor::isEqual, EXPECT_FALSE(color->isEqual(color))),
            ROW(NSTextBlock::setWidth_type_forLayer_edge, block->setWidth_type_forLayer_edge(1, 0, 9, 0)),
            ROW(NSTextBlock::widthForLayer_edge, EXPECT_EQ(block->widthForLayer_edge(9, 0), 0)),
            ROW(NSTextBlock::widthValueTypeForLayer_edge, EXPECT_EQ(block->widthValueTypeForLayer_edge(9, 0), 0u)),
            ROW(NSParagraphStyle::mutableCopy, EXPECT_FALSE(style->mutableCopy())),
            ROW(NSParagraphStyle::paragraphSpacingBefore, EXPECT_EQ(style->paragraphSpacingBefore(), 0)),
            ROW(NSParagraphStyle::paragraphSpacing, EXPECT_EQ(style->paragraphSpacing(), 0)),
            ROW(NSParagraphStyle::firstLineHeadIndent, EXPECT_EQ(style->firstLineHeadIndent(), 0)),
            ROW(NSParagraphStyle::headIndent, EXPECT_EQ(style->headIndent(), 0)),
            ROW(NSParagraphStyle::tailIndent, EXPECT_EQ(style->tailIndent(), 0)),
            ROW(NSParagraphStyle::minimumLineHeight, EXPECT_EQ(style->minimumLineHeight(), 0)),
            ROW(NSParagraphStyle::maximumLineHeight, EXPECT_EQ(style->maximumLineHeight(), 0)),
            ROW(NSParagraphStyle::lineHeightMultiple, EXPECT_EQ(style->lineHeightMultiple(), 0)),
            ROW(NSParagraphStyle::alignment, EXPECT_EQ(style->alignment(), 0)),
            ROW(NSParagraphStyle::tabStops, EXPECT_TRUE(style->tabStops().empty())),
            ROW(NSParagraphStyle::textBlocks, EXPECT_TRUE(style->textBlocks().empty())),
            ROW(NSParagraphStyle::isEqual, EXPECT_FALSE(style->isEqual(style))),
            ROW(NSMutableParagraphStyle::setParagraphSpacingBefore, mutableStyle->setParagraphSpacingBefore(1)),
            ROW(NSMutableParagraphStyle::setParagraphSpacing, mutableStyle->setParagraphSpacing(1)),
            ROW(NSMutableParagraphStyle::setFirstLineHeadIndent, mutableStyle->setFirstLineHeadIndent(1)),
            ROW(NSMutableParagraphStyle::setHeadIndent, mutableStyle->setHeadIndent(1)),
            ROW(NSMutableParagraphStyle::setTailIndent, mutableStyle->setTailIndent(1)),
            ROW(NSMutableParagraphStyle::setMinimumLineHeight, mutableStyle->setMinimumLineHeight(1)),
            ROW(NSMutableParagraphStyle::setMaximumLineHeight, mutableStyle->setMaximumLineHeight(1)),
            ROW(NSMutableParagraphStyle::setLineHeightMultiple, mutableStyle->setLineHeightMultiple(1)),
            ROW(NSMutableParagraphStyle::setAlignment, mutableStyle->setAlignment(1)),
            ROW(NSMutableParagraphStyle::setTabStops, mutableStyle->setTabStops({1})),
            ROW(NSMutableParagraphStyle::setTextBlocks, mutableStyle->setTextBlocks({NSTextBlock::textBlock()})),
            ROW(NSDictionary::mutableCopy, EXPECT_FALSE(dictionary->mutableCopy())),
            ROW(NSDictionary::isEqual, EXPECT_FALSE(dictionary->isEqual(dictionary))), ROW(NSURL::isEqual, EXPECT_FALSE(url->isEqual(url))),
            ROW(NSFont::isEqual, EXPECT_FALSE(font->isEqual(font))),
            ROW(NSParagraphStyle::textLists, EXPECT_TRUE(style->textLists().empty())),
            ROW(NSMutableParagraphStyle::setTextLists, mutableStyle->setTextLists({NSTextList::textListWithMarkerFormat(u"-")})),
            ROW(NSTextList::markerFormat, EXPECT_EQ(list->markerFormat(), none)),
            ROW(NSTextList::markerForItemNumber, EXPECT_EQ(list->markerForItemNumber(1), none)),
            ROW(NSTextList::initWithMarkerFormat, EXPECT_FALSE(list->initWithMarkerFormat(u"-"))),
            ROW(NSAttributedString::string, EXPECT_EQ(attributed->string(), none)),
            ROW(NSAttributedString::length, EXPECT_EQ(attributed->length(), 0u)),
            ROW(NSAttributedString::attributesAtIndex_effectiveRange, NSRange run{1, 1};
                EXPECT_FALSE(attributed->attributesAtIndex_effectiveRange(1, &run)); EXPECT_EQ(run, NSRange())),
            ROW(NSAttributedString::attributesAtIndex_longestEffectiveRange_inRange, NSRange run{1, 1};
                EXPECT_FALSE(attributed->attributesAtIndex_longestEffectiveRange_inRange(1, &run, NSRange())); EXPECT_EQ(run, NSRange())),
            ROW(NSAttributedString::attribute_atIndex_effectiveRange, NSRange run{1, 1};
                EXPECT_FALSE(attributed->attribute_atIndex_effectiveRange(u"k", 1, &run)); EXPECT_EQ(run, NSRange())),
            ROW(NSAttributedString::attribute_atIndex_longestEffectiveRange_inRange, NSRange run{1, 1};
                EXPECT_FALSE(attributed->attribute_atIndex_longestEffectiveRange_inRange(u"k", 1, &run, NSRange()));
                EXPECT_EQ(run, NSRange())),
            ROW(NSAttributedString::rangeOfTextList_atIndex, EXPECT_EQ(attributed->rangeOfTextList_atIndex(list, 1), NSRange())),
            ROW(NSAttributedString::itemNumberInTextList_atIndex, EXPECT_EQ(attributed->itemNumberInTextList_atIndex(list, 1), 0)),
            ROW(NSAttributedString::attributedSubstringFromRange, EXPECT_FALSE(attributed->attributedSubstringFromRange({1, 1}))),
            ROW(NSAttributedString::isEqual, EXPECT_FALSE(attributed->isEqual(attributed))),
            ROW(NSAttributedString::initWithString, EXPECT_FALSE(attributed->initWithString(u"x"))),
            ROW(NSAttributedString::initWithString_attributes, EXPECT_FALSE(attributed->initWithString_attributes(u"x", nullptr))),
            ROW(NSMutableAttributedString::appendAttributedString,
                mutableAttributed->appendAttributedString(NSAttributedString::newWithString(u"x"))),
            ROW(NSMutableAttributedString::replaceCharactersInRange_withString,
                mutableAttributed->replaceCharactersInRange_withString({1, 1}, u"x")),
            ROW(NSMutableAttributedString::deleteCharactersInRange, mutableAttributed->deleteCharactersInRange({1, 1})),
            ROW(NSMutableAttributedString::setAttributes_range, mutableAttributed->setAttributes_range(nullptr, {1, 1})),
            ROW(NSMutableAttributedString::addAttribute_value_range, mutableAttributed->addAttribute_value_range(u"k", true, {1, 1})),
            ROW(NSMutableAttributedString::removeAttribute_range, mutableAttributed->removeAttribute_range(u"k", {1, 1})),
            ROW(WQXMLRange::copyWithZone, EXPECT_FALSE(range->copyWithZone())),
            ROW(WQXMLRange::copyRange, EXPECT_FALSE(range->copyRange())),
            ROW(WQXMLRange::startContainer, EXPECT_FALSE(range->startContainer())),
            ROW(WQXMLRange::endContainer, EXPECT_FALSE(range->endContainer())),
            ROW(WQXMLRange::commonAncestorContainer, EXPECT_FALSE(range->commonAncestorContainer())),
            ROW(WQXMLRange::startOffset, EXPECT_EQ(range->startOffset(), 0u)),
            ROW(WQXMLRange::endOffset, EXPECT_EQ(range->endOffset(), 0u)),
            ROW(WQXMLRange::setStart_offset, range->setStart_offset(some(), 1)),
            ROW(WQXMLRange::setEnd_offset, range->setEnd_offset(some(), 1)), ROW(WQXMLRange::setStartBefore, range->setStartBefore(some())),
            ROW(WQXMLRange::setStartAfter, range->setStartAfter(some())), ROW(WQXMLRange::setEndBefore, range->setEndBefore(some())),
            ROW(WQXMLRange::setEndAfter, range->setEndAfter(some())), ROW(WQXMLRange::selectNode, range->selectNode(some())),
            ROW(WQXMLRange::selectNodeContents, range->selectNodeContents(some())),
            ROW(WQXMLRange::collapseToStart, range->collapseToStart()), ROW(WQXMLRange::collapseToEnd, range->collapseToEnd()),
            ROW(WQXMLRange::deleteContents, range->deleteContents()), ROW(WQXMLRange::collapseAfterDelete, range->collapseAfterDelete()),
            ROW(WQXMLRange::mergeAfterDelete, range->mergeAfterDelete()), ROW(WQXMLRange::addListeners, range->addListeners()),
            ROW(WQXMLRange::removeListeners, range->removeListeners()), ROW(WQXMLRange::isDetached, EXPECT_FALSE(range->isDetached())),
            ROW(WQXMLRange::shouldMergeAfterDelete, EXPECT_FALSE(range->shouldMergeAfterDelete())),
            ROW(WQXMLRange::shouldAddListeners, EXPECT_FALSE(range->shouldAddListeners())),
            ROW(WQXMLRange::collapsed, EXPECT_FALSE(range->collapsed())), ROW(WQXMLRange::isListening, EXPECT_FALSE(range->isListening())),
            ROW(WQXMLRange::setIsDetached, range->setIsDetached(true)),
            ROW(WQXMLRange::setShouldMergeAfterDelete, range->setShouldMergeAfterDelete(true)),
            ROW(WQXMLRange::setShouldAddListeners, range->setShouldAddListeners(true)),
            ROW(WQXMLRange::compareToRange_how, EXPECT_EQ(range->compareToRange_how(range, 7), 0)),
            ROW(WQXMLRange::isEqualToRange, EXPECT_FALSE(range->isEqualToRange(range))),
            ROW(WQXMLRange::intersectsRange_intersection, EXPECT_FALSE(range->intersectsRange_intersection(range, nullptr))),
            ROW(WQXMLRange::selectsNode_isPartialSelection, bool isPartial = false;
                EXPECT_FALSE(range->selectsNode_isPartialSelection(some(), &isPartial)); EXPECT_FALSE(isPartial)),
            ROW(WQXMLRange::lengthOfContainer, EXPECT_EQ(range->lengthOfContainer(some()), 0u)),
            ROW(WQXMLRange::description, EXPECT_EQ(range->description(), none)),
            ROW(WQXMLRange::toString, EXPECT_EQ(range->toString(), none)), ROW(WQXMLRange::insertNode, range->insertNode(some())),
            ROW(WQXMLRange::insertString, range->insertString(u"x")), ROW(WQXMLRange::splitBelowNode, range->splitBelowNode(some())),
            ROW(WQXMLRange::removeSelectedComponentsOfNode, const auto full = parse("<a>t</a>");
                range->removeSelectedComponentsOfNode(full->documentElement()->firstChild()); EXPECT_EQ(dump(full), "a[\"t\"]")),
            ROW(WQXMLRange::appendContentFromNode_toString, NSString string; range->appendContentFromNode_toString(some(), string);
                EXPECT_EQ(string, none)),
            ROW(WQXMLRange::handleEvent, range->handleEvent(WQXMLMutationEvent::newEvent())),
            ROW(WQXMLRange::init, EXPECT_FALSE(range->init())),
            ROW(WQXMLRange::initWithNode, EXPECT_FALSE(range->initWithNode(parse("<a><b/></a>")->documentElement()->firstChild()))),
            ROW(WQXMLRange::initWithContainer_offset, EXPECT_FALSE(range->initWithContainer_offset(some(), 0))),
            ROW(WQXMLRange::initWithStartContainer_startOffset_endContainer_endOffset,
                EXPECT_FALSE(range->initWithStartContainer_startOffset_endContainer_endOffset(some(), 0, some(), 0))),
            ROW(WQXMLDocument::createRange, EXPECT_FALSE(document->createRange())),
            ROW(WQXMLNode::encodeWithWriter, node->encodeWithWriter(writer)),
            ROW(WQXMLElement::innerXML, EXPECT_EQ(element->innerXML(), none)),
            ROW(WQXMLElement::outerXMLWithFormat, EXPECT_EQ(element->outerXMLWithFormat(true), none)),
            ROW(WQXMLElement::outerXML, EXPECT_EQ(element->outerXML(), none)),
            ROW(WQXMLElement::encodeWithWriter, element->encodeWithWriter(writer)),
            ROW(WQXMLElement::setInnerXML, element->setInnerXML(u"<a/>"); EXPECT_FALSE(element->firstChild())),
            ROW(WQXMLElement::getElementsByTagName, EXPECT_FALSE(element->getElementsByTagName(u"a"))),
            ROW(WQXMLElement::getElementsByTagName_namespaceURI, EXPECT_FALSE(element->getElementsByTagName_namespaceURI(u"a", u"u"))),
            ROW(WQXMLElement::getAttributeNode, EXPECT_FALSE(element->getAttributeNode(u"a"))),
            ROW(WQXMLElement::getAttributeNode_namespaceURI, EXPECT_FALSE(element->getAttributeNode_namespaceURI(u"a", u"u"))),
            ROW(WQXMLElement::setAttributeNode, EXPECT_FALSE(element->setAttributeNode(attribute))),
            ROW(WQXMLElement::setAttributeNodeNS, EXPECT_FALSE(element->setAttributeNodeNS(attribute))),
            ROW(WQXMLElement::removeAttributeNode, EXPECT_FALSE(element->removeAttributeNode(attribute))),
            ROW(WQXMLText::isWhitespace, EXPECT_FALSE(text->isWhitespace())), ROW(WQXMLText::normalizeContent, text->normalizeContent()),
            ROW(WQXMLText::encodeWithWriter, text->encodeWithWriter(writer)), ROW(WQXMLAttr::setValue, attribute->setValue(u"x")),
            ROW(WQXMLAttr::encodeWithWriter, attribute->encodeWithWriter(writer)),
            ROW(WQXMLDocument::createComment, EXPECT_FALSE(document->createComment(u"a"))),
            ROW(WQXMLDocument::createAttribute, EXPECT_FALSE(document->createAttribute(u"a"))),
            ROW(WQXMLDocument::createAttribute_namespaceURI, EXPECT_FALSE(document->createAttribute_namespaceURI(u"a", u"u"))),
            ROW(WQXMLDocument::importNode_deep, EXPECT_FALSE(document->importNode_deep(some(), true))),
            ROW(WQXMLDocument::getElementById, EXPECT_FALSE(document->getElementById(u"a"))),
            ROW(WQXMLDocument::nodesForXPath, EXPECT_FALSE(document->nodesForXPath(u"//a"))),
            ROW(WQXMLDocument::nodesForXPath_currentNode, EXPECT_FALSE(document->nodesForXPath_currentNode(u"a", some()))),
            ROW(WQXMLDocument::getElementsByTagName, EXPECT_FALSE(document->getElementsByTagName(u"a"))),
            ROW(WQXMLDocument::getElementsByTagName_namespaceURI, EXPECT_FALSE(document->getElementsByTagName_namespaceURI(u"a", u"u"))),
            ROW(WQXMLDocument::XMLData, EXPECT_FALSE(document->XMLData())),
            ROW(WQXMLDocument::formattedXMLData, EXPECT_FALSE(document->formattedXMLData())),
            ROW(WQXMLDocument::copyWithZone, EXPECT_FALSE(document->copyWithZone())),
            ROW(WQXMLDocument::valueForUndefinedKey, EXPECT_FALSE(document->valueForUndefinedKey(u"k"))),
            ROW(WQXMLDocument::registerXPathPrefix_forNamespace, document->registerXPathPrefix_forNamespace(u"p", u"u")),
            ROW(WQXMLDocument::canonicalRepresentation, EXPECT_EQ(document->canonicalRepresentation(), none)),
            ROW(WQXMLDocument::encodeWithWriter, document->encodeWithWriter(writer)),
            ROW(WQXMLDocument::setValue_forUndefinedKey, document->setValue_forUndefinedKey(true, u"k");
                EXPECT_FALSE(document->valueForUndefinedKey(u"k"))),
            ROW(WQXMLWriterElement::name, EXPECT_EQ(open->name(), none)),
            ROW(WQXMLWriterElement::nsDefs, EXPECT_TRUE(open->nsDefs().empty())),
            ROW(WQXMLWriterElement::define_namespaceURI, open->define_namespaceURI(u"p", u"u"); EXPECT_TRUE(open->nsDefs().empty())),
            ROW(WQXMLWriterElement::isDefined_namespaceURI, EXPECT_FALSE(open->isDefined_namespaceURI(u"p", u"u"))),
            ROW(WQXMLWriterElement::initWithLocalName_prefix_namespaceURI,
                EXPECT_FALSE(open->initWithLocalName_prefix_namespaceURI(u"a", u"p", u"u"))),
            ROW(WQXMLWriter::XMLDocument, EXPECT_FALSE(writer->XMLDocument())), ROW(WQXMLWriter::XMLData, EXPECT_FALSE(writer->XMLData())),
            ROW(WQXMLWriter::startDocumentWithVersion_encoding_standalone,
                EXPECT_EQ(writer->startDocumentWithVersion_encoding_standalone(u"1.0", u"utf-8", u"no"), 0)),
            ROW(WQXMLWriter::endDocument, EXPECT_EQ(writer->endDocument(), 0)),
            ROW(WQXMLWriter::startComment, EXPECT_EQ(writer->startComment(), 0)),
            ROW(WQXMLWriter::endComment, EXPECT_EQ(writer->endComment(), 0)),
            ROW(WQXMLWriter::writeComment, EXPECT_EQ(writer->writeComment(u"a"), 0)),
            ROW(WQXMLWriter::startPI, EXPECT_EQ(writer->startPI(u"a"), 0)), ROW(WQXMLWriter::endPI, EXPECT_EQ(writer->endPI(), 0)),
            ROW(WQXMLWriter::writePI_content, EXPECT_EQ(writer->writePI_content(u"a", u"b"), 0)),
            ROW(WQXMLWriter::startCDATA, EXPECT_EQ(writer->startCDATA(), 0)), ROW(WQXMLWriter::endCDATA, EXPECT_EQ(writer->endCDATA(), 0)),
            ROW(WQXMLWriter::writeCDATA, EXPECT_EQ(writer->writeCDATA(u"a"), 0)),
            ROW(WQXMLWriter::startDTD_pubid_sysid, EXPECT_EQ(writer->startDTD_pubid_sysid(u"a", u"b", u"c"), 0)),
            ROW(WQXMLWriter::endDTD, EXPECT_EQ(writer->endDTD(), 0)),
            ROW(WQXMLWriter::writeDTD_pubid_sysid_subset, EXPECT_EQ(writer->writeDTD_pubid_sysid_subset(u"a", u"b", u"c", u"d"), 0)),
            ROW(WQXMLWriter::startElement, EXPECT_EQ(writer->startElement(u"a"), 0)),
            ROW(WQXMLWriter::startElement_prefix_namespace, EXPECT_EQ(writer->startElement_prefix_namespace(u"a", u"b", u"c"), 0)),
            ROW(WQXMLWriter::endElement, EXPECT_EQ(writer->endElement(), 0)),
            ROW(WQXMLWriter::fullEndElement, EXPECT_EQ(writer->fullEndElement(), 0)),
            ROW(WQXMLWriter::writeElement_content, EXPECT_EQ(writer->writeElement_content(u"a", u"b"), 0)),
            ROW(WQXMLWriter::writeElement_prefix_namespace_content,
                EXPECT_EQ(writer->writeElement_prefix_namespace_content(u"a", u"b", u"c", u"d"), 0)),
            ROW(WQXMLWriter::writeRaw, EXPECT_EQ(writer->writeRaw(u"a"), 0)),
            ROW(WQXMLWriter::writeString, EXPECT_EQ(writer->writeString(u"a"), 0)),
            ROW(WQXMLWriter::writeBase64, EXPECT_EQ(writer->writeBase64(test::data("a")), 0)),
            ROW(WQXMLWriter::writeBinHex, EXPECT_EQ(writer->writeBinHex(test::data("a")), 0)),
            ROW(WQXMLWriter::startAttribute, EXPECT_EQ(writer->startAttribute(u"a"), 0)),
            ROW(WQXMLWriter::startAttribute_prefix_namespace, EXPECT_EQ(writer->startAttribute_prefix_namespace(u"a", u"b", u"c"), 0)),
            ROW(WQXMLWriter::endAttribute, EXPECT_EQ(writer->endAttribute(), 0)),
            ROW(WQXMLWriter::writeAttribute_content, EXPECT_EQ(writer->writeAttribute_content(u"a", nullptr), 0)),
            ROW(WQXMLWriter::writeAttribute_prefix_namespace_content,
                EXPECT_EQ(writer->writeAttribute_prefix_namespace_content(u"a", u"b", u"c", u"d"), 0)),
            ROW(WQXMLWriter::setIndent, EXPECT_EQ(writer->setIndent(true), 0)),
            ROW(WQXMLWriter::setIndentString, EXPECT_EQ(writer->setIndentString(u"a"), 0)),
            ROW(WQXMLWriter::flush, EXPECT_EQ(writer->flush(), 0)),
            ROW(WQXMLWriter::isDefined_namespaceURI, EXPECT_FALSE(writer->isDefined_namespaceURI(u"p", u"u"))),
            ROW(WQXMLWriter::elements, EXPECT_FALSE(writer->elements())),
            ROW(WQXMLWriter::initWithURL, EXPECT_FALSE(writer->initWithURL(NSURL::URLWithString(u"file:///nowhere/x")))),
            ROW(WQXMLWriter::initToMemory, EXPECT_FALSE(writer->initToMemory())),
            ROW(WQXMLWriter::initToXMLDocument, EXPECT_FALSE(writer->initToXMLDocument())),
            ROW(WQXMLWriter::initToElement, EXPECT_FALSE(writer->initToElement(someElement()))),
            ROW(WQXMLReader::read, EXPECT_EQ(reader->read(), 0)), ROW(WQXMLReader::next, EXPECT_EQ(reader->next(), 0)),
            ROW(WQXMLReader::nextSibling, EXPECT_EQ(reader->nextSibling(), 0)), ROW(WQXMLReader::close, EXPECT_EQ(reader->close(), 0)),
            ROW(WQXMLReader::nodeType, EXPECT_EQ(reader->nodeType(), 0)), ROW(WQXMLReader::depth, EXPECT_EQ(reader->depth(), 0)),
            ROW(WQXMLReader::attributeCount, EXPECT_EQ(reader->attributeCount(), 0)),
            ROW(WQXMLReader::moveToFirstAttribute, EXPECT_EQ(reader->moveToFirstAttribute(), 0)),
            ROW(WQXMLReader::moveToNextAttribute, EXPECT_EQ(reader->moveToNextAttribute(), 0)),
            ROW(WQXMLReader::moveToElement, EXPECT_EQ(reader->moveToElement(), 0)),
            ROW(WQXMLReader::readAttributeValue, EXPECT_EQ(reader->readAttributeValue(), 0)),
            ROW(WQXMLReader::quoteChar, EXPECT_EQ(reader->quoteChar(), 0)), ROW(WQXMLReader::readState, EXPECT_EQ(reader->readState(), 0)),
            ROW(WQXMLReader::hasValue, EXPECT_FALSE(reader->hasValue())),
            ROW(WQXMLReader::isEmptyElement, EXPECT_FALSE(reader->isEmptyElement())),
            ROW(WQXMLReader::isDefault, EXPECT_FALSE(reader->isDefault())),
            ROW(WQXMLReader::isNamespaceDecl, EXPECT_FALSE(reader->isNamespaceDecl())),
            ROW(WQXMLReader::hasAttributes, EXPECT_FALSE(reader->hasAttributes())),
            ROW(WQXMLReader::standalone, EXPECT_FALSE(reader->standalone())), ROW(WQXMLReader::isValid, EXPECT_FALSE(reader->isValid())),
            ROW(WQXMLReader::name, EXPECT_EQ(reader->name(), none)), ROW(WQXMLReader::localName, EXPECT_EQ(reader->localName(), none)),
            ROW(WQXMLReader::prefix, EXPECT_EQ(reader->prefix(), none)),
            ROW(WQXMLReader::namespaceURI, EXPECT_EQ(reader->namespaceURI(), none)),
            ROW(WQXMLReader::value, EXPECT_EQ(reader->value(), none)), ROW(WQXMLReader::baseURI, EXPECT_EQ(reader->baseURI(), none)),
            ROW(WQXMLReader::xmlLang, EXPECT_EQ(reader->xmlLang(), none)), ROW(WQXMLReader::encoding, EXPECT_EQ(reader->encoding(), none)),
            ROW(WQXMLReader::xmlVersion, EXPECT_EQ(reader->xmlVersion(), none)),
            ROW(WQXMLReader::getAttributeNo, EXPECT_EQ(reader->getAttributeNo(0), none)),
            ROW(WQXMLReader::getAttribute, EXPECT_EQ(reader->getAttribute(u"a"), none)),
            ROW(WQXMLReader::getAttribute_namespace, EXPECT_EQ(reader->getAttribute_namespace(u"a", u"u"), none)),
            ROW(WQXMLReader::lookupNamespace, EXPECT_EQ(reader->lookupNamespace(u"p"), none)),
            ROW(WQXMLReader::moveToAttributeNo, EXPECT_EQ(reader->moveToAttributeNo(0), 0)),
            ROW(WQXMLReader::moveToAttribute, EXPECT_EQ(reader->moveToAttribute(u"a"), 0)),
            ROW(WQXMLReader::moveToAttribute_namespace, EXPECT_EQ(reader->moveToAttribute_namespace(u"a", u"u"), 0)),
            ROW(WQXMLReader::initWithURL_options_error,
                EXPECT_FALSE(reader->initWithURL_options_error(NSURL::URLWithString(u"file:///nowhere/x"), 0, &noError))),
            ROW(WQXMLReader::initWithData_baseURL_error,
                EXPECT_FALSE(reader->initWithData_baseURL_error(test::data("<a/>"), nullptr, &noError))),
            ROW(NSData::snapshot, EXPECT_FALSE(bytes->snapshot())),

            ROW(WQCSSStyle::initWithCSSStyle, EXPECT_FALSE(cssStyle->initWithCSSStyle(SharedPtr<CSS::Style>(CreateStyle()).Get()))),
            ROW(WQCSSStyle::cssStyle, EXPECT_EQ(cssStyle->cssStyle(), nullptr)),
            ROW(WQCSSStyle::inheritPropertiesFromStyle, cssStyle->inheritPropertiesFromStyle(someStyle())),
            ROW(WQCSSStyle::color, EXPECT_FALSE(cssStyle->color())), ROW(WQCSSStyle::attributes, EXPECT_FALSE(cssStyle->attributes())),
            ROW(WQCSSStyle::font, EXPECT_FALSE(cssStyle->font())), ROW(WQCSSStyle::fontFamily, EXPECT_EQ(cssStyle->fontFamily(), none)),
            ROW(WQCSSStyle::description, EXPECT_EQ(cssStyle->description(), none)),
            ROW(WQCSSStyle::display, EXPECT_EQ(cssStyle->display(), 0u)), ROW(WQCSSStyle::position, EXPECT_EQ(cssStyle->position(), 0u)),
            ROW(WQCSSStyle::fontStyle, EXPECT_EQ(cssStyle->fontStyle(), 0u)),
            ROW(WQCSSStyle::fontWeight, EXPECT_EQ(cssStyle->fontWeight(), 0u)),
            ROW(WQCSSStyle::textAlign, EXPECT_EQ(cssStyle->textAlign(), 0u)),
            ROW(WQCSSStyle::textDecoration, EXPECT_EQ(cssStyle->textDecoration(), 0u)),
            ROW(WQCSSStyle::verticalAlign, EXPECT_EQ(cssStyle->verticalAlign(), 0u)),
            ROW(WQCSSStyle::pageBreakAfter, EXPECT_EQ(cssStyle->pageBreakAfter(), 0u)),
            ROW(WQCSSStyle::pageBreakBefore, EXPECT_EQ(cssStyle->pageBreakBefore(), 0u)),
            ROW(WQCSSStyle::fontSize, EXPECT_EQ(cssStyle->fontSize(), 0)),
            ROW(WQCSSStyle::lineHeight, EXPECT_EQ(cssStyle->lineHeight(), 0)),
            ROW(WQCSSStyle::marginLeft, EXPECT_EQ(cssStyle->marginLeft(), noLength)),
            ROW(WQCSSStyle::setMarginLeft, cssStyle->setMarginLeft(half)),
            ROW(WQCSSStyle::marginRight, EXPECT_EQ(cssStyle->marginRight(), noLength)),
            ROW(WQCSSStyle::setMarginRight, cssStyle->setMarginRight(half)),
            ROW(WQCSSStyle::marginTop, EXPECT_EQ(cssStyle->marginTop(), noLength)),
            ROW(WQCSSStyle::setMarginTop, cssStyle->setMarginTop(half)),
            ROW(WQCSSStyle::marginBottom, EXPECT_EQ(cssStyle->marginBottom(), noLength)),
            ROW(WQCSSStyle::setMarginBottom, cssStyle->setMarginBottom(half)),
            ROW(WQCSSStyle::paddingLeft, EXPECT_EQ(cssStyle->paddingLeft(), noLength)),
            ROW(WQCSSStyle::setPaddingLeft, cssStyle->setPaddingLeft(half)),
            ROW(WQCSSStyle::paddingRight, EXPECT_EQ(cssStyle->paddingRight(), noLength)),
            ROW(WQCSSStyle::setPaddingRight, cssStyle->setPaddingRight(half)),
            ROW(WQCSSStyle::paddingTop, EXPECT_EQ(cssStyle->paddingTop(), noLength)),
            ROW(WQCSSStyle::setPaddingTop, cssStyle->setPaddingTop(half)),
            ROW(WQCSSStyle::paddingBottom, EXPECT_EQ(cssStyle->paddingBottom(), noLength)),
            ROW(WQCSSStyle::setPaddingBottom, cssStyle->setPaddingBottom(half)),
            ROW(WQCSSStyle::height, EXPECT_EQ(cssStyle->height(), noLength)), ROW(WQCSSStyle::setHeight, cssStyle->setHeight(half)),
            ROW(WQCSSStyle::width, EXPECT_EQ(cssStyle->width(), noLength)), ROW(WQCSSStyle::setWidth, cssStyle->setWidth(half)),
            ROW(WQCSSStyle::maxHeight, EXPECT_EQ(cssStyle->maxHeight(), noLength)),
            ROW(WQCSSStyle::setMaxHeight, cssStyle->setMaxHeight(half)),
            ROW(WQCSSStyle::minHeight, EXPECT_EQ(cssStyle->minHeight(), noLength)),
            ROW(WQCSSStyle::setMinHeight, cssStyle->setMinHeight(half)),
            ROW(WQCSSStyle::maxWidth, EXPECT_EQ(cssStyle->maxWidth(), noLength)), ROW(WQCSSStyle::setMaxWidth, cssStyle->setMaxWidth(half)),
            ROW(WQCSSStyle::minWidth, EXPECT_EQ(cssStyle->minWidth(), noLength)), ROW(WQCSSStyle::setMinWidth, cssStyle->setMinWidth(half)),
            ROW(WQCSSStyle::textIndent, EXPECT_EQ(cssStyle->textIndent(), noLength)),
            ROW(WQCSSStyle::setTextIndent, cssStyle->setTextIndent(half)),
            ROW(WQCSSStyle::borderLeft, EXPECT_EQ(cssStyle->borderLeft(), _WQCSSBorder())),
            ROW(WQCSSStyle::setBorderLeft, cssStyle->setBorderLeft({1, 1})),
            ROW(WQCSSStyle::borderRight, EXPECT_EQ(cssStyle->borderRight(), _WQCSSBorder())),
            ROW(WQCSSStyle::setBorderRight, cssStyle->setBorderRight({1, 1})),
            ROW(WQCSSStyle::borderTop, EXPECT_EQ(cssStyle->borderTop(), _WQCSSBorder())),
            ROW(WQCSSStyle::setBorderTop, cssStyle->setBorderTop({1, 1})),
            ROW(WQCSSStyle::borderBottom, EXPECT_EQ(cssStyle->borderBottom(), _WQCSSBorder())),
            ROW(WQCSSStyle::setBorderBottom, cssStyle->setBorderBottom({1, 1})),
            ROW(WQCSSStyle::setColor, cssStyle->setColor(NSColor::textColor())),
            ROW(WQCSSStyle::setDisplay, cssStyle->setDisplay(WQCSSDisplayNone)),
            ROW(WQCSSStyle::setFontStyle, cssStyle->setFontStyle(WQCSSFontStyleItalic)),
            ROW(WQCSSStyle::setFontWeight, cssStyle->setFontWeight(WQCSSFontWeightBold)),
            ROW(WQCSSStyle::setFontFamily, cssStyle->setFontFamily(u"x")), ROW(WQCSSStyle::setFontSize, cssStyle->setFontSize(1)),
            ROW(WQCSSStyle::setLineHeight, cssStyle->setLineHeight(2)),
            ROW(WQCSSStyle::setTextAlign, cssStyle->setTextAlign(WQCSSTextAlignRight)),
            ROW(WQCSSStyle::setTextDecoration, cssStyle->setTextDecoration(WQCSSTextDecorationUnderline)),
            ROW(WQCSSStyle::setVerticalAlign, cssStyle->setVerticalAlign(WQCSSVerticalAlignBottom)),
            ROW(WQCSSStyle::setPageBreakAfter, cssStyle->setPageBreakAfter(WQCSSPageBreakAfterAlways)),
            ROW(WQCSSStyle::setPageBreakBefore, cssStyle->setPageBreakBefore(WQCSSPageBreakBeforeAlways)),
            ROW(WQCSSStyle::setPosition, cssStyle->setPosition(1)),
            ROW(WQCSSStyle::bestMatchForFont_traits_weight_size,
                EXPECT_FALSE(cssStyle->bestMatchForFont_traits_weight_size(u"x", 0, 5, 12))),
            ROW(WQCSSStyle::typeForLength, EXPECT_EQ(cssStyle->typeForLength(half), 0u); EXPECT_EQ(cssStyle->typeForLength(noLength), 0u)),
            ROW(WQCSSStyle::setWidthForBlock_top_left_bottom_right_layer, const auto box = NSTextBlock::textBlock();
                cssStyle->setWidthForBlock_top_left_bottom_right_layer(box, half, half, half, half, 1);
                EXPECT_EQ(box->widthForLayer_edge(1, 0), 0)),
            ROW(WQCSSStyle::setBorderForBlock_top_left_bottom_right, const auto box = NSTextBlock::textBlock();
                cssStyle->setBorderForBlock_top_left_bottom_right(box, {1, 0}, {1, 0}, {1, 0}, {1, 0});
                EXPECT_EQ(box->widthForLayer_edge(0, 0), 0)),
            ROW(WQCSSStyle::applyToTextBlock, const auto box = NSTextBlock::textBlock(); box->setWidth_type_forLayer_edge(7, 0, 0, 0);
                cssStyle->applyToTextBlock(box); EXPECT_EQ(box->widthForLayer_edge(0, 0), 7)),
            ROW(WQCSSStyleDeclaration::initWithCSSStyleDeclaration,
                EXPECT_FALSE(declaration->initWithCSSStyleDeclaration(someDeclaration()->cssStyleDeclaration()))),
            ROW(WQCSSStyleDeclaration::cssStyleDeclaration, EXPECT_EQ(declaration->cssStyleDeclaration(), nullptr)),
            ROW(WQCSSStyleDeclaration::cssText, EXPECT_EQ(declaration->cssText(), none)),
            ROW(WQCSSStyleDeclaration::propertyValue, EXPECT_EQ(declaration->propertyValue(u"color"), none)),
            ROW(WQCSSStyleDeclaration::propertyCSSValue, EXPECT_FALSE(declaration->propertyCSSValue(u"color"))),
            ROW(WQCSSStyleDeclaration::propertyPriority, EXPECT_EQ(declaration->propertyPriority(u"color"), none)),
            ROW(WQCSSStyleDeclaration::length, EXPECT_EQ(declaration->length(), 0u)),
            ROW(WQCSSStyleDeclaration::item, EXPECT_EQ(declaration->item(0), none)),
            ROW(WQCSSStyleDeclaration::removeDuplicatePropertiesFromStyle, const auto other = someDeclaration();
                declaration->removeDuplicatePropertiesFromStyle(other); EXPECT_EQ(other->length(), 1u)),
            ROW(WQCSSMutableStyleDeclaration::init, EXPECT_FALSE(mutableDeclaration->init())),
            ROW(WQCSSMutableStyleDeclaration::mutableDeclaration, EXPECT_EQ(mutableDeclaration->mutableDeclaration(), nullptr)),
            ROW(WQCSSMutableStyleDeclaration::setCssText, mutableDeclaration->setCssText(u"color: red")),
            ROW(WQCSSMutableStyleDeclaration::setProperty_value, mutableDeclaration->setProperty_value(u"color", u"red")),
            ROW(WQCSSMutableStyleDeclaration::setProperty_value_priority,
                mutableDeclaration->setProperty_value_priority(u"color", u"red", u"")),
            ROW(WQCSSMutableStyleDeclaration::setProperty_cssValue,
                mutableDeclaration->setProperty_cssValue(u"color", WQCSSPrimitiveValue::newPrimitiveValue())),
            ROW(WQCSSMutableStyleDeclaration::removeProperty, EXPECT_EQ(mutableDeclaration->removeProperty(u"color"), none)),
            ROW(WQCSSComputedStyleDeclaration::initWithStyle, EXPECT_FALSE(computedDeclaration->initWithStyle(someStyle()))),
            ROW(WQCSSStyleResolver::init, EXPECT_FALSE(resolver->init())),
            ROW(WQCSSStyleResolver::initWithCSSStyleResolver,
                EXPECT_FALSE(resolver->initWithCSSStyleResolver(SharedPtr<CSS::StyleResolver>(new CSS::StyleResolver).Get()))),
            ROW(WQCSSStyleResolver::cssStyleResolver, EXPECT_EQ(resolver->cssStyleResolver(), nullptr)),
            ROW(WQCSSStyleResolver::defaultStyle, EXPECT_FALSE(resolver->defaultStyle())),
            ROW(WQCSSStyleResolver::resolveStyle_parentStyle, EXPECT_FALSE(resolver->resolveStyle_parentStyle(someElement(), someStyle()))),
            ROW(WQCSSStyleResolver::processRulesFromStyleSheet,
                resolver->processRulesFromStyleSheet(WQCSSStyleSheet::styleSheetWithString(u"a { }"))),
            ROW(WQCSSStyleSheet::initWithContentsOfURL_error,
                EXPECT_FALSE(sheet->initWithContentsOfURL_error(NSURL::URLWithString(u"file:///nowhere/x"), &noError));
                EXPECT_FALSE(noError)),
            ROW(WQCSSStyleSheet::initWithString, EXPECT_FALSE(sheet->initWithString(u"a { }"))),
            ROW(WQCSSStyleSheet::initWithCSSStyleSheet,
                EXPECT_FALSE(sheet->initWithCSSStyleSheet(SharedPtr<CSS::Stylesheet>(new CSS::Stylesheet).Get()))),
            ROW(WQCSSStyleSheet::cssStyleSheet, EXPECT_EQ(sheet->cssStyleSheet(), nullptr)),
            ROW(WQCSSStyleSheet::setCSSStyleSheet, sheet->setCSSStyleSheet(SharedPtr<CSS::Stylesheet>(new CSS::Stylesheet).Get())),
            ROW(WQCSSValue::initWithCSSValue,
                EXPECT_FALSE(cssValue->initWithCSSValue(SharedPtr<CSS::Value>(new CSS::PrimitiveValue).Get()))),
            ROW(WQCSSValue::cssValue, EXPECT_EQ(cssValue->cssValue(), nullptr)),
            ROW(WQCSSValue::cssText, EXPECT_EQ(cssValue->cssText(), none)), ROW(WQCSSValue::setCssText, cssValue->setCssText(u"x")),
            ROW(WQCSSValue::cssValueType, EXPECT_EQ(cssValue->cssValueType(), 0)),
            ROW(WQCSSPrimitiveValue::init, EXPECT_FALSE(primitiveValue->init())),
            ROW(WQCSSPrimitiveValue::primitiveType, EXPECT_EQ(primitiveValue->primitiveType(), 0)),
            ROW(WQCSSPrimitiveValue::floatValue, EXPECT_EQ(primitiveValue->floatValue(1), 0)),
            ROW(WQCSSPrimitiveValue::setFloatValue_unitType, primitiveValue->setFloatValue_unitType(1, 1)),
            ROW(WQCSSPrimitiveValue::stringValue, EXPECT_EQ(primitiveValue->stringValue(), none)),
            ROW(WQCSSPrimitiveValue::setStringValue_unitType, primitiveValue->setStringValue_unitType(u"x", 19)),
            ROW(WQCSSValueList::init, EXPECT_FALSE(valueList->init())), ROW(WQCSSValueList::length, EXPECT_EQ(valueList->length(), 0u)),
            ROW(WQCSSValueList::item, EXPECT_FALSE(valueList->item(0))), ROW(WQHTMLWriter::init, EXPECT_FALSE(htmlWriter->init())),
            ROW(WQHTMLWriter::baseURL, EXPECT_FALSE(htmlWriter->baseURL())),
            ROW(WQHTMLWriter::setBaseURL, htmlWriter->setBaseURL(NSURL::URLWithString(u"http://x/"))),
            ROW(WQHTMLWriter::setPrefix, htmlWriter->setPrefix(u"x")),
            ROW(WQHTMLWriter::setNamespaceURI, htmlWriter->setNamespaceURI(u"x")),
            ROW(WQHTMLWriter::encodeAttributedString_withWriter_baseAttributes, const auto out = WQXMLWriter::newToMemory();
                htmlWriter->encodeAttributedString_withWriter_baseAttributes(NSAttributedString::newWithString(u"x"), out, nullptr);
                EXPECT_EQ(out->XMLData()->view(), "")),
            ROW(WQHTMLWriter::encodeAttributedString_withWriter, const auto out = WQXMLWriter::newToMemory();
                htmlWriter->encodeAttributedString_withWriter(NSAttributedString::newWithString(u"x"), out);
                EXPECT_EQ(out->XMLData()->view(), "")),
    };
    return all;
}

// The bytes of a null object: every field of it.
template <class T> std::string fieldsOfNull() { return {reinterpret_cast<const char*>(wq::nil<T>()), sizeof(typename T::template Nil<T>)}; }

std::vector<std::string> fieldsOfAllNulls() {
    return {
        fieldsOfNull<WQXMLNode>(),
        fieldsOfNull<WQXMLElement>(),
        fieldsOfNull<WQXMLDocument>(),
        fieldsOfNull<WQXMLText>(),
        fieldsOfNull<WQXMLAttr>(),
        fieldsOfNull<WQXMLEvent>(),
        fieldsOfNull<WQXMLMutationEvent>(),
        fieldsOfNull<WQXMLDragEvent>(),
        fieldsOfNull<WQXMLEventListenerData>(),
        fieldsOfNull<NSDictionary>(),
        fieldsOfNull<NSData>(),
        fieldsOfNull<NSError>(),
        fieldsOfNull<NSURL>(),
        fieldsOfNull<NSFont>(),
        fieldsOfNull<NSFontDescriptor>(),
        fieldsOfNull<NSFontManager>(),
        fieldsOfNull<NSColor>(),
        fieldsOfNull<NSTextBlock>(),
        fieldsOfNull<NSParagraphStyle>(),
        fieldsOfNull<NSMutableParagraphStyle>(),
        fieldsOfNull<NSTextList>(),
        fieldsOfNull<NSAttributedString>(),
        fieldsOfNull<NSMutableAttributedString>(),
        fieldsOfNull<WQXMLWriter>(),
        fieldsOfNull<WQXMLWriterElement>(),
        fieldsOfNull<WQXMLReader>(),
        fieldsOfNull<WQXMLRange>(),
        fieldsOfNull<WQHTMLWriter>(),
        fieldsOfNull<WQCSSStyle>(),
        fieldsOfNull<WQCSSStyleDeclaration>(),
        fieldsOfNull<WQCSSMutableStyleDeclaration>(),
        fieldsOfNull<WQCSSComputedStyleDeclaration>(),
        fieldsOfNull<WQCSSStyleResolver>(),
        fieldsOfNull<WQCSSStyleSheet>(),
        fieldsOfNull<WQCSSValue>(),
        fieldsOfNull<WQCSSPrimitiveValue>(),
        fieldsOfNull<WQCSSValueList>()};
}

TEST(NullTest, EveryPublicOperationHasARow) {
    std::set<std::string> operations;
    for (const char* folder : {"dom", "platform", "mac/Frameworks/WQCSS", "html"})
        for (const auto& file : std::filesystem::directory_iterator(sourceFolder() / folder))
            if (file.path().extension() == ".h") operations.merge(publicOperations(file.path()));
    std::erase_if(operations, [](auto& operation) { return !isOfTheObjectLayer(operation); });
    EXPECT_GT(operations.size(), 150u);

    for (const std::string& operation : operations) EXPECT_TRUE(rows().count(operation)) << operation << " has no row";
    for (const auto& [operation, row] : rows()) EXPECT_TRUE(operations.count(operation)) << operation << " is gone";
}

TEST(NullTest, AnswersNullToEveryOperationAndKeepsEveryField) {
    wq::AssertionScope nullNeverAsserts([](const wq::AssertionFailure& failure) { ADD_FAILURE() << failure.operation; });
    std::vector<std::string> logged;
    wq::LogSink previous = wq::setLogSink([&](const NSString& message) { logged.push_back(wq::toUTF8(message)); });
    const auto before = fieldsOfAllNulls();
    for (const auto& [operation, row] : rows()) {
        SCOPED_TRACE(operation);
        EXPECT_EQ(raised(row), "");
        EXPECT_EQ(fieldsOfAllNulls(), before);
    }
    wq::setLogSink(previous);
    EXPECT_THAT(logged, testing::IsEmpty());
}

TEST(NullTest, AFacadeAroundNothingAnswersAsNullDoes) {
    const Put theStyle(cssStyle, WQCSSStyle::newWithCSSStyle(nullptr));
    const Put theDeclaration(declaration, WQCSSStyleDeclaration::newWithCSSStyleDeclaration(nullptr));
    const Put theMutable(mutableDeclaration, WQCSSStyleDeclaration::newWithCSSStyleDeclaration<WQCSSMutableStyleDeclaration>(nullptr));
    const Put theResolver(resolver, WQCSSStyleResolver::newWithCSSStyleResolver(nullptr));
    const Put theSheet(sheet, WQCSSStyleSheet::newWithCSSStyleSheet(nullptr));
    const Put theValue(cssValue, WQCSSValue::newWithCSSValue(nullptr));
    const Put thePrimitive(primitiveValue, WQCSSValue::newWithCSSValue<WQCSSPrimitiveValue>(nullptr));
    const Put theList(valueList, WQCSSValue::newWithCSSValue<WQCSSValueList>(nullptr));
    for (const auto& [operation, row] : rows()) {
        if (!operation.starts_with("WQCSS")) continue;
        if (operation.find("::init") != std::string::npos || operation.ends_with("::description")) continue;
        SCOPED_TRACE(operation);
        EXPECT_EQ(raised(row), "");
    }
}

TEST(NullTest, ChainsSurviveWhateverIsMissingOnTheWay) {
    const auto small = parse("<a/>");
    EXPECT_EQ(small->documentElement()->firstChild()->nextSibling()->parentNode()->nodeName(), nullptr);
    EXPECT_EQ(element->ownerDocument()->documentElement()->getAttribute(u"x"), nullptr);
}

TEST(NullTest, NeverGetsIntoAReference) {
    EXPECT_FALSE(Ref<WQXMLElement>(element.operator->()));
    EXPECT_FALSE(element->commonAncestorWithNode(someElement()));
}

TEST(NullTest, IsBoundToNoNode) {
    xmlNs ns = {};
    node->setXMLNode(someElement()->xmlNode());
    node->setOwnedNs(&ns);
    EXPECT_EQ(node->xmlNode(), nullptr);
    EXPECT_EQ(node->ownedNs(), nullptr);
}

class Paragraph : public WQXMLElement {
public:
    virtual uint64_t words() const { return firstChild() ? 1 : 0; }
};

TEST(NullTest, AnApplicationClassHasANullObjectWithoutAWord) {
    const Ref<Paragraph> paragraph;
    EXPECT_EQ(paragraph->nodeType(), 0);
    EXPECT_EQ(paragraph->words(), 0u);
    paragraph->setRange({1, 2});
    EXPECT_EQ(paragraph->range(), (NSRange{0, 0}));
}

TEST(NullTest, NullArgumentsChangeNothing) {
    const auto full = parse("<a><b/></a>");
    const auto root = full->documentElement();
    EXPECT_FALSE(root->appendChild(nullptr));
    EXPECT_FALSE(root->insertChild_before(nullptr, root->firstChild()));
    EXPECT_FALSE(root->removeChild(nullptr));
    root->insertChild_atIndex(nullptr, 0);
    root->appendChildrenFromNode(nullptr);
    EXPECT_EQ(root->indexOfChild(nullptr), NSNotFound);
    EXPECT_FALSE(root->isAncestorOfNode(nullptr));
    EXPECT_FALSE(root->isDescendantOfNode(nullptr));
    EXPECT_FALSE(root->commonAncestorWithNode(nullptr));
    EXPECT_FALSE(root->childAncestorOfNode(nullptr));
    EXPECT_FALSE(root->dispatchEvent(nullptr));
    EXPECT_EQ(dump(full), "a[b]");
}

}  // namespace
