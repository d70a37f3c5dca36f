#include "dom/WQXMLCharacterData.h"

#include <functional>

#include "tests/dom/Support.h"

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

Ref<WQXMLCharacterData> firstText(const Ref<WQXMLDocument>& document) {
    return wq::cast<WQXMLCharacterData>(document->documentElement()->firstChild());
}

struct Row {
    const char* edit;
    std::function<void(const Ref<WQXMLCharacterData>&)> run;
};

// Hears the edits of a document's texts: "location,length string <- previous value".
class Edits final : public WQXMLEventListener {
public:
    explicit Edits(const Ref<WQXMLNode>& top) : node(top) { node->addListener_forEvent_useCapture(this, kEverything, true); }
    ~Edits() { node->removeListener_forEvent_useCapture(this, kEverything, true); }
    void handleEvent(const Ref<WQXMLEvent>& event) override {
        const auto mutation = wq::cast<WQXMLMutationEvent>(event);
        EXPECT_EQ(mutation->eventID(), 2);
        heard.push_back(
            std::to_string(mutation->range().location) + "," + std::to_string(mutation->range().length) + " " +
            wq::toUTF8(wq::printed(mutation->string())) + " <- " + wq::toUTF8(wq::printed(mutation->prevValue())));
    }
    std::vector<std::string> heard;

private:
    Ref<WQXMLNode> node;
};

}  // namespace

// ---- Ranges past the end

TEST(WQXMLCharacterDataTest, ARangePastTheEndRaisesInEachEditThatTakesOne) {
    const std::vector<Row> rows = {
        {"insertion behind the end", [](const auto& text) { text->insertString_atIndex(u"x", 5); }},
        {"insertion far behind", [](const auto& text) { text->insertString_atIndex(u"x", NSNotFound); }},
        {"insertion at the largest index", [](const auto& text) { text->insertString_atIndex(u"x", UINT64_MAX); }},
        {"insertion of nothing", [](const auto& text) { text->insertString_atIndex(u"", 5); }},
        {"insertion of null", [](const auto& text) { text->insertString_atIndex(nullptr, 5); }},
        {"deletion across the end",
         [](const auto& text) {
             text->deleteCharactersInRange({3, 2});
         }},
        {"deletion behind the end",
         [](const auto& text) {
             text->deleteCharactersInRange({5, 0});
         }},
        {"deletion of too much",
         [](const auto& text) {
             text->deleteCharactersInRange({0, 5});
         }},
        {"deletion that overflows",
         [](const auto& text) {
             text->deleteCharactersInRange({2, UINT64_MAX});
         }},
        {"deletion nowhere",
         [](const auto& text) {
             text->deleteCharactersInRange({NSNotFound, 0});
         }},
        {"replacement across the end",
         [](const auto& text) {
             text->replaceCharactersInRange_withString({4, 1}, u"x");
         }},
        {"replacement behind the end",
         [](const auto& text) {
             text->replaceCharactersInRange_withString({5, 0}, u"x");
         }},
        {"replacement that overflows",
         [](const auto& text) {
             text->replaceCharactersInRange_withString({4, UINT64_MAX - 3}, u"x");
         }},
        {"replacement by null",
         [](const auto& text) {
             text->replaceCharactersInRange_withString({0, 5}, nullptr);
         }},
    };
    const auto document = parse("<r>a\xF0\x9F\x98\x80z</r>");  // four units, six bytes
    const auto text = firstText(document);
    const Edits edits(document);
    for (const Row& row : rows) {
        SCOPED_TRACE(row.edit);
        const xmlChar* const content = text->xmlNode()->content;
        EXPECT_THAT(raised([&] { row.run(text); }), StartsWith("NSRangeException: "));
        EXPECT_EQ(text->xmlNode()->content, content);
        EXPECT_EQ(text->string(), u"a\U0001F600z");
    }
    EXPECT_THAT(edits.heard, IsEmpty());
}

TEST(WQXMLCharacterDataTest, TheWholeStringAndItsEndAreNeverOutOfRange) {
    const auto document = parse("<r>a\xF0\x9F\x98\x80z</r>");
    const auto text = firstText(document);
    const Edits edits(document);
    text->appendString(u"!");
    text->setString(u"\U0001F600");
    text->insertString_atIndex(u"b", 2);
    text->deleteCharactersInRange({3, 0});
    text->replaceCharactersInRange_withString({0, 3}, u"c");
    EXPECT_EQ(text->string(), u"c");
    EXPECT_THAT(
        edits.heard, ElementsAre(
                         "4,0 ! <- a\xF0\x9F\x98\x80z", "0,5 \xF0\x9F\x98\x80 <- a\xF0\x9F\x98\x80z!", "2,0 b <- \xF0\x9F\x98\x80",
                         "3,0  <- \xF0\x9F\x98\x80"
                         "b",
                         "0,3 c <- \xF0\x9F\x98\x80"
                         "b"));
}

