#include "examples/book/StyledTree.h"

#include "tests/examples/book/Support.h"

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// Remembers the style of every node, and tells which are not what they were.
class Comparison {
public:
    explicit Comparison(const Manuscript& aManuscript) : manuscript(aManuscript) {
        for (Ref<WQXMLNode> node = manuscript.document->documentElement(); node; node = node->next())
            before.emplace_back(node, manuscript.styles.styleOf(node));
    }

    // The names of nodes with another style object, in the order in which the nodes stood; a text is "#text".
    std::vector<std::string> resolvedAgain() const {
        std::vector<std::string> names;
        for (const auto& [node, style] : before) {
            if (manuscript.styles.styleOf(node) == style) continue;
            const NSString identifier = wq::cast<WQXMLElement>(node)->getAttribute(u"id");
            names.push_back(node->nodeType() == XML_TEXT_NODE ? "#text" : wq::toUTF8(identifier ? identifier : node->nodeName()));
        }
        return names;
    }

private:
    const Manuscript& manuscript;
    std::vector<std::pair<Ref<WQXMLNode>, Ref<WQCSSStyle>>> before;
};

constexpr std::string_view kTwoChapters =
    "<book><chapter id='one'><title>t</title><p id='p1'>a</p><p id='p2'>b</p></chapter>"
    "<chapter id='two'><p id='p3'>c</p><!--x--></chapter></book>";
const std::string kRules =
    "title + p { text-indent: 5px } chapter em { font-weight: bold } p { text-indent: 9px } .note { font-size: 8px }";

Ref<WQXMLElement> byId(const Manuscript& manuscript, std::u16string_view identifier) {
    for (Ref<WQXMLNode> node = manuscript.document->documentElement(); node; node = node->next())
        if (const auto element = wq::cast<WQXMLElement>(node); element && element->getAttribute(u"id").view() == identifier) return element;
    ADD_FAILURE() << wq::toUTF8(identifier);
    return nullptr;
}

float indentOf(const Manuscript& manuscript, const Ref<WQXMLNode>& node) { return manuscript.styles.styleOf(node)->textIndent().value; }

TEST(StyledTreeTest, EveryElementAndTextHasAStyleAndNothingElse) {
    Manuscript manuscript("<book><p>a<!--c--><b/><?i?></p></book>", kRules);
    EXPECT_EQ(manuscript.styles.numberOfStyles(), 4u);
    for (Ref<WQXMLNode> node = manuscript.document->documentElement(); node; node = node->next())
        EXPECT_EQ(bool(manuscript.styles.styleOf(node)), node->nodeType() == XML_ELEMENT_NODE || node->nodeType() == XML_TEXT_NODE);
    EXPECT_FALSE(manuscript.styles.styleOf(nullptr));
    EXPECT_FALSE(manuscript.styles.styleOf(manuscript.document->createElement(u"p")));
}

TEST(StyledTreeTest, ResolvingTellsHowManyStylesItMakes) {
    const auto document = parse("<book><p>a</p><p/></book>");
    StyledTree styles(document, resolverOf(kBlocks), [](auto&&, auto&&) {});
    EXPECT_EQ(styles.numberOfStyles(), 0u);
    EXPECT_EQ(styles.resolve(), 4u);
    EXPECT_EQ(styles.numberOfStyles(), 4u);
    EXPECT_EQ(styles.resolveAgain(), 0u);
}

TEST(StyledTreeTest, ProgressGrowsUpToTheEnd) {
    const auto document = parse("<book><p>a</p><p/></book>");
    StyledTree styles(document, resolverOf(kBlocks), [](auto&&, auto&&) {});
    size_t last = 0, all = 0;
    styles.resolve([&](size_t done, size_t total) {
        EXPECT_GE(done, last);
        EXPECT_LE(done, total);
        last = done;
        all = total;
    });
    EXPECT_GT(last, 0u);
    EXPECT_EQ(last, all);
}

TEST(StyledTreeTest, StylesInherit) {
    Manuscript manuscript("<book><p>a</p></book>", "p { font-size: 20px }");
    const auto paragraph = find(manuscript.document, u"p");
    EXPECT_EQ(manuscript.styles.styleOf(paragraph->firstChild())->fontSize(), 20);
    EXPECT_EQ(manuscript.styles.styleOf(paragraph)->fontFamily(), u"TeX Gyre Pagella");
}

TEST(StyledTreeTest, TextsShareTheFontsOfTheirElements) {
    Manuscript manuscript("<book><p>a<b>b</b></p><p>c</p></book>", "b { font-weight: bold }");
    EXPECT_EQ(manuscript.styles.numberOfFonts(), 2u);
}

