// What holds of every range after every edit, whatever was done before.
//
// Left out, since no promise is made there: edits that fire nothing (a new root, new markup, white
// space collapsed, values of attributes), points in two documents, and ranges that do not listen: what
// is set with one point stale may be anywhere.
#include <rapidcheck.h>

#include <algorithm>

#include "dom/WQXMLEventListenerData.h"
#include "dom/WQXMLExceptionNames.h"
#include "dom/WQXMLRange.h"
#include "tests/dom/Support.h"

namespace {

using namespace test;

// A manuscript in small, and some ranges over it.
class World {
public:
    World() {
        document = parse(
            "<book><p>One<em>two</em>thr\xF0\x9D\x95\x8A"
            "ee</p><p/><!--remark--><list><item>a</item><item>b<em>c<b>d</b></em></item></list>"
            "<p><![CDATA[section]]>end</p></book>");
        other = parse("<z><p>far</p></z>");
        noteNodes();
        for (int i = 0; i < 8; ++i) addRange();
    }

    void step() {
        // An assertion may end an operation halfway; what it leaves must be as sound.
        try {
            edit();
        } catch (const WQXMLException& exception) {
            RC_ASSERT((exception.name() == u"NSInternalInconsistencyException" || exception.name() == u"NSRangeException"));
            forgetHalfSetPoints();
        }
        noteNodes();
    }

    void check() const {
        for (const auto& range : ranges) {
            if (!range->isListening()) continue;
            RC_ASSERT((range->startContainer() && range->endContainer()));
            checkContainer(range->startContainer());
            checkContainer(range->endContainer());
            RC_ASSERT((range->startContainer()->ownerDocument() == document));
            RC_ASSERT((range->endContainer()->ownerDocument() == document));
            RC_ASSERT((range->compareToRange_how(range, 1) != 1));
        }
        checkListeners();
    }

    Ref<WQXMLDocument> document, other;
    WQXMLNode::Sequence nodes;  // some that are in the document, and some that were
    std::vector<Ref<WQXMLRange>> ranges;

private:
    static size_t below(size_t limit) { return *rc::gen::inRange<size_t>(0, limit); }
    const Ref<WQXMLNode>& any() const { return nodes[below(nodes.size())]; }
    const Ref<WQXMLRange>& anyRange() const { return ranges[below(ranges.size())]; }
    Ref<WQXMLText> text(const Ref<WQXMLNode>& node) const { return wq::cast<WQXMLText>(node); }
    bool isLinked(const Ref<WQXMLNode>& node) const { return document->documentElement()->isAncestorOfNode(node); }

    void noteNodes() {
        std::erase_if(nodes, [&](auto& node) { return isLinked(node) || below(10) == 0; });
        for (Ref<WQXMLNode> node = document->documentElement(); node; node = node->next()) nodes.push_back(node);
    }

    uint64_t anyOffset(const Ref<WQXMLNode>& node) const { return below(ranges.empty() ? 1 : ranges[0]->lengthOfContainer(node) + 1); }

    void addRange() {
        const auto range = WQXMLRange::range();
        range->setShouldMergeAfterDelete(below(2) == 1);
        ranges.push_back(range);
        setPoints(range);
    }

    // Within the tree of the document.
    void setPoints(const Ref<WQXMLRange>& range) {
        const Ref<WQXMLNode> a = any(), b = any();
        if (a->nodeType() == XML_TEXT_NODE || isLinked(a) || a == document->documentElement()) {
            if (!isLinked(a) && a != document->documentElement()) return;
            if (!isLinked(b) && b != document->documentElement()) return;
            range->setStart_offset(a, anyOffset(a));
            range->setEnd_offset(b, anyOffset(b));
        }
    }

    // A range that refused its other point keeps the one it was given, and does not listen: that node may go unseen.
    void forgetHalfSetPoints() {
        for (const auto& range : ranges)
            if (!range->isListening()) range->setStart_offset(nullptr, 0);
    }

    Ref<WQXMLNode> newNode() {
        Ref<WQXMLNode> made;
        if (below(2))
            made = document->createTextNode(u"n\xD835\xDD4Aw");
        else
            made = document->createElement(u"em");
        return made;
    }