TEST(WQXMLCharacterDataTest, WithoutContentNoRangeIsLookedAt) {
    struct EditAndResult {
        Row row;
        const char16_t* after;
        const char* heard;
    };
    const std::vector<EditAndResult> rows = {
        {{"setString", [](const auto& text) { text->setString(u"x"); }}, u"x", "0,0 x <- (null)"},
        {{"appendString", [](const auto& text) { text->appendString(u"x"); }}, u"x", "0,0 x <- (null)"},
        {{"insertString_atIndex", [](const auto& text) { text->insertString_atIndex(u"x", 9); }}, u"x", "9,0 x <- (null)"},
        {{"deleteCharactersInRange",
          [](const auto& text) {
              text->deleteCharactersInRange({9, 9});
          }},
         u"",
         "9,9  <- (null)"},
        {{"replaceCharactersInRange_withString",
          [](const auto& text) {
              text->replaceCharactersInRange_withString({9, 9}, u"x");
          }},
         u"x",
         "9,9 x <- (null)"},
    };
    for (const auto& [row, after, heard] : rows) {
        SCOPED_TRACE(row.edit);
        const auto text = WQXMLText::text();
        const auto parent = WQXMLElement::newWithName(u"a");
        parent->appendChild(text);
        const Edits edits(parent);
        row.run(text);
        EXPECT_EQ(wq::printed(text->string()), after);
        EXPECT_THAT(edits.heard, ElementsAre(heard));
    }
}

// ---- Characters beyond the Basic Multilingual Plane

TEST(WQXMLCharacterDataTest, EditsRightBehindAPairLeaveItWhole) {
    struct EditAndResult {
        Row row;
        const char16_t* after;
    };
    const std::vector<EditAndResult> rows = {
        {{"insertion", [](const auto& text) { text->insertString_atIndex(u"x", 3); }}, u"a\U0001F600x\U0001D54Ab"},
        {{"insertion of a pair", [](const auto& text) { text->insertString_atIndex(u"\U00010000", 3); }},
         u"a\U0001F600\U00010000\U0001D54Ab"},
        {{"insertion ahead", [](const auto& text) { text->insertString_atIndex(u"x", 1); }}, u"ax\U0001F600\U0001D54Ab"},
        {{"deletion",
          [](const auto& text) {
              text->deleteCharactersInRange({3, 2});
          }},
         u"a\U0001F600b"},
        {{"deletion of the pair",
          [](const auto& text) {
              text->deleteCharactersInRange({1, 2});
          }},
         u"a\U0001D54Ab"},
        {{"deletion of nothing",
          [](const auto& text) {
              text->deleteCharactersInRange({3, 0});
          }},
         u"a\U0001F600\U0001D54Ab"},
        {{"replacement",
          [](const auto& text) {
              text->replaceCharactersInRange_withString({3, 3}, u"\u00e9");
          }},
         u"a\U0001F600\u00e9"},
        {{"replacement of the pair",
          [](const auto& text) {
              text->replaceCharactersInRange_withString({1, 2}, u"\U0010FFFF");
          }},
         u"a\U0010FFFF\U0001D54Ab"},
        {{"end", [](const auto& text) { text->appendString(u"\U0001F600"); }}, u"a\U0001F600\U0001D54Ab\U0001F600"},
        {{"whole", [](const auto& text) { text->setString(u"\U0001F600"); }}, u"\U0001F600"},
        {{"within a pair", [](const auto& text) { text->insertString_atIndex(u"x", 2); }}, u"a\uFFFDx\uFFFD\U0001D54Ab"},
        {{"across two pairs",
          [](const auto& text) {
              text->deleteCharactersInRange({2, 2});
          }},
         u"a\U0001F54Ab"},
    };
    for (const auto& [row, after] : rows) {
        SCOPED_TRACE(row.edit);
        const auto document = parse("<r>a&#x1F600;&#x1D54A;b</r>");
        const auto text = firstText(document);
        ASSERT_EQ(text->length(), 6u);
        row.run(text);
        EXPECT_EQ(text->string(), after);
    }
}

TEST(WQXMLCharacterDataTest, HalfACharacterIsRepairedByTheHalfThatFollowsOnlyWithinOneEdit) {
    const auto text = WQXMLText::text();
    text->setString(u"\xD83D");
    EXPECT_EQ(text->string(), u"\uFFFD");
    text->appendString(u"\xDE00");
    EXPECT_EQ(text->string(), u"\uFFFD\uFFFD");
    text->setString(NSString(u"\xD83D") + u"\xDE00");
    EXPECT_EQ(text->string(), u"\U0001F600");
}

