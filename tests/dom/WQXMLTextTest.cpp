#include "dom/WQXMLText.h"

#include "tests/dom/Support.h"

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

struct Prose : WQXMLText {};

template <class T> bool isExactly(const Ref<WQXMLNode>& node) { return node && wq::Class::of(*node.get()) == &wq::Class::of<T>(); }

Ref<WQXMLText> firstText(const Ref<WQXMLDocument>& document) { return wq::cast<WQXMLText>(document->documentElement()->firstChild()); }

}  // namespace

// ---- Making one

TEST(WQXMLTextTest, ATextIsMadeWithAString) {
    for (const Ref<WQXMLText>& text :
         {WQXMLText::newWithString(u"a \u00e9 \U0001F600"), WQXMLText::textWithString(u"a \u00e9 \U0001F600")}) {
        ASSERT_TRUE(text);
        EXPECT_EQ(text->nodeType(), 3);
        EXPECT_EQ(text->string(), u"a \u00e9 \U0001F600");
        EXPECT_EQ(text->length(), 6u);
        EXPECT_FALSE(text->parentNode());
        EXPECT_FALSE(text->ownerDocument());
        EXPECT_EQ(text->referenceCount(), 1);
        EXPECT_FALSE(text->normalized());
        EXPECT_EQ(text->range(), (NSRange{NSNotFound, 0}));
    }
}

TEST(WQXMLTextTest, ATextIsMadeWithoutContent) {
    for (const Ref<WQXMLText>& text : {WQXMLText::text(), WQXMLText::newWithString(nullptr)}) {
        ASSERT_TRUE(text);
        EXPECT_EQ(text->nodeType(), 3);
        EXPECT_FALSE(text->string());
        EXPECT_EQ(text->length(), 0u);
        EXPECT_FALSE(text->nodeValue());
    }
}

TEST(WQXMLTextTest, AnEmptyStringIsNotNull) { EXPECT_EQ(WQXMLText::newWithString(u"")->string(), u""); }

TEST(WQXMLTextTest, ClassOperationsMakeObjectsOfTheReceivingClass) {
    EXPECT_TRUE(isExactly<Prose>(WQXMLText::textWithString<Prose>(u"x")));
    EXPECT_TRUE(isExactly<Prose>(WQXMLText::text<Prose>()));
    EXPECT_TRUE(isExactly<WQXMLText>(WQXMLText::text()));
}

TEST(WQXMLTextTest, ASubclassInitialisesItselfWithoutContentThroughTheString) {
    struct Starting : WQXMLText {
        bool initWithString(const NSString& string) override { return WQXMLText::initWithString(string ? string : NSString(u"start")); }
    };
    EXPECT_EQ(WQXMLText::text<Starting>()->string(), u"start");
}

TEST(WQXMLTextTest, TheNameOfATextIsFixed) {
    EXPECT_EQ(WQXMLText::text()->nodeName(), u"#text");
    EXPECT_EQ(firstText(parse("<a>t</a>"))->nodeName(), u"#text");
    EXPECT_FALSE(WQXMLText::text()->localName());
    EXPECT_FALSE(WQXMLText::text()->namespaceURI());
}

TEST(WQXMLTextTest, TheValueOfATextIsItsString) {
    auto document = parse("<a>a &lt; b</a>");
    EXPECT_EQ(firstText(document)->nodeValue(), u"a < b");
    EXPECT_EQ(firstText(document)->string(), u"a < b");
}

// ---- Reading

TEST(WQXMLTextTest, LengthsAndRangesCountUTF16Units) {
    auto text = WQXMLText::newWithString(u"a\U0001F600\u00e9b");
    EXPECT_EQ(text->length(), 5u);
    EXPECT_EQ(text->substringWithRange({1, 2}), u"\U0001F600");
    EXPECT_EQ(text->substringWithRange({3, 2}), u"\u00e9b");
    EXPECT_EQ(text->substringWithRange({5, 0}), u"");
}

