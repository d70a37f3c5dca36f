#include "examples/book/StyledText.h"

#include <libxml/tree.h>
#include <libxml/uri.h>

#include <algorithm>
#include <map>
#include <utility>

#include "platform/NSAttributeNames.h"
#include "platform/NSMutableParagraphStyle.h"
#include "platform/NSTextList.h"

namespace {

constexpr const char16_t* kXMLNamespace = u"http://www.w3.org/XML/1998/namespace";
constexpr char16_t kLineSeparator = u'\u2028';

bool isOneOf(const NSString& name, std::initializer_list<const char16_t*> names) {
    return std::any_of(names.begin(), names.end(), [&](const char16_t* each) { return name == each; });
}
bool isList(const NSString& name) { return isOneOf(name, {u"list", u"ul", u"ol"}); }
bool isItem(const NSString& name) { return isOneOf(name, {u"item", u"li"}); }

int depthOf(const Ref<WQXMLNode>& node) { return node->parentNode() ? 1 + depthOf(node->parentNode()) : 0; }

int headingLevelOf(const Ref<WQXMLElement>& element) {
    const NSString name = element->localName();
    if (name == u"title") return std::max(1, depthOf(element) - 1);
    const bool isNumbered = name.length() == 2 && name.view()[0] == u'h' && name.view()[1] >= u'1' && name.view()[1] <= u'6';
    return isNumbered ? name.view()[1] - u'0' : 0;
}

bool isBlank(char16_t unit) { return unit == u' ' || unit == u'\t' || unit == u'\n' || unit == u'\r'; }

double pointsOf(_WQCSSLength length) { return length.type == WQCSSLengthTypeAbsolute ? length.value : 0; }

bool isFramed(const Ref<WQCSSStyle>& style) {
    for (auto border : {style->borderLeft(), style->borderRight(), style->borderTop(), style->borderBottom()})
        if (border.width > 0) return true;
    for (auto padding : {style->paddingLeft(), style->paddingRight(), style->paddingTop(), style->paddingBottom()})
        if (pointsOf(padding) > 0) return true;
    return false;
}

// The frame of a block. Its margins above and below are spacing of paragraphs, which spacing around it can swallow.
Ref<NSTextBlock> textBlockOf(const Ref<WQCSSStyle>& style) {
    const auto block = NSTextBlock::textBlock();
    style->applyToTextBlock(block);
    for (unsigned edge : {NSMinYEdge, NSMaxYEdge})
        block->setWidth_type_forLayer_edge(0, NSTextBlockAbsoluteValueType, NSTextBlockMargin, edge);
    return block;
}

// The marker format of a list: numbers have a period behind them.
NSString markerFormatOf(WQCSSListStyleType type) {
    static const char16_t* const formats[] = {
        u"{box}",
        u"{check}",
        u"{circle}",
        u"{diamond}",
        u"{disc}",
        u"{hyphen}",
        u"{square}",
        u"{lower-hexadecimal}.",
        u"{upper-hexadecimal}.",
        u"{octal}.",
        u"{lower-alpha}.",
        u"{lower-latin}.",
        u"{upper-alpha}.",
        u"{upper-latin}.",
        u"{lower-roman}.",
        u"{upper-roman}.",
        u"{decimal}."};
    return formats[type];
}

// What holds for a node because of those around it.
struct Context {
    Ref<WQXMLElement> block;               // the nearest block
    Ref<WQCSSStyle> blockStyle;            // and its style
    double left = 0, right = 0;            // margins of the blocks around, in points
    std::vector<Ref<NSTextBlock>> frames;  // outermost first
    std::vector<Ref<NSTextList>> lists;    // outermost first
    bool isUnderlined = false;
    bool keepsSpace = false;  // white space stands as it is
    NSValue link;             // an address, or null
};

struct Run {
    std::u16string text;
    Ref<NSDictionary> attributes;  // but for the paragraph style
};

struct Paragraph {
    std::vector<Run> runs;
    Ref<NSMutableParagraphStyle> style;
    StyledParagraph result;  // but for its text
};

// ---- The tree as paragraphs

class ParagraphBuilder {
public:
    ParagraphBuilder(const StyledTree& aTree, const Ref<NSURL>& aBaseURL) : tree(aTree), baseURL(aBaseURL) {}

    std::vector<Paragraph> paragraphsOf(const Ref<WQXMLElement>& top) {
        Context around;
        around.block = top;
        around.blockStyle = tree.styleOf(top);
        readElement(top, around);
        return std::move(paragraphs);
    }

private:
    void readChildren(const Ref<WQXMLElement>& element, const Ref<WQCSSStyle>& style, const Context& within) {
        for (auto child = element->firstChild(); child; child = child->nextSibling()) {
            switch (child->nodeType()) {
                case XML_ELEMENT_NODE: readElement(wq::cast<WQXMLElement>(child), within); break;
                case XML_TEXT_NODE: readWords(child->nodeValue(), style, within); break;
                case XML_CDATA_SECTION_NODE:
                case XML_ENTITY_REF_NODE: readWords(contentOf(child), style, within); break;
                default: break;
            }
        }
    }

