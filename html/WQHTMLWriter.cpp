#include "html/WQHTMLWriter.h"

#include <algorithm>

#include "dom/WQXMLExtensions.h"
#include "platform/NSAttributeNames.h"
#include "platform/NSColor.h"
#include "platform/NSFont.h"
#include "platform/NSParagraphStyle.h"

namespace {

constexpr double userFontSize = 12;

uint64_t endOf(NSRange range) { return range.location + range.length; }

NSRange rangeFromTo(uint64_t start, uint64_t end) { return {start, end - start}; }

// With the dynamic colour of text, which no style sheet can say, as black.
Ref<NSDictionary> withPlainColors(const Ref<NSDictionary>& attributes) {
    const auto color = attributes->objectForKey(NSForegroundColorAttributeName).object<NSColor>();
    if (!color || color != NSColor::textColor()) return attributes;
    const auto plain = attributes->mutableCopy();
    plain->setObject_forKey(NSColor::colorWithSRGBRed_green_blue_alpha(0, 0, 0, 1), NSForegroundColorAttributeName);
    return plain;
}

// The properties are shared.
Ref<WQCSSMutableStyleDeclaration> copyOf(const Ref<WQCSSMutableStyleDeclaration>& style) {
    const auto copy = WQCSSMutableStyleDeclaration::newStyleDeclaration();
    copy->mutableDeclaration()->properties = style->mutableDeclaration()->properties;
    return copy;
}

}  // namespace

bool WQHTMLWriter::init() {
    my.attributeStack.clear();
    return true;
}

// ---- Entries

void WQHTMLWriter::encodeAttributedString_withWriter_baseAttributes(
    const Ref<NSAttributedString>& string,
    const Ref<WQXMLWriter>& writer,
    const Ref<NSDictionary>& baseAttributes) {
    setWriter(writer);
    my.listLevel = 0;
    setSourceString(string.operator->());
    pushParentAttributes(baseAttributes);
    encodeBlocksInRange({0, string->length()});
    popParentAttributes();
    setWriter(nullptr);
}

void WQHTMLWriter::encodeAttributedString_withWriter(const Ref<NSAttributedString>& string, const Ref<WQXMLWriter>& writer) {
    const auto base = NSDictionary::dictionary(
        {{NSFontAttributeName, NSFont::userFontOfSize(userFontSize)},
         {NSParagraphStyleAttributeName, NSParagraphStyle::defaultParagraphStyle()}});
    encodeAttributedString_withWriter_baseAttributes(string, writer, base);
}

// ---- Blocks

// The steps use the location of what they are given, and not its length.
uint64_t WQHTMLWriter::encodeBlocksInRange(NSRange range) {
    uint64_t index = range.location;
    const uint64_t end = endOf(range);
    while (index < end) {
        uint64_t next = encodeListInRange({index, end});
        if (next == NSNotFound) next = encodeParagraphInRange({index, end});
        index = next;
    }
    return index;
}

uint64_t WQHTMLWriter::encodeParagraphInRange(NSRange range) {
    const uint64_t start = range.location;
    uint64_t end = 0, contentsEnd = 0;
    my.sourceString->string().getParagraphStart_end_contentsEnd_forRange(nullptr, &end, &contentsEnd, {start, 0});
    const auto attributes = my.sourceString->attributesAtIndex_effectiveRange(start, nullptr);
    startElement(u"p");
    writeStyle(copyOf(styleSaidBy(attributes)));
    pushParentAttributes(attributes);
    encodeInlinesInRange(rangeFromTo(start, contentsEnd));
    my.writer->endElement();
    popParentAttributes();
    return end;
}

uint64_t WQHTMLWriter::encodeListInRange(NSRange range) {
    const uint64_t start = range.location;
    const auto lists = textListsAtIndex(start);
    if (my.listLevel >= lists.size()) return NSNotFound;
    const auto list = lists[my.listLevel];
    ++my.listLevel;
    startElement(u"ul");

    const auto attributes = my.sourceString->attributesAtIndex_effectiveRange(start, nullptr);
    const auto style = copyOf(styleSaidBy(attributes));
    const NSString marker = listStyleForList(list);
    if (marker && marker != u"disc") style->setProperty_value(u"list-style-type", marker);
    style->setProperty_value(u"margin-left", u"0px");  // the indent of a list is no margin
    style->setProperty_value(u"text-indent", u"0px");
    writeStyle(style);
    pushParentAttributes(attributes);

    const NSRange whole = my.sourceString->rangeOfTextList_atIndex(list, start);
    uint64_t index = whole.location;
    const uint64_t end = endOf(whole);
    while (index < end) {
        const bool isDeeper = textListsAtIndex(index).size() != my.listLevel;
        index = isDeeper ? encodeListInRange(rangeFromTo(index, end)) : encodeItemInRange(list, rangeFromTo(index, end));
    }

    my.writer->endElement();
    popParentAttributes();
    --my.listLevel;
    return index;
}