    void edit() {
        const Ref<WQXMLNode> node = any(), second = any();
        const Ref<WQXMLRange> range = ranges.empty() ? nullptr : anyRange();
        switch (below(18)) {
            case 0: node->appendChild(newNode()); break;
            case 1:
                if (node != document->documentElement()) node->parentNode()->insertChild_before(newNode(), node);
                break;
            case 2:
                if (node != document->documentElement()) node->parentNode()->removeChild(node);
                break;
            case 3:
                if (node != second && !second->isAncestorOfNode(node) && second != document->documentElement()) node->appendChild(second);
                break;
            case 4: text(node)->replaceCharactersInRange_withString({anyOffset(node), below(3)}, below(2) ? u"" : u"xyz"); break;
            case 5: node->parentNode() != document ? (void)node->splitAtIndex(anyOffset(node)) : void(); break;
            case 6:
                if (node != second && !second->isAncestorOfNode(node) && second != document->documentElement() &&
                    node->nodeType() == XML_ELEMENT_NODE && second->nodeType() == XML_ELEMENT_NODE)
                    node->mergeWithNode(second);
                break;
            case 7: text(node)->setString(u"whole"); break;
            case 8: node->removeChildren(); break;
            case 9: range->deleteContents(); break;
            case 10: range->insertNode(newNode()); break;
            case 11: range->insertString(u"typed"); break;
            case 12:
                range->collapseToStart();
                range->splitBelowNode(document->documentElement());
                break;
            case 13: setPoints(range); break;
            case 14: (void)range->toString(); break;
            case 15:
                if (ranges.size() > 1) ranges.erase(ranges.begin() + static_cast<long>(below(ranges.size())));
                if (ranges.size() < 8) addRange();
                break;
            case 16:
                if (below(4) == 0 && node != document->documentElement()) other->documentElement()->appendChild(node);
                break;
            case 17: below(2) ? range->setStart_offset(nullptr, 0) : setPoints(range); break;
            default: break;
        }
    }

    // Bound to a living node; nothing that is freed.
    static void checkContainer(const Ref<WQXMLNode>& container) {
        RC_ASSERT((container->xmlNode() && container->xmlNode()->_private == static_cast<void*>(container.get())));
    }

    // Exactly the ranges that listen are registered, each once, for the three events while capturing.
    void checkListeners() const {
        std::vector<const WQXMLEventListener*> expected, registered;
        for (const auto& range : ranges)
            if (range->isListening()) expected.push_back(range.get());
        if (document->listeners())
            for (const auto& record : *document->listeners()) {
                registered.push_back(record->listener());
                RC_ASSERT(record->captureEvents() == 14u);
                RC_ASSERT(record->events() == 0u);
            }
        std::sort(expected.begin(), expected.end());
        std::sort(registered.begin(), registered.end());
        RC_ASSERT(registered == expected);
    }
};

TEST(RangePropertyTest, PointsStayInOrderAndInOneDocumentThroughAnyEdits) {
    EXPECT_TRUE(rc::check([] {
        World world;
        world.check();
        for (int step = 0; step < 60; ++step) {
            world.step();
            world.check();
        }
    }));
}

TEST(RangePropertyTest, RangesDieInAnyOrderAgainstTheirDocument) {
    EXPECT_TRUE(rc::check([] {
        World world;
        for (int step = 0; step < 20; ++step) world.step();
        std::vector<Ref<WQXMLRange>> survivors = world.ranges;
        world.ranges.clear();
        world.nodes.clear();
        const size_t first = *rc::gen::inRange<size_t>(0, survivors.size());
        survivors.resize(first);
        world.document = nullptr;
        for (const auto& range : survivors) {
            (void)range->description();
            (void)range->collapsed();
            (void)range->commonAncestorContainer();
            (void)range->lengthOfContainer(range->startContainer());
        }
        while (!survivors.empty()) survivors.erase(survivors.begin() + static_cast<long>(*rc::gen::inRange<size_t>(0, survivors.size())));
    }));
}

}  // namespace
