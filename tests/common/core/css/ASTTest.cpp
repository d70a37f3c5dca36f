#include "common/core/css/AST.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <vector>

using CSS::AST;

namespace {

AST* add(AST& parent, int32_t type, const std::string& text = "") {
    AST* const node = parent.AddChild();
    node->type = type;
    node->text = text;
    return node;
}

std::vector<std::string> texts(const AST& parent) {
    std::vector<std::string> result;
    for (const AST* node = parent.child; node; node = node->next) result.push_back(node->text);
    return result;
}

}  // namespace

TEST(AST, ANewNodeIsEmpty) {
    const AST node;
    EXPECT_EQ(node.type, 0);
    EXPECT_EQ(node.text, "");
    EXPECT_EQ(node.child, nullptr);
    EXPECT_EQ(node.next, nullptr);
}

TEST(AST, HasNoBaseAndATypeOf32Bits) {
    static_assert(!std::is_polymorphic_v<AST>);
    static_assert(std::is_same_v<decltype(AST::type), int32_t>);
}

TEST(AST, AddChildMakesAnEmptyNode) {
    AST root;
    root.type = 7;
    root.text = "root";
    const AST* const node = root.AddChild();
    EXPECT_EQ(root.child, node);
    EXPECT_EQ(node->type, 0);
    EXPECT_EQ(node->text, "");
    EXPECT_EQ(node->child, nullptr);
    EXPECT_EQ(node->next, nullptr);
    EXPECT_EQ(root.type, 7);
    EXPECT_EQ(root.text, "root");
    EXPECT_EQ(root.next, nullptr);
}

TEST(AST, AddChildPutsANodeBehindTheOthers) {
    AST root;
    AST* const first = add(root, 267, "a");
    AST* const second = add(root, 32);
    AST* const third = add(root, 267, "b");
    EXPECT_EQ(root.child, first);
    EXPECT_EQ(first->next, second);
    EXPECT_EQ(second->next, third);
    EXPECT_EQ(third->next, nullptr);
}

TEST(AST, AddChildAddsToTheNodeThatIsAsked) {
    AST root;
    AST* const first = add(root, 284, "f");
    AST* const second = add(root, 284, "g");
    add(*first, 267, "a");
    add(*second, 267, "b");
    add(*first, 267, "c");
    EXPECT_EQ(texts(root), (std::vector<std::string>{"f", "g"}));
    EXPECT_EQ(texts(*first), (std::vector<std::string>{"a", "c"}));
    EXPECT_EQ(texts(*second), (std::vector<std::string>{"b"}));
}

TEST(AST, AddChildGoesBehindChildrenThatWerePutThereByHand) {
    AST root;
    root.child = new AST;
    root.child->text = "a";
    root.child->next = new AST;
    root.child->next->text = "b";
    add(root, 267, "c");
    EXPECT_EQ(texts(root), (std::vector<std::string>{"a", "b", "c"}));
}

TEST(AST, AddChildGoesBehindSiblingsThatWerePutThereByHand) {
    AST root;
    AST* const first = add(root, 267, "a");
    first->next = new AST;
    first->next->text = "b";
    add(root, 267, "c");
    EXPECT_EQ(texts(root), (std::vector<std::string>{"a", "b", "c"}));
}

TEST(AST, AddChildBeginsAnewWhereTheChildrenWereTakenAway) {
    AST root;
    add(root, 267, "a");
    add(root, 267, "b");
    delete root.child;
    root.child = nullptr;
    add(root, 267, "c");
    add(root, 267, "d");
    EXPECT_EQ(texts(root), (std::vector<std::string>{"c", "d"}));
}

TEST(AST, DestroyingARootDestroysAllBelowAndAllBehind) {  // what is left is a leak
    auto* const root = new AST;
    AST* const function = add(*root, 284, "f");
    add(*function, 267, "a long text that does not fit into the string itself");
    add(*root, 267, "b");
    root->next = new AST;
    add(*root->next, 267, "c");
    root->next->next = new AST;
    delete root;
}