// The text system puts the marker into the text, between two tabs; a browser draws its own.
uint64_t WQHTMLWriter::encodeItemInRange(const Ref<NSTextList>& list, NSRange range) {
    uint64_t start = range.location;
    const NSString& text = my.sourceString->string();
    const long number = my.sourceString->itemNumberInTextList_atIndex(list, start);
    const NSString marker = u"\t" + wq::printed(list->markerForItemNumber(number)) + u"\t";
    if (marker.length() <= range.length && text.substringWithRange({start, marker.length()}) == marker) start += marker.length();

    uint64_t end = 0, contentsEnd = 0;
    text.getParagraphStart_end_contentsEnd_forRange(nullptr, &end, &contentsEnd, {start, 0});
    startElement(u"li");
    encodeInlinesInRange(rangeFromTo(start, contentsEnd));
    my.writer->endElement();
    return end;
}

// ---- Inlines

uint64_t WQHTMLWriter::encodeInlinesInRange(NSRange range) {
    uint64_t index = range.location;
    const uint64_t end = endOf(range);
    while (index < end) {
        uint64_t next = encodeLinkInRange(rangeFromTo(index, end));
        if (next == NSNotFound) next = encodeSpanInRange(rangeFromTo(index, end));
        index = next;
    }
    return index;
}

uint64_t WQHTMLWriter::encodeLinkInRange(NSRange range) {
    NSRange run;
    const NSValue link = my.sourceString->attribute_atIndex_longestEffectiveRange_inRange(NSLinkAttributeName, range.location, &run, range);
    if (!link) return NSNotFound;
    startElement(u"a");
    const auto url = link.string() ? NSURL::URLWithString(link.string()) : link.object<NSURL>();
    my.writer->writeAttribute_content(u"href", stringRelativeToURL(url, my.baseURL));
    uint64_t index = range.location;
    const uint64_t end = endOf(run);
    while (index < end) index = encodeSpanInRange(rangeFromTo(index, end));
    my.writer->endElement();
    return end;
}

uint64_t WQHTMLWriter::encodeSpanInRange(NSRange range) {
    NSRange run;
    const auto attributes = withPlainColors(my.sourceString->attributesAtIndex_effectiveRange(range.location, &run));
    const uint64_t end = std::min(endOf(run), endOf(range));
    const NSString text = my.sourceString->string().substringWithRange(rangeFromTo(range.location, end));
    const auto style = copyOf(styleSaidBy(attributes));
    styleSaidBy(parentAttributes())->removeDuplicatePropertiesFromStyle(style);
    if (style->length() == 0) {
        my.writer->writeString(text);
        return end;
    }
    startElement(u"span");
    my.writer->writeAttribute_content(u"style", style->cssText());
    my.writer->writeString(text);
    my.writer->endElement();
    return end;
}

// ---- What they share

void WQHTMLWriter::startElement(const NSString& name) {
    if (my.namespaceURI)
        my.writer->startElement_prefix_namespace(name, my.prefix, my.namespaceURI);
    else
        my.writer->startElement(name);
}

// What differs from the element around.
void WQHTMLWriter::writeStyle(const Ref<WQCSSMutableStyleDeclaration>& style) {
    styleSaidBy(parentAttributes())->removeDuplicatePropertiesFromStyle(style);
    if (style->length() > 0) my.writer->writeAttribute_content(u"style", style->cssText());
}

Ref<WQCSSMutableStyleDeclaration> WQHTMLWriter::parentStyle() const { return copyOf(styleSaidBy(parentAttributes())); }

const Ref<WQCSSMutableStyleDeclaration>& WQHTMLWriter::styleSaidBy(const Ref<NSDictionary>& attributes) const {
    constexpr size_t kKept = 16;
    static const auto& keys = *new std::array<NSString, 4>{
        NSParagraphStyleAttributeName, NSFontAttributeName, NSUnderlineStyleAttributeName, NSForegroundColorAttributeName};
    std::array<NSValue, 4> values;
    std::transform(keys.begin(), keys.end(), values.begin(), [&](const NSString& key) { return attributes->objectForKey(key); });
    for (auto latest = said.rbegin(); latest != said.rend(); ++latest)
        if (latest->values == values) return latest->style;
    if (said.size() == kKept) said.erase(said.begin());
    said.push_back({std::move(values), WQCSSMutableStyleDeclaration::styleDeclarationFromAttributes(attributes)});
    return said.back().style;
}

Ref<NSDictionary> WQHTMLWriter::parentAttributes() const { return my.attributeStack.empty() ? nullptr : my.attributeStack.back(); }

void WQHTMLWriter::pushParentAttributes(const Ref<NSDictionary>& attributes) { my.attributeStack.push_back(attributes); }

Ref<NSDictionary> WQHTMLWriter::popParentAttributes() {
    const auto attributes = parentAttributes();
    if (!my.attributeStack.empty()) my.attributeStack.pop_back();
    return attributes;
}

NSString WQHTMLWriter::listStyleForList(const Ref<NSTextList>& list) {
    const NSString format = list->markerFormat();
    const size_t brace = format.view().find(u'{');
    if (brace == std::u16string_view::npos) return nullptr;
    const std::u16string_view keyword = format.view().substr(brace + 1);
    return keyword.substr(0, keyword.find(u'}'));
}

std::vector<Ref<NSTextList>> WQHTMLWriter::textListsAtIndex(uint64_t index) const {
    return my.sourceString->attribute_atIndex_effectiveRange(NSParagraphStyleAttributeName, index, nullptr)
        .object<NSParagraphStyle>()
        ->textLists();
}