    void readElement(const Ref<WQXMLElement>& element, const Context& around) {
        const auto style = tree.styleOf(element);
        Context within = around;
        within.isUnderlined = within.isUnderlined || style->textDecoration() == WQCSSTextDecorationUnderline;
        const NSString space = element->getAttribute_namespaceURI(u"space", kXMLNamespace);
        within.keepsSpace = space ? space == u"preserve" : within.keepsSpace || element->localName() == u"pre";
        const NSString address = element->getAttribute(u"href");
        if (element->localName() == u"a" && address) within.link = completed(address);
        if (style->display() == WQCSSDisplayBlock) readBlock(element, style, within);
        if (style->display() == WQCSSDisplayInline) readInline(element, style, within);
    }

    void readInline(const Ref<WQXMLElement>& element, const Ref<WQCSSStyle>& style, const Context& within) {
        if (element->localName() == u"br" && isInParagraph) {
            append(kLineSeparator, attributesOf(style, within));
            blankAttributes = nullptr;
        }
        readChildren(element, style, within);
    }

    void readBlock(const Ref<WQXMLElement>& element, const Ref<WQCSSStyle>& style, Context within) {
        within.block = element;
        within.blockStyle = style;
        enter(element, style, within);
        const size_t before = paragraphs.size();
        readChildren(element, style, within);
        isInParagraph = false;
        if (paragraphs.size() > before) leave(style);
    }

    // What a block says of the paragraphs inside, and of the first of them.
    void enter(const Ref<WQXMLElement>& element, const Ref<WQCSSStyle>& style, Context& within) {
        if (isFramed(style)) {
            within.frames.push_back(textBlockOf(style));
        } else {
            within.left += pointsOf(style->marginLeft());
            within.right += pointsOf(style->marginRight());
        }
        const NSString name = element->localName();
        if (isList(name))
            within.lists.push_back(NSTextList::textListWithMarkerFormat(markerFormatOf(style->cssStyle()->GetListStyleType())));
        if (isItem(name) && !within.lists.empty()) itemOf = within.lists.back();
        isInParagraph = false;
        spaceAbove = std::max(spaceAbove, pointsOf(style->marginTop()));
        beginsPage = beginsPage || style->pageBreakBefore() == WQCSSPageBreakBeforeAlways;
    }

    // What it says of the last one.
    void leave(const Ref<WQCSSStyle>& style) {
        Paragraph& last = paragraphs.back();
        last.style->setParagraphSpacing(std::max(last.style->paragraphSpacing(), pointsOf(style->marginBottom())));
        if (style->pageBreakAfter() == WQCSSPageBreakAfterAlways) last.result.endsPage = true;
    }

    // ---- Words

    void readWords(const NSString& words, const Ref<WQCSSStyle>& style, const Context& within) {
        const auto attributes = attributesOf(style, within);
        within.keepsSpace ? keepSpace(words, attributes, within) : collapseSpace(words, attributes, within);
    }

    // A line feed becomes a line separator, once it is clear that more follows.
    void keepSpace(const NSString& words, const Ref<NSDictionary>& attributes, const Context& within) {
        for (const char16_t unit : words.view()) {
            if (unit == u'\n') {
                if (isInParagraph) ++lineFeeds;
                continue;
            }
            if (!isInParagraph) beginParagraph(within);
            for (; lineFeeds > 0; --lineFeeds) append(kLineSeparator, attributes);
            append(unit == u'\t' ? u' ' : unit, attributes);
        }
    }

    // A blank is written with what it stood in, once it is clear that more follows.
    void collapseSpace(const NSString& words, const Ref<NSDictionary>& attributes, const Context& within) {
        for (const char16_t unit : words.view()) {
            if (isBlank(unit)) {
                if (isInParagraph && !endsWithSpace()) blankAttributes = attributes;
                continue;
            }
            if (!isInParagraph) beginParagraph(within);
            if (blankAttributes) append(u' ', blankAttributes);
            blankAttributes = nullptr;
            append(unit, attributes);
        }
    }

    void append(char16_t unit, const Ref<NSDictionary>& attributes) {
        auto& runs = paragraphs.back().runs;
        if (runs.empty() || runs.back().attributes != attributes) runs.push_back({u"", attributes});
        runs.back().text += unit;
    }

    bool endsWithSpace() const {
        const char16_t last = paragraphs.back().runs.back().text.back();
        return last == kLineSeparator || last == u' ';
    }

    void beginParagraph(const Context& within) {
        const int level = headingLevelOf(within.block);
        paragraphs.push_back({{}, paragraphStyleOf(within), {nullptr, 0, within.block, beginsPage, false, level}});
        isInParagraph = true;
        beginsPage = false;
        blankAttributes = nullptr;
        lineFeeds = 0;
        spaceAbove = 0;
        if (itemOf) {
            const auto marker = u"\t" + itemOf->markerForItemNumber(++itemNumbers[itemOf.get()]) + u"\t";
            const auto plain = within.blockStyle->attributes()->mutableCopy();
            for (const char16_t unit : marker.view()) append(unit, plain);
            paragraphs.back().result.markerLength = marker.length();
        }
        itemOf = nullptr;
    }