TEST(StyledTreeTest, DressAddsToTheStyleOfEachElementAndOfNoText) {
    std::vector<std::string> dressed;
    const auto dress = [&](const Ref<WQXMLElement>& element, const Ref<WQCSSStyle>& style) {
        dressed.push_back(wq::toUTF8(element->localName()));
        style->setPaddingLeft({7, WQCSSLengthTypeAbsolute});
    };
    Manuscript manuscript("<book><p>a</p></book>", "", dress);
    EXPECT_THAT(dressed, ElementsAre("book", "p"));
    const auto paragraph = find(manuscript.document, u"p");
    EXPECT_EQ(manuscript.styles.styleOf(paragraph)->paddingLeft().value, 7);
    EXPECT_EQ(manuscript.styles.styleOf(paragraph->firstChild())->paddingLeft().value, 0);

    wq::cast<WQXMLElement>(paragraph)->setAttribute_value(u"x", u"y");
    manuscript.styles.resolveAgain();
    EXPECT_EQ(manuscript.styles.styleOf(paragraph)->paddingLeft().value, 7);
}

// ---- Edits

TEST(StyledTreeTest, WithoutAnEditNothingIsResolvedAgain) {
    Manuscript manuscript(kTwoChapters, kRules);
    const Comparison comparison(manuscript);
    EXPECT_EQ(manuscript.styles.resolveAgain(), 0u);
    EXPECT_THAT(comparison.resolvedAgain(), IsEmpty());
}

TEST(StyledTreeTest, AnInsertionResolvesAllBelowItsParent) {
    Manuscript manuscript(kTwoChapters, kRules);
    const Comparison comparison(manuscript);
    const auto added = manuscript.document->createElement(u"em");
    added->appendChild(manuscript.document->createTextNode(u"x"));
    byId(manuscript, u"p1")->appendChild(added);
    EXPECT_FALSE(manuscript.styles.styleOf(added));  // until it is asked for

    EXPECT_EQ(manuscript.styles.resolveAgain(), 4u);
    EXPECT_THAT(comparison.resolvedAgain(), ElementsAre("p1", "#text"));
    EXPECT_EQ(manuscript.styles.styleOf(added)->fontWeight(), WQCSSFontWeightBold);
    EXPECT_EQ(manuscript.styles.styleOf(added->firstChild())->fontWeight(), WQCSSFontWeightBold);
    EXPECT_EQ(manuscript.styles.resolveAgain(), 0u);
}

TEST(StyledTreeTest, AnInsertionChangesWhatASiblingRuleSaysOfANeighbour) {
    Manuscript manuscript(kTwoChapters, kRules);
    const auto first = byId(manuscript, u"p1");
    EXPECT_EQ(indentOf(manuscript, first), 5);
    const auto added = manuscript.document->createElement(u"p");
    first->parentNode()->insertChild_before(added, first);
    const Comparison comparison(manuscript);
    EXPECT_EQ(manuscript.styles.resolveAgain(), 8u);
    EXPECT_EQ(indentOf(manuscript, first), 9);
    EXPECT_EQ(indentOf(manuscript, added), 5);
    for (const auto& name : comparison.resolvedAgain()) EXPECT_THAT(name, testing::AnyOf("one", "title", "p", "p1", "p2", "#text"));
}

TEST(StyledTreeTest, ARemovalChangesWhatASiblingRuleSaysOfANeighbour) {
    Manuscript manuscript(kTwoChapters, kRules);
    const auto first = byId(manuscript, u"p1"), second = byId(manuscript, u"p2");
    const Ref<WQXMLNode> words = first->firstChild();
    first->parentNode()->removeChild(first);
    EXPECT_EQ(manuscript.styles.resolveAgain(), 5u);
    EXPECT_EQ(indentOf(manuscript, second), 5);
    EXPECT_FALSE(manuscript.styles.styleOf(first));
    EXPECT_FALSE(manuscript.styles.styleOf(words));
    EXPECT_EQ(manuscript.styles.numberOfStyles(), 9u);
}

TEST(StyledTreeTest, ANodeThatMovesIsStyledByItsNewPlaceAndBothPlacesAreResolved) {
    Manuscript manuscript(kTwoChapters, kRules);
    const auto first = byId(manuscript, u"p1");
    byId(manuscript, u"two")->appendChild(first);
    const Comparison comparison(manuscript);
    EXPECT_EQ(manuscript.styles.resolveAgain(), 10u);
    EXPECT_EQ(indentOf(manuscript, first), 9);
    EXPECT_EQ(indentOf(manuscript, byId(manuscript, u"p2")), 5);
    EXPECT_EQ(manuscript.styles.numberOfStyles(), 11u);
}

TEST(StyledTreeTest, ANodeThatIsRemovedAndComesBackIsStyledAgain) {
    Manuscript manuscript(kTwoChapters, kRules);
    const auto first = byId(manuscript, u"p1"), chapter = byId(manuscript, u"one");
    chapter->removeChild(first);
    manuscript.styles.resolveAgain();
    chapter->appendChild(first);
    EXPECT_EQ(manuscript.styles.resolveAgain(), 7u);
    EXPECT_EQ(indentOf(manuscript, first), 9);
}

