// A range by itself: making one, its points, comparison, and the assertions of these.
#include "dom/WQXMLRange.h"

#include <cstdint>
#include <limits>
#include <sstream>

#include "tests/dom/MarkedTree.h"

using namespace test;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Setter = void (WQXMLRange::*)(const Ref<WQXMLNode>&);

// The four setters that go by a node's place, each on a[...] with its outcome.
struct Relative {
    const char* name;
    Setter set;
    const char16_t* node;  // in r[a,{b},c]
    const char* after;
    const char* withoutParent;  // what it asserts then
    bool setsTheStart;
    uint64_t offsetWithoutParent;
};
const Relative relatives[] = {
    {"setStartBefore", &WQXMLRange::setStartBefore, u"a", "r[{a,b},c]", "Can't set start before a node not in a tree", true, 0},
    {"setStartAfter", &WQXMLRange::setStartAfter, u"b", "r[a,b,{}c]", "Can't set start after a node not in a tree", true, 1},
    {"setEndBefore", &WQXMLRange::setEndBefore, u"b", "r[a,{}b,c]", "Can't set end before a node not in a tree", false, 0},
    {"setEndAfter", &WQXMLRange::setEndAfter, u"c", "r[a,{b,c}]", "Can't set end after a node not in a tree", false, 1},
};
const char* const flagged = "Can't modify a detached WQXMLRange";
const char* const otherDocument = "Range endpoints must be in the same document";
const char* const noCommonAncestor = "Nodes have no common ancestor!";
const char* const aIsNil = "containerA is nil in comparison";
const char* const bIsNil = "containerB is nil in comparison";

int64_t compare(const Point& a, const Point& b) {
    return WQXMLRange::compareContainerA_offsetA_toContainerB_offsetB(a.container, a.offset, b.container, b.offset);
}

// Over the children of one node.
Ref<WQXMLRange> among(const Ref<WQXMLNode>& parent, uint64_t start, uint64_t end) {
    return WQXMLRange::newWithStartContainer_startOffset_endContainer_endOffset(parent, start, parent, end);
}
const char* const sixChildren = "r[a,b,c,d,e,f]";

std::string address(const void* object) {
    std::ostringstream text;
    text << object;
    return text.str();
}

// An application's own range, with a field.
struct Bookmark : WQXMLRange {
    int page = 7;
};

// Writes down what it is asked to compare.
struct Asked : WQXMLRange {
    int64_t compareToRange_how(const Ref<WQXMLRange>& other, int32_t how) const override {
        asked.push_back(how);
        return WQXMLRange::compareToRange_how(other, how);
    }
    mutable std::vector<int32_t> asked;
};

}  // namespace

// ---- Making one

TEST(WQXMLRangeTest, ANewRangeIsEmpty) {
    const auto range = WQXMLRange::range();
    ASSERT_TRUE(range);
    expectPoints(range, nullptr, 0, nullptr, 0);
    EXPECT_FALSE(range->isDetached());
    EXPECT_FALSE(range->isListening());
    EXPECT_FALSE(range->shouldMergeAfterDelete());
    EXPECT_TRUE(range->shouldAddListeners());
    EXPECT_TRUE(range->collapsed());
    EXPECT_FALSE(range->commonAncestorContainer());
}

TEST(WQXMLRangeTest, ADocumentMakesARangeAtTheBeginningOfItsRoot) {
    const auto document = parse("<r>text<a/></r>");
    const auto range = document->createRange();
    ASSERT_TRUE(range);
    expectPoints(range, document->documentElement(), 0, document->documentElement(), 0);
    EXPECT_TRUE(range->isListening());
    EXPECT_NE(document->createRange(), range);
}

TEST(WQXMLRangeTest, ADocumentWithoutARootMakesAnEmptyRange) {
    const auto document = WQXMLDocument::newDocument();
    const auto range = document->createRange();
    ASSERT_TRUE(range);
    expectPoints(range, nullptr, 0, nullptr, 0);
    EXPECT_FALSE(range->isListening());
    EXPECT_EQ(listeners(document), 0u);
}

TEST(WQXMLRangeTest, ARangeOfANodeSelectsIt) {
    struct {
        std::initializer_list<uint64_t> path;
        const char* expected;
    } const rows[] = {
        {{0}, R"(r[{"t"},a,p[<!--c-->,<![CDATA[d]]>]])"},    {{1}, R"(r["t",{a},p[<!--c-->,<![CDATA[d]]>]])"},
        {{2}, R"(r["t",a,{p[<!--c-->,<![CDATA[d]]>]}])"},    {{2, 0}, R"(r["t",a,p[{<!--c-->},<![CDATA[d]]>]])"},
        {{2, 1}, R"(r["t",a,p[<!--c-->,{<![CDATA[d]]>}]])"},
    };
    for (const auto& row : rows) {
        const MarkedTree t(R"(r["t",a,p[<!--c-->,<![CDATA[d]]>]])");
        EXPECT_EQ(t.now(WQXMLRange::rangeWithNode(t.at(row.path))), row.expected);
        EXPECT_EQ(t.now(WQXMLRange::newWithNode(t.at(row.path))), row.expected);
        EXPECT_TRUE(WQXMLRange::rangeWithNode(t.at(row.path))->isEqualToRange(WQXMLRange::newWithNode(t.at(row.path))));
    }
}

TEST(WQXMLRangeTest, ThereIsNoRangeOfANodeWithoutAParent) {
    const auto document = parse("<r/>");
    EXPECT_FALSE(WQXMLRange::rangeWithNode(document->createElement(u"e")));
    EXPECT_FALSE(WQXMLRange::rangeWithNode(WQXMLText::newWithString(u"t")));
    EXPECT_FALSE(WQXMLRange::rangeWithNode(document));
    EXPECT_FALSE(WQXMLRange::rangeWithNode(nullptr));
    EXPECT_FALSE(WQXMLRange::newWithNode(document->createElement(u"e")));
}

TEST(WQXMLRangeTest, ThereIsNoRangeOfTheRootSinceADocumentFindsNoChild) {
    EXPECT_FALSE(WQXMLRange::rangeWithNode(parse("<r/>")->documentElement()));
}

TEST(WQXMLRangeTest, ThereIsNoRangeOfAnAttributeSinceItIsNoChild) {
    EXPECT_FALSE(WQXMLRange::rangeWithNode(parse("<r k='v'/>")->documentElement()->firstAttribute()));
}

TEST(WQXMLRangeTest, ARangeOfAContainerAndAnOffsetIsCollapsed) {
    const MarkedTree t(R"(r["abc"])");
    for (const auto& range : {WQXMLRange::rangeWithContainer_offset(t.at({0}), 2), WQXMLRange::newWithContainer_offset(t.at({0}), 2)}) {
        EXPECT_EQ(t.now(range), R"(r["ab{}c"])");
        EXPECT_TRUE(range->isListening());
    }
    expectPoints(WQXMLRange::newWithContainer_offset(nullptr, 3), nullptr, 3, nullptr, 3);
}