TEST(WQXMLCharacterDataTest, SubstringsAndLengthsCountUTF16Units) {
    const auto document = parse("<r>a&#x1F600;&#233;</r>");
    EXPECT_EQ(firstText(document)->length(), 4u);
    EXPECT_EQ(firstText(document)->substringWithRange({3, 1}), u"\u00e9");
    EXPECT_EQ(firstText(document)->substringWithRange({1, 2}), u"\U0001F600");
    EXPECT_THAT(raised([&] { (void)firstText(document)->substringWithRange({3, 2}); }), StartsWith("NSRangeException: "));
}

// ---- What is written

TEST(WQXMLCharacterDataTest, TextsComeOutAsTheyWentIn) {
    struct Text {
        std::u16string_view text;
        const char* written;
    };
    for (const Text& row : {
             Text{u"", ""},
             Text{u"a < b & c > d", "a &lt; b &amp; c &gt; d"},
             Text{u"\"'", "\"'"},
             Text{u"&amp;&#65;&e;", "&amp;amp;&amp;#65;&amp;e;"},
             Text{u"]]>", "]]&gt;"},
             Text{u"<!-- c -->", "&lt;!-- c --&gt;"},
             Text{u" \n\t ", " \n\t "},
             Text{u"a\r\nb\r", "a&#xD;\nb&#xD;"},
             Text{u"\u00e9\u4e2d", "&#xE9;&#x4E2D;"},
             Text{u"\U0001F600", "&#x1F600;"},
         }) {
        SCOPED_TRACE(row.written);
        const auto document = parse("<r><t>old</t></r>");
        const auto text = wq::cast<WQXMLCharacterData>(find(document, u"t")->firstChild());
        text->setString(NSString(row.text));
        EXPECT_EQ(text->string(), NSString(row.text));
        const std::string bytes(document->XMLData()->view());
        EXPECT_EQ(bytes, "<?xml version=\"1.0\"?>\n<r><t>" + std::string(row.written) + "</t></r>\n");
        const auto again = parse(bytes);
        EXPECT_EQ(wq::cast<WQXMLElement>(find(again, u"t"))->innerText(), NSString(row.text));
    }
}

TEST(WQXMLCharacterDataTest, TextsOfAnHTMLDocumentAreEditedAlike) {
    const auto document = parseHTML("<html><body><p>a&eacute;</p></body></html>");
    const auto text = wq::cast<WQXMLCharacterData>(find(document, u"p")->firstChild());
    const Edits edits(document);
    text->replaceCharactersInRange_withString({1, 1}, u"&eacute; <b>");
    EXPECT_EQ(text->string(), u"a&eacute; <b>");
    EXPECT_THAT(edits.heard, ElementsAre("1,1 &eacute; <b> <- a\xC3\xA9"));
    EXPECT_THAT(raised([&] { text->deleteCharactersInRange({13, 1}); }), StartsWith("NSRangeException: "));
    EXPECT_EQ(wq::toUTF8(wq::cast<WQXMLElement>(find(document, u"p"))->outerXML()), "<p>a&amp;eacute; &lt;b&gt;</p>");
}

// ---- Listeners that edit

TEST(WQXMLCharacterDataTest, AListenerMayEditTheSameText) {
    struct Once final : WQXMLEventListener {
        explicit Once(const Ref<WQXMLCharacterData>& itsText) : text(itsText) {}
        void handleEvent(const Ref<WQXMLEvent>& event) override {
            seen.push_back(wq::toUTF8(wq::cast<WQXMLMutationEvent>(event)->prevValue()) + ">" + wq::toUTF8(text->string()));
            if (seen.size() == 1) text->setString(u"third");
        }
        Ref<WQXMLCharacterData> text;
        std::vector<std::string> seen;
    };
    const auto document = parse("<r>first</r>");
    Once once(firstText(document));
    document->addListener_forEvent_useCapture(&once, 2, true);
    firstText(document)->setString(u"second");
    EXPECT_THAT(once.seen, ElementsAre("first>second", "second>third"));
    EXPECT_EQ(firstText(document)->string(), u"third");
}

TEST(WQXMLCharacterDataTest, OnlyTextsAreCharacterData) {
    const auto document = parse("<r><!--c--><![CDATA[d]]><?i j?></r>");
    const auto children = *document->documentElement()->childNodes();
    ASSERT_EQ(children.size(), 3u);
    for (const auto& child : children) EXPECT_FALSE(wq::cast<WQXMLCharacterData>(child));
}
