// How the points of a range follow the edits of the tree, and where a range listens.
#include <algorithm>
#include <array>
#include <numeric>

#include "dom/WQXMLEventListenerData.h"
#include "tests/dom/MarkedTree.h"

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// Writes down its name ahead of what a range does.
struct Named : WQXMLRange {
    void handleEvent(const Ref<WQXMLEvent>& event) override {
        if (heard) heard->push_back(name + std::to_string(event->eventID()));
        WQXMLRange::handleEvent(event);
    }
    std::string name;
    std::vector<std::string>* heard = nullptr;
};

// Writes down what is registered on it.
struct Register : WQXMLDocument {
    void addListener_forEvent_useCapture(WQXMLEventListener* listener, int32_t event, bool capture) override {
        added.push_back(std::to_string(event) + (capture ? " capture" : ""));
        WQXMLDocument::addListener_forEvent_useCapture(listener, event, capture);
    }
    std::vector<std::string> added;
};

Ref<WQXMLRange> deafRange(const Point& start, const Point& end) {
    const auto range = WQXMLRange::range();
    range->setShouldAddListeners(false);
    range->setStart_offset(start.container, start.offset);
    range->setEnd_offset(end.container, end.offset);
    return range;
}

// For expectEdits: what is done to the tree.
auto replace(uint64_t location, uint64_t length, const char16_t* string) {
    return [=](MarkedTree& t) { t.text()->replaceCharactersInRange_withString({location, length}, string); };
}
auto insert(std::initializer_list<uint64_t> parent, uint64_t index) {
    return [parent = std::vector<uint64_t>(parent), index](MarkedTree& t) {
        Ref<WQXMLNode> node = t.root;
        for (const uint64_t step : parent) node = node->childAtIndex(step);
        node->insertChild_atIndex(t.document->createElement(u"e"), index);
    };
}
auto remove(std::initializer_list<uint64_t> path) {
    return [path = std::vector<uint64_t>(path)](MarkedTree& t) {
        Ref<WQXMLNode> node = t.root;
        for (const uint64_t step : path) node = node->childAtIndex(step);
        node->parentNode()->removeChild(node);
    };
}
auto split(uint64_t index) {
    return [=](MarkedTree& t) { t.at({0})->splitAtIndex(index); };
}

}  // namespace

// ---- Listening

TEST(WQXMLEventTest, RangesHearMutationsFromTheDocument) {
    const MarkedTree t(R"(r[a,b[c["xy{}z"]]])");
    ASSERT_EQ(listeners(t.document), 1u);
    EXPECT_EQ(t.document->listeners()->front()->listener(), t.range.get());
    EXPECT_EQ(t.document->captureEvents(), 2u | 4u | 8u);
    EXPECT_EQ(t.document->events(), 0u);
    t.text({1, 0, 0})->insertString_atIndex(u"w", 0);
    EXPECT_EQ(t.now(), R"(r[a,b[c["wxy{}z"]]])");
    t.at({1})->removeChild(t.at({1, 0}));
    EXPECT_EQ(t.now(), R"(r[a,b[{}]])");
    t.root->removeChild(t.at({1}));
    EXPECT_EQ(t.now(), R"(r[a{}])");
    t.root->insertChild_atIndex(t.document->createElement(u"e"), 0);
    EXPECT_EQ(t.now(), R"(r[e,a{}])");
}

TEST(RangeTrackingTest, ARangeRegistersForInsertionsRemovalsAndTextInThisOrder) {
    const auto document = WQXMLDocument::newWithData_baseURL_arguments_error<Register>(data("<r>abc</r>"), nullptr, nullptr, nullptr);
    const auto range = document->createRange();
    EXPECT_THAT(document->added, ElementsAre("4 capture", "8 capture", "2 capture"));
    range->setEnd_offset(document->documentElement(), 1);
    range->addListeners();
    EXPECT_THAT(document->added.size(), 3u) << "once is enough";
}

TEST(RangeTrackingTest, ARangeListensFromItsSecondPointOnUntilOneIsNull) {
    const MarkedTree t("r[a]");
    const auto range = WQXMLRange::range();
    range->setEnd_offset(t.root, 1);
    EXPECT_FALSE(range->isListening());
    range->setStart_offset(t.root, 0);
    EXPECT_TRUE(range->isListening());
    EXPECT_EQ(listeners(t.document), 1u);
    range->setStart_offset(nullptr, 0);
    EXPECT_FALSE(range->isListening());
    EXPECT_EQ(listeners(t.document), 0u);
}

TEST(RangeTrackingTest, AddingAndRemovingTwiceIsOnce) {
    const MarkedTree t("r[{a}]");
    t.range->addListeners();
    EXPECT_EQ(listeners(t.document), 1u);
    t.range->removeListeners();
    EXPECT_FALSE(t.range->isListening());
    EXPECT_EQ(listeners(t.document), 0u);
    t.range->removeListeners();
    t.root->removeChild(t.at({0}));
    expectPoints(t.range, t.root, 0, t.root, 1);
    t.range->addListeners();
    EXPECT_TRUE(t.range->isListening());
    EXPECT_EQ(listeners(t.document), 1u);
}

