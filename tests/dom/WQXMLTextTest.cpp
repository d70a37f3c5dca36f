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

// ---- White space

TEST(WQXMLTextTest, WhiteSpaceIsBlanksTabsAndLineEndsOrNothing) {
    struct Row {
        NSString string;
        bool isWhitespace;
    };
    for (const Row& row : {
             Row{nullptr, true},
             Row{u"", true},
             Row{u" ", true},
             Row{u" \t\n\r", true},
             Row{u"\f", false},
             Row{u"\v", false},
             Row{u"\u00a0", false},
             Row{u"\u2028", false},
             Row{u" a ", false},
         }) {
        SCOPED_TRACE(wq::toUTF8(row.string));
        EXPECT_EQ(WQXMLText::newWithString(row.string)->isWhitespace(), row.isWhitespace);
    }
}

TEST(WQXMLTextTest, NormalizingCollapsesWhiteSpace) {
    struct Row {
        const char16_t* before;
        const char16_t* first;   // without a previous sibling
        const char16_t* behind;  // with one
    };
    for (const Row& row : {
             Row{u"plain", u"plain", u"plain"},
             Row{u"", u"", u""},
             Row{u"one two", u"one two", u"one two"},
             Row{u"one\ttwo", u"one two", u"one two"},
             Row{u"one \t  two", u"one two", u"one two"},
             Row{u"one\ntwo", u"onetwo", u"onetwo"},  // line ends join: wanted
             Row{u"one\rtwo", u"onetwo", u"onetwo"},
             Row{u"one\r\ntwo", u"onetwo", u"onetwo"},
             Row{u"one\ftwo", u"onetwo", u"onetwo"},
             Row{u"one \ntwo", u"one two", u"one two"},
             Row{u"one\n two", u"one two", u"one two"},
             Row{u"one \n two", u"one two", u"one two"},
             Row{u"  one", u"one", u" one"},
             Row{u"\n\tone", u"one", u" one"},
             Row{u"\none", u"one", u"one"},
             Row{u" \t\n\f\r one", u"one", u" one"},
             Row{u"one  ", u"one ", u"one "},
             Row{u"one \n", u"one ", u"one "},
             Row{u"one\n", u"one", u"one"},
             Row{u"one\t", u"one ", u"one "},
             Row{u" one ", u"one ", u" one "},
             Row{u" ", u"", u""},
             Row{u" \t\r\n ", u"", u""},
             Row{u"\f", u"", u""},
             Row{u" \f ", u"", u" "},  // libxml2 does not call a form feed white space
             Row{u"\v one", u"\v one", u"\v one"},
             Row{u" \v", u"\v", u" \v"},
             Row{u"a \u0001 b", u"a \u0001 b", u"a \u0001 b"},
             Row{u"\u00a0 \u2028  \u3000", u"\u00a0 \u2028 \u3000", u"\u00a0 \u2028 \u3000"},
             Row{u" \u00e9  \U0001F600\n\u4e2d ", u"\u00e9 \U0001F600\u4e2d ", u" \u00e9 \U0001F600\u4e2d "},
             Row{u"a  <  &amp;  b", u"a < &amp; b", u"a < &amp; b"},
         }) {
        SCOPED_TRACE(wq::toUTF8(row.before));
        const auto alone = WQXMLText::newWithString(row.before), behind = WQXMLText::newWithString(row.before);
        alone->normalizeContent();
        EXPECT_EQ(alone->string(), row.first);
        EXPECT_TRUE(alone->normalized());
        const auto document = parse("<r><a/></r>");
        document->documentElement()->appendChild(behind);
        behind->normalizeContent();
        EXPECT_EQ(behind->string(), row.behind);
        EXPECT_TRUE(behind->normalized());
    }
}

TEST(WQXMLTextTest, WhateverStandsAheadIsAPreviousSibling) {
    for (const char* xml : {"<r><a/> t</r>", "<r><!--c--> t</r>", "<r><?i?> t</r>", "<r><![CDATA[]]> t</r>"}) {
        SCOPED_TRACE(xml);
        const auto document = parse(xml);
        const auto text = wq::cast<WQXMLText>(document->documentElement()->lastChild());
        text->normalizeContent();
        EXPECT_EQ(text->string(), u" t");
    }
    const auto document = parse("<r>s</r>");
    const auto text = document->createTextNode(u" t ");
    document->documentElement()->appendChild(text);
    text->normalizeContent();
    EXPECT_EQ(text->string(), u" t ");
    const auto first = parse("<r> t<a/></r>");
    firstText(first)->normalizeContent();
    EXPECT_EQ(firstText(first)->string(), u"t");
}