TEST(WQXMLTextTest, ASubstringPastTheEndRaises) {
    auto text = WQXMLText::newWithString(u"hello");
    for (const NSRange range : {NSRange{4, 2}, NSRange{6, 0}, NSRange{0, 6}, NSRange{NSNotFound, 1}, NSRange{2, UINT64_MAX}}) {
        SCOPED_TRACE(testing::Message() << range.location << "," << range.length);
        EXPECT_THAT(raised([&] { text->substringWithRange(range); }), StartsWith("NSRangeException: "));
    }
}

TEST(WQXMLTextTest, ASubstringOfNoContentIsNull) { EXPECT_FALSE(WQXMLText::text()->substringWithRange({3, 4})); }

// ---- Edits

TEST(WQXMLTextTest, EditsRewriteTheContent) {
    auto text = firstText(parse("<a>hello</a>"));
    text = WQXMLText::newWithString(u"hello");
    text->appendString(u" world");
    EXPECT_EQ(text->string(), u"hello world");
    text->insertString_atIndex(u",", 5);
    EXPECT_EQ(text->string(), u"hello, world");
    text->deleteCharactersInRange({0, 7});
    EXPECT_EQ(text->string(), u"world");
    text->replaceCharactersInRange_withString({1, 3}, u"\U0001F600");
    EXPECT_EQ(text->string(), u"w\U0001F600d");
    text->setString(u"new");
    EXPECT_EQ(text->string(), u"new");
    EXPECT_EQ(text->length(), 3u);
}

TEST(WQXMLTextTest, ContentIsTakenRaw) {
    auto document = parse("<a>t</a>");
    firstText(document)->setString(u"a & b < &amp; ]]>");
    EXPECT_EQ(firstText(document)->string(), u"a & b < &amp; ]]>");
    EXPECT_EQ(serialised(document->documentElement()), "<a>a &amp; b &lt; &amp;amp; ]]&gt;</a>");
    firstText(document)->appendString(u"&lt;");
    EXPECT_EQ(firstText(document)->string(), u"a & b < &amp; ]]>&lt;");
}

TEST(WQXMLTextTest, DeletingTheWholeRangeLeavesTheEmptyString) {
    auto text = WQXMLText::newWithString(u"hello");
    text->deleteCharactersInRange({0, 5});
    EXPECT_EQ(text->string(), u"");
    EXPECT_EQ(text->length(), 0u);
    text->appendString(u"again");
    EXPECT_EQ(text->string(), u"again");
}

TEST(WQXMLTextTest, InsertingIntoNoContentGivesTheTextWhateverTheIndex) {
    for (const uint64_t index : {uint64_t{0}, uint64_t{7}, NSNotFound, UINT64_MAX}) {
        SCOPED_TRACE(index);
        auto text = WQXMLText::text();
        text->insertString_atIndex(u"new", index);
        EXPECT_EQ(text->string(), u"new");
    }
}

TEST(WQXMLTextTest, NullReplacesLikeTheEmptyString) {
    auto text = WQXMLText::newWithString(u"hello");
    text->replaceCharactersInRange_withString({1, 3}, nullptr);
    EXPECT_EQ(text->string(), u"ho");
}

TEST(WQXMLTextTest, ARangePastTheEndRaisesBeforeAnythingChanges) {
    auto text = WQXMLText::newWithString(u"hello");
    Log log;
    text->addListener_forEvent_useCapture(&log, 2, false);
    EXPECT_THAT(raised([&] { text->insertString_atIndex(u"x", 6); }), StartsWith("NSRangeException: "));
    for (const NSRange range : {NSRange{4, 2}, NSRange{6, 0}, NSRange{NSNotFound, 0}, NSRange{1, UINT64_MAX}}) {
        SCOPED_TRACE(testing::Message() << range.location << "," << range.length);
        EXPECT_THAT(raised([&] { text->deleteCharactersInRange(range); }), StartsWith("NSRangeException: "));
        EXPECT_THAT(raised([&] { text->replaceCharactersInRange_withString(range, u"x"); }), StartsWith("NSRangeException: "));
    }
    EXPECT_EQ(text->string(), u"hello");
    EXPECT_THAT(log.heard, IsEmpty());
}

TEST(WQXMLTextTest, TheRangeOfAReplacementMayEndAtTheEnd) {
    auto text = WQXMLText::newWithString(u"hello");
    text->replaceCharactersInRange_withString({5, 0}, u"!");
    text->replaceCharactersInRange_withString({4, 2}, u"");
    EXPECT_EQ(text->string(), u"hell");
}