TEST(StyledTreeTest, AnAttributeResolvesTheElementItsSiblingsAndAllBelowThem) {
    Manuscript manuscript(kTwoChapters, kRules);
    const Comparison comparison(manuscript);
    byId(manuscript, u"p3")->setAttribute_value(u"class", u"note");
    EXPECT_EQ(manuscript.styles.resolveAgain(), 3u);
    EXPECT_THAT(comparison.resolvedAgain(), ElementsAre("two", "p3", "#text"));
    EXPECT_EQ(manuscript.styles.styleOf(byId(manuscript, u"p3")->firstChild())->fontSize(), 8);
}

TEST(StyledTreeTest, AnAttributeOfTheRootResolvesEverything) {
    Manuscript manuscript(kTwoChapters, kRules);
    manuscript.document->documentElement()->setAttribute_value(u"class", u"note");
    EXPECT_EQ(manuscript.styles.resolveAgain(), 11u);
    EXPECT_EQ(manuscript.styles.styleOf(byId(manuscript, u"p3"))->fontSize(), 8);
}

TEST(StyledTreeTest, ChangedWordsChangeNoStyle) {
    Manuscript manuscript(kTwoChapters, kRules);
    const Comparison comparison(manuscript);
    wq::cast<WQXMLText>(byId(manuscript, u"p1")->firstChild())->setString(u"other words");
    EXPECT_EQ(manuscript.styles.resolveAgain(), 0u);
    EXPECT_THAT(comparison.resolvedAgain(), IsEmpty());
}

TEST(StyledTreeTest, EditsInOneAnotherAreResolvedOnce) {
    Manuscript manuscript(kTwoChapters, kRules);
    byId(manuscript, u"p1")->appendChild(manuscript.document->createTextNode(u"x"));
    byId(manuscript, u"one")->setAttribute_value(u"class", u"note");
    byId(manuscript, u"p1")->appendChild(manuscript.document->createTextNode(u"y"));
    EXPECT_EQ(manuscript.styles.resolveAgain(), 13u);
}

TEST(StyledTreeTest, WhatIsEditedAndThenRemovedIsNotResolved) {
    Manuscript manuscript(kTwoChapters, kRules);
    const auto chapter = byId(manuscript, u"two"), paragraph = byId(manuscript, u"p3");
    paragraph->appendChild(manuscript.document->createTextNode(u"x"));
    manuscript.document->documentElement()->removeChild(chapter);
    EXPECT_EQ(manuscript.styles.resolveAgain(), 8u);
    EXPECT_FALSE(manuscript.styles.styleOf(chapter));
    EXPECT_FALSE(manuscript.styles.styleOf(paragraph));
}

TEST(StyledTreeTest, WhatComesAndGoesLeavesNoStyle) {
    Manuscript manuscript(kTwoChapters, kRules);
    const auto chapter = byId(manuscript, u"two");
    const auto added = manuscript.document->createElement(u"p");
    chapter->appendChild(added);
    chapter->removeChild(added);
    manuscript.styles.resolveAgain();
    EXPECT_FALSE(manuscript.styles.styleOf(added));
    EXPECT_EQ(manuscript.styles.numberOfStyles(), 11u);
}

TEST(StyledTreeTest, InnerMarkupIsStyledLikeAnyOther) {
    Manuscript manuscript(kTwoChapters, kRules);
    byId(manuscript, u"p3")->setInnerXML(u"<em>x</em>");
    manuscript.styles.resolveAgain();
    EXPECT_EQ(manuscript.styles.styleOf(find(manuscript.document, u"em"))->fontWeight(), WQCSSFontWeightBold);
}

TEST(StyledTreeTest, TheStylesAreThoseThatANewTreeHas) {
    Manuscript manuscript(kTwoChapters, kRules);
    byId(manuscript, u"p1")->mergeWithNode(byId(manuscript, u"p2"));
    byId(manuscript, u"one")->splitAtIndex(1);
    byId(manuscript, u"two")->setAttribute_value(u"class", u"note");
    manuscript.styles.resolveAgain();

    StyledTree fresh(manuscript.document, resolverOf(kBlocks + kRules), [](auto&&, auto&&) {});
    EXPECT_EQ(fresh.resolve(), manuscript.styles.numberOfStyles());
    for (Ref<WQXMLNode> node = manuscript.document->documentElement(); node; node = node->next()) {
        EXPECT_EQ(bool(manuscript.styles.styleOf(node)), bool(fresh.styleOf(node)));
        EXPECT_EQ(indentOf(manuscript, node), fresh.styleOf(node)->textIndent().value);
        EXPECT_EQ(manuscript.styles.styleOf(node)->fontSize(), fresh.styleOf(node)->fontSize());
    }
}

TEST(StyledTreeTest, ItNoLongerListensOnceItIsGone) {
    const auto document = parse(kTwoChapters);
    {
        StyledTree styles(document, resolverOf(kBlocks), [](auto&&, auto&&) {});
    }
    document->documentElement()->setAttribute_value(u"a", u"b");
    document->documentElement()->appendChild(document->createTextNode(u"x"));
}

}  // namespace