    // ---- Attributes

    static Ref<NSDictionary> attributesOf(const Ref<WQCSSStyle>& style, const Context& within) {
        const auto attributes = style->attributes()->mutableCopy();
        if (within.isUnderlined) attributes->setObject_forKey(1.0, NSUnderlineStyleAttributeName);
        if (within.link) attributes->setObject_forKey(within.link, NSLinkAttributeName);
        return attributes;
    }

    // The paragraph style that the block's style gives, with what it cannot know: indents, frames and lists.
    Ref<NSMutableParagraphStyle> paragraphStyleOf(const Context& within) const {
        const auto style = within.blockStyle->attributes()->objectForKey(NSParagraphStyleAttributeName).object<NSParagraphStyle>();
        const auto paragraph = (style ? style : NSParagraphStyle::defaultParagraphStyle())->mutableCopy();
        paragraph->setParagraphSpacingBefore(spaceAbove);
        paragraph->setParagraphSpacing(0);
        paragraph->setFirstLineHeadIndent(within.left + paragraph->firstLineHeadIndent());
        paragraph->setHeadIndent(within.left);
        paragraph->setTailIndent(-within.right);
        paragraph->setTextBlocks(within.frames);
        paragraph->setTextLists(within.lists);
        return paragraph;
    }

    // What is in a section, or what an entity stands for: neither has a value of its own.
    static NSString contentOf(const Ref<WQXMLNode>& node) { return taken(xmlNodeGetContent(node->xmlNode())); }

    // Null for an address that makes no URL, also with its odd characters escaped: the words stay.
    Ref<NSURL> completed(const NSString& address) const {
        auto url = NSURL::URLWithString(address);
        if (!url) url = NSURL::URLWithString(escaped(address));
        return baseURL && url && !url->scheme() ? resolved(url) : url;
    }

    static NSString escaped(const NSString& address) {
        constexpr const char* kMeant = ":/?#[]@!$&'()*+,;=%";
        return taken(
            xmlURIEscapeStr(reinterpret_cast<const xmlChar*>(wq::toUTF8(address).c_str()), reinterpret_cast<const xmlChar*>(kMeant)));
    }

    // Against the base, as a document's addresses are meant.
    Ref<NSURL> resolved(const Ref<NSURL>& url) const {
        return NSURL::URLWithString(taken(xmlBuildURI(
            reinterpret_cast<const xmlChar*>(wq::toUTF8(url->absoluteString()).c_str()),
            reinterpret_cast<const xmlChar*>(wq::toUTF8(baseURL->absoluteString()).c_str()))));
    }

    // A string that libxml2 made.
    static NSString taken(xmlChar* bytes) {
        const NSString text = wq::fromUTF8(bytes);
        xmlFree(bytes);
        return text;
    }

    const StyledTree& tree;
    const Ref<NSURL> baseURL;
    std::vector<Paragraph> paragraphs;
    bool isInParagraph = false;
    bool beginsPage = false;            // the paragraph that comes
    double spaceAbove = 0;              // of the paragraph that comes
    Ref<NSTextList> itemOf;             // whose item the paragraph that comes is
    Ref<NSDictionary> blankAttributes;  // of a blank that may come
    size_t lineFeeds = 0;               // that may come, where white space is kept
    std::map<const NSTextList*, long> itemNumbers;
};

Ref<NSMutableAttributedString> textOf(const Paragraph& paragraph) {
    const auto text = NSMutableAttributedString::newWithString(u"");
    for (const Run& run : paragraph.runs)
        text->appendAttributedString(NSAttributedString::attributedStringWithString_attributes(run.text, run.attributes));
    text->appendAttributedString(NSAttributedString::attributedStringWithString_attributes(u"\n", paragraph.runs.back().attributes));
    text->addAttribute_value_range(NSParagraphStyleAttributeName, paragraph.style, {0, text->length()});
    return text;
}

}  // namespace

std::vector<StyledParagraph> styledParagraphs(const Ref<WQXMLElement>& top, const StyledTree& styles, const Ref<NSURL>& baseURL) {
    std::vector<StyledParagraph> results;
    for (const Paragraph& paragraph : ParagraphBuilder(styles, baseURL).paragraphsOf(top)) {
        results.push_back(paragraph.result);
        results.back().text = textOf(paragraph);
    }
    return results;
}

Ref<NSMutableAttributedString> joined(const std::vector<StyledParagraph>& paragraphs) {
    const auto text = NSMutableAttributedString::newWithString(u"");
    for (const StyledParagraph& paragraph : paragraphs) text->appendAttributedString(paragraph.text);
    return text;
}

Ref<NSMutableAttributedString> joinedWithoutMarkers(const std::vector<StyledParagraph>& paragraphs) {
    const auto text = NSMutableAttributedString::newWithString(u"");
    for (const StyledParagraph& paragraph : paragraphs) {
        const NSRange words{paragraph.markerLength, paragraph.text->length() - paragraph.markerLength};
        text->appendAttributedString(paragraph.text->attributedSubstringFromRange(words));
    }
    return text;
}