TEST(WQXMLRangeTest, ARangeIsMadeOfTwoPoints) {
    const MarkedTree t(R"(r["abc",p["de"]])");
    const auto range = WQXMLRange::newWithStartContainer_startOffset_endContainer_endOffset(t.at({0}), 1, t.at({1, 0}), 2);
    EXPECT_EQ(t.now(range), R"(r["a{bc",p["de}"]])");
    EXPECT_TRUE(range->isListening());
}

TEST(WQXMLRangeTest, TheEndWinsOverAStartThatLiesBehindIt) {
    const MarkedTree t(R"(r["abc",p["de"]])");
    EXPECT_EQ(
        t.now(WQXMLRange::newWithStartContainer_startOffset_endContainer_endOffset(t.at({1, 0}), 2, t.at({0}), 1)),
        R"(r["a{}bc",p["de"]])");
}

TEST(WQXMLRangeTest, MakingARangeOverTwoDocumentsFails) {
    const auto a = parse("<a/>"), b = parse("<b/>");
    const auto make = [&] {
        return WQXMLRange::newWithStartContainer_startOffset_endContainer_endOffset(a->documentElement(), 0, b->documentElement(), 0);
    };
    EXPECT_EQ(raised(make), asserted(otherDocument));
    EXPECT_EQ(listeners(a) + listeners(b), 0u);

    const Assertions quiet;
    expectPoints(make(), b->documentElement(), 0, b->documentElement(), 0);
    EXPECT_THAT(quiet.descriptions, ElementsAre(otherDocument, noCommonAncestor));
}

TEST(WQXMLRangeTest, AnApplicationsRangeIsMadeByEveryOperation) {
    const MarkedTree t(R"(r[a,{b},c])");
    EXPECT_EQ(WQXMLRange::range<Bookmark>()->page, 7);
    EXPECT_EQ(t.now(WQXMLRange::rangeWithNode<Bookmark>(t.at({0}))), "r[{a},b,c]");
    EXPECT_EQ(t.now(WQXMLRange::rangeWithContainer_offset<Bookmark>(t.root, 3)), "r[a,b,c{}]");
    EXPECT_EQ(t.now(t.over<Bookmark>()), "r[a,{b},c]");
}

// ---- Copies

TEST(WQXMLRangeTest, ACopyHasThePointsAndTheTwoFlags) {
    const MarkedTree t(R"(r["a{bc",p["d}e"]])");
    t.range->setIsDetached(true);
    t.range->setShouldMergeAfterDelete(true);
    for (const auto& copy : {t.range->copyRange(), t.range->copyWithZone()}) {
        ASSERT_NE(copy, t.range);
        EXPECT_EQ(t.now(copy), R"(r["a{bc",p["d}e"]])");
        EXPECT_TRUE(copy->isDetached());
        EXPECT_TRUE(copy->shouldMergeAfterDelete());
        EXPECT_TRUE(copy->isListening());
    }
    const auto plain = MarkedTree("r[{a}]").range->copyRange();
    EXPECT_FALSE(plain->isDetached());
    EXPECT_FALSE(plain->shouldMergeAfterDelete());
}

TEST(WQXMLRangeTest, ACopyMovesByItself) {
    const MarkedTree t("r[a,{b},c]");
    const auto copy = t.range->copyRange();
    copy->collapseToEnd();
    EXPECT_EQ(t.now(), "r[a,{b},c]");
    EXPECT_EQ(t.now(copy), "r[a,b,{}c]");
}

TEST(WQXMLRangeTest, ACopyListensEvenIfItsSourceWasToldNotTo) {
    const MarkedTree t(R"(r["abc"])");
    const auto deaf = WQXMLRange::range();
    deaf->setShouldAddListeners(false);
    deaf->selectNodeContents(t.at({0}));
    const auto copy = deaf->copyRange();
    EXPECT_TRUE(copy->shouldAddListeners());
    EXPECT_TRUE(copy->isListening());
    EXPECT_FALSE(deaf->isListening());
    t.text()->deleteCharactersInRange({0, 1});
    EXPECT_EQ(t.now(copy), R"(r["{bc}"])");
    expectPoints(deaf, t.at({0}), 0, t.at({0}), 3);
}

TEST(WQXMLRangeTest, ACopyDoesNotRememberTheLastEvent) {
    const MarkedTree t(R"(r["abc{}d"])");
    t.text()->deleteCharactersInRange({2, 2});
    const auto copy = t.range->copyRange();
    t.root->appendChild(t.document->createTextNode(u"xy"));
    EXPECT_EQ(t.now(), R"(r["ab","x{}y"])") << "the original goes on into what came behind the text";
    EXPECT_EQ(t.now(copy), R"(r["ab{}","xy"])");
}

TEST(WQXMLRangeTest, AnEmptyRangeAndAHalfSetOneAreCopied) {
    expectPoints(WQXMLRange::range()->copyRange(), nullptr, 0, nullptr, 0);
    const MarkedTree t(R"(r[a{])");
    const auto copy = t.range->copyRange();
    expectPoints(copy, t.root, 1, nullptr, 0);
    EXPECT_FALSE(copy->isListening());
}

TEST(WQXMLRangeTest, ACopyIsOfItsSourcesClass) {
    const MarkedTree t("r[a,{b},c]");
    const auto bookmark = t.over<Bookmark>();
    bookmark->page = 8;
    const auto copy = wq::cast<Bookmark>(bookmark->copyRange());
    ASSERT_TRUE(copy);
    EXPECT_EQ(copy->page, 7) << "the application's own fields are its own affair";
    EXPECT_EQ(t.now(copy), "r[a,{b},c]");
    EXPECT_TRUE(wq::cast<Bookmark>(copy->copyWithZone()));
}

TEST(WQXMLRangeTest, CopyRangeGoesThroughTheCopyOfASubclass) {
    struct Numbered : Bookmark {
        Ref<WQXMLRange> copyWithZone() const override {
            const auto copy = WQXMLRange::copyWithZone();
            wq::cast<Numbered>(copy)->page = page;
            return copy;
        }
    };
    const auto source = WQXMLRange::range<Numbered>();
    source->page = 9;
    EXPECT_EQ(wq::cast<Numbered>(source->copyRange())->page, 9);
}

// ---- Setting points

TEST(WQXMLRangeTest, APointPastTheEndIsStoredAsGiven) {
    const MarkedTree t(R"(r["abc"])");
    const auto range = WQXMLRange::range();
    range->setStart_offset(t.at({0}), 100);
    range->setEnd_offset(t.at({0}), UINT64_MAX);
    expectPoints(range, t.at({0}), 100, t.at({0}), UINT64_MAX);
    range->setEnd_offset(t.root, 77);
    expectPoints(range, t.at({0}), 100, t.root, 77);
}

