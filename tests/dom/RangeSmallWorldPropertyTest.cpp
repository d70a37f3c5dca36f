// Every range on every small tree through every single edit, held against a model of plain vectors.
//
// WQ_TREE_NODES says how many nodes the largest trees have, 5 if it is not set.
#include <algorithm>
#include <cstdlib>
#include <functional>

#include "dom/WQXMLRange.h"
#include "tests/dom/Support.h"

namespace {

using namespace test;

// ---- The model: nodes by number, the root is 0

struct ModelNode {
    bool isText = false;
    std::u16string text;
    std::vector<int> children;
    int parent = -1;
};

using Model = std::vector<ModelNode>;

struct ModelPoint {
    int node = 0;
    size_t offset = 0;
    bool operator==(const ModelPoint&) const = default;
};

size_t indexIn(const Model& model, int child) {
    const auto& siblings = model[static_cast<size_t>(model[static_cast<size_t>(child)].parent)].children;
    return static_cast<size_t>(std::find(siblings.begin(), siblings.end(), child) - siblings.begin());
}

// Gaps have even numbers and children odd ones, so that points compare as sequences from the root down.
std::vector<size_t> placeOf(const Model& model, const ModelPoint& point) {
    std::vector<size_t> place{2 * point.offset};
    for (int node = point.node; node != 0; node = model[static_cast<size_t>(node)].parent)
        place.insert(place.begin(), 2 * indexIn(model, node) + 1);
    return place;
}

bool isInside(const Model& model, int node, int ancestor) {
    for (; node >= 0; node = model[static_cast<size_t>(node)].parent)
        if (node == ancestor) return true;
    return false;
}

struct ModelRange {
    ModelPoint start, end;
    int editedText = -1;  // of the last event, if that was an edit of a text
    size_t startClip = 0, endClip = 0;

    void setStart(const Model& model, ModelPoint point) {
        start = point;
        if (placeOf(model, start) > placeOf(model, end)) end = start;
    }
    void setEnd(const Model& model, ModelPoint point) {
        end = point;
        if (placeOf(model, start) > placeOf(model, end)) start = end;
    }

    void hearTextEdit(int text, size_t location, size_t length, size_t newLength) {
        startClip = endClip = 0;
        auto follow = [&](ModelPoint& point, size_t& clip) {
            if (point.node != text || point.offset <= location) return;
            if (point.offset > location + length) {
                point.offset = point.offset - length + newLength;
                return;
            }
            clip = location + length - point.offset;
            point.offset = location;
        };
        follow(start, startClip);
        follow(end, endClip);
        editedText = text;
    }

    // After it is linked.
    void hearInsertion(const Model& model, int child) {
        const int parent = model[static_cast<size_t>(child)].parent;
        const size_t index = indexIn(model, child);
        const int previous = index == 0 ? -2 : model[static_cast<size_t>(parent)].children[index - 1];
        const bool isTail = editedText == previous;
        if (isTail && start.node == previous && startClip > 0)
            setStart(model, {child, endClip});
        else if (start.node == parent && index < start.offset)
            ++start.offset;
        if (isTail && end.node == previous && endClip > 0)
            setEnd(model, {child, endClip});
        else if (end.node == parent && index < end.offset)
            ++end.offset;
        editedText = -1;
    }

    // Before it is unlinked.
    void hearRemoval(const Model& model, int child) {
        const int parent = model[static_cast<size_t>(child)].parent;
        const size_t index = indexIn(model, child);
        if (start.node == parent && index < start.offset)
            --start.offset;
        else if (isInside(model, start.node, child))
            setStart(model, {parent, index});
        if (end.node == parent && index < end.offset)
            --end.offset;
        else if (isInside(model, end.node, child))
            setEnd(model, {parent, index});
        editedText = -1;
    }
};

struct ModelWorld {
    Model nodes;
    std::vector<ModelRange> ranges;