TEST(WQXMLTextTest, HalfACharacterBecomesAReplacementCharacter) {
    auto text = WQXMLText::newWithString(u"a\U0001F600b");
    text->deleteCharactersInRange({1, 1});
    EXPECT_EQ(text->string(), u"a\uFFFDb");
    EXPECT_EQ(text->length(), 3u);
}

TEST(WQXMLTextTest, OverridingTheReplacementSeesEveryEdit) {
    struct Counting : WQXMLText {
        void replaceCharactersInRange_withString(NSRange range, const NSString& string) override {
            ++replacements;
            WQXMLText::replaceCharactersInRange_withString(range, string);
        }
        int replacements = 0;
    };
    auto text = WQXMLText::newWithString<Counting>(u"hello");
    text->setString(u"a");
    text->appendString(u"b");
    text->insertString_atIndex(u"c", 0);
    text->deleteCharactersInRange({0, 1});
    EXPECT_EQ(text->replacements, 4);
    EXPECT_EQ(text->string(), u"ab");
}

TEST(WQXMLTextTest, ADeadTextAnswersNullAndTakesNoEdit) {
    auto document = parse("<a>hello</a>");
    auto text = firstText(document);
    document = nullptr;
    EXPECT_EQ(text->nodeType(), 0x7fff);
    EXPECT_FALSE(text->string());
    EXPECT_FALSE(text->nodeValue());
    EXPECT_EQ(text->length(), 0u);
    text->setString(u"x");
    text->appendString(u"x");
    text->insertString_atIndex(u"x", 0);
    EXPECT_FALSE(text->string());
    EXPECT_FALSE(text->splitAtIndex(0));
}

// ---- Splitting

TEST(WQXMLTextTest, SplittingMovesTheRestIntoANewTextBehind) {
    auto document = parse("<a><x/>hello<b/></a>");
    auto text = wq::cast<WQXMLText>(document->documentElement()->firstChild()->nextSibling());
    auto rest = text->splitAtIndex(2);
    ASSERT_TRUE(rest);
    EXPECT_EQ(dump(document), "a[x,\"he\",\"llo\",b]");
    EXPECT_EQ(text->nextSibling(), rest);
    EXPECT_EQ(rest->previousSibling(), text);
    EXPECT_EQ(rest->ownerDocument(), document);
    EXPECT_EQ(document->documentElement()->numberOfChildren(), 4u);
}

TEST(WQXMLTextTest, SplittingTheLastChildAppendsTheRest) {
    auto document = parse("<a>hello</a>");
    auto rest = firstText(document)->splitAtIndex(4);
    EXPECT_EQ(dump(document), "a[\"hell\",\"o\"]");
    EXPECT_EQ(document->documentElement()->lastChild(), rest);
}

TEST(WQXMLTextTest, SplittingAtZeroMovesAllText) {
    auto document = parse("<a>hello</a>");
    firstText(document)->splitAtIndex(0);
    EXPECT_EQ(dump(document), "a[\"\",\"hello\"]");
    EXPECT_EQ(firstText(document)->string(), u"");
}

TEST(WQXMLTextTest, SplittingAtTheLengthAddsAnEmptyText) {
    auto document = parse("<a>hello</a>");
    auto rest = wq::cast<WQXMLText>(firstText(document)->splitAtIndex(5));
    EXPECT_EQ(dump(document), "a[\"hello\",\"\"]");
    EXPECT_EQ(rest->string(), u"");
}

TEST(WQXMLTextTest, SplittingPastTheLengthAnswersNullAndChangesNothing) {
    auto document = parse("<a>hello</a>");
    Log log;
    document->addListener_forEvent_useCapture(&log, 0x7fffffff, true);
    EXPECT_FALSE(firstText(document)->splitAtIndex(6));
    EXPECT_FALSE(firstText(document)->splitAtIndex(NSNotFound));
    EXPECT_EQ(dump(document), "a[\"hello\"]");
    EXPECT_THAT(log.heard, IsEmpty());
}