TEST(WQXMLRangeTest, AStartBehindTheEndPullsTheEnd) {
    expectEdits({
        {R"(r[a,{b},c])", [](auto& t) { t.range->setStart_offset(t.root, 3); }, R"(r[a,b,c{}])"},
        {R"(r["{a}b",p["cd"]])",
         [](auto& t) {
             t.range->setStart_offset(t.at({1, 0}), 1);
         },
         R"(r["ab",p["c{}d"]])"},
        {R"(r[{a},p["bc"]])",
         [](auto& t) {
             t.range->setStart_offset(t.at({1, 0}), 0);
         },
         R"(r[a,p["{}bc"]])"},
        {R"(r[{p["b}c"],a])", [](auto& t) { t.range->setStart_offset(t.root, 1); }, R"(r[p["bc"],{}a])"},
    });
}

TEST(WQXMLRangeTest, AnEndAheadOfTheStartPullsTheStart) {
    expectEdits({
        {R"(r[a,{b},c])", [](auto& t) { t.range->setEnd_offset(t.root, 0); }, R"(r[{}a,b,c])"},
        {R"(r["ab",p["c{d}"]])", [](auto& t) { t.range->setEnd_offset(t.at({0}), 1); }, R"(r["a{}b",p["cd"]])"},
        {R"(r[a,p["b{c}"]])", [](auto& t) { t.range->setEnd_offset(t.root, 1); }, R"(r[a,{}p["bc"]])"},
    });
}

