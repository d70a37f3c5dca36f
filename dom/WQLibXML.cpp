#include "dom/WQLibXML.h"

#include <libxml/catalog.h>
#include <libxml/parser.h>
#include <libxml/xmlerror.h>

#include "dom/Binding.h"
#include "dom/WQXMLAttr.h"
#include "dom/WQXMLDocument.h"
#include "dom/WQXMLElement.h"
#include "dom/WQXMLText.h"
#include "platform/NSBundle.h"
#include "platform/WQXMLException.h"

bool gRegisterNode = true;
xmlNodePtr gCheckNode = nullptr;
const wq::Class* DefaultElementClass = nullptr;
const wq::Class* DefaultAttrClass = nullptr;
const wq::Class* DefaultTextClass = nullptr;
const wq::Class* DefaultNodeClass = nullptr;

// ---- Start-up

void WQLibXMLInit() {
    static bool isInitialized = false;
    if (isInitialized) return;
    if (NSString catalog = NSBundle::pathForResource_ofType(u"catalog", u"xml")) {
        xmlInitializeCatalog();
        xmlLoadCatalog(wq::toUTF8(catalog).c_str());
    }
    xmlRegisterNodeDefault(xmlRegisterNode);
    xmlDeregisterNodeDefault(xmlDeregisterNode);
    xmlSetStructuredErrorFunc(nullptr, wqStructuredErrorFunc);
    xmlInitParser();
    isInitialized = true;
}

void wq::startLibrary() {
    static bool isStarted = false;
    if (isStarted) return;
    DefaultElementClass = &wq::Class::of<WQXMLElement>();
    DefaultAttrClass = &wq::Class::of<WQXMLAttr>();
    DefaultTextClass = &wq::Class::of<WQXMLText>();
    DefaultNodeClass = &wq::Class::of<WQXMLNode>();
    WQLibXMLInit();
    isStarted = true;
}

bool setRegisterNode(bool value) { return std::exchange(gRegisterNode, value); }

// ---- The hooks

namespace {
int64_t gLivingNodes = 0;

void count([[maybe_unused]] int step) {
#ifdef WQ_COUNT_OBJECTS
    gLivingNodes += step;
#endif
}

bool isDocument(xmlNodePtr node) { return node->type == XML_DOCUMENT_NODE || node->type == XML_HTML_DOCUMENT_NODE; }

const wq::Class* classForNode(xmlNodePtr node) {
    switch (node->type) {
        case XML_ELEMENT_NODE: return DefaultElementClass;
        case XML_ATTRIBUTE_NODE: return DefaultAttrClass;
        case XML_TEXT_NODE: return DefaultTextClass;
        default: return DefaultNodeClass;
    }
}

// After a failure inside a guarded call no code of the application runs until it has returned.
bool isStopped() { return wq::GuardedCall::current && wq::GuardedCall::current->failed(); }

void settlePendingCheck() {
    if (!gCheckNode) return;
    if (isStopped())
        gCheckNode = nullptr;
    else if (wq::WaitingChecks::current)
        wq::WaitingChecks::current->takePending();
    else
        checkNode();
}

// Attributes, and what their values are made of, come while their element's callback still runs.
bool belongsToStartElement(xmlNodePtr node) { return wq::gInStartElement && node->type != XML_ELEMENT_NODE; }

// A `_private` that is no wrapper, and is left alone.
void* const kNoWrapper = reinterpret_cast<void*>(0x22);
}  // namespace

int64_t wq::numberOfLivingNodes() noexcept { return gLivingNodes; }

void checkNode() {
    xmlNodePtr node = std::exchange(gCheckNode, nullptr);
    if (!node) return;
    if (WQXMLDocument* document = wq::Binding::wrapperOf(node->doc)) document->fixElementClass(node);
}

void xmlRegisterNode(xmlNodePtr node) {
    count(+1);
    wq::keepFailure([&] {
        if (!belongsToStartElement(node)) settlePendingCheck();
        if (!gRegisterNode || isDocument(node) || isStopped()) return;
        if (WQXMLNode* made = wq::Binding::makeWrapper(classForNode(node), node)) {
            node->_private = made;
            wq::Binding::setHoldsTreeReference(made, true);
        }
        if (node->type == XML_ELEMENT_NODE) gCheckNode = node;
    });
}

void xmlDeregisterNode(xmlNodePtr node) {
    count(-1);
    wq::keepFailure([&] {
        wq::keepFailure(settlePendingCheck);  // the rest must not be left out
        if (node->type == XML_ATTRIBUTE_NODE) wq::Binding::forgetIdentifier(reinterpret_cast<xmlAttrPtr>(node));
        if (isDocument(node)) return wq::Binding::letDetachedNodesGo(reinterpret_cast<xmlDocPtr>(node));
        if (node->type == XML_DTD_NODE && wq::Binding::wrapperOf(node->doc)) wq::Binding::forgetDeclarations(node);
        if (!node->_private || node->_private == kNoWrapper) return;
        if (node->next) __builtin_prefetch(node->next->_private, 1);  // in a long document it is in no cache
        wq::Binding::attach(node);                                    // it may have been freed while it was listed as detached
        WQXMLNode* bound = wq::wrapper(node);
        node->_private = nullptr;
        bound->setXMLNode(nullptr);
        if (!wq::Binding::holdsTreeReference(bound)) return;
        wq::Binding::setHoldsTreeReference(bound, false);
        bound->release();
    });
}

// ---- Errors

namespace {
// A message stands where a format is expected, without arguments to it.
NSString formattedWithoutArguments(const NSString& format) {
    std::u16string result;
    const std::u16string_view rest = format;
    for (size_t i = 0; i < rest.size(); ++i) {
        const char16_t directive = rest[i] == u'%' && i + 1 < rest.size() ? rest[i + 1] : u'\0';
        if (directive == u'%')
            result += u'%', ++i;
        else if (directive == u'@')
            result += wq::nullText, ++i;
        else
            result += rest[i];
    }
    return result;
}

// The domains whose errors name a parser as their context.
bool comesFromParser(int domain) {
    return domain == XML_FROM_PARSER || domain == XML_FROM_NAMESPACE || domain == XML_FROM_HTML || domain == XML_FROM_DTD ||
           domain == XML_FROM_IO;
}
}  // namespace

void wq::stopParser(void* context) noexcept {
    auto* parser = static_cast<xmlParserCtxtPtr>(context);
    parser->wellFormed = 0;
    parser->disableSAX = 1;
}

void wqStructuredErrorFunc(void*, xmlErrorPtr error) {
    wq::GuardedCall* call = wq::GuardedCall::current;
    wq::keepFailure([&] {
        const NSString reason = formattedWithoutArguments(wq::fromUTF8(error->message));
        if (!call) throw WQXMLException(u"XML Exception", reason);
        call->keep(std::make_exception_ptr(WQXMLException(u"XML Exception", reason)), error);
    });
    if (error->ctxt && comesFromParser(error->domain)) wq::stopParser(error->ctxt);
}

void printIDHashEntry(void*, void*, const unsigned char*) {}