TEST(AST, TheChildrenReadAsTermsSlashesAndBlanks) {
    AST root;
    add(root, 276, "12px");
    add(root, 47);
    add(root, 276, "14px");
    add(root, 32);
    add(root, 267, "serif");
    EXPECT_EQ(root.GetChildrenString(), "12px/14px serif");
}

TEST(AST, ACommaWritesNothing) {
    AST root;
    add(root, 267, "a");
    add(root, 265);
    add(root, 267, "b");
    EXPECT_EQ(root.GetChildrenString(), "ab");
}

TEST(AST, AFunctionWritesItsNameAndItsArgumentsWithoutParentheses) {
    AST root;
    AST* const counters = add(root, 284, "counters");
    add(*counters, 267, "page");
    add(*counters, 265);
    add(*counters, 266, "\".\"");
    AST* const inner = add(*counters, 284, "f");
    add(*inner, 282, "1");
    add(*inner, 47);
    add(*inner, 282, "-2");
    add(root, 32);
    add(root, 268, "#fff");
    EXPECT_EQ(root.GetChildrenString(), "counterspage\".\"f1/-2 #fff");
}

TEST(AST, EveryOtherTypeWritesItsTextAsItStands) {
    for (const int32_t type : {-1, 0, 44, 46, 48, 257, 265, 266, 267, 268, 274, 275, 276, 277, 278, 279, 281, 282, 283, 284, 1000}) {
        SCOPED_TRACE(type);
        AST root;
        add(root, type, std::string("'\"\\A\0 ", 7));
        EXPECT_EQ(root.GetChildrenString(), std::string("'\"\\A\0 ", 7));
    }
}

TEST(AST, AnOperatorWritesNeitherItsTextNorItsChildren) {
    AST root;
    add(*add(root, 47, "text"), 267, "child");
    add(*add(root, 32, "text"), 267, "child");
    EXPECT_EQ(root.GetChildrenString(), "/ ");
}

TEST(AST, ATermWritesWhatIsBelowItWhateverItsType) {
    AST root;
    add(*add(root, 267, "a"), 267, "b");
    add(*add(root, 265), 267, "c");
    EXPECT_EQ(root.GetChildrenString(), "abc");
}

TEST(AST, TheNodeItselfAndItsSiblingsAreNotPartOfItsChildrensText) {
    AST root;
    AST* const first = add(root, 284, "f");
    add(root, 267, "behind");
    EXPECT_EQ(first->GetChildrenString(), "");
    add(*first, 267, "a");
    EXPECT_EQ(first->GetChildrenString(), "a");
}

TEST(AST, WithoutChildrenTheTextIsEmpty) { EXPECT_EQ(AST().GetChildrenString(), ""); }

TEST(AST, AMillionSiblingsAreBuiltReadAndDestroyed) {
    AST root;
    for (int i = 0; i < 1'000'000; ++i) add(root, 267, "a");
    EXPECT_EQ(root.GetChildrenString(), std::string(1'000'000, 'a'));
}

TEST(AST, AHundredThousandLevelsAreBuiltReadAndDestroyed) {
    AST root;
    AST* deepest = &root;
    for (int i = 0; i < 100'000; ++i) deepest = add(*deepest, 284, "f");
    EXPECT_EQ(root.GetChildrenString(), std::string(100'000, 'f'));
}

TEST(AST, LevelsWithSiblingsOnBothSidesAreReadInOrderAndDestroyed) {
    AST root;
    AST* deepest = &root;
    for (int i = 0; i < 100'000; ++i) {
        AST* const parent = deepest;
        add(*parent, 267, "a");
        deepest = add(*parent, 284, "f");
        add(*parent, 47);
    }
    std::string expected;
    for (int i = 0; i < 100'000; ++i) expected += "af";
    EXPECT_EQ(root.GetChildrenString(), expected + std::string(100'000, '/'));
}