TEST(WQXMLRangeTest, APointThatKeepsTheOrderLeavesTheOther) {
    expectEdits({
        {R"(r[a,{b},c])", [](auto& t) { t.range->setStart_offset(t.root, 2); }, R"(r[a,b,{}c])"},
        {R"(r[a,{b},c])", [](auto& t) { t.range->setEnd_offset(t.root, 1); }, R"(r[a,{}b,c])"},
        {R"(r[{a,p["bc"]}])",
         [](auto& t) {
             t.range->setStart_offset(t.at({1, 0}), 2);
         },
         R"(r[a,p["bc{"]}])"},
    });
}

TEST(WQXMLRangeTest, AHalfSetRangeNeitherComparesNorListens) {
    const auto a = parse("<a/>"), b = parse("<b/>");
    const Assertions quiet;
    const auto startOnly = WQXMLRange::range(), endOnly = WQXMLRange::range();
    startOnly->setStart_offset(a->documentElement(), 0);
    startOnly->setStart_offset(b->documentElement(), 2);
    expectPoints(startOnly, b->documentElement(), 2, nullptr, 0);
    endOnly->setEnd_offset(a->documentElement(), 0);
    endOnly->setEnd_offset(b->documentElement(), 2);
    expectPoints(endOnly, nullptr, 0, b->documentElement(), 2);
    EXPECT_FALSE(startOnly->isListening());
    EXPECT_FALSE(endOnly->isListening());
    EXPECT_EQ(listeners(a) + listeners(b), 0u);
    EXPECT_THAT(quiet.descriptions, IsEmpty());
}

TEST(WQXMLRangeTest, ANullContainerEndsTheListeningAndLeavesTheOtherPoint) {
    const MarkedTree t(R"(r[a,{b},c])");
    t.range->setStart_offset(nullptr, 7);
    expectPoints(t.range, nullptr, 7, t.root, 2);
    EXPECT_FALSE(t.range->isListening());
    EXPECT_EQ(listeners(t.document), 0u);
    t.root->removeChild(t.at({0}));
    expectPoints(t.range, nullptr, 7, t.root, 2);

    t.range->setStart_offset(t.root, 1);
    EXPECT_TRUE(t.range->isListening());
    t.range->setEnd_offset(nullptr, 0);
    expectPoints(t.range, t.root, 1, nullptr, 0);
    EXPECT_FALSE(t.range->isListening());
    EXPECT_EQ(listeners(t.document), 0u);
}

TEST(WQXMLRangeTest, BothPointsCanBeSetToNull) {
    const MarkedTree t(R"(r[a,{b},c])");
    t.range->setEnd_offset(nullptr, 0);
    t.range->setStart_offset(nullptr, 0);
    t.range->setStart_offset(nullptr, 1);
    expectPoints(t.range, nullptr, 1, nullptr, 0);
    EXPECT_FALSE(t.range->isListening());
}

TEST(WQXMLRangeTest, ARangeKeepsItsContainersAndLetsGoOfThem) {
    const auto document = parse("<r>t<p/></r>");
    const auto t = document->documentElement()->firstChild(), p = document->documentElement()->lastChild();
    auto range = WQXMLRange::newWithStartContainer_startOffset_endContainer_endOffset(t, 0, p, 0);
    EXPECT_EQ(t->referenceCount(), 3) << "the tree's, this one and the range's";
    EXPECT_EQ(p->referenceCount(), 3);
    range->setEnd_offset(t, 1);
    EXPECT_EQ(t->referenceCount(), 4);
    EXPECT_EQ(p->referenceCount(), 2);
    range = nullptr;
    EXPECT_EQ(t->referenceCount(), 2);
}

TEST(WQXMLRangeTest, APointMayBeSetToTheContainerThatTheRangeAloneKeeps) {
    auto text = WQXMLText::newWithString(u"abc");
    const auto range = WQXMLRange::newWithContainer_offset(text, 1);
    text = nullptr;
    range->setStart_offset(range->startContainer(), 0);
    range->setEnd_offset(range->startContainer(), 3);
    EXPECT_EQ(range->toString(), u"abc");
}

TEST(WQXMLRangeTest, APointInAnotherDocumentIsStoredWhenItFails) {
    const MarkedTree t("r[a,{b},c]");
    const auto living = parse("<o/>");
    const auto dead = parse("<o/>")->documentElement();  // it names no document
    EXPECT_EQ(raised([&] { t.range->setStart_offset(living->documentElement(), 4); }), asserted(otherDocument));
    expectPoints(t.range, living->documentElement(), 4, t.root, 2);

    const MarkedTree u("r[a,{b},c]");
    EXPECT_EQ(raised([&] { u.range->setEnd_offset(living->documentElement(), 4); }), asserted(otherDocument));
    expectPoints(u.range, u.root, 1, living->documentElement(), 4);
    EXPECT_EQ(raised([&] { u.range->setEnd_offset(dead, 4); }), asserted(otherDocument));
}

TEST(WQXMLRangeTest, APointInAnotherDocumentPullsTheOtherOneAfterTheHandler) {
    const auto living = parse("<o/>");
    for (const bool start : {true, false}) {
        SCOPED_TRACE(start);
        const MarkedTree t("r[a,{b},c]");
        const Assertions quiet;
        if (start)
            t.range->setStart_offset(living->documentElement(), 4);
        else
            t.range->setEnd_offset(living->documentElement(), 4);
        EXPECT_THAT(quiet.descriptions, ElementsAre(otherDocument, noCommonAncestor));
        EXPECT_THAT(quiet.files, Each("WQXMLRange"));
        expectPoints(t.range, living->documentElement(), 4, living->documentElement(), 4);
    }
}

TEST(WQXMLRangeTest, PointsInTwoTopLevelElementsAreInNoOrderSoTheLastOneWins) {
    const MarkedTree t(R"(r["ab","cd"])");
    const auto second = t.root->splitAtIndex(1);
    const auto range = WQXMLRange::newWithStartContainer_startOffset_endContainer_endOffset(t.root, 0, second, 1);
    expectPoints(range, second, 1, second, 1);
    range->setStart_offset(t.root, 0);
    expectPoints(range, t.root, 0, t.root, 0);
}

// ---- By the place of a node

TEST(WQXMLRangeTest, APointGoesToThePlaceOfANode) {
    for (const auto& row : relatives) {
        SCOPED_TRACE(row.name);
        const MarkedTree t("r[a,{b},c]");
        (t.range.get()->*row.set)(find(t.document, row.node));
        EXPECT_EQ(t.now(), row.after);
    }
}

TEST(WQXMLRangeTest, AFlaggedRangeRefusesThePlaceOfANode) {
    for (const auto& row : relatives) {
        SCOPED_TRACE(row.name);
        const MarkedTree t("r[a,{b},c]");
        t.range->setIsDetached(true);
        EXPECT_EQ(raised([&] { (t.range.get()->*row.set)(find(t.document, row.node)); }), asserted(flagged));
        EXPECT_EQ(t.now(), "r[a,{b},c]");
        EXPECT_TRUE(t.range->isListening());
    }
}

TEST(WQXMLRangeTest, AFlaggedRangeIsChangedAfterAHandlerThatReturns) {
    for (const auto& row : relatives) {
        SCOPED_TRACE(row.name);
        const MarkedTree t("r[a,{b},c]");
        t.range->setIsDetached(true);
        const Assertions quiet;
        (t.range.get()->*row.set)(find(t.document, row.node));
        EXPECT_THAT(quiet.descriptions, ElementsAre(flagged));
        EXPECT_THAT(quiet.files, ElementsAre("WQXMLRange"));
        EXPECT_THAT(quiet.operations, ElementsAre(row.name));
        EXPECT_EQ(t.now(), row.after);
    }
}

TEST(WQXMLRangeTest, ANodeWithoutAParentHasNoPlace) {
    for (const auto& row : relatives) {
        SCOPED_TRACE(row.name);
        const MarkedTree t("r[a,{b},c]");
        EXPECT_EQ(raised([&] { (t.range.get()->*row.set)(t.document->createElement(u"e")); }), asserted(row.withoutParent));
        EXPECT_EQ(t.now(), "r[a,{b},c]");
        EXPECT_TRUE(t.range->isListening());
    }
}

TEST(WQXMLRangeTest, ANodeWithoutAParentGivesANullPointAfterAHandlerThatReturns) {
    for (const auto& row : relatives) {
        SCOPED_TRACE(row.name);
        const MarkedTree t("r[a,{b},c]");
        const Assertions quiet;
        (t.range.get()->*row.set)(t.document->createElement(u"e"));
        EXPECT_THAT(quiet.descriptions, ElementsAre(row.withoutParent));
        EXPECT_THAT(quiet.files, ElementsAre("WQXMLRange"));
        EXPECT_THAT(quiet.operations, ElementsAre(row.name));
        if (row.setsTheStart)
            expectPoints(t.range, nullptr, row.offsetWithoutParent, t.root, 2);
        else
            expectPoints(t.range, t.root, 1, nullptr, row.offsetWithoutParent);
        EXPECT_FALSE(t.range->isListening());
    }
}

TEST(WQXMLRangeTest, TheFlagIsLookedAtAheadOfTheParent) {
    for (const auto& row : relatives) {
        SCOPED_TRACE(row.name);
        const MarkedTree t("r[a,{b},c]");
        t.range->setIsDetached(true);
        EXPECT_EQ(raised([&] { (t.range.get()->*row.set)(t.document->createElement(u"e")); }), asserted(flagged));
        const Assertions quiet;
        (t.range.get()->*row.set)(t.document->createElement(u"e"));
        EXPECT_THAT(quiet.descriptions, ElementsAre(flagged, row.withoutParent));
    }
}

TEST(WQXMLRangeTest, ADocumentDoesNotFindTheRootsPlace) {
    const MarkedTree t("r");
    const auto range = WQXMLRange::range();
    range->setStartBefore(t.root);
    expectPoints(range, t.document, NSNotFound, nullptr, 0);
    range->setStartAfter(t.root);
    expectPoints(range, t.document, NSNotFound + 1, nullptr, 0);
}

TEST(WQXMLRangeTest, SelectingANodeSetsBothPointsAroundIt) {
    expectEdits({
        {R"(r[a,{b},c])", [](auto& t) { t.range->selectNode(t.at({0})); }, R"(r[{a},b,c])"},
        {R"(r[a,{b},c])", [](auto& t) { t.range->selectNode(t.at({2})); }, R"(r[a,b,{c}])"},
        {R"(r[a,p["{x}"]])",
         [](auto& t) {
             t.range->selectNode(t.at({1, 0}));
         },
         R"(r[a,p[{"x"}]])"},
    });
}

TEST(WQXMLRangeTest, SelectingANodeFailsAsItsTwoSettersDo) {
    const MarkedTree t("r[a,{b},c]");
    const auto stray = t.document->createElement(u"e");
    EXPECT_EQ(raised([&] { t.range->selectNode(stray); }), asserted("Can't set start before a node not in a tree"));
    t.range->setIsDetached(true);
    EXPECT_EQ(raised([&] { t.range->selectNode(t.at({0})); }), asserted(flagged));
    EXPECT_EQ(t.now(), "r[a,{b},c]");
    {
        const Assertions quiet;
        t.range->selectNode(t.at({0}));
        EXPECT_THAT(quiet.descriptions, ElementsAre(flagged, flagged));
        EXPECT_THAT(quiet.operations, ElementsAre("setStartBefore", "setEndAfter"));
        EXPECT_EQ(t.now(), "r[{a},b,c]");
    }
    t.range->setIsDetached(false);
    const Assertions quiet;
    t.range->selectNode(stray);
    EXPECT_THAT(quiet.descriptions, ElementsAre("Can't set start before a node not in a tree", "Can't set end after a node not in a tree"));
    expectPoints(t.range, nullptr, 0, nullptr, 1);
}

TEST(WQXMLRangeTest, ARangeCollapsesToEitherPoint) {
    expectEdits({
        {R"(r["a{bc",p["d}e"]])", [](auto& t) { t.range->collapseToStart(); }, R"(r["a{}bc",p["de"]])"},
        {R"(r["a{bc",p["d}e"]])", [](auto& t) { t.range->collapseToEnd(); }, R"(r["abc",p["d{}e"]])"},
        {R"(r[a,{}b])", [](auto& t) { t.range->collapseToEnd(); }, R"(r[a,{}b])"},
    });
}

TEST(WQXMLRangeTest, CollapsingAHalfSetRangeTakesTheNullPointToo) {
    const MarkedTree t("r[a,{b]"), u("r[a,{b]");
    t.range->collapseToStart();
    EXPECT_EQ(t.now(), "r[a,{}b]");
    EXPECT_TRUE(t.range->isListening());
    u.range->collapseToEnd();
    expectPoints(u.range, nullptr, 0, nullptr, 0);
}

TEST(WQXMLRangeTest, SelectingTheContentsGoesFromZeroToTheLength) {
    expectEdits({
        {R"(r[{}a,b,c])", [](auto& t) { t.range->selectNodeContents(t.root); }, R"(r[{a,b,c}])"},
        {R"(r[{}a,"xyz"])", [](auto& t) { t.range->selectNodeContents(t.at({1})); }, R"(r[a,"{xyz}"])"},
        {R"(r[<!--xyz-->,a{}])", [](auto& t) { t.range->selectNodeContents(t.at({0})); }, R"(r[<!--{xyz}-->,a])"},
        {R"(r[<![CDATA[xyz]]>,a{}])", [](auto& t) { t.range->selectNodeContents(t.at({0})); }, R"(r[<![CDATA[{xyz}]]>,a])"},
        {R"(r[{}a])", [](auto& t) { t.range->selectNodeContents(t.at({0})); }, R"(r[a[{}]])"},
    });
}

TEST(WQXMLRangeTest, SelectingTheContentsOfANodeInAnotherDocumentFails) {
    const MarkedTree t("r[{a}]"), u("r[b]");
    EXPECT_EQ(raised([&] { t.range->selectNodeContents(u.root); }), asserted(otherDocument));
    expectPoints(t.range, u.root, 0, t.root, 1);
}

TEST(WQXMLRangeTest, AFlaggedRangeDoesAllElseAsBefore) {
    const MarkedTree t(R"(r["abc",{b},c])");
    t.range->setIsDetached(true);
    t.range->setStart_offset(t.at({0}), 1);
    EXPECT_EQ(t.now(), R"(r["a{bc",b},c])");
    t.range->setEnd_offset(t.root, 3);
    EXPECT_EQ(t.now(), R"(r["a{bc",b,c}])");
    t.text()->deleteCharactersInRange({0, 1});
    EXPECT_EQ(t.now(), R"(r["{bc",b,c}])");
    EXPECT_EQ(t.range->toString(), u"bc");
    t.range->collapseToStart();
    EXPECT_EQ(t.now(), R"(r["{}bc",b,c])");
    t.range->selectNodeContents(t.root);
    EXPECT_EQ(t.now(), R"(r[{"bc",b,c}])");
}

// ---- Flags

TEST(WQXMLRangeTest, FlagsAreKeptApart) {
    const auto range = WQXMLRange::range();
    const auto flags = [&] {
        return std::vector<bool>{range->isDetached(), range->shouldMergeAfterDelete(), range->shouldAddListeners(), range->isListening()};
    };
    range->setIsDetached(true);
    EXPECT_THAT(flags(), ElementsAre(true, false, true, false));
    range->setShouldMergeAfterDelete(true);
    EXPECT_THAT(flags(), ElementsAre(true, true, true, false));
    range->setShouldAddListeners(false);
    EXPECT_THAT(flags(), ElementsAre(true, true, false, false));
    range->setIsDetached(false);
    EXPECT_THAT(flags(), ElementsAre(false, true, false, false));
    range->setShouldMergeAfterDelete(false);
    range->setShouldAddListeners(true);
    EXPECT_THAT(flags(), ElementsAre(false, false, true, false));
}

TEST(WQXMLRangeTest, TheFlagForListeningRegistersNothingAtOnce) {
    const MarkedTree t("r[a,b]");
    const auto range = WQXMLRange::range();
    range->setShouldAddListeners(false);
    range->selectNode(t.at({0}));
    EXPECT_FALSE(range->isListening());
    range->setShouldAddListeners(true);
    EXPECT_FALSE(range->isListening());
    EXPECT_EQ(listeners(t.document), 0u);
    range->setEnd_offset(t.root, 2);
    EXPECT_TRUE(range->isListening());
    EXPECT_EQ(listeners(t.document), 1u);
    range->setShouldAddListeners(false);
    EXPECT_TRUE(range->isListening());
    EXPECT_EQ(listeners(t.document), 1u);
}

// ---- Comparing points

TEST(WQXMLRangeTest, PointsCompareByTheirPlace) {
    struct {
        const char* points;
        int64_t expected;  // the start against the end
    } const rows[] = {
        // in one container
        {R"(r["{a}b"])", -1},
        {R"(r["a{}b"])", 0},
        {R"(r["a}b{"])", 1},
        {R"(r[a,{b},c])", -1},
        {R"(r[a,{}b])", 0},
        {R"(r[a},b,{c])", 1},
        {R"(r[<!--{a}-->])", -1},
        {R"(r[<![CDATA[a}b{]]>])", 1},
        // the first container holds the second one
        {R"(r[a,b,{c[}]])", -1},
        {R"(r[a,b,{c["x",d["y}z"]]])", -1},
        {R"(r[a,b[}],{c])", 1},
        {R"(r[a,b[d["y}z"]],{c])", 1},
        {R"(r[{"a}b"])", -1},
        {R"(r["a}b"{])", 1},
        // the second container holds the first one
        {R"(r[a,b,}c[{]])", 1},
        {R"(r[a,b,}c["x",d["y{z"]]])", 1},
        {R"(r[a,b[{]},c])", -1},
        {R"(r[a,b[d["y{z"]]},c])", -1},
        // in two branches
        {R"(r[a[{],b[}]])", -1},
        {R"(r[a[}],b[{]])", 1},
        {R"(r["ab{","}cd"])", -1},
        {R"(r["ab}","{cd"])", 1},
        {R"(r[s[p["a{"],q],s[t[u["}b"]]]])", -1},
        {R"(r[s[p["a}"],q],s[t[u["{b"]]]])", 1},
        {R"(r[s[p["a}"],q["{b"]],s])", 1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.points);
        const MarkedTree t(row.points);
        EXPECT_EQ(compare(t.start, t.end), row.expected);
        EXPECT_EQ(compare(t.end, t.start), -row.expected);
    }
}

TEST(WQXMLRangeTest, APointAheadOfAChildLiesAheadOfAllInIt) {
    const MarkedTree t(R"(r[a["x"],b["y"],c["z"]])");
    EXPECT_EQ(compare({t.root, 2}, {t.at({2}), 0}), -1);
    EXPECT_EQ(compare({t.root, 2}, {t.at({2, 0}), 1}), -1);
    EXPECT_EQ(compare({t.root, 2}, {t.at({1}), 1}), 1);
    EXPECT_EQ(compare({t.root, 2}, {t.at({1, 0}), 1}), 1);
}

TEST(WQXMLRangeTest, AnOffsetPastTheEndComparesAsItStands) {
    const MarkedTree t(R"(r["ab",p["cd"]])");
    EXPECT_EQ(compare({t.root, 100}, {t.at({1, 0}), 100}), 1);
    EXPECT_EQ(compare({t.at({0}), 100}, {t.at({0}), UINT64_MAX}), -1);
    EXPECT_EQ(compare({t.at({0}), 100}, {t.at({1}), 0}), -1);
}

TEST(WQXMLRangeTest, PointsInADetachedTreeCompareAsWell) {
    const auto top = WQXMLElement::newWithName(u"top");
    top->appendChild(WQXMLText::newWithString(u"ab"));
    top->appendChild(WQXMLText::newWithString(u"cd"));
    EXPECT_EQ(compare({top->firstChild(), 2}, {top->lastChild(), 0}), -1);
    EXPECT_EQ(compare({top, 1}, {top->firstChild(), 2}), 1);
}

TEST(WQXMLRangeTest, TwoTopLevelElementsCompareAsBehindBothWays) {
    const MarkedTree t(R"(r["ab","cd"])");
    const auto second = t.root->splitAtIndex(1);
    EXPECT_EQ(compare({t.root, 0}, {second, 0}), 1);
    EXPECT_EQ(compare({second, 0}, {t.root, 0}), 1);
    EXPECT_EQ(compare({t.at({0}), 0}, {second->firstChild(), 0}), 1);
    EXPECT_EQ(compare({second->firstChild(), 0}, {t.at({0}), 0}), 1);
}

TEST(WQXMLRangeTest, ComparisonFailsForNullAndForStrangers) {
    const MarkedTree t(R"(r["ab"])"), u("r");
    const auto stray = t.document->createElement(u"e");
    struct {
        const char* name;
        Point a, b;
        std::vector<std::string> failures;
        int64_t expected;
    } const rows[] = {
        {"a null", {nullptr, 0}, {t.root, 1}, {aIsNil, noCommonAncestor}, 1},
        {"b null", {t.root, 0}, {nullptr, 1}, {bIsNil, noCommonAncestor}, 1},
        {"both null, less", {nullptr, 0}, {nullptr, 1}, {aIsNil, bIsNil}, -1},
        {"both null, equal", {nullptr, 1}, {nullptr, 1}, {aIsNil, bIsNil}, 0},
        {"both null, greater", {nullptr, 2}, {nullptr, 1}, {aIsNil, bIsNil}, 1},
        {"two documents", {t.root, 0}, {u.root, 0}, {noCommonAncestor}, 1},
        {"a detached", {stray, 0}, {t.root, 0}, {noCommonAncestor}, 1},
        {"b detached", {t.at({0}), 0}, {stray, 0}, {noCommonAncestor}, 1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(raised([&] { compare(row.a, row.b); }), asserted(row.failures.front()));
        const Assertions quiet;
        EXPECT_EQ(compare(row.a, row.b), row.expected);
        EXPECT_EQ(quiet.descriptions, row.failures);
        EXPECT_THAT(quiet.files, Each("WQXMLRange"));
        EXPECT_THAT(quiet.operations, Each("compareContainerA_offsetA_toContainerB_offsetB"));
    }
}

// ---- Comparing ranges

TEST(WQXMLRangeTest, TheReceiversPointIsTheFirstOneInEveryComparison) {
    struct {
        uint64_t start, end, otherStart, otherEnd;
        int64_t startToStart, startToEnd, endToEnd, endToStart;
    } const rows[] = {
        {1, 2, 3, 4, -1, -1, -1, -1}, {3, 4, 1, 2, 1, 1, 1, 1},   {1, 3, 2, 4, -1, -1, -1, 1}, {2, 4, 1, 3, 1, -1, 1, 1},
        {1, 4, 2, 3, -1, -1, 1, 1},   {2, 3, 1, 4, 1, -1, -1, 1}, {1, 2, 2, 3, -1, -1, -1, 0}, {2, 3, 1, 2, 1, 0, 1, 1},
        {1, 2, 1, 2, 0, -1, 0, 1},    {2, 2, 2, 2, 0, 0, 0, 0},
    };
    const MarkedTree t(sixChildren);
    for (const auto& row : rows) {
        SCOPED_TRACE(&row - rows);
        const auto range = among(t.root, row.start, row.end), other = among(t.root, row.otherStart, row.otherEnd);
        EXPECT_EQ(range->compareToRange_how(other, 0), row.startToStart);
        EXPECT_EQ(range->compareToRange_how(other, 1), row.startToEnd);
        EXPECT_EQ(range->compareToRange_how(other, 2), row.endToEnd);
        EXPECT_EQ(range->compareToRange_how(other, 3), row.endToStart);
    }
}

TEST(WQXMLRangeTest, AnUnknownComparisonFailsAndAnswersZero) {
    const MarkedTree t(sixChildren);
    const auto range = among(t.root, 3, 4), other = among(t.root, 1, 2);
    for (const int32_t how : {-1, 4, 5, std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max()}) {
        SCOPED_TRACE(how);
        EXPECT_EQ(raised([&] { range->compareToRange_how(other, how); }), asserted("Invalid comparison constant"));
        const Assertions quiet;
        EXPECT_EQ(range->compareToRange_how(other, how), 0);
        EXPECT_THAT(quiet.descriptions, ElementsAre("Invalid comparison constant"));
        EXPECT_THAT(quiet.files, ElementsAre("WQXMLRange"));
        EXPECT_THAT(quiet.operations, ElementsAre("compareToRange_how"));
    }
}

TEST(WQXMLRangeTest, AComparisonWithNullOrWithAHalfSetRangeTellsTheNullContainer) {
    const MarkedTree t("r[{a}]"), half("r[{a]");
    for (const int32_t how : {0, 1, 2, 3}) {
        SCOPED_TRACE(how);
        EXPECT_EQ(raised([&] { t.range->compareToRange_how(nullptr, how); }), asserted(bIsNil));
        EXPECT_EQ(raised([&] { WQXMLRange::range()->compareToRange_how(t.range, how); }), asserted(aIsNil));
        const Assertions quiet;
        EXPECT_EQ(t.range->compareToRange_how(nullptr, how), 1);
        EXPECT_THAT(quiet.descriptions, ElementsAre(bIsNil, noCommonAncestor));
    }
    EXPECT_EQ(raised([&] { half.range->compareToRange_how(half.range, 0); }), "");
    EXPECT_EQ(raised([&] { half.range->compareToRange_how(half.range, 1); }), asserted(bIsNil));
    EXPECT_EQ(raised([&] { half.range->compareToRange_how(half.range, 3); }), asserted(aIsNil));
}

TEST(WQXMLRangeTest, RangesAreEqualByTheirFourFields) {
    const MarkedTree t(R"(r["ab","ab"])");
    const auto a = t.at({0}), b = t.at({1});
    const auto make = [](const Ref<WQXMLNode>& start, uint64_t from, const Ref<WQXMLNode>& end, uint64_t to) {
        return WQXMLRange::newWithStartContainer_startOffset_endContainer_endOffset(start, from, end, to);
    };
    const auto range = make(a, 0, b, 1);
    EXPECT_TRUE(range->isEqualToRange(range));
    EXPECT_TRUE(range->isEqualToRange(make(a, 0, b, 1)));
    EXPECT_FALSE(range->isEqualToRange(make(t.root, 0, b, 1)));
    EXPECT_FALSE(range->isEqualToRange(make(a, 1, b, 1)));
    EXPECT_FALSE(range->isEqualToRange(make(a, 0, t.root, 1)));
    EXPECT_FALSE(range->isEqualToRange(make(a, 0, a, 1))) << "the text is the same, the node is not";
    EXPECT_FALSE(range->isEqualToRange(make(a, 0, b, 2)));
    EXPECT_FALSE(range->isEqualToRange(nullptr));
    EXPECT_TRUE(WQXMLRange::range()->isEqualToRange(WQXMLRange::range()));
}

TEST(WQXMLRangeTest, FlagsDoNotCountForEquality) {
    const MarkedTree t("r[{a}]");
    const auto other = WQXMLRange::range();
    other->setShouldAddListeners(false);
    other->selectNode(t.at({0}));
    other->setIsDetached(true);
    other->setShouldMergeAfterDelete(true);
    EXPECT_TRUE(t.range->isEqualToRange(other));
}

TEST(WQXMLRangeTest, ARangeIsCollapsedIfItsPointsAreAlike) {
    EXPECT_TRUE(MarkedTree(R"(r["a{}b"])").range->collapsed());
    EXPECT_TRUE(MarkedTree("r[a,{}b]").range->collapsed());
    EXPECT_FALSE(MarkedTree(R"(r["{a}b"])").range->collapsed());
    EXPECT_FALSE(MarkedTree(R"(r[{"}ab"])").range->collapsed()) << "the same place, but two containers";
    EXPECT_FALSE(MarkedTree("r[{a]").range->collapsed());
    EXPECT_TRUE(WQXMLRange::newWithContainer_offset(nullptr, 3)->collapsed());
}

TEST(WQXMLRangeTest, TheCommonAncestorHoldsBothPoints) {
    struct {
        const char* points;
        const char* expected;
    } const rows[] = {
        {R"(r["a{b}"])", R"("ab")"},
        {R"(r[p[{a}]])", "p[a]"},
        {R"(r[p["a{","}b"],q])", R"(p["a","b"])"},
        {R"(r[p["a{"],q["}b"]])", R"(r[p["a"],q["b"]])"},
        {R"(r[p[{s["b}"]]])", R"(p[s["b"]])"},
        {R"(r[p[s["{b"]}]])", R"(p[s["b"]])"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.points);
        EXPECT_EQ(dump(MarkedTree(row.points).range->commonAncestorContainer()), row.expected);
    }
    EXPECT_FALSE(MarkedTree("r[{a]").range->commonAncestorContainer());
    EXPECT_FALSE(MarkedTree("r[a}]").range->commonAncestorContainer());
}

TEST(WQXMLRangeTest, TheLengthOfAContainerCountsCharactersOrChildren) {
    const MarkedTree t("r[\"a\U0001D54A&\",<!--b\U0001D54A-->,<![CDATA[<\U0001D54A\U0001D54A]]>,e,\"\"]");
    const auto range = WQXMLRange::range();
    EXPECT_EQ(range->lengthOfContainer(t.root), 5u);
    EXPECT_EQ(range->lengthOfContainer(t.at({0})), 4u);
    EXPECT_EQ(range->lengthOfContainer(t.at({1})), 3u);
    EXPECT_EQ(range->lengthOfContainer(t.at({2})), 5u);
    EXPECT_EQ(range->lengthOfContainer(t.at({3})), 0u);
    EXPECT_EQ(range->lengthOfContainer(t.at({4})), 0u);
    EXPECT_EQ(range->lengthOfContainer(WQXMLText::text()), 0u);
    EXPECT_EQ(range->lengthOfContainer(t.document), 0u);
    EXPECT_EQ(range->lengthOfContainer(nullptr), 0u);
    EXPECT_EQ(range->lengthOfContainer(parse("<r/>")->documentElement()), 0u) << "a dead node";
}

// ---- Intersection

TEST(WQXMLRangeTest, TheIntersectionGoesFromTheLaterStartToTheEarlierEnd) {
    struct {
        uint64_t start, end, otherStart, otherEnd;
        const char* shared;
    } const rows[] = {
        {1, 3, 2, 4, "r[a,b,{c},d,e,f]"}, {2, 4, 1, 3, "r[a,b,{c},d,e,f]"}, {1, 5, 2, 3, "r[a,b,{c},d,e,f]"},
        {2, 3, 1, 5, "r[a,b,{c},d,e,f]"}, {1, 3, 1, 3, "r[a,{b,c},d,e,f]"}, {1, 3, 1, 4, "r[a,{b,c},d,e,f]"},
        {1, 4, 2, 4, "r[a,b,{c,d},e,f]"}, {0, 6, 3, 3, "r[a,b,c,{}d,e,f]"}, {3, 3, 0, 6, "r[a,b,c,{}d,e,f]"},
    };
    const MarkedTree t(sixChildren);
    for (const auto& row : rows) {
        SCOPED_TRACE(&row - rows);
        const auto range = among(t.root, row.start, row.end), other = among(t.root, row.otherStart, row.otherEnd);
        for (const auto& shared : {WQXMLRange::range(), among(t.root, 0, 0), among(t.root, 6, 6), among(t.at({5}), 0, 0)}) {
            EXPECT_TRUE(range->intersectsRange_intersection(other, shared));
            EXPECT_EQ(t.now(shared), row.shared);
        }
        EXPECT_TRUE(range->intersectsRange_intersection(other, nullptr));
    }
}

TEST(WQXMLRangeTest, RangesThatDoNotOverlapLeaveTheThirdOneAlone) {
    struct {
        uint64_t start, end, otherStart, otherEnd;
    } const rows[] = {{1, 2, 2, 3}, {2, 3, 1, 2}, {0, 1, 3, 4}, {3, 4, 0, 1}, {2, 2, 2, 2}, {1, 3, 3, 3}, {1, 1, 1, 3}};
    const MarkedTree t(sixChildren);
    for (const auto& row : rows) {
        SCOPED_TRACE(&row - rows);
        const auto range = among(t.root, row.start, row.end), other = among(t.root, row.otherStart, row.otherEnd);
        const auto shared = among(t.root, 4, 5);
        EXPECT_FALSE(range->intersectsRange_intersection(other, shared));
        EXPECT_EQ(t.now(shared), "r[a,b,c,d,{e},f]");
        EXPECT_FALSE(range->intersectsRange_intersection(other, nullptr));
    }
}

TEST(WQXMLRangeTest, RangesAtDifferentDepthsIntersect) {
    const MarkedTree t(R"(r[p["a{bc"],q["d}e"]])");
    const auto shared = WQXMLRange::range();
    const auto p = WQXMLRange::rangeWithNode(t.at({0}));
    EXPECT_TRUE(t.range->intersectsRange_intersection(p, shared));
    EXPECT_EQ(t.now(shared), R"(r[p["a{bc"]},q["de"]])");
    EXPECT_TRUE(p->intersectsRange_intersection(t.range, shared));
    EXPECT_EQ(t.now(shared), R"(r[p["a{bc"]},q["de"]])");
}

TEST(WQXMLRangeTest, TheSecondQuestionIsAskedOnlyIfTheFirstHeld) {
    const MarkedTree t(sixChildren);
    const auto asks = [&](uint64_t start, uint64_t end, bool wantsIntersection) {
        const auto range = WQXMLRange::newWithStartContainer_startOffset_endContainer_endOffset<Asked>(t.root, 2, t.root, 4);
        range->asked.clear();
        range->intersectsRange_intersection(among(t.root, start, end), wantsIntersection ? WQXMLRange::range() : nullptr);
        return range->asked;
    };
    EXPECT_THAT(asks(4, 5, true), ElementsAre(3));
    EXPECT_THAT(asks(1, 2, true), ElementsAre(3, 1));
    EXPECT_THAT(asks(3, 5, false), ElementsAre(3, 1));
    EXPECT_THAT(asks(3, 5, true), ElementsAre(3, 1, 0, 2));
}

TEST(WQXMLRangeTest, AnIntersectionWithNullTellsTheNullContainer) {
    const MarkedTree t("r[{a}]");
    EXPECT_EQ(raised([&] { t.range->intersectsRange_intersection(nullptr, nullptr); }), asserted(bIsNil));
    const Assertions quiet;
    EXPECT_FALSE(t.range->intersectsRange_intersection(nullptr, nullptr));
    EXPECT_THAT(quiet.descriptions, ElementsAre(bIsNil, noCommonAncestor, bIsNil, noCommonAncestor));
}

// ---- Selecting a node

TEST(WQXMLRangeTest, ANodeIsSelectedWhereverTheRangeOverlapsIt) {
    struct {
        const char* points;  // the node asked for is p
        bool selects, partial;
    } const rows[] = {
        {R"(r[a,{p["xy"]},b])", true, false},
        {R"(r[{a,p["xy"],b}])", true, false},
        {R"(r[{a,p["xy"]},b])", true, false},
        {R"(r[a[{],p["xy"],b["}z"]])", true, false},
        {R"(r[a,p["{xy}"],b])", true, true},
        {R"(r[a,p[{"xy"}],b])", true, true},
        {R"(r[a,p["x{}y"],b])", true, true},
        {R"(r[a,p[{}"xy"],b])", true, true},
        {R"(r[a,p["xy"{}],b])", true, true},
        {R"(r[a,p["{}xy"],b])", true, true},
        {R"(r[{a,p["x}y"],b])", true, true},
        {R"(r[{a,p[}"xy"],b])", true, true},
        {R"(r[a,p["x{y"],b}])", true, true},
        {R"(r[a,p["xy"{],b}])", true, true},
        {R"(r[a,{p["x}y"],b])", true, true},
        {R"(r[a,p["x{y"]},b])", true, true},
        // not at all
        {R"(r[a,{}p["xy"],b])", false, true},
        {R"(r[a,p["xy"],{}b])", false, true},
        {R"(r[{a},p["xy"],b])", false, true},
        {R"(r[a,p["xy"],{b}])", false, true},
        {R"(r[a["{c}"],p["xy"],b])", false, true},
        {R"(r[a,p["xy"],b["{c}"]])", false, true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.points);
        const MarkedTree t(row.points);
        bool partial = !row.partial;
        EXPECT_EQ(t.range->selectsNode_isPartialSelection(t.at({1}), &partial), row.selects);
        EXPECT_EQ(partial, row.partial);
        EXPECT_EQ(t.range->selectsNode_isPartialSelection(t.at({1}), nullptr), row.selects);
        EXPECT_EQ(t.now(), row.points) << "asking moves nothing";
    }
}

TEST(WQXMLRangeTest, TheFlagForAPartialSelectionIsTrueForANodeThatIsNotSelectedAtAll) {
    const MarkedTree t("r[{a},b]");
    bool partial = false;
    EXPECT_FALSE(t.range->selectsNode_isPartialSelection(t.at({1}), &partial));
    EXPECT_TRUE(partial);
}

TEST(WQXMLRangeTest, AskingForANodeWithoutAParentTellsANullContainer) {
    const MarkedTree t("r[{a}]");
    const Ref<WQXMLNode> nodes[] = {t.document->createElement(u"e"), t.root, nullptr};
    for (const auto& node : nodes) {
        EXPECT_EQ(raised([&] { t.range->selectsNode_isPartialSelection(node, nullptr); }), asserted(bIsNil));
        bool partial = true;
        EXPECT_EQ(raised([&] { t.range->selectsNode_isPartialSelection(node, &partial); }), asserted(bIsNil));
        const Assertions quiet;
        EXPECT_FALSE(t.range->selectsNode_isPartialSelection(node, nullptr));
        EXPECT_FALSE(t.range->selectsNode_isPartialSelection(node, &partial));
        EXPECT_THAT(
            quiet.descriptions,
            ElementsAre(bIsNil, noCommonAncestor, bIsNil, noCommonAncestor, bIsNil, noCommonAncestor, bIsNil, noCommonAncestor));
    }
}

TEST(WQXMLRangeTest, AskingLeavesNoListenerBehind) {
    const MarkedTree t("r[{a,b},c]");
    bool partial = false;
    t.range->selectsNode_isPartialSelection(t.at({1}), &partial);
    EXPECT_EQ(listeners(t.document), 1u);
}

// ---- Description

TEST(WQXMLRangeTest, TheDescriptionTellsBothPointsAndLeavesTheParenthesisOpen) {
    const MarkedTree t(R"(r[p["a{bc"],q}])");
    EXPECT_EQ(
        wq::toUTF8(t.range->description()), "WQXMLRange " + address(t.range.get()) + " (<WQXMLText: " + address(t.at({0, 0}).get()) +
                                                "> [1] - <WQXMLElement: " + address(t.root.get()) + "> [2]");
}

TEST(WQXMLRangeTest, TheDescriptionOfACollapsedRangeTellsItsContainerTwice) {
    const MarkedTree t(R"(r["ab{}c"])");
    const std::string place = "<WQXMLText: " + address(t.at({0}).get()) + "> [2]";
    EXPECT_EQ(wq::toUTF8(t.range->description()), "WQXMLRange " + address(t.range.get()) + " (" + place + " - " + place);
}

TEST(WQXMLRangeTest, TheDescriptionOfAnEmptyRangeTellsNull) {
    const auto range = WQXMLRange::newWithContainer_offset(nullptr, UINT64_MAX);
    EXPECT_EQ(
        wq::toUTF8(range->description()),
        "WQXMLRange " + address(range.get()) + " ((null) [18446744073709551615] - (null) [18446744073709551615]");
}