TEST(WQXMLTextTest, ADetachedTextCannotBeSplit) {
    auto text = WQXMLText::newWithString(u"hello");
    EXPECT_FALSE(text->splitAtIndex(2));
    EXPECT_EQ(text->string(), u"hello");
}

TEST(WQXMLTextTest, SplittingCountsUTF16Units) {
    auto document = parse("<a>a\xF0\x9F\x98\x80z</a>");
    firstText(document)->splitAtIndex(3);
    EXPECT_EQ(dump(document), "a[\"a\xF0\x9F\x98\x80\",\"z\"]");
}

TEST(WQXMLTextTest, TheRestIsOfTheReceiversClass) {
    auto element = WQXMLElement::newWithName(u"a");
    element->appendChild(WQXMLText::newWithString<Prose>(u"hello"));
    EXPECT_TRUE(isExactly<Prose>(element->firstChild()->splitAtIndex(2)));
    EXPECT_EQ(dump(Ref<WQXMLNode>(element)), "a[\"he\",\"llo\"]");
}

TEST(WQXMLTextTest, SplittingATextWithoutContentAtZeroAddsATextBehindIt) {
    auto element = WQXMLElement::newWithName(u"a");
    auto text = WQXMLText::text();
    element->appendChild(text);
    EXPECT_FALSE(text->splitAtIndex(1));
    EXPECT_TRUE(text->splitAtIndex(0));
    EXPECT_EQ(element->numberOfChildren(), 2u);
    EXPECT_EQ(element->firstChild(), text);
}

TEST(WQXMLTextTest, ATextHasNoOtherSplitAndNoMerge) {
    auto text = WQXMLText::newWithString(u"hello"), other = WQXMLText::newWithString(u"x");
    Assertions assertions;
    EXPECT_FALSE(text->splitAtIndex_intoNode(1, other));
    text->mergeWithNode(other);
    EXPECT_THAT(assertions.descriptions, ElementsAre("subclass responsibility", "subclass responsibility"));
    EXPECT_EQ(text->string(), u"hello");
    EXPECT_EQ(other->string(), u"x");
}

// ---- Copying

TEST(WQXMLTextTest, ACopyHasTheStringAndTheClassAndNoParentAndNoDocument) {
    auto document = parse("<a>a &amp; \xC3\xA9</a>");
    auto copy = firstText(document)->copy();
    ASSERT_TRUE(copy);
    EXPECT_EQ(copy->nodeValue(), u"a & \u00e9");
    EXPECT_FALSE(copy->parentNode());
    EXPECT_FALSE(copy->ownerDocument());
    EXPECT_EQ(copy->referenceCount(), 1);
    EXPECT_TRUE(isExactly<WQXMLText>(copy));
    EXPECT_TRUE(isExactly<Prose>(WQXMLText::newWithString<Prose>(u"x")->copy()));
    EXPECT_EQ(dump(document), "a[\"a & \xC3\xA9\"]");
}

TEST(WQXMLTextTest, ACopyIsIndependent) {
    auto text = WQXMLText::newWithString(u"hello");
    auto copy = wq::cast<WQXMLText>(text->copy());
    text->setString(u"changed");
    EXPECT_EQ(copy->string(), u"hello");
    copy->setString(u"other");
    EXPECT_EQ(text->string(), u"changed");
}

TEST(WQXMLTextTest, ACopyOfATextWithoutContentHasNone) {
    auto copy = WQXMLText::text()->copy();
    ASSERT_TRUE(copy);
    EXPECT_FALSE(copy->nodeValue());
}

TEST(WQXMLTextTest, ADeepCopyOfATextIsACopy) { EXPECT_EQ(WQXMLText::newWithString(u"x")->copyNode(true)->nodeValue(), u"x"); }

// ---- Printing

TEST(WQXMLTextTest, ATextPrintsItsNameItsAddressAndItsString) {
    auto text = WQXMLText::newWithString(u"caf\u00e9");
    EXPECT_THAT(wq::toUTF8(text->printDescription()), testing::MatchesRegex("#text - \\[0x[0-9a-f]+\\] caf\xC3\xA9"));
    EXPECT_THAT(wq::toUTF8(WQXMLText::text()->printDescription()), testing::MatchesRegex("#text - \\[0x[0-9a-f]+\\] \\(null\\)"));
}
