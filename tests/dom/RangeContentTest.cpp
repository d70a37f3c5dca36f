// What a range does to the text and the tree under it: deleting, inserting, reading, splitting.
#include "tests/dom/MarkedTree.h"

using namespace test;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const char* const internal = "Internal error";
const char* const flagged = "Can't modify a detached WQXMLRange";
const char* const notAText = "insertString - start point not a text node";
const char* const notCollapsed = "Range must be collapsed to split";
const char* const noAncestor = "Node must be an ancestor of the range point";

void deleteIt(MarkedTree& t) { t.range->deleteContents(); }
void deleteAndMerge(MarkedTree& t) {
    t.range->setShouldMergeAfterDelete(true);
    t.range->deleteContents();
}
void insertElement(MarkedTree& t) { t.range->insertNode(t.document->createElement(u"e")); }

// Makes the tree's range one with the same points that never listened.
void deafen(MarkedTree& t) {
    t.range = WQXMLRange::range();
    t.range->setShouldAddListeners(false);
    t.range->setStart_offset(t.start.container, t.start.offset);
    t.range->setEnd_offset(t.end.container, t.end.offset);
}
void deafenAndDelete(MarkedTree& t) {
    deafen(t);
    t.range->deleteContents();
}

// Does the work twice: with the handler that raises, which must leave `afterRaising`, and with one that
// returns, which must hear `failures` and leave `after`.
struct Failure {
    const char* before;
    std::function<void(MarkedTree&)> work;
    std::vector<std::string> failures;
    const char* afterRaising;
    const char* after;
};
void expectFailures(std::initializer_list<Failure> rows) {
    for (const Failure& row : rows) {
        SCOPED_TRACE(row.before);
        {
            MarkedTree t(row.before);
            EXPECT_EQ(raised([&] { row.work(t); }), asserted(row.failures.front()));
            EXPECT_EQ(t.now(), row.afterRaising);
        }
        MarkedTree t(row.before);
        const Assertions quiet;
        row.work(t);
        EXPECT_EQ(quiet.descriptions, row.failures);
        EXPECT_THAT(quiet.files, Each("WQXMLRange"));
        EXPECT_EQ(t.now(), row.after);
    }
}

}  // namespace

// ---- Deleting, and collapsing afterwards

TEST(RangeContentTest, DeletingWithinATextTakesTheCharactersOut) {
    expectEdits({
        {R"(r["a{bcd}e"])", deleteIt, R"(r["a{}e"])"},
        {R"(r["{ab}c"])", deleteIt, R"(r["{}c"])"},
        {R"(r["a{bc}"])", deleteIt, R"(r["a{}"])"},
        {R"(r["{abc}"])", deleteIt, R"(r["{}"])"},
        {R"(r[p["x"],q["a{b}c"]])", deleteIt, R"(r[p["x"],q["a{}c"]])"},
        {"r[\"\U0001D54A{\U0001D54B}\U0001D54C\"]", deleteIt, "r[\"\U0001D54A{}\U0001D54C\"]"},
        {R"(r["a{&<]]>}b"])", deleteIt, R"(r["a{}b"])"},
    });
}

TEST(RangeContentTest, DeletingWithACollapsedRangeChangesNothing) {
    expectEdits({
        {R"(r["ab{}cd"])", deleteIt, R"(r["ab{}cd"])"},
        {R"(r["{}ab"])", deleteAndMerge, R"(r["{}ab"])"},
        {R"(r["ab{}","cd"])", deleteIt, R"(r["ab{}","cd"])"},
        {R"(r[a,{}b])", deleteIt, R"(r[a,{}b])"},
        {R"(r[a,b{}])", deleteAndMerge, R"(r[a,b{}])"},
        {"r[{}]", deleteIt, "r[{}]"},
    });
}

TEST(RangeContentTest, DeletingWithinAnElementTakesTheChildrenOut) {
    expectEdits({
        {R"(r[a,{b,c},d])", deleteIt, R"(r[a,{}d])"},
        {R"(r[{a,b},c])", deleteIt, R"(r[{}c])"},
        {R"(r[a,{b,c}])", deleteIt, R"(r[a{}])"},
        {R"(r[{a[b["x"]],"t"}])", deleteIt, R"(r[{}])"},
        {R"(r[a,p[{"x",b},"y"]])", deleteIt, R"(r[a,p[{}"y"]])"},
        {R"(r[a,{<!--c-->,<![CDATA[d]]>},"t"])", deleteIt, R"(r[a,{}"t"])"},
    });
}

TEST(RangeContentTest, DeletingAcrossTwoSiblingTextsLeavesThePointBehindTheJoinedText) {
    expectEdits({
        {R"(r["ab{cd","ef}gh"])", deleteIt, R"(r["abgh"{}])"},
        {R"(r["{ab","cd}ef"])", deleteIt, R"(r["ef"{}])"},
        {R"(r["ab{cd","ef}"])", deleteIt, R"(r["ab"{}])"},
        {R"(r["ab{","}cd"])", deleteIt, R"(r["abcd"{}])"},
        {R"(r[a,p[q,"ab{cd","ef}gh",s]])", deleteIt, R"(r[a,p[q,"abgh",{}s]])"},
    });
}

TEST(RangeContentTest, TextsThatBecomeNeighboursAreJoined) {
    expectEdits({
        {R"(r["a{b",i["x"],"c}d"])", deleteIt, R"(r["ad"{}])"},
        {R"(r["a{b","x",i,"y","c}d",q])", deleteIt, R"(r["ad",{}q])"},
        {R"(r["a{b",<!--x-->,<![CDATA[y]]>,"c}d"])", deleteIt, R"(r["ad"{}])"},
    });
}

TEST(RangeContentTest, OnlyTheTextsThatHoldThePointsAreJoined) {
    expectEdits({
        {R"(r["ab",{x},"cd"])", deleteIt, R"(r["ab",{}"cd"])"},
        {R"(r["a{b",x},"cd"])", deleteIt, R"(r["a",{}"cd"])"},
        {R"(r["ab",{x,"c}d"])", deleteIt, R"(r["ab",{}"d"])"},
        {R"(r[<!--ab-->,{x},<!--cd-->])", deleteIt, R"(r[<!--ab-->,{}<!--cd-->])"},
    });
}