TEST(WQXMLTextTest, NormalizingASecondTimeDoesNothing) {
    const auto text = WQXMLText::newWithString(u" one  two");
    EXPECT_FALSE(text->normalized());
    text->normalizeContent();
    EXPECT_EQ(text->string(), u"one two");
    text->setString(u"  three  ");
    EXPECT_TRUE(text->normalized());
    text->normalizeContent();
    EXPECT_EQ(text->string(), u"  three  ");
    const auto copy = wq::cast<WQXMLText>(text->copy());
    EXPECT_FALSE(copy->normalized());
    copy->normalizeContent();
    EXPECT_EQ(copy->string(), u"three ");
}

TEST(WQXMLTextTest, PreservedWhiteSpaceStays) {
    struct Row {
        const char* document;
        const char16_t* after;
    };
    for (const Row& row : {
             Row{"<r xml:space='preserve'><a>  x \n y</a></r>", u"  x \n y"},
             Row{"<r><a xml:space='preserve'>  x \n y</a></r>", u"  x \n y"},
             Row{"<r><a xml:space='preserve'> \n </a></r>", u" \n "},
             Row{"<r xml:space='preserve'><a xml:space='default'>  x \n y</a></r>", u"x y"},
             Row{"<r xml:space='default'><a>  x \n y</a></r>", u"x y"},
             Row{"<r><b xml:space='preserve'/><a>  x \n y</a></r>", u"x y"},
             Row{"<r space='preserve'><a>  x \n y</a></r>", u"x y"},
         }) {
        SCOPED_TRACE(row.document);
        const auto document = parse(row.document);
        const auto text = wq::cast<WQXMLText>(find(document, u"a")->firstChild());
        text->normalizeContent();
        EXPECT_EQ(text->string(), row.after);
        EXPECT_TRUE(text->normalized());
    }
}

TEST(WQXMLTextTest, PreservedWhiteSpaceStaysAlsoWhereItIsNotPreservedAnyMore) {
    const auto document = parse("<a xml:space='preserve'>  x</a>");
    const auto text = firstText(document);
    text->normalizeContent();
    document->documentElement()->removeChild(text);
    text->normalizeContent();
    EXPECT_EQ(text->string(), u"  x");
}

TEST(WQXMLTextTest, ATextWithoutContentIsNormalizedInSilence) {
    const auto text = WQXMLText::text();
    text->normalizeContent();
    EXPECT_EQ(text->length(), 0u);
    EXPECT_TRUE(text->normalized());
}

TEST(WQXMLTextTest, NormalizingTheTextOfAnAttributeChangesItsValue) {
    const auto document = parse("<!DOCTYPE a [<!ATTLIST a i ID #IMPLIED>]><a i='k'/>");
    const auto a = document->documentElement();
    const auto text = wq::cast<WQXMLText>(a->firstAttribute()->firstChild());
    text->setString(u" k  m");
    EXPECT_EQ(document->getElementById(u" k  m"), a);
    text->normalizeContent();
    EXPECT_EQ(a->getAttribute(u"i"), u"k m");
    EXPECT_EQ(document->getElementById(u"k m"), a);
    EXPECT_FALSE(document->getElementById(u" k  m"));
    a->removeAttribute(u"i");
    EXPECT_FALSE(document->getElementById(u"k m"));
    EXPECT_FALSE(document->getElementById(u" k  m"));
}

TEST(WQXMLTextTest, ADeadTextIsNoWhiteSpaceAndIsNotNormalized) {
    auto document = parse("<a> </a>");
    const auto text = firstText(document);
    EXPECT_TRUE(text->isWhitespace());
    document = nullptr;
    EXPECT_FALSE(text->isWhitespace());
    text->normalizeContent();
    EXPECT_FALSE(text->normalized());
    EXPECT_FALSE(text->string());
}

TEST(WQXMLTextTest, NormalizingALongTextIsExact) {
    std::u16string before, after;
    for (int i = 0; i < 10000; ++i) {
        before += u" \t\u00e9\n";
        after += i ? u" \u00e9" : u"\u00e9";
    }
    const auto text = WQXMLText::newWithString(before);
    text->normalizeContent();
    EXPECT_EQ(text->string(), NSString(after));
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