TEST(RangeTrackingTest, SettingAPointTakesUpListeningAgain) {
    const MarkedTree t("r[{a}]");
    t.range->removeListeners();
    t.range->setEnd_offset(t.root, 1);
    EXPECT_TRUE(t.range->isListening());
    t.range->removeListeners();
    t.range->setStart_offset(t.root, 0);
    EXPECT_TRUE(t.range->isListening());
}

TEST(RangeTrackingTest, RemovingWhatNeverListenedIsQuiet) {
    const MarkedTree t("r[{a]");
    t.range->removeListeners();
    WQXMLRange::range()->removeListeners();
    EXPECT_EQ(t.document->listeners(), nullptr);
}

TEST(RangeTrackingTest, ARangeToldNotToListenStandsStill) {
    const MarkedTree t(R"(r["a{bc",p["d}e"]])");
    const auto deaf = deafRange(t.start, t.end);
    deaf->addListeners();
    EXPECT_FALSE(deaf->isListening());
    EXPECT_EQ(listeners(t.document), 1u) << "the tree's own range";
    t.text()->deleteCharactersInRange({0, 3});
    t.root->removeChild(t.at({1}));
    expectPoints(deaf, t.start.container, 1, t.end.container, 1);
}

TEST(RangeTrackingTest, ARangeThatListensGoesOnAfterTheFlagIsCleared) {
    const MarkedTree t("r[{a}]");
    t.range->setShouldAddListeners(false);
    EXPECT_TRUE(t.range->isListening());
    t.root->removeChild(t.at({0}));
    EXPECT_EQ(t.now(), "r[{}]");
    t.range->setStart_offset(nullptr, 0);
    t.range->setStart_offset(t.root, 0);
    EXPECT_FALSE(t.range->isListening()) << "but it does not take it up again";
}

TEST(RangeTrackingTest, AHalfSetRangeCanBeToldToListen) {
    const MarkedTree t("r[a,{b]");
    t.range->addListeners();
    EXPECT_TRUE(t.range->isListening());
    EXPECT_EQ(listeners(t.document), 1u);
    t.root->removeChild(t.at({0}));
    expectPoints(t.range, t.root, 0, nullptr, 0);
}

TEST(RangeTrackingTest, RangesHearInTheOrderInWhichTheyRegistered) {
    const MarkedTree t("r[a,{b},c]");
    std::vector<std::string> heard;
    std::vector<Ref<Named>> ranges;
    for (const char* name : {"first ", "second ", "third "}) {
        ranges.push_back(t.over<Named>());
        ranges.back()->name = name;
        ranges.back()->heard = &heard;
    }
    t.root->removeChild(t.at({0}));
    EXPECT_THAT(heard, ElementsAre("first 8", "second 8", "third 8"));
    for (const auto& range : ranges) EXPECT_EQ(t.now(range), "r[{b},c]");

    heard.clear();
    ranges[0]->setEnd_offset(nullptr, 0);
    ranges[0]->setEnd_offset(t.root, 1);
    ranges[1]->setEnd_offset(t.root, 2);
    t.root->appendChild(t.document->createElement(u"e"));
    EXPECT_THAT(heard, ElementsAre("second 4", "third 4", "first 4"));
}

TEST(RangeTrackingTest, ARangeThatGoesLeavesTheOthersListening) {
    const MarkedTree t("r[a,{b},c]");
    auto first = t.range->copyRange(), second = t.range->copyRange(), third = t.range->copyRange();
    EXPECT_EQ(listeners(t.document), 4u);
    second = nullptr;
    EXPECT_EQ(listeners(t.document), 3u);
    first->setStart_offset(nullptr, 0);
    EXPECT_EQ(listeners(t.document), 2u);
    t.root->removeChild(t.at({0}));
    EXPECT_EQ(t.now(third), "r[{b},c]");
    EXPECT_EQ(t.now(), "r[{b},c]");
    expectPoints(first, nullptr, 0, t.root, 2);
}

TEST(RangeTrackingTest, ARangeHearsNothingOfAnotherDocumentNorOfADetachedTree) {
    const MarkedTree t("r[a,{b},c]"), other("r[a,b,c]");
    std::vector<std::string> heard;
    const auto range = t.over<Named>();
    range->heard = &heard;
    other.root->removeChild(other.at({0}));
    const auto kept = t.root->removeChild(t.at({2}));
    heard.clear();
    kept->appendChild(t.document->createElement(u"e"));
    kept->removeChild(kept->firstChild());
    EXPECT_THAT(heard, IsEmpty());
}

TEST(RangeTrackingTest, ARangeHearsNothingOfEditsThatFireNothing) {
    MarkedTree t(R"(r["a  b",{p["x"],q}])");
    std::vector<std::string> heard;
    const auto range = t.over<Named>();
    range->heard = &heard;
    t.root->setAttribute_value(u"k", u"v");
    t.root->removeAttribute(u"k");
    t.text()->normalizeContent();
    wq::cast<WQXMLElement>(t.at({2}))->setInnerXML(u"<new/>");
    t.document->setDocumentElement(t.document->createElement(u"s"));
    EXPECT_THAT(heard, IsEmpty());
}