TEST(RangeContentTest, DeletingAcrossParagraphsLeavesThePointBetweenThem) {
    expectEdits({
        {R"(r[p["ab{cd"],p["ef}gh"]])", deleteIt, R"(r[p["ab"],{}p["gh"]])"},
        {R"(r[p["ab{cd"],q["x"],<!--c-->,"t",p["ef}gh"],s])", deleteIt, R"(r[p["ab"],{}p["gh"],s])"},
        {R"(r[p["ab{"],p["}cd"]])", deleteIt, R"(r[p["ab"],{}p["cd"]])"},
        {R"(r[p["{ab"],p["cd}"]])", deleteIt, R"(r[p[""],{}p[""]])"},
        {R"(r[p["a{b"],p[}"cd"]])", deleteIt, R"(r[p["a"],{}p["cd"]])"},
        {R"(r[p["ab",{b],p["c}d"]])", deleteIt, R"(r[p["ab"],{}p["d"]])"},
        {R"(r[p["a",{b,c],p[d,e},f]])", deleteIt, R"(r[p["a"],{}p[f]])"},
    });
}

TEST(RangeContentTest, DeletingGoesThroughNestedElements) {
    expectEdits({
        {R"(r[p["a{b",b["cd",i["ef"]],"gh"],p[u["ij"],b["k}l"]]])", deleteIt, R"(r[p["a"],{}p[b["l"]]])"},
        {R"(r[p["a",b["b",i["c{d"],"e"],"f"],p["g",b["h",i["i}j"],"k"],"l"]])", deleteIt,
         R"(r[p["a",b["b",i["c"]]],{}p[b[i["j"],"k"],"l"]])"},
        {R"(r[s[p["a{b"],p["x"]],s[p["y"],p["c}d"]]])", deleteIt, R"(r[s[p["a"]],{}s[p["d"]]])"},
        {R"(r[p["a",b["b{c"],"d",i["e}f"],"g"]])", deleteIt, R"(r[p["a",b["b"],{}i["f"],"g"]])"},
    });
}

TEST(RangeContentTest, DeletingGoesThroughLists) {
    expectEdits({
        {R"(r[ul[li["on{e"],li["two"],li["th}ree"]]])", deleteIt, R"(r[ul[li["on"],{}li["ree"]]])"},
        {R"(r[p["a{b"],ul[li["c"],li["d}e"]]])", deleteIt, R"(r[p["a"],{}ul[li["e"]]])"},
        {R"(r[ul[li["a"],li["b{c"],li["x"]],p["d}e"]])", deleteIt, R"(r[ul[li["a"],li["b"]],{}p["e"]])"},
        {R"(r[ul[li["a",ul[li["b{c"]]],li["d}e"]]])", deleteIt, R"(r[ul[li["a",ul[li["b"]]],{}li["e"]]])"},
    });
}

TEST(RangeContentTest, AStartInTheCommonAncestorLeavesThePointAheadOfTheBranchOfTheEnd) {
    expectEdits({
        {R"(r[{a,p["bc}d"]])", deleteIt, R"(r[{}p["d"]])"},
        {R"(r[x,{a,p[b,i["b","c}d"],e]])", deleteIt, R"(r[x,{}p[i["d"],e]])"},
        {R"(r[x,{a,p[b,c},d]])", deleteIt, R"(r[x,{}p[d]])"},
        {R"(r[{p["}ab"]])", deleteIt, R"(r[{}p["ab"]])"},
    });
}

