#include "dom/WQXMLText.h"

#include "dom/Binding.h"
#include "dom/WQXMLWriter.h"
#include "platform/Assertion.h"

using wq::Binding;
using wq::Bytes;

bool WQXMLText::initWithString(const NSString& string) {
    const Bytes bytes(string);
    xmlNodePtr node = wq::unregistered([&] { return xmlNewText(bytes); });
    WQ_ASSERT(node, u"Could not create node");
    return Binding::bindOwnNode(this, node);
}

Ref<WQXMLNode> WQXMLText::splitAtIndex(uint64_t index) {
    const Ref<WQXMLNode> receiver = self();
    const uint64_t length = this->length();
    if (index > length) return nullptr;
    const Ref<WQXMLNode> parent = parentNode();
    if (!parent) return nullptr;
    const NSRange behind{index, length - index};
    const auto tail = wq::make<WQXMLText>(wq::classOf(*this), &WQXMLText::initWithString, substringWithRange(behind));
    if (!tail) return nullptr;
    deleteCharactersInRange(behind);
    parent->insertChild_before(tail, nextSibling());
    return tail;
}

// ---- White space

bool WQXMLText::isWhitespace() const { return xmlNode() && xmlIsBlankNode(xmlNode()); }

namespace {

bool isBlank(unsigned char byte) { return byte == '\t' || byte == ' '; }
// Those leave no trace, so words that only they divide are joined: wanted.
bool isLineEnd(unsigned char byte) { return byte == '\n' || byte == '\f' || byte == '\r'; }

std::string collapsed(const xmlChar* content, bool fromFirstWord) {
    const xmlChar* byte = content;
    if (fromFirstWord)
        while (isBlank(*byte) || isLineEnd(*byte)) ++byte;

    std::string collapsed;
    size_t blanks = 0;
    for (; *byte; ++byte) {
        if (isLineEnd(*byte)) continue;
        if (isBlank(*byte)) {
            ++blanks;
            continue;
        }
        if (blanks) collapsed += ' ';
        collapsed += static_cast<char>(*byte);
        blanks = 0;
    }
    if (blanks) collapsed += ' ';
    return collapsed;
}

}  // namespace

void WQXMLText::normalizeContent() {
    xmlNodePtr node = xmlNode();
    if (!node || normalized()) return;
    flags |= kNormalized;
    if (xmlNodeGetSpacePreserve(node->parent) == 1 || !node->content) return;
    const std::string content = collapsed(node->content, !node->prev || isWhitespace());
    Binding::setContent(node, BAD_CAST content.c_str());
}

// ---- Copies and writing

Ref<WQXMLNode> WQXMLText::copyWithZone() const {
    if (!xmlNode()) return nullptr;
    const auto copied = wq::make<WQXMLText>(wq::classOf(*this), &WQXMLText::init);
    copied->setString(string());
    return copied;
}

void WQXMLText::encodeWithWriter(const Ref<WQXMLWriter>& writer) const {
    const NSString text = string();
    if (!text) return;
    const int32_t result = writer->writeString(text);
    WQ_ASSERT(result != -1, u"Could not encode text node");
}