TEST(RangeTrackingTest, WhiteSpaceThatIsCollapsedUnderAPointLeavesIt) {
    const MarkedTree t(R"(r["a    bc{}d"])");
    t.text()->normalizeContent();
    EXPECT_EQ(t.now(), R"(r["a bcd"] {#text:7 }#text:7)");
}

TEST(RangeTrackingTest, NewMarkupIsHeardOfByTheOldChildrenAlone) {
    const MarkedTree t(R"(r[a,b["x{y"],c}])");
    t.root->setInnerXML(u"<d/><e/>");
    EXPECT_EQ(t.now(), "r[{}d,e]");
}

TEST(RangeTrackingTest, ANewRootIsNotHeardOf) {
    const MarkedTree t(R"(r["a{b",c}])");
    t.document->setDocumentElement(t.document->createElement(u"s"));
    EXPECT_EQ(t.range->startOffset(), 1u);
    EXPECT_EQ(t.range->endContainer(), t.root);
    EXPECT_EQ(t.range->endOffset(), 2u);
    EXPECT_EQ(dump(t.document), "s");
}

// ---- Text

TEST(RangeTrackingTest, TextThatIsReplacedMovesThePoints) {
    expectEdits({
        // insertions
        {R"(r["abc{}def"])", replace(3, 0, u"XY"), R"(r["abc{}XYdef"])"},
        {R"(r["abc{}def"])", replace(2, 0, u"XY"), R"(r["abXYc{}def"])"},
        {R"(r["abc{}def"])", replace(4, 0, u"XY"), R"(r["abc{}dXYef"])"},
        {R"(r["abcdef{}"])", replace(6, 0, u"XY"), R"(r["abcdef{}XY"])"},
        {R"(r["{}abcdef"])", replace(0, 0, u"XY"), R"(r["{}XYabcdef"])"},
        {R"(r["a{bcd}ef"])", replace(4, 0, u"XY"), R"(r["a{bcd}XYef"])"},
        {R"(r["a{bcd}ef"])", replace(1, 0, u"XY"), R"(r["a{XYbcd}ef"])"},
        {R"(r["a{bcd}ef"])", replace(2, 0, u"XY"), R"(r["a{bXYcd}ef"])"},
        // deletions
        {R"(r["abc{}def"])", replace(1, 2, u""), R"(r["a{}def"])"},
        {R"(r["abcde{}f"])", replace(1, 2, u""), R"(r["ade{}f"])"},
        {R"(r["abc{}def"])", replace(3, 2, u""), R"(r["abc{}f"])"},
        {R"(r["abc{}def"])", replace(4, 2, u""), R"(r["abc{}d"])"},
        {R"(r["abc{}def"])", replace(0, 6, u""), R"(r["{}"])"},
        {R"(r["{abcdef}"])", replace(0, 6, u""), R"(r["{}"])"},
        {R"(r["ab{cd}ef"])", replace(1, 4, u""), R"(r["a{}f"])"},
        {R"(r["ab{cd}ef"])", replace(1, 2, u""), R"(r["a{d}ef"])"},
        {R"(r["ab{cd}ef"])", replace(3, 2, u""), R"(r["ab{c}f"])"},
        {R"(r["a{bcde}f"])", replace(2, 2, u""), R"(r["a{be}f"])"},
        // replacements
        {R"(r["ab{cd}ef"])", replace(1, 4, u"X"), R"(r["a{}Xf"])"},
        {R"(r["abc{}def"])", replace(2, 1, u"XYZ"), R"(r["ab{}XYZdef"])"},
        {R"(r["abc{}def"])", replace(3, 1, u"XYZ"), R"(r["abc{}XYZef"])"},
        {R"(r["abc{}def"])", replace(0, 2, u"XYZ"), R"(r["XYZc{}def"])"},
        {R"(r["abc{}def"])", replace(0, 2, u"X"), R"(r["Xc{}def"])"},
        {R"(r["abc{}def"])", replace(2, 2, u"cd"), R"(r["ab{}cdef"])"},
    });
}

TEST(RangeTrackingTest, EveryEditOfATextMovesThePoints) {
    expectEdits({
        {R"(r["a{bc}d"])", [](auto& t) { t.text()->setString(u"wxyz"); }, R"(r["{}wxyz"])"},
        {R"(r["{abcd}"])", [](auto& t) { t.text()->appendString(u"wx"); }, R"(r["{abcd}wx"])"},
        {R"(r["a{bc}d"])", [](auto& t) { t.text()->insertString_atIndex(u"wx", 0); }, R"(r["wxa{bc}d"])"},
        {R"(r["a{bc}d"])",
         [](auto& t) {
             t.text()->deleteCharactersInRange({0, 1});
         },
         R"(r["{bc}d"])"},
    });
}

TEST(RangeTrackingTest, OffsetsCountUnitsBeyondTheBasicPlane) {
    expectEdits({
        {"r[\"a\U0001D54A{b}c\"]", replace(0, 1, u"\U0001D54A"), "r[\"\U0001D54A\U0001D54A{b}c\"]"},
        {"r[\"a\U0001D54A{b}c\"]", replace(1, 2, u""), "r[\"a{b}c\"]"},
        {"r[\"a\U0001D54Ab{}c\"]", replace(0, 1, u""), "r[\"\U0001D54Ab{}c\"]"},
        {"r[\"\U0001D54A\U0001D54A{}\U0001D54A\"]", split(2), "r[\"\U0001D54A\",\"\U0001D54A{}\U0001D54A\"]"},
    });
}

TEST(RangeTrackingTest, APointPastTheEndOfATextMovesAlong) {
    const MarkedTree t(R"(r["abcd"])");
    const auto range = WQXMLRange::newWithContainer_offset(t.at({0}), 100);
    t.text()->deleteCharactersInRange({0, 2});
    EXPECT_EQ(range->startOffset(), 98u);
    t.text()->setString(u"");
    EXPECT_EQ(range->endOffset(), 96u);
}

TEST(RangeTrackingTest, ATextThatHoldsOnePointMovesThatOne) {
    expectEdits({
        {R"(r["ab{c",p["de}f"]])", replace(0, 1, u""), R"(r["b{c",p["de}f"]])"},
        {R"(r[p["de{f"],"ab}c"])",
         [](auto& t) {
             t.text({1})->deleteCharactersInRange({0, 1});
         },
         R"(r[p["de{f"],"b}c"])"},
        {R"(r[{"abc",p["de}f"]])", replace(0, 2, u""), R"(r[{"c",p["de}f"]])"},
        {R"(r["abc","d{e}f"])", replace(0, 3, u""), R"(r["","d{e}f"])"},
    });
}