    ModelNode& at(int node) { return nodes[static_cast<size_t>(node)]; }
    int make(bool isText, std::u16string text = {}) {
        nodes.push_back({isText, std::move(text), {}, -1});
        return static_cast<int>(nodes.size()) - 1;
    }
    void remove(int child) {
        for (auto& range : ranges) range.hearRemoval(nodes, child);
        auto& siblings = at(at(child).parent).children;
        siblings.erase(siblings.begin() + static_cast<long>(indexIn(nodes, child)));
        at(child).parent = -1;
    }
    // Ahead of the child `before`, or last for -1.
    void insert(int child, int parent, int before) {
        if (at(child).parent >= 0) remove(child);
        auto& siblings = at(parent).children;
        siblings.insert(before < 0 ? siblings.end() : std::find(siblings.begin(), siblings.end(), before), child);
        at(child).parent = parent;
        for (auto& range : ranges) range.hearInsertion(nodes, child);
    }
    void edit(int text, size_t location, size_t length, const std::u16string& string) {
        at(text).text.replace(location, length, string);
        for (auto& range : ranges) range.hearTextEdit(text, location, length, string.size());
    }
    int following(int child) {
        const auto& siblings = at(at(child).parent).children;
        const size_t index = indexIn(nodes, child);
        return index + 1 < siblings.size() ? siblings[index + 1] : -1;
    }
    size_t length(int node) { return at(node).isText ? at(node).text.size() : at(node).children.size(); }
    std::vector<ModelPoint> points() {
        std::vector<ModelPoint> points;
        for (int node = 0; node < static_cast<int>(nodes.size()); ++node)
            for (size_t offset = 0; offset <= length(node); ++offset) points.push_back({node, offset});
        return points;
    }
};

// ---- The same world in the library

struct World {
    Ref<WQXMLDocument> document = WQXMLDocument::newDocument();
    WQXMLNode::Sequence nodes;  // by the model's numbers
    std::vector<Ref<WQXMLRange>> ranges;

    const Ref<WQXMLNode>& at(int node) const { return nodes[static_cast<size_t>(node)]; }
    Ref<WQXMLText> text(int node) const { return wq::cast<WQXMLText>(at(node)); }
    Ref<WQXMLNode> atOrNull(int node) const { return node < 0 ? nullptr : at(node); }