TEST(RangeContentTest, AnEndInTheCommonAncestorLeavesThePointBehindTheBranchOfTheStart) {
    expectEdits({
        {R"(r[p["ab{c"],q,s}])", deleteIt, R"(r[p["ab"]{}])"},
        {R"(r[p[b["x{y"],"z"},q]])", deleteIt, R"(r[p[b["x"],{}q]])"},
        {R"(r[p["a",{b,c],q},s])", deleteIt, R"(r[p["a"],{}s])"},
        {R"(r[p["ab{"]}])", deleteIt, R"(r[p["ab"]{}])"},
    });
}

TEST(RangeContentTest, AStartBehindTheLastChildDeletesNothingThere) {
    expectEdits({
        {R"(r[p["ab"{],p["c}d"]])", deleteIt, R"(r[p["ab"],{}p["d"]])"},
        {R"(r[p[{],p["c}d"]])", deleteIt, R"(r[p,{}p["d"]])"},
        {R"(r[p["ab"{],q}])", deleteIt, R"(r[p["ab"]{}])"},
    });
}

TEST(RangeContentTest, ACommentOrACDATASectionGoesAsAWhole) {
    expectEdits({
        {R"(r["a{b",<!--x-->,p["c}d"]])", deleteIt, R"(r["a",{}p["d"]])"},
        {R"(r[p["a{b",<![CDATA[x]]>],p[<!--y-->,"c}d"]])", deleteIt, R"(r[p["a"],{}p["d"]])"},
        {R"(r[{<!--x-->,<![CDATA[y]]>}])", deleteIt, R"(r[{}])"},
    });
}

TEST(RangeContentTest, APointInACommentOrACDATASectionFailsAndDeletesNothingThere) {
    expectFailures({
        {R"(r[<!--a{b-->,p,"c}d"])", deleteIt, {internal}, R"(r[<!--a{b-->,p,"c}d"])", R"(r[<!--ab-->,{}"d"])"},
        {R"(r[<![CDATA[a{b]]>,p,"c}d"])", deleteIt, {internal}, R"(r[<![CDATA[a{b]]>,p,"c}d"])", R"(r[<![CDATA[ab]]>,{}"d"])"},
        {R"(r["a{b",x,<!--c}d-->])", deleteIt, {internal}, R"(r["a{",<!--c}d-->])", R"(r["a",{}<!--cd-->])"},
        {R"(r["a{b",x,<![CDATA[c}d]]>,y])", deleteIt, {internal}, R"(r["a{",<![CDATA[c}d]]>,y])", R"(r["a",{}<![CDATA[cd]]>,y])"},
        {R"(r[<!--a{b-->,x,<!--c}d-->])", deleteIt, {internal, internal}, R"(r[<!--a{b-->,x,<!--c}d-->])", R"(r[<!--ab-->,{}<!--cd-->])"},
        {R"(r[<!--a{bc}d-->])", deleteIt, {internal, internal}, R"(r[<!--a{bc}d-->])", R"(r[<!--a{}bcd-->])"},
        {R"(r[<![CDATA[a{bc}d]]>])", deleteAndMerge, {internal}, R"(r[<![CDATA[a{bc}d]]>])", R"(r[<![CDATA[a{bc}d]]>])"},
    });
}

TEST(RangeContentTest, ARangePastTheEndOfATextRaisesAndDeletesNothing) {
    const MarkedTree t(R"(r["abc"])");
    const auto range = WQXMLRange::newWithStartContainer_startOffset_endContainer_endOffset(t.at({0}), 1, t.at({0}), 9);
    EXPECT_THAT(raised([&] { range->deleteContents(); }), testing::StartsWith("NSRangeException"));
    EXPECT_EQ(dump(t.document), R"(r["abc"])");
    expectPoints(range, t.at({0}), 1, t.at({0}), 9);
}

TEST(RangeContentTest, AFlaggedRangeDeletesAndFailsToCollapse) {
    const auto deleteFlagged = [](MarkedTree& t) {
        t.range->setIsDetached(true);
        t.range->deleteContents();
    };
    expectFailures({
        {R"(r[p["a{b"],p["c}d"]])", deleteFlagged, {flagged, flagged}, R"(r[p["a{"],p["}d"]])", R"(r[p["a"],{}p["d"]])"},
        {R"(r[{a,p["c}d"]])", deleteFlagged, {flagged, flagged}, R"(r[{p["}d"]])", R"(r[{}p["d"]])"},
        {R"(r["a{b","c}d"])", deleteFlagged, {flagged, flagged}, R"(r["a{d"}])", R"(r["ad"{}])"},
    });
    expectEdits({
        {R"(r["a{bc}d"])", deleteFlagged, R"(r["a{}d"])"},
        {R"(r[a,{b},c])", deleteFlagged, R"(r[a,{}c])"},
    });
}