// ---- Insertions

TEST(RangeTrackingTest, ANewChildAheadOfAPointMovesIt) {
    expectEdits({
        {"r[a,{}b]", insert({}, 1), "r[a,{}e,b]"},
        {"r[a,{}b]", insert({}, 0), "r[e,a,{}b]"},
        {"r[a,{}b]", insert({}, 2), "r[a,{}b,e]"},
        {"r[a,b{}]", insert({}, 2), "r[a,b,{}e]"},
        {"r[{}]", insert({}, 0), "r[{}e]"},
        {"r[a,{b,c},d]", insert({}, 1), "r[a,{e,b,c},d]"},
        {"r[a,{b,c},d]", insert({}, 2), "r[a,{b,e,c},d]"},
        {"r[a,{b,c},d]", insert({}, 3), "r[a,{b,c},e,d]"},
        {"r[a,{b,c},d]", insert({}, 0), "r[e,a,{b,c},d]"},
    });
}

TEST(RangeTrackingTest, ANewChildOfAnotherNodeMovesNothing) {
    expectEdits({
        {R"(r[a,p["x{y"],q}])", insert({0}, 0), R"(r[a[e],p["x{y"],q}])"},
        {R"(r[a,{p["x"],q}])", insert({1}, 0), R"(r[a,{p[e,"x"],q}])"},
        {R"(r[a,p["x{y"],q}])", insert({1}, 0), R"(r[a,p[e,"x{y"],q}])"},
        {R"(r[a,p["x{y"],q[}]])", insert({}, 0), R"(r[e,a,p["x{y"],q[}]])"},
    });
}

TEST(RangeTrackingTest, AChildThatLandsUnderAnotherParentMovesNothing) {
    const MarkedTree t("r[a,b[c,d{}]]");
    t.at({0})->insertChild_before(t.document->createElement(u"e"), t.at({1, 0}));
    EXPECT_EQ(t.now(), "r[a,b[e,c,{}d]]") << "the event names the parent that was asked";
}

TEST(RangeTrackingTest, ANodeThatMovesLeavesThePointsInItBehind) {
    expectEdits({
        {R"(r[a,p["x{y}z"],b])", [](auto& t) { t.root->appendChild(t.at({1})); }, R"(r[a,{}b,p["xyz"]])"},
        {R"(r[a,p["x{yz"],b}])", [](auto& t) { t.root->insertChild_atIndex(t.at({1}), 0); }, R"(r[p["xyz"],a,{b}])"},
        {R"(r[a,{b},c])", [](auto& t) { t.root->appendChild(t.at({0})); }, R"(r[{b},c,a])"},
    });
}

// ---- Removals

TEST(RangeTrackingTest, AChildThatLeavesAheadOfAPointMovesIt) {
    expectEdits({
        {"r[a,{}b]", remove({0}), "r[{}b]"},
        {"r[a,{}b]", remove({1}), "r[a{}]"},
        {"r[a,b,{}c]", remove({0}), "r[b,{}c]"},
        {"r[a,{b,c},d]", remove({0}), "r[{b,c},d]"},
        {"r[a,{b,c},d]", remove({1}), "r[a,{c},d]"},
        {"r[a,{b,c},d]", remove({2}), "r[a,{b},d]"},
        {"r[a,{b,c},d]", remove({3}), "r[a,{b,c}]"},
        {"r[{a}]", remove({0}), "r[{}]"},
        {R"(r[a[b],p["x{y"],q}])", remove({0, 0}), R"(r[a,p["x{y"],q}])"},
    });
}

TEST(RangeTrackingTest, APointInWhatLeavesGoesToWhereThatStood) {
    expectEdits({
        {R"(r[a,"x{y}z",b])", remove({1}), "r[a,{}b]"},
        {R"(r[a,p[b[{}]],c])", remove({1, 0}), "r[a,p[{}],c]"},
        {R"(r[a,p[b["x{y}z"]],c])", remove({1}), "r[a,{}c]"},
        {R"(r[a,p["x{y"],q["z}"]])", remove({1}), R"(r[a,{q["z}"]])"},
        {R"(r[a,p["x{y"],q["z}"]])", remove({2}), R"(r[a,p["x{y"]}])"},
        {R"(r[a,p["x{y"],q,s}])", remove({1}), R"(r[a,{q,s}])"},
        {R"(r[{a,p["x}y"],q])", remove({1}), R"(r[{a},q])"},
        {R"(r[a,<!--x{y}-->,b])", remove({1}), "r[a,{}b]"},
        {R"(r[a,p["x{y}z"],c])", [](auto& t) { t.at({1})->removeChildren(); }, "r[a,p[{}],c]"},
    });
}

TEST(RangeTrackingTest, ARootThatLeavesUnderARangeFailsSinceADocumentIsInNoDocument) {
    const MarkedTree t(R"(r["a{b",c}])");
    EXPECT_EQ(raised([&] { t.document->removeChild(t.root); }), asserted("Range endpoints must be in the same document"));
    EXPECT_EQ(dump(t.document), R"(r["ab",c])") << "the tree is as it was";
    expectPoints(t.range, t.document, NSNotFound, t.root, 2);
}

TEST(RangeTrackingTest, ARootThatLeavesUnderARangePutsBothPointsNowhereAfterTheHandler) {
    const MarkedTree t(R"(r["a{b",c}])");
    const Assertions quiet;
    t.document->removeChild(t.root);
    EXPECT_THAT(quiet.descriptions, ElementsAre("Range endpoints must be in the same document"));
    EXPECT_FALSE(t.document->documentElement());
    expectPoints(t.range, t.document, NSNotFound, t.document, NSNotFound);
}

// ---- Splits

TEST(RangeTrackingTest, ATextThatIsSplitMirrorsThePointsOfItsTail) {
    expectEdits({
        {R"(r["abc{}def"])", split(2), R"(r["ab","cde{}f"])"},
        {R"(r["abcde{}f"])", split(2), R"(r["ab","c{}def"])"},
        {R"(r["abcd{}ef"])", split(2), R"(r["ab","cd{}ef"])"},
        {R"(r["abcdef{}"])", split(2), R"(r["ab{}","cdef"])"},
        {R"(r["ab{}cdef"])", split(2), R"(r["ab{}","cdef"])"},
        {R"(r["a{}bcdef"])", split(2), R"(r["a{}b","cdef"])"},
        {R"(r["abc{}def"])", split(0), R"(r["","abc{}def"])"},
        {R"(r["a{}bcdef"])", split(0), R"(r["","abcde{}f"])"},
        {R"(r["abc{}def"])", split(6), R"(r["abc{}def",""])"},
        {R"(r["abcdef{}"])", split(6), R"(r["abcdef{}",""])"},
        {R"(r["abc{}def"])", split(7), R"(r["abc{}def"])"},
    });
}

TEST(RangeTrackingTest, ASplitUnderTwoPointsOfTheTailTakesBothToTheClipOfTheEnd) {
    expectEdits({
        {R"(r["abc{de}f"])", split(2), R"(r["ab","c{}def"])"},
        {R"(r["abc{def}"])", split(2), R"(r["ab","{}cdef"])"},
    });
}

TEST(RangeTrackingTest, AStartInTheTailTakesTheClipOfTheEndWhereverThatIs) {
    expectEdits({
        {R"(r["abc{def",p}])", split(2), R"(r["ab","{cdef",p}])"},
        {R"(r["abc{def",p["xy}z"]])", split(2), R"(r["ab","{cdef",p["xy}z"]])"},
    });
}

TEST(RangeTrackingTest, AnEndInTheTailIsMirroredAlone) {
    expectEdits({
        {R"(r["a{bcde}f"])", split(2), R"(r["a{b","c}def"])"},
        {R"(r["ab{cd}ef"])", split(2), R"(r["ab{","cd}ef"])"},
        {R"(r[{"abcd}ef"])", split(2), R"(r[{"ab","cd}ef"])"},
        {R"(r["a{bcdef}"])", split(2), R"(r["a{b}","cdef"])"},
    });
}

TEST(RangeTrackingTest, ASplitOfATextMovesThePointsOfItsParentAsAnInsertion) {
    expectEdits({
        {R"(r["abcd"{}])", split(2), R"(r["ab",{}"cd"])"},
        {R"(r["abcd",p{}])", split(2), R"(r["ab","cd",p{}])"},
        {R"(r[{"abcd"}])", split(2), R"(r[{"ab"},"cd"])"},
        {R"(r[{"abcd",p}])", split(2), R"(r[{"ab","cd",p}])"},
    });
}

TEST(RangeTrackingTest, ASplitOfAnElementLeavesThePointsOfItsTailAtTheSplit) {
    expectEdits({
        {R"(r[p["ab","c{}d"]])", split(1), R"(r[p["ab"{}],p["cd"]])"},
        {R"(r[p[a,b,{}c]])", split(1), R"(r[p[a{}],p[b,c]])"},
        {R"(r[p["a{b","c}d"],q])", split(1), R"(r[p["a{b"}],p["cd"],q])"},
        {R"(r[p[a,b],{}q])", split(1), R"(r[p[a],{}p[b],q])"},
    });
}

// ---- The memory of the last event

TEST(RangeTrackingTest, TheClipMemoryFiresOnAnyInsertionRightBehindAnEditedText) {
    const MarkedTree t(R"(r["abc{}d",p])");
    t.text()->deleteCharactersInRange({2, 2});
    EXPECT_EQ(t.now(), R"(r["ab{}",p])");
    const auto e = t.document->createElement(u"e");
    t.root->insertChild_atIndex(e, 1);
    expectPoints(t.range, e, 1, e, 1);
}

TEST(RangeTrackingTest, TheClipMemoryFiresAfterAReplacementInTheMiddleToo) {
    const MarkedTree t(R"(r["abc{}def"])");
    t.text()->replaceCharactersInRange_withString({1, 4}, u"X");
    t.root->appendChild(t.document->createTextNode(u"uvw"));
    EXPECT_EQ(t.now(), R"(r["aXf","uv{}w"])");
}

TEST(RangeTrackingTest, TheClipMemoryDoesNotFireElsewhere) {
    const auto deleteTail = [](MarkedTree& t) { t.text({1})->deleteCharactersInRange({2, 2}); };
    const auto after = [&](std::function<void(MarkedTree&)> work) {
        return [=](MarkedTree& t) {
            deleteTail(t);
            work(t);
        };
    };
    expectEdits({
        {R"(r[a,"abc{}d",b])", after(insert({}, 1)), R"(r[a,e,"ab{}",b])"},
        {R"(r[a,"abc{}d",b])", after(insert({}, 3)), R"(r[a,"ab{}",b,e])"},
        {R"(r[a,"abc{}d",b])", after(insert({0}, 0)), R"(r[a[e],"ab{}",b])"},
        {R"(r[a,"abc{}d",b])", after(insert({2}, 0)), R"(r[a,"ab{}",b[e]])"},
    });
}

TEST(RangeTrackingTest, EachEventIsForgottenWithTheNextOne) {
    const auto between = [](std::function<void(MarkedTree&)> work) {
        return [=](MarkedTree& t) {
            t.text({1})->deleteCharactersInRange({2, 2});
            work(t);
            t.root->insertChild_before(t.document->createElement(u"e"), t.at({1})->nextSibling());
        };
    };
    expectEdits({
        {R"(r["x","abc{}d",b])", between([](MarkedTree& t) { t.text()->appendString(u"y"); }), R"(r["xy","ab{}",e,b])"},
        {R"(r["x","abc{}d",b])", between([](MarkedTree& t) { t.text({1})->appendString(u"y"); }), R"(r["x","ab{}y",e,b])"},
        {R"(r["x","abc{}d",b,c])", between(remove({3})), R"(r["x","ab{}",e,b])"},
        {R"(r["x","abc{}d",b])", between(insert({2}, 0)), R"(r["x","ab{}",e,b[e]])"},
    });
}

TEST(RangeTrackingTest, AnEventOfAnotherKindIsOnlyRemembered) {
    const MarkedTree t(R"(r["abc{}d"])");
    t.text()->deleteCharactersInRange({2, 2});
    const auto event = WQXMLMutationEvent::subtreeModifiedEventWithTarget(t.at({0}));
    event->setRange({0, 2});
    event->setRelatedNode(t.root);
    t.range->handleEvent(event);
    EXPECT_EQ(t.now(), R"(r["ab{}"])");
    t.root->appendChild(t.document->createElement(u"e"));
    EXPECT_EQ(t.now(), R"(r["ab{}",e])");
}

TEST(RangeTrackingTest, AnEditOfAnotherTextClearsTheClips) {
    const MarkedTree t(R"(r["abc{}d","xy"])");
    t.text()->deleteCharactersInRange({2, 2});
    t.text({1})->appendString(u"z");
    t.range->setStart_offset(t.at({1}), 1);
    t.root->appendChild(t.document->createElement(u"e"));
    EXPECT_EQ(t.now(), R"(r["ab","x{}yz",e])");
}

TEST(RangeTrackingTest, AClipIsOnlyForThePointThatStillStandsInThatText) {
    const MarkedTree t(R"(r["abc{}d"])");
    t.text()->deleteCharactersInRange({2, 2});
    t.range->setStart_offset(t.root, 0);
    t.root->appendChild(t.document->createTextNode(u"xy"));
    EXPECT_EQ(t.now(), R"(r[{"ab","x}y"])");

    const MarkedTree u(R"(r["a{bc}d",p])");
    u.text()->deleteCharactersInRange({2, 2});
    u.range->setEnd_offset(u.root, 2);
    u.root->insertChild_atIndex(u.document->createTextNode(u"xy"), 1);
    EXPECT_EQ(u.now(), R"(r["a{b","xy",p}])");
}

TEST(RangeTrackingTest, TheRememberedTargetMayBeGone) {
    const MarkedTree t(R"(r["abc",p["x{}yz"]])");
    t.text()->deleteCharactersInRange({1, 2});
    t.root->removeChild(t.at({0}));
    for (int i = 0; i < 4; ++i) t.root->appendChild(t.document->createTextNode(u"new"));
    EXPECT_EQ(t.now(), R"(r[p["x{}yz"],"new","new","new","new"])");
}

// ---- Ranges and the lives of documents

TEST(RangeTrackingTest, RangesAndTheirDocumentGoInAnyOrder) {
    std::array<size_t, 4> order;
    std::iota(order.begin(), order.end(), size_t{0});
    do {
        auto document = parse("<r>abc<p/></r>");
        std::vector<Ref<WQXMLRange>> ranges;
        for (uint64_t i = 0; i < 3; ++i) {
            ranges.push_back(document->createRange());
            ranges.back()->selectNodeContents(i == 1 ? document->documentElement()->firstChild() : document->documentElement());
        }
        size_t living = 3;
        for (const size_t which : order) {
            if (which == 3) {
                document.reset();
                continue;
            }
            ranges[which].reset();
            --living;
            if (!document) continue;
            EXPECT_EQ(listeners(document), living);
            document->documentElement()->appendChild(document->createTextNode(u"t"));
        }
    } while (std::next_permutation(order.begin(), order.end()));
}

TEST(RangeTrackingTest, ARangeThatOutlivesItsDocumentAnswersAndGoes) {
    MarkedTree t(R"(r["a{bc",p["d}e"]])");
    const auto start = t.at({0}), end = t.at({1, 0});
    t.document.reset();
    expectPoints(t.range, start, 1, end, 1);
    EXPECT_FALSE(t.range->collapsed());
    EXPECT_FALSE(t.range->commonAncestorContainer());
    EXPECT_TRUE(t.range->isEqualToRange(t.range));
    EXPECT_EQ(t.range->lengthOfContainer(start), 0u);
    EXPECT_EQ(t.range->toString(), u"");
    EXPECT_TRUE(t.range->description());
    EXPECT_EQ(raised([&] { t.range->compareToRange_how(t.range, 1); }), asserted("Nodes have no common ancestor!"));
    t.range->removeListeners();
    t.range->setStart_offset(nullptr, 0);
    t.range->setEnd_offset(nullptr, 0);
    EXPECT_FALSE(t.range->isListening());
}

TEST(RangeTrackingTest, ARangeThatOutlivedItsDocumentServesAnother) {
    MarkedTree t("r[{a}]");
    const MarkedTree other("r[a,b]");
    t.document.reset();
    t.root = nullptr;
    t.range->setStart_offset(nullptr, 0);
    t.range->setEnd_offset(nullptr, 0);
    t.range->selectNode(other.at({1}));
    EXPECT_TRUE(t.range->isListening());
    other.root->removeChild(other.at({0}));
    EXPECT_EQ(other.now(t.range), "r[{b}]");
}

TEST(RangeTrackingTest, ACopyOfARangeThatOutlivedItsDocumentHasItsPoints) {
    MarkedTree t(R"(r["a{b}c"])");
    const auto text = t.at({0});
    t.document.reset();
    expectPoints(t.range->copyRange(), text, 1, text, 2);
}

TEST(RangeTrackingTest, ARangeDoesNotKeepItsDocument) {
    MarkedTree t(R"(r["a{b}c"])");
    const auto range = t.range;
    EXPECT_EQ(t.document->referenceCount(), 1);
    t.document.reset();
    EXPECT_EQ(range->startContainer()->nodeType(), 0x7fff);
}

TEST(RangeTrackingTest, ARangeThatGoesAfterItsRootWasRemovedIsQuiet) {
    const Assertions quiet;
    MarkedTree t(R"(r["a{b",c}])");
    const auto kept = t.document->removeChild(t.root);
    EXPECT_EQ(quiet.descriptions.size(), 1u);
    t.range.reset();
    EXPECT_EQ(listeners(t.document), 0u);
    EXPECT_EQ(quiet.descriptions.size(), 1u);
}

TEST(RangeTrackingTest, ARangeThatGoesAfterItsRootWasReplacedIsQuiet) {
    const Assertions quiet;
    MarkedTree t(R"(r["a{b",c}])");
    t.document->setDocumentElement(t.document->createElement(u"s"));
    t.range.reset();
    EXPECT_EQ(listeners(t.document), 0u);
    EXPECT_THAT(quiet.descriptions, IsEmpty());
}

TEST(RangeTrackingTest, ARangeOnATextWithoutADocumentListensToNobody) {
    const Assertions quiet;
    const MarkedTree t("r[a]");
    const auto text = WQXMLText::newWithString(u"abc");
    auto range = WQXMLRange::newWithContainer_offset(text, 2);
    EXPECT_TRUE(range->isListening()) << "as far as it knows";
    t.root->appendChild(text);
    text->deleteCharactersInRange({0, 1});
    expectPoints(range, text, 2, text, 2);
    range->setEnd_offset(text, 2);
    EXPECT_EQ(listeners(t.document), 0u);
    range.reset();
    EXPECT_THAT(quiet.descriptions, IsEmpty());
}

TEST(RangeTrackingTest, ARangeOnATextWithoutADocumentOutlivesTheOneThatThisCameTo) {
    auto document = parse("<r/>");
    const auto text = WQXMLText::newWithString(u"abc");
    auto range = WQXMLRange::newWithContainer_offset(text, 2);
    document->documentElement()->appendChild(text);
    document.reset();
    range->setStart_offset(nullptr, 0);
    range.reset();
}

TEST(RangeTrackingTest, ARangeOnADetachedTreeListensToTheDocumentThatThisNames) {
    const MarkedTree t(R"(r[p["abc"]])");
    const auto p = t.root->removeChild(t.at({0}));
    auto range = WQXMLRange::newWithContainer_offset(p->firstChild(), 2);
    EXPECT_EQ(listeners(t.document), 1u);
    wq::cast<WQXMLText>(p->firstChild())->deleteCharactersInRange({0, 1});
    EXPECT_EQ(range->startOffset(), 2u) << "nobody hears of an edit in a detached tree";
    t.root->appendChild(p);
    wq::cast<WQXMLText>(p->firstChild())->deleteCharactersInRange({0, 1});
    EXPECT_EQ(range->startOffset(), 1u);
}

TEST(RangeTrackingTest, ASubtreeThatIsCarriedToAnotherDocumentLeavesTheRangeBehind) {
    MarkedTree t(R"(r[a,p["x{y}z"],b])");
    const MarkedTree other("r");
    other.root->appendChild(t.at({1}));
    EXPECT_EQ(t.now(), "r[a,{}b]");
    EXPECT_EQ(dump(other.document), R"(r[p["xyz"]])");
    t.range.reset();
    EXPECT_EQ(listeners(t.document) + listeners(other.document), 0u);
}

TEST(RangeTrackingTest, ARangeThatWasCarriedToAnotherDocumentStaysRegisteredWhereItWas) {
    for (const int firstToGo : {0, 1, 2}) {
        SCOPED_TRACE(firstToGo);
        const Assertions quiet;
        auto document = parse("<r><p>abc</p></r>"), other = parse("<s/>");
        const auto p = document->documentElement()->removeChild(document->documentElement()->firstChild());
        auto range = WQXMLRange::newWithContainer_offset(p->firstChild(), 2);
        other->documentElement()->appendChild(p);
        wq::cast<WQXMLText>(p->firstChild())->deleteCharactersInRange({0, 1});
        range->setEnd_offset(p->firstChild(), 2);
        expectPoints(range, p->firstChild(), 2, p->firstChild(), 2);
        EXPECT_EQ(listeners(document), 1u);
        EXPECT_EQ(listeners(other), 0u);

        if (firstToGo == 0) document.reset();
        if (firstToGo == 1) other.reset();
        range.reset();
        EXPECT_EQ(listeners(document) + listeners(other), 0u);
        EXPECT_THAT(quiet.descriptions, IsEmpty());
    }
}

TEST(RangeTrackingTest, APointSetIntoAnotherDocumentRegistersNothingThere) {
    for (const int firstToGo : {0, 1, 2}) {
        SCOPED_TRACE(firstToGo);
        const Assertions quiet;
        auto document = parse("<r><a/></r>"), other = parse("<s><b/></s>");
        auto range = document->createRange();
        range->setStart_offset(other->documentElement(), 1);
        const size_t failures = quiet.descriptions.size();
        EXPECT_TRUE(range->isListening());
        EXPECT_EQ(listeners(document), 1u);
        EXPECT_EQ(listeners(other), 0u);
        other->documentElement()->removeChildren();
        EXPECT_EQ(range->startOffset(), 1u);

        if (firstToGo == 0) document.reset();
        if (firstToGo == 1) other.reset();
        range.reset();
        EXPECT_EQ(listeners(document), 0u);
        EXPECT_EQ(quiet.descriptions.size(), failures);
    }
}

TEST(RangeTrackingTest, APointThatFailedInAnotherDocumentDoesNotHinderTheEnd) {
    auto document = parse("<r><a/></r>");
    const auto other = parse("<s><b/></s>");
    auto range = document->createRange();
    EXPECT_NE(raised([&] { range->setStart_offset(other->documentElement(), 1); }), "");
    range.reset();
    EXPECT_EQ(listeners(document) + listeners(other), 0u);
}

TEST(RangeTrackingTest, ANullPointUnregistersWhereTheRangeIsRegistered) {
    const MarkedTree t(R"(r[p["abc"]])"), other("s");
    const auto p = t.root->removeChild(t.at({0}));
    const auto range = WQXMLRange::newWithContainer_offset(p->firstChild(), 2);
    other.root->appendChild(p);
    range->setStart_offset(nullptr, 0);
    EXPECT_EQ(listeners(t.document), 0u);
    range->setStart_offset(p->firstChild(), 0);
    EXPECT_TRUE(range->isListening());
    EXPECT_EQ(listeners(other.document), 1u) << "it is made whole anew there";
}

TEST(RangeTrackingTest, ARangeHeldByNobodyButItsUserGoesInTheMiddleOfItsEdits) {
    auto document = parse("<r>abc</r>");
    for (int i = 0; i < 3; ++i) {
        const auto range = document->createRange();
        range->selectNodeContents(document->documentElement()->firstChild());
        range->deleteContents();
        range->insertString(u"abc");
    }
    EXPECT_EQ(listeners(document), 0u);
    EXPECT_EQ(dump(document), R"(r["abc"])");
}