    explicit World(const ModelWorld& model) {
        for (const ModelNode& node : model.nodes) {
            if (node.isText)
                nodes.push_back(document->createTextNode(node.text));
            else
                nodes.push_back(document->createElement(u"e"));
            if (node.parent >= 0)
                at(node.parent)->appendChild(nodes.back());
            else
                document->appendChild(nodes.back());
        }
        for (const ModelRange& range : model.ranges)
            ranges.push_back(WQXMLRange::newWithStartContainer_startOffset_endContainer_endOffset(
                at(range.start.node), range.start.offset, at(range.end.node), range.end.offset));
    }
};

// ---- All small trees

const std::u16string texts[] = {u"", u"a", u"ab"};

// Nodes in document order, each the child of one on the path to the last, so that every ordered tree
// comes up once. Texts are leaves.
void forEachTree(size_t nodes, ModelWorld& tree, const std::function<void(ModelWorld&)>& visit) {
    if (tree.nodes.size() == nodes) return visit(tree);
    for (int parent = static_cast<int>(tree.nodes.size()) - 1; parent >= 0; parent = tree.at(parent).parent) {
        if (tree.at(parent).isText) continue;
        for (int kind = -1; kind < 3; ++kind) {
            ModelWorld larger = tree;
            const int node = kind < 0 ? larger.make(false) : larger.make(true, texts[kind]);
            larger.at(node).parent = parent;
            larger.at(parent).children.push_back(node);
            forEachTree(nodes, larger, visit);
        }
    }
}

void putEveryRange(ModelWorld& tree) {
    const auto points = tree.points();
    for (const ModelPoint& start : points)
        for (const ModelPoint& end : points)
            if (placeOf(tree.nodes, start) <= placeOf(tree.nodes, end)) tree.ranges.push_back({start, end});
}

// ---- All single edits: each is made twice, on the model and on the library

using Edit = std::function<void(ModelWorld&, World&)>;
using EditsOf = std::vector<Edit> (*)(ModelWorld&);

struct Place {
    int parent, before;
};

std::vector<Place> placesIn(ModelWorld& tree) {
    std::vector<Place> places;
    for (int node = 0; node < static_cast<int>(tree.nodes.size()); ++node) {
        if (tree.at(node).isText) continue;
        for (int child : tree.at(node).children) places.push_back({node, child});
        places.push_back({node, -1});
    }
    return places;
}

std::vector<Edit> insertions(ModelWorld& tree) {
    std::vector<Edit> edits;
    for (const Place& place : placesIn(tree))
        for (bool isText : {false, true})
            edits.push_back([=](ModelWorld& model, World& world) {
                model.insert(model.make(isText, isText ? u"n" : u""), place.parent, place.before);
                world.nodes.push_back(isText ? Ref<WQXMLNode>(world.document->createTextNode(u"n")) : world.document->createElement(u"n"));
                world.at(place.parent)->insertChild_before(world.nodes.back(), world.atOrNull(place.before));
            });
    return edits;
}

std::vector<Edit> removals(ModelWorld& tree) {
    std::vector<Edit> edits;
    for (int node = 1; node < static_cast<int>(tree.nodes.size()); ++node)
        edits.push_back([=](ModelWorld& model, World& world) {
            model.remove(node);
            world.at(node)->parentNode()->removeChild(world.at(node));
        });
    return edits;
}

std::vector<Edit> moves(ModelWorld& tree) {
    std::vector<Edit> edits;
    for (int node = 1; node < static_cast<int>(tree.nodes.size()); ++node)
        for (const Place& place : placesIn(tree)) {
            if (isInside(tree.nodes, place.parent, node) || place.before == node) continue;
            edits.push_back([=](ModelWorld& model, World& world) {
                model.insert(node, place.parent, place.before);
                world.at(place.parent)->insertChild_before(world.at(node), world.atOrNull(place.before));
            });
        }
    return edits;
}

std::vector<Edit> replacements(ModelWorld& tree) {
    std::vector<Edit> edits;
    for (int node = 1; node < static_cast<int>(tree.nodes.size()); ++node) {
        if (!tree.at(node).isText) continue;
        for (size_t location = 0; location <= tree.length(node); ++location)
            for (size_t length = 0; length <= tree.length(node) - location; ++length)
                for (const std::u16string& string : texts)
                    edits.push_back([=](ModelWorld& model, World& world) {
                        model.edit(node, location, length, string);
                        world.text(node)->replaceCharactersInRange_withString({location, length}, string);
                    });
    }
    return edits;
}

std::vector<Edit> textSplits(ModelWorld& tree) {
    std::vector<Edit> edits;
    for (int node = 1; node < static_cast<int>(tree.nodes.size()); ++node)
        for (size_t index = 0; tree.at(node).isText && index <= tree.length(node); ++index)
            edits.push_back([=](ModelWorld& model, World& world) {
                const int tail = model.make(true, model.at(node).text.substr(index));
                model.edit(node, index, model.length(node) - index, u"");
                model.insert(tail, model.at(node).parent, model.following(node));
                world.nodes.push_back(world.at(node)->splitAtIndex(index));
            });
    return edits;
}

void moveChildren(ModelWorld& model, std::vector<int> children, int into) {
    for (int child : children) model.insert(child, into, -1);
}

std::vector<Edit> elementSplits(ModelWorld& tree) {
    std::vector<Edit> edits;
    for (int node = 1; node < static_cast<int>(tree.nodes.size()); ++node)
        for (size_t index = 0; !tree.at(node).isText && index <= tree.length(node); ++index)
            edits.push_back([=](ModelWorld& model, World& world) {
                const int behind = model.make(false);
                model.insert(behind, model.at(node).parent, model.following(node));
                const auto& children = model.at(node).children;
                moveChildren(model, {children.begin() + static_cast<long>(index), children.end()}, behind);
                world.nodes.push_back(world.at(node)->splitAtIndex(index));
            });
    return edits;
}

std::vector<Edit> merges(ModelWorld& tree) {
    std::vector<Edit> edits;
    for (int node = 0; node < static_cast<int>(tree.nodes.size()); ++node)
        for (int other = 1; other < static_cast<int>(tree.nodes.size()); ++other) {
            if (tree.at(node).isText || tree.at(other).isText || isInside(tree.nodes, node, other)) continue;
            edits.push_back([=](ModelWorld& model, World& world) {
                moveChildren(model, model.at(other).children, node);
                model.remove(other);
                world.at(node)->mergeWithNode(world.at(other));
            });
        }
    return edits;
}

// ---- The comparison

std::string printed(const ModelWorld& model, int node = 0) {
    const ModelNode& shown = model.nodes[static_cast<size_t>(node)];
    if (shown.isText) return '"' + wq::toUTF8(shown.text) + '"';
    std::string text = std::to_string(node) + '[';
    for (int child : shown.children) text += printed(model, child);
    return text + ']';
}

void expectSamePoint(const World& world, const ModelPoint& expected, const Ref<WQXMLNode>& container, uint64_t offset) {
    EXPECT_EQ(container, world.at(expected.node));
    EXPECT_EQ(offset, expected.offset);
}

size_t compareEveryEdit(const ModelWorld& tree, EditsOf editsOf) {
    ModelWorld start = tree;
    putEveryRange(start);
    const auto edits = editsOf(start);
    for (const Edit& edit : edits) {
        ModelWorld model = start;
        World world(start);
        edit(model, world);
        for (size_t i = 0; i < model.ranges.size(); ++i) {
            expectSamePoint(world, model.ranges[i].start, world.ranges[i]->startContainer(), world.ranges[i]->startOffset());
            expectSamePoint(world, model.ranges[i].end, world.ranges[i]->endContainer(), world.ranges[i]->endOffset());
            if (!testing::Test::HasFailure()) continue;
            const auto& from = start.ranges[i];
            ADD_FAILURE() << "edit " << &edit - edits.data() << " of " << printed(tree) << ", range " << from.start.node << ","
                          << from.start.offset << " to " << from.end.node << "," << from.end.offset << ", now " << printed(model);
            return 0;
        }
    }
    return edits.size();
}

size_t largestTree() {
    const char* nodes = std::getenv("WQ_TREE_NODES");
    return nodes ? std::strtoul(nodes, nullptr, 10) : 5;
}

struct Kind {
    const char* name;
    EditsOf edits;
};
void PrintTo(const Kind& kind, std::ostream* out) { *out << kind.name; }

// The trees are dealt out to as many tests, which run side by side.
constexpr size_t kParts = 4;

class RangeSmallWorldPropertyTest : public testing::TestWithParam<std::tuple<Kind, size_t>> {};

TEST_P(RangeSmallWorldPropertyTest, EveryRangeFollowsEveryEditOfEveryTree) {
    const auto& [kind, part] = GetParam();
    size_t trees = 0, edits = 0;
    for (size_t nodes = 1; nodes <= largestTree(); ++nodes) {
        ModelWorld root;
        root.make(false);
        forEachTree(nodes, root, [&, wanted = part, editsOf = kind.edits](ModelWorld& tree) {
            if (trees++ % kParts == wanted && !HasFailure()) edits += compareEveryEdit(tree, editsOf);
        });
    }
    EXPECT_GT(edits, 200u);
}

INSTANTIATE_TEST_SUITE_P(
    Edits,
    RangeSmallWorldPropertyTest,
    testing::Combine(
        testing::Values(
            Kind{"Insertions", insertions},
            Kind{"Removals", removals},
            Kind{"Moves", moves},
            Kind{"Replacements", replacements},
            Kind{"TextSplits", textSplits},
            Kind{"ElementSplits", elementSplits},
            Kind{"Merges", merges}),
        testing::Range<size_t>(0, kParts)),
    [](const auto& of) { return std::get<0>(of.param).name + std::to_string(std::get<1>(of.param)); });

// ---- The model itself

TEST(RangeModelTest, CountsTheTreesThatItSays) {
    std::vector<size_t> numbers;
    for (size_t nodes = 1; nodes <= 4; ++nodes) {
        ModelWorld root;
        root.make(false);
        numbers.push_back(0);
        forEachTree(nodes, root, [&](ModelWorld&) { ++numbers.back(); });
    }
    EXPECT_THAT(numbers, testing::ElementsAre(1, 4, 20, 116));
}

TEST(RangeModelTest, MirrorsAPointInTheTailOfASplit) {
    ModelWorld tree;
    tree.make(false);
    tree.at(tree.make(true, u"abcdef")).parent = 0;
    tree.at(0).children = {1};
    tree.ranges = {{{1, 3}, {1, 5}}};
    const auto edits = textSplits(tree);
    World world(tree);
    edits[2](tree, world);
    EXPECT_EQ(tree.ranges[0].start, (ModelPoint{2, 1}));
    EXPECT_EQ(tree.ranges[0].end, (ModelPoint{2, 1}));
}

}  // namespace