TEST(RangeContentTest, AFlaggedRangeMerges) {
    expectEdit(
        R"(r[p["a{b"],p["c}d"]])",
        [](MarkedTree& t) {
            t.range->setIsDetached(true);
            deleteAndMerge(t);
        },
        R"(r[p["a{","d"]}])");
}

TEST(RangeContentTest, ARangeThatDoesNotListenDeletesFollowingSiblingsToo) {
    expectFailures({{"r[{a},b,c]", deafenAndDelete, {internal}, "r[{] }r:1", "r[{}]"}});
}

TEST(RangeContentTest, ARangeThatDoesNotListenKeepsItsPointsWhileItDeletes) {
    expectFailures({{R"(r["a{bc}def"])", deafenAndDelete, {internal}, R"(r["a{de}f"])", R"(r["a{}def"])"}});
    expectEdit(R"(r[p["a{b"],p["c}d"]])", deafenAndDelete, R"(r[p["a"],{}p["d"]])");
}

TEST(RangeContentTest, AnEmptyRangeDeletesNothing) {
    const auto range = WQXMLRange::range();
    EXPECT_EQ(raised([&] { range->deleteContents(); }), asserted(internal));
    const Assertions quiet;
    for (const bool merge : {false, true}) {
        range->setShouldMergeAfterDelete(merge);
        range->deleteContents();
        expectPoints(range, nullptr, 0, nullptr, 0);
    }
    EXPECT_THAT(quiet.descriptions, ElementsAre(internal, internal));
}

TEST(RangeContentTest, AHalfSetRangeDeletesNothing) {
    for (const char* points : {R"(r[p["a{b"],q])", R"(r[p["a}b"],q])", R"(r[p,{q])", R"(r[p,q}])"}) {
        SCOPED_TRACE(points);
        const MarkedTree t(points);
        const std::string before = dump(t.document);
        EXPECT_EQ(raised([&] { t.range->deleteContents(); }), asserted(internal));
        EXPECT_EQ(t.range->startContainer(), t.start.container);
        EXPECT_EQ(t.range->endContainer(), t.end.container);
        const Assertions quiet;
        t.range->deleteContents();
        t.range->setStart_offset(t.start.container, t.start.offset);
        t.range->setEnd_offset(t.end.container, t.end.offset);
        t.range->setShouldMergeAfterDelete(true);
        t.range->deleteContents();
        EXPECT_EQ(dump(t.document), before);
    }
}

TEST(RangeContentTest, ARangeThatOutlivedItsDocumentDeletesNothing) {
    MarkedTree t(R"(r["a{bc}d"])");
    const auto text = t.at({0});
    t.document.reset();
    EXPECT_EQ(raised([&] { t.range->deleteContents(); }), asserted(internal));
    const Assertions quiet;
    t.range->deleteContents();
    expectPoints(t.range, text, 1, text, 1);
}

TEST(RangeContentTest, OtherRangesFollowADeletion) {
    const MarkedTree t(R"(r[p["ab{cd"],q["xy"],p["ef}gh"]])");
    const auto inside = WQXMLRange::newWithContainer_offset(t.at({1, 0}), 1);
    const auto behind = WQXMLRange::newWithContainer_offset(t.at({2, 0}), 3);
    t.range->deleteContents();
    EXPECT_EQ(t.now(inside), R"(r[p["ab"],{}p["gh"]])");
    EXPECT_EQ(t.now(behind), R"(r[p["ab"],p["g{}h"]])");
}

// ---- The steps of the deletion

TEST(RangeContentTest, ATextLosesWhatLiesBetweenThePointsInIt) {
    const auto step = [](std::initializer_list<uint64_t> path) {
        return [path = std::vector<uint64_t>(path)](MarkedTree& t) {
            Ref<WQXMLNode> node = t.root;
            for (const uint64_t index : path) node = node->childAtIndex(index);
            t.range->removeSelectedComponentsOfNode(node);
        };
    };
    expectEdits({
        {R"(r["a{bc}d"])", step({0}), R"(r["a{}d"])"},
        {R"(r["a{bc","d}e"])", step({0}), R"(r["a{","d}e"])"},
        {R"(r["a{bc","d}e"])", step({1}), R"(r["a{bc","}e"])"},
        {R"(r["a{bc","x","d}e"])", step({1}), R"(r["a{bc","d}e"])"},
        {R"(r["a{bc}",p["x"]])", step({1, 0}), R"(r["a{bc}",p])"},
    });
}

TEST(RangeContentTest, AnElementThatNeitherPointIsInFailsAndIsLookedThroughFromItsFirstChild) {
    const auto second = [](MarkedTree& t) { t.range->removeSelectedComponentsOfNode(t.at({1})); };
    expectFailures({
        {R"(r[{a,p["x",b]},c])", second, {internal}, R"(r[{a,p["x",b]},c])", R"(r[{a,p},c])"},
        {R"(r[{a},p["x",b]])", second, {internal}, R"(r[{a},p["x",b]])", R"(r[{a},p["x",b]])"},
        {R"(r[{a},p])", second, {internal}, R"(r[{a},p])", R"(r[{a},p])"},
    });
}

TEST(RangeContentTest, ANodeOfAnotherTypeIsTreatedAsTextAfterTheHandler) {
    const auto second = [](MarkedTree& t) { t.range->removeSelectedComponentsOfNode(t.at({1})); };
    expectFailures({
        {R"(r[{a},<!--x-->])", second, {internal}, R"(r[{a},<!--x-->])", R"(r[{a}])"},
        {R"(r[{a},<![CDATA[x]]>])", second, {internal}, R"(r[{a},<![CDATA[x]]>])", R"(r[{a}])"},
        {R"(r[a,<!--x{y}z-->])", second, {internal}, R"(r[a,<!--x{y}z-->])", R"(r[a,<!--x{y}z-->])"},
        {R"(r[{a,<!--x}yz-->])", second, {internal}, R"(r[{a,<!--x}yz-->])", R"(r[{a,<!--x}yz-->])"},
        {R"(r[a,<!--x{yz-->}])", second, {internal}, R"(r[a,<!--x{yz-->}])", R"(r[a,<!--x{yz-->}])"},
    });
}

TEST(RangeContentTest, ADocumentIsOfAnotherTypeToo) {
    const MarkedTree t("r[{a}]");
    EXPECT_EQ(raised([&] { t.range->removeSelectedComponentsOfNode(t.document); }), asserted(internal));
    const Assertions quiet;
    t.range->removeSelectedComponentsOfNode(t.document);
    EXPECT_THAT(quiet.descriptions, ElementsAre(internal));
    EXPECT_EQ(t.now(), "r[{a}]");
}

TEST(RangeContentTest, CollapsingAfterADeletionFindsTheTopmostBranch) {
    const auto collapse = [](MarkedTree& t) { t.range->collapseAfterDelete(); };
    expectEdits({
        {R"(r["a{}b"])", collapse, R"(r["a{}b"])"},
        {R"(r[s[p["a{b"]],s[p["c}d"]]])", collapse, R"(r[s[p["ab"]],{}s[p["cd"]]])"},
        {R"(r[s[p["a{b"],q,p["c}d"]]])", collapse, R"(r[s[p["ab"],{}q,p["cd"]]])"},
        {R"(r[s[p["a{b"]],q}])", collapse, R"(r[s[p["ab"]],{}q])"},
        {R"(r[{q,s[p["c}d"]]])", collapse, R"(r[q,{}s[p["cd"]]])"},
        {R"(r[{q,s}])", [](MarkedTree& t) { t.range->collapseToEnd(), t.range->collapseAfterDelete(); }, R"(r[q,s{}])"},
    });
    expectFailures({
        {R"(r["a{b}c"])", collapse, {internal}, R"(r["a{b}c"])", R"(r["a{}bc"])"},
        {R"(r[{a,b},c])", collapse, {internal}, R"(r[{a,b},c])", R"(r[{}a,b,c])"},
    });
}

// ---- Merging

TEST(RangeContentTest, AfterAMergingDeletionTheRangeStillSelectsTheMergedRemainder) {
    expectEdits({
        {R"(r[p["ab{cd"],p["ef}gh"]])", deleteAndMerge, R"(r[p["ab{","gh"]}])"},
        {R"(r[p["ab{"],p["}cd"]])", deleteAndMerge, R"(r[p["ab{","cd"]}])"},
        {R"(r[p["a{b"],p[}"cd"]])", deleteAndMerge, R"(r[p["a{","cd"]}])"},
        {R"(r[p["ab",{b],p["c}d"],q])", deleteAndMerge, R"(r[p["ab",{"d"]},q])"},
        {R"(r[p["a{b"],q,p["c}d",i["e"],"f"],s])", deleteAndMerge, R"(r[p["a{","d",i["e"],"f"]},s])"},
    });
}

TEST(RangeContentTest, MergingLeavesTwoNeighbouringTexts) {
    const MarkedTree t(R"(r[p["a{b"],p["c}d"]])");
    t.range->setShouldMergeAfterDelete(true);
    t.range->deleteContents();
    EXPECT_EQ(dump(t.document), R"(r[p["a","d"]])");
}

TEST(RangeContentTest, MergingKeepsTheLeftElementAndLetsTheRightOneGo) {
    const MarkedTree t(R"(r[p["a{b"],q["c}d"]])");
    const auto left = t.at({0}), right = t.at({1}), text = t.at({1, 0});
    t.range->setShouldMergeAfterDelete(true);
    t.range->deleteContents();
    EXPECT_EQ(t.at({0}), left);
    EXPECT_EQ(t.at({0, 1}), text);
    EXPECT_FALSE(right->parentNode());
    EXPECT_FALSE(right->firstChild());
}

TEST(RangeContentTest, MergingFusesLevelByLevel) {
    expectEdits({
        {R"(r[s[p["a{b"]],s[p["c}d"]]])", deleteAndMerge, R"(r[s[p["a{","d"]]}])"},
        {R"(r[s[p["a{b"],x],s[y,p["c}d"],q]])", deleteAndMerge, R"(r[s[p["a{","d"],q]}])"},
        {R"(r[ul[li["on{e"],li["two"],li["th}ree"]]])", deleteAndMerge, R"(r[ul[li["on{","ree"]}]])"},
        {R"(r[t[s[p["a{b"]]],t[s[p["c}d"],q],u]])", deleteAndMerge, R"(r[t[s[p["a{","d"],q],u]}])"},
    });
}

TEST(RangeContentTest, MergingBringsTheTwoSidesToOneLevel) {
    expectEdits({
        {R"(r[p["a{b"],p[u["x"],b["c}d"]]])", deleteAndMerge, R"(r[p["a{",b["d"]]}])"},
        {R"(r[p[b["a{b"]],p["c}d"]])", deleteAndMerge, R"(r[p[b["a{"],"d"]}])"},
        {R"(r[p["a{b"],ul[li["c"],li["d}e"]]])", deleteAndMerge, R"(r[p["a{",li["e"]]}])"},
        {R"(r[ul[li["a"],li["b{c"]],p["d}e"]])", deleteAndMerge, R"(r[ul[li["a"],li["b{"],"e"]}])"},
    });
}

TEST(RangeContentTest, WithOneSideDirectlyInTheCommonAncestorNothingIsFused) {
    expectEdits({
        {R"(r["a{b",p["c}d"]])", deleteAndMerge, R"(r["a{",p["}d"]])"},
        {R"(r[p["a{b"],"c}d"])", deleteAndMerge, R"(r[p["a{"],"}d"])"},
        {R"(r[p["ab"],{p["c}d"]])", deleteAndMerge, R"(r[p["ab"],{p["}d"]])"},
        {R"(r[p["a{b"],q},p["cd"]])", deleteAndMerge, R"(r[p["a{"]},p["cd"]])"},
        {R"(r[p["a{b","c}d"]])", deleteAndMerge, R"(r[p["a{d"}]])"},
    });
}

TEST(RangeContentTest, WithBothPointsInOneNodeNothingIsMerged) {
    expectEdits({
        {R"(r[p["a{b}c"],p["d"]])", deleteAndMerge, R"(r[p["a{}c"],p["d"]])"},
        {R"(r[p[{a},b],p])", deleteAndMerge, R"(r[p[{}b],p])"},
        {R"(r[p["a{b}c"]])", [](MarkedTree& t) { t.range->mergeAfterDelete(); }, R"(r[p["a{b}c"]])"},
    });
}

TEST(RangeContentTest, MergingByItselfLeavesWhatStandsBetween) {
    const auto merge = [](MarkedTree& t) { t.range->mergeAfterDelete(); };
    expectEdits({
        {R"(r[p["a{b"],p["c}d"]])", merge, R"(r[p["a{b","cd"]}])"},
        {R"(r[p["a{"],q,p["}b"]])", merge, R"(r[p["a{","b"],q}])"},
        {R"(r[s[p["a{"],x],s[p["}b"],y]])", merge, R"(r[s[p["a{","b"],x,y]}])"},
    });
}

TEST(RangeContentTest, AnEmptyOrHalfSetRangeMergesNothing) {
    WQXMLRange::range()->mergeAfterDelete();
    for (const char* points : {R"(r[p["a{b"],q])", R"(r[p["a}b"],q])"}) {
        SCOPED_TRACE(points);
        const MarkedTree t(points);
        const Assertions quiet;
        t.range->mergeAfterDelete();
        EXPECT_EQ(dump(t.document), R"(r[p["ab"],q])");
    }
}

// ---- Inserting

TEST(RangeContentTest, ANodeIsInsertedAtTheStart) {
    expectEdits({
        {"r[a,{}b]", insertElement, "r[a,{}e,b]"},
        {"r[a,{b},c]", insertElement, "r[a,{e,b},c]"},
        {"r[{}]", insertElement, "r[{}e]"},
        {R"(r[a,{p["x}y"]])", insertElement, R"(r[a,{e,p["x}y"]])"},
        {R"(r[{}a])", [](MarkedTree& t) { t.range->insertNode(t.document->createTextNode(u"t")); }, R"(r[{}"t",a])"},
    });
}

TEST(RangeContentTest, AtTheNumberOfChildrenAndPastItANodeIsAppended) {
    expectEdit("r[a,b{}]", insertElement, "r[a,b,{}e]");
    const MarkedTree t("r[a]");
    const auto range = WQXMLRange::newWithContainer_offset(t.root, 9);
    range->insertNode(t.document->createElement(u"e"));
    EXPECT_EQ(dump(t.document), "r[a,e]");
    EXPECT_EQ(range->startOffset(), 10u) << "the new child came ahead of it";
}

TEST(RangeContentTest, ATextJoinsTheTextAtThePointAndStaysOutOfTheTree) {
    for (const auto& [before, after] :
         {std::pair{R"(r["ab{}cd"])", R"(r["ab{}XYcd"])"},
          {R"(r["{}ab"])", R"(r["{}XYab"])"},
          {R"(r["ab{}"])", R"(r["ab{}XY"])"},
          {R"(r["a{b}c"])", R"(r["a{XYb}c"])"}}) {
        SCOPED_TRACE(before);
        const MarkedTree t(before);
        const auto text = t.document->createTextNode(u"XY");
        t.range->insertNode(text);
        EXPECT_EQ(t.now(), after);
        EXPECT_FALSE(text->parentNode());
        EXPECT_EQ(text->string(), u"XY");
    }
}

TEST(RangeContentTest, ATextThatStandsElsewhereStaysThere) {
    const MarkedTree t(R"(r["ab{}cd",p["XY"]])");
    t.range->insertNode(t.at({1, 0}));
    EXPECT_EQ(t.now(), R"(r["ab{}XYcd",p["XY"]])");
}

TEST(RangeContentTest, AnElementSplitsTheTextAtThePoint) {
    expectEdits({
        {R"(r["ab{}cd"])", insertElement, R"(r["ab{}",e,"cd"])"},
        {R"(r["{}ab"])", insertElement, R"(r["{}",e,"ab"])"},
        {R"(r["ab{}"])", insertElement, R"(r["ab{}",e,""])"},
        {R"(r[p["x"],q["ab{}cd",s]])", insertElement, R"(r[p["x"],q["ab{}",e,"cd",s]])"},
        {"r[\"a\U0001D54A{}\U0001D54A\"]", insertElement, "r[\"a\U0001D54A{}\",e,\"\U0001D54A\"]"},
    });
}

TEST(RangeContentTest, TheSplitOfAnInsertionMirrorsThePointsOfTheTail) {
    expectEdits({
        {R"(r["a{bc}d"])", insertElement, R"(r["a{",e,"b}cd"])"},
        {R"(r["{abc}d"])", insertElement, R"(r["{",e,"a}bcd"])"},
        {R"(r["a{bcd}"])", insertElement, R"(r["a{}",e,"bcd"])"},
        {R"(r["a{bcd",p["x}y"]])", insertElement, R"(r["a{",e,"bcd",p["x}y"]])"},
    });
}

TEST(RangeContentTest, ANodeThatStandsInTheTreeMovesToThePoint) {
    expectEdits({
        {"r[a,b,{}c]", [](MarkedTree& t) { t.range->insertNode(t.at({0})); }, "r[b,{}a,c]"},
        {R"(r[a,"x{}y"])", [](MarkedTree& t) { t.range->insertNode(t.at({0})); }, R"(r["x{}",a,"y"])"},
    });
}

TEST(RangeContentTest, PastTheEndOfATextAnElementIsAppendedToTheParent) {
    const MarkedTree t(R"(r["ab",b])");
    const auto range = WQXMLRange::newWithContainer_offset(t.at({0}), 9);
    range->insertNode(t.document->createElement(u"e"));
    EXPECT_EQ(dump(t.document), R"(r["ab",b,e])");
}

TEST(RangeContentTest, NothingGoesIntoACommentOrACDATASection) {
    for (const char* points : {R"(r[<!--a{}b-->])", R"(r[<![CDATA[a{}b]]>])"}) {
        const MarkedTree t(points);
        for (const Ref<WQXMLNode>& node :
             {Ref<WQXMLNode>(t.document->createElement(u"e")), Ref<WQXMLNode>(t.document->createTextNode(u"t"))}) {
            t.range->insertNode(node);
            EXPECT_EQ(t.now(), points);
            EXPECT_FALSE(node->parentNode());
        }
    }
}

TEST(RangeContentTest, NothingGoesIntoAnEmptyRangeNorBesideATextWithoutAParent) {
    const auto document = parse("<r/>");
    const auto e = document->createElement(u"e");
    WQXMLRange::range()->insertNode(e);
    const auto text = WQXMLText::newWithString(u"abc");
    WQXMLRange::newWithContainer_offset(text, 1)->insertNode(e);
    EXPECT_FALSE(e->parentNode());
    EXPECT_EQ(text->string(), u"abc");
}

TEST(RangeContentTest, AStringIsInsertedAtTheStart) {
    const auto insert = [](MarkedTree& t) { t.range->insertString(u"XY"); };
    expectEdits({
        {R"(r["ab{}cd"])", insert, R"(r["ab{}XYcd"])"},
        {R"(r["a{b}c"])", insert, R"(r["a{XYb}c"])"},
        {R"(r["{}"])", insert, R"(r["{}XY"])"},
        {R"(r["a{b",p["c}d"]])", insert, R"(r["a{XYb",p["c}d"]])"},
        {R"(r["a{}b"])", [](MarkedTree& t) { t.range->insertString(u""); }, R"(r["a{}b"])"},
        {R"(r["a{}b"])", [](MarkedTree& t) { t.range->insertString(u"&<]]>\U0001D54A"); }, "r[\"a{}&<]]>\U0001D54Ab\"]"},
    });
}

TEST(RangeContentTest, TwoStringsInsertedAtACaretStandInReverse) {
    expectEdit(
        R"(r["a{}b"])",
        [](MarkedTree& t) {
            t.range->insertString(u"1");
            t.range->insertString(u"2");
        },
        R"(r["a{}21b"])");
}

TEST(RangeContentTest, AStringGoesIntoATextOnly) {
    const auto insert = [](MarkedTree& t) { t.range->insertString(u"XY"); };
    for (const char* points : {R"(r[a,{}b])", R"(r[{"a}b"])", R"(r[<!--a{}b-->])", R"(r[<![CDATA[a{}b]]>])"})
        expectFailures({{points, insert, {notAText}, points, points}});
    EXPECT_EQ(raised([] { MarkedTree(R"(r["a}b"])").range->insertString(u"XY"); }), asserted(notAText));
    EXPECT_EQ(raised([] { WQXMLRange::range()->insertString(u"XY"); }), asserted(notAText));
}

TEST(RangeContentTest, AStringPastTheEndOfATextRaises) {
    const MarkedTree t(R"(r["ab"])");
    const auto range = WQXMLRange::newWithContainer_offset(t.at({0}), 3);
    EXPECT_THAT(raised([&] { range->insertString(u"x"); }), testing::StartsWith("NSRangeException"));
    EXPECT_EQ(dump(t.document), R"(r["ab"])");
}

TEST(RangeContentTest, ARangeThatDoesNotListenStaysAheadOfWhatItInserts) {
    expectEdit(
        R"(r["ab{}cd"])",
        [](MarkedTree& t) {
            deafen(t);
            t.range->insertString(u"XY");
            t.range->insertNode(t.document->createElement(u"e"));
        },
        R"(r["ab{}",e,"XYcd"])");
}

// ---- Reading

TEST(RangeContentTest, TheStringOfARangeIsTheTextThatItSelects) {
    struct {
        const char* points;
        std::u16string_view expected;
    } const rows[] = {
        {R"(r["a{bc}d"])", u"bc"},
        {R"(r["{abcd}"])", u"abcd"},
        {R"(r["ab{}cd"])", u""},
        {R"(r["ab{cd","ef}gh"])", u"cdef"},
        {R"(r[p["ab{cd"],p["ef}gh"]])", u"cdef"},
        {R"(r[p["ab{cd"],q["x",b["y"],"z"],p["ef}gh"]])", u"cdxyzef"},
        {R"(r[s[p["ab",b["c{d"],"e"],"f"],s[p[b["g"],i["h}i"]],"j"]])", u"defgh"},
        {R"(r[{p["ab"],"cd"}])", u"abcd"},
        {R"(r[p["ab"],{p["cd"],p["ef"]},p["gh"]])", u"cdef"},
        {R"(r[{a,p["bc}d"]])", u"bc"},
        {R"(r[p["a{bc"],q["d"]},"e"])", u"bcd"},
        {R"(r[p["ab"{],p["c}d"]])", u"c"},
        {R"(r[p["ab{"],p["}cd"]])", u""},
        {R"(r[p["a{b"],p[}"cd"]])", u"b"},
        {R"(r[a,{}b])", u""},
        {R"(r[{a,b}])", u""},
        {"r[\"a{\U0001D54A\",<!--c-->,\"\U0001D54B}b\"]", u"\U0001D54A\U0001D54B"},
        {"r[\"a{&<]]>'\r\n\t}b\"]", u"&<]]>'\r\n\t"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.points);
        const MarkedTree t(row.points);
        const NSString text = t.range->toString();
        EXPECT_TRUE(text) << "empty is not null";
        EXPECT_EQ(text, NSString(row.expected));
        EXPECT_EQ(t.now(), row.points);
    }
}

TEST(RangeContentTest, CommentsAndCDATASectionsAreNotRead) {
    for (const char* points : {R"(r["a{b",<!--x-->,<![CDATA[y]]>,"c}d"])", R"(r["a{b",<!--x-->,p[<![CDATA[y]]>,"c",<!--z}-->]])"})
        EXPECT_EQ(MarkedTree(points).range->toString(), u"bc") << points;
    for (const char* points : {R"(r[<!--{x}-->])", R"(r[<![CDATA[{x}]]>])", R"(r[{<!--x-->,<![CDATA[y]]>}])"})
        EXPECT_EQ(MarkedTree(points).range->toString(), u"") << points;
}

TEST(RangeContentTest, TheStringOfAnEmptyOrHalfSetRangeIsEmpty) {
    for (const NSString& text :
         {WQXMLRange::range()->toString(), MarkedTree(R"(r["a{b"])").range->toString(), MarkedTree(R"(r["a}b"])").range->toString()}) {
        EXPECT_TRUE(text);
        EXPECT_EQ(text, u"");
    }
}

TEST(RangeContentTest, ARangeThatDoesNotListenReadsAsWell) {
    MarkedTree t(R"(r[p["ab{cd"],p["ef}gh"]])");
    deafen(t);
    EXPECT_EQ(t.range->toString(), u"cdef");
}

TEST(RangeContentTest, ReadingPastTheEndOfATextRaises) {
    const MarkedTree t(R"(r["abc"])");
    const auto range = WQXMLRange::newWithStartContainer_startOffset_endContainer_endOffset(t.at({0}), 1, t.at({0}), 9);
    EXPECT_THAT(raised([&] { range->toString(); }), testing::StartsWith("NSRangeException"));
}

TEST(RangeContentTest, TheStepOfReadingAppendsToWhatIsThere) {
    const MarkedTree t(R"(r["ab",p["c{de"],q["f}g"],"hi",s["j"]])");
    NSString text = u"> ";
    t.range->appendContentFromNode_toString(t.at({1}), text);
    EXPECT_EQ(text, u"> de");
    t.range->appendContentFromNode_toString(t.at({2}), text);
    EXPECT_EQ(text, u"> def");
    t.range->appendContentFromNode_toString(t.at({3}), text);
    EXPECT_EQ(text, u"> defhi") << "a text is read whole where neither point is in it";
    t.range->appendContentFromNode_toString(t.at({4}), text);
    t.range->appendContentFromNode_toString(nullptr, text);
    EXPECT_EQ(text, u"> defhi") << "children that are not selected are not read";
}

// ---- Splitting

TEST(RangeContentTest, ASplitGoesFromThePointUpToBelowTheAncestor) {
    const auto belowRoot = [](MarkedTree& t) { t.range->splitBelowNode(t.root); };
    const auto belowFirst = [](MarkedTree& t) { t.range->splitBelowNode(t.at({0})); };
    expectEdits({
        {R"(r[p["ab{}cd"]])", belowFirst, R"(r[p["ab{}","cd"]])"},
        {R"(r[p["ab{}cd"]])", belowRoot, R"(r[p["ab{}"],p["cd"]])"},
        {R"(r[x,s[y,p["ab{}cd",b],q],z])", belowRoot, R"(r[x,s[y,p["ab{}"]],s[p["cd",b],q],z])"},
        {R"(r[s[y,p["ab{}cd",b],q]])", belowFirst, R"(r[s[y,p["ab{}"],p["cd",b],q]])"},
        {R"(r["ab{}cd"])", belowRoot, R"(r["ab{}","cd"])"},
        {R"(r[p["{}ab"]])", belowRoot, R"(r[p["{}"],p["ab"]])"},
        {R"(r[p["ab{}"]])", belowRoot, R"(r[p["ab{}"],p[""]])"},
        {R"(r[p[a,{}b]])", belowRoot, R"(r[p[a{}],p[b]])"},
        {R"(r[p[{}a]])", belowRoot, R"(r[p[{}],p[a]])"},
        {R"(r[p[a{}]])", belowRoot, R"(r[p[a{}],p])"},
        {R"(r[s[p[a,{}b],q]])", belowRoot, R"(r[s[p[a{}]],s[p[b],q]])"},
    });
}

TEST(RangeContentTest, TheTwoHalvesHaveTheSameAttributes) {
    const auto document = parse("<r><p k='v'>abcd</p></r>");
    const auto range = WQXMLRange::newWithContainer_offset(find(document, u"p")->firstChild(), 2);
    range->splitBelowNode(document->documentElement());
    EXPECT_EQ(serialised(document->documentElement()), R"(<r><p k="v">ab</p><p k="v">cd</p></r>)");
}

TEST(RangeContentTest, ASplitBelowTheDocumentMakesTwoTopLevelElements) {
    const MarkedTree t(R"(r["ab{}cd",p])");
    t.range->splitBelowNode(t.document);
    EXPECT_EQ(t.now(), R"(r["ab{}"])");
    ASSERT_TRUE(t.root->nextSibling());
    EXPECT_EQ(dump(t.root->nextSibling()), R"(r["cd",p])");
    EXPECT_EQ(t.root->nextSibling()->parentNode(), t.document);
}

TEST(RangeContentTest, ASplitMirrorsThePointsOfOtherRangesInTheTail) {
    const MarkedTree t(R"(r["ab{}cdef"])");
    const auto tail = WQXMLRange::newWithContainer_offset(t.at({0}), 3);
    t.range->splitBelowNode(t.root);
    EXPECT_EQ(t.now(tail), R"(r["ab","cde{}f"])");
}

TEST(RangeContentTest, OnlyACollapsedRangeSplits) {
    expectFailures({
        {R"(r[p["a{bc}d"]])",
         [](MarkedTree& t) { t.range->splitBelowNode(t.root); },
         {notCollapsed},
         R"(r[p["a{bc}d"]])",
         R"(r[p["a{"}],p["bcd"]])"},
        {R"(r[p["a{bc}d"]])",
         [](MarkedTree& t) { t.range->splitBelowNode(t.at({0})); },
         {notCollapsed},
         R"(r[p["a{bc}d"]])",
         R"(r[p["a{","b}cd"]])"},
        {R"(r[p["a{bc}d"]])",
         [](MarkedTree& t) {
             t.range->splitBelowNode(t.at({0, 0}));
         },
         {notCollapsed, noAncestor},
         R"(r[p["a{bc}d"]])",
         R"(r[p["a{bc}d"]])"},
    });
}

TEST(RangeContentTest, TheContainerItselfIsNoAncestorAndNothingIsSplit) {
    expectFailures({
        {R"(r[p["a{}b"]])",
         [](MarkedTree& t) {
             t.range->splitBelowNode(t.at({0, 0}));
         },
         {noAncestor},
         R"(r[p["a{}b"]])",
         R"(r[p["a{}b"]])"},
        {R"(r[p[a,{}b]])", [](MarkedTree& t) { t.range->splitBelowNode(t.at({0})); }, {noAncestor}, R"(r[p[a,{}b]])", R"(r[p[a,{}b]])"},
    });
}

TEST(RangeContentTest, ASplitBelowAStrangerStopsAtTheTop) {
    MarkedTree t(R"(r[p["ab{}cd"],q])");
    const auto q = t.at({1});
    EXPECT_EQ(raised([&] { t.range->splitBelowNode(q); }), asserted(noAncestor));
    EXPECT_EQ(raised([&] { t.range->splitBelowNode(nullptr); }), asserted(noAncestor));
    EXPECT_EQ(t.now(), R"(r[p["ab{}cd"],q])");

    const Assertions quiet;
    t.range->splitBelowNode(q);
    EXPECT_THAT(quiet.descriptions, ElementsAre(noAncestor));
    EXPECT_EQ(t.now(), R"(r[p["ab{}"]])");
    EXPECT_EQ(dump(t.root->nextSibling()), R"(r[p["cd"],q])");
}

TEST(RangeContentTest, ASplitBelowAStrangerLeavesTheTopOfADetachedTreeWhole) {
    const auto top = WQXMLElement::newWithName(u"top");
    const auto p = WQXMLElement::newWithName(u"p");
    top->appendChild(p);
    p->appendChild(WQXMLText::newWithString(u"abcd"));
    const Assertions quiet;
    WQXMLRange::newWithContainer_offset(p->firstChild(), 2)->splitBelowNode(WQXMLElement::newWithName(u"other"));
    EXPECT_THAT(quiet.descriptions, ElementsAre(noAncestor));
    EXPECT_EQ(dump(top), R"(top[p["ab"],p["cd"]])");
}

TEST(RangeContentTest, AnEmptyRangeSplitsNothing) {
    const auto document = parse("<r/>");
    const auto range = WQXMLRange::range();
    EXPECT_EQ(raised([&] { range->splitBelowNode(document->documentElement()); }), asserted(noAncestor));
    const Assertions quiet;
    range->splitBelowNode(document->documentElement());
    EXPECT_THAT(quiet.descriptions, ElementsAre(noAncestor));
    EXPECT_EQ(dump(document), "r");
}

TEST(RangeContentTest, AFlaggedRangeInsertsReadsAndSplits) {
    const Assertions quiet;
    expectEdits({
        {R"(r[p["ab{}cd"]])",
         [](MarkedTree& t) {
             t.range->setIsDetached(true);
             t.range->insertString(u"X");
             t.range->insertNode(t.document->createElement(u"e"));
             t.range->splitBelowNode(t.root);
         },
         R"(r[p["ab{}"],p["",e,"Xcd"]])"},
    });
    EXPECT_THAT(quiet.descriptions, IsEmpty());
}
