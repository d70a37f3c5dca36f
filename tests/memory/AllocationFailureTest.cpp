// Every piece of a session, with each of its requests for memory refused in turn.
#include <gtest/gtest.h>

#include <new>
#include <optional>
#include <ostream>

#include "common/core/css/Scanner.h"
#include "dom/WQXMLDocument.h"
#include "platform/WQXMLException.h"
#include "tests/dom/Support.h"
#include "tests/memory/FailingMemory.h"
#include "tests/memory/Works.h"

namespace wq {
int64_t numberOfLivingNodes() noexcept;
}

namespace {

using namespace test;

struct Living {
    int64_t objects = wq::Object::numberOfLivingObjects(), nodes = wq::numberOfLivingNodes();
    bool operator==(const Living&) const = default;
    friend std::ostream& operator<<(std::ostream& out, const Living& living) {
        return out << living.objects << " objects, " << living.nodes << " nodes";
    }
};

class WorkTest : public testing::TestWithParam<Work> {};

std::string run(const Work& work) { return work.run(); }

TEST_P(WorkTest, HasItsResult) { EXPECT_EQ(run(GetParam()), GetParam().result); }

// The result, or that memory is short. Whichever it is, nothing is left behind, and the same work can be done again.
void refuseEachInTurn(const Work& work, Refusal refusal) {
    run(work);  // what is made once is there
    const Living before;
    uint64_t told = 0, refused = 0;
    for (bool isRefused = true; isRefused;) {
        std::string result = work.result;
        const uint64_t nth = refused + 1;
        {
            const FailingMemory memory(Memory::kLibrary, nth, refusal);
            try {
                result = run(work);
            } catch (const std::bad_alloc&) {
                ++told;
            } catch (const NothingThere&) {
                ++told;
            } catch (const WQXMLException& exception) {
                EXPECT_EQ(exception.name(), NSInternalInconsistencyException) << exception.what();  // asserts for a writer's -1
                ++told;
            }
            isRefused = memory.hasRefused();
        }
        if (isRefused) ++refused;
        if (work.refusal && result == work.refusal) result = work.result;
        EXPECT_EQ(result, work.result) << "request " << nth;
        ASSERT_EQ(Living(), before) << "request " << nth;
    }
    EXPECT_EQ(run(work), work.result);
    EXPECT_GT(refused, 0);
    testing::Test::RecordProperty("refused", std::to_string(refused));
    testing::Test::RecordProperty("told", std::to_string(told));
}

TEST_P(WorkTest, TellsOfWantOfOnePieceOfMemory) { refuseEachInTurn(GetParam(), Refusal::kOnce); }
TEST_P(WorkTest, TellsOfWantOfAllFurtherMemory) { refuseEachInTurn(GetParam(), Refusal::kForGood); }

// What a detached node needs when its document goes is copied, if it can be.
struct DetachedNodeTest : testing::Test {
    Ref<WQXMLDocument> document = WQXMLDocument::newDocument();
    Ref<WQXMLElement> element = document->createElement_namespaceURI(u"p:e", u"u:p");
};

TEST_F(DetachedNodeTest, KeepsItsOwnNamespaceWithoutMemory) {
    {
        const FailingMemory memory(Memory::kLibrary, 1, Refusal::kForGood);
        document.reset();
    }
    EXPECT_EQ(element->nodeName(), u"p:e");
    EXPECT_EQ(element->namespaceURI(), u"u:p");
}

TEST_F(DetachedNodeTest, LosesThatOfItsDocumentWithoutMemoryWhichIsRaised) {
    element->setAttribute_namespaceURI_value(u"xml:lang", u"http://www.w3.org/XML/1998/namespace", u"fr");
    {
        const FailingMemory memory(Memory::kLibrary, 1, Refusal::kForGood);
        EXPECT_THROW(document.reset(), std::bad_alloc);
    }
    EXPECT_EQ(element->nodeName(), u"p:e");
    EXPECT_EQ(element->namespaceURI(), u"u:p");
    EXPECT_EQ(element->firstAttribute()->nodeName(), u"lang");
    EXPECT_EQ(element->getAttribute(u"lang"), u"fr");
}

TEST_F(DetachedNodeTest, HasACopyOfThatOfItsDocument) {
    element->setAttribute_namespaceURI_value(u"xml:lang", u"http://www.w3.org/XML/1998/namespace", u"fr");
    document.reset();
    EXPECT_EQ(element->firstAttribute()->nodeName(), u"xml:lang");
}

TEST_F(DetachedNodeTest, AnAttributeKeepsItsOwnNamespaceWithoutMemory) {
    element->setAttribute_namespaceURI_value(u"xml:lang", u"http://www.w3.org/XML/1998/namespace", u"fr");
    const auto attribute = element->removeChild(element->firstAttribute());
    {
        const FailingMemory memory(Memory::kLibrary, 1, Refusal::kForGood);
        document.reset();
    }
    EXPECT_EQ(attribute->nodeName(), u"xml:lang");
}

// An element class that refuses its element when it has changed it, and memory is short from then on.
struct Refusing : WQXMLElement {
    bool initWithXMLNode(xmlNodePtr node) override {
        if (!WQXMLElement::initWithXMLNode(node)) return false;
        setAttribute_namespaceURI_value(u"z:a", u"u:z", u"1");
        memory.emplace(Memory::kLibrary, 1, Refusal::kOnce);
        return false;
    }
    static inline std::optional<FailingMemory> memory;
};

TEST(WantOfMemory, WhatARefusedWrapperLeavesIsTheElementsOwn) {
    const auto names = NSDictionary::dictionary({{u"e", &wq::Class::of<Refusing>()}});
    const auto classes = NSDictionary::dictionary({{DefaultNamespaceKey, names}});
    const auto document = parse("<r><e/></r>", NSDictionary::dictionary({{DefaultElementClassesKey, classes}}));
    const bool hasRefused = Refusing::memory->hasRefused();
    Refusing::memory.reset();
    EXPECT_TRUE(hasRefused);
    EXPECT_EQ(serialised(document->documentElement()), "<r><e xmlns:z=\"u:z\" z:a=\"1\"/></r>");
}

// It leaves the table before its text changes, and needs memory to come back.
TEST(WantOfMemory, AnIdentifierThatCannotBeEnteredIsFoundWithItsNextValue) {
    const auto document = parse("<!DOCTYPE r [<!ATTLIST r i ID #IMPLIED>]><r i='x'/>");
    const auto text = wq::cast<WQXMLText>(document->documentElement()->firstAttribute()->firstChild());
    for (uint64_t nth = 1; nth <= 8; ++nth) {
        {
            const FailingMemory memory(Memory::kLibxml2, nth, Refusal::kOnce);
            try {
                text->setString(u"y");
            } catch (const WQXMLException&) {
            } catch (const std::bad_alloc&) {}
        }
        text->setString(u"z");
        EXPECT_TRUE(document->getElementById(u"z")) << nth;
        EXPECT_FALSE(document->getElementById(u"y")) << nth;
    }
}

// Its list of buffers, the record of one, and the buffer.
TEST(ScannerWithoutMemory, IsSetUpByTheFirstTextForWhichThereIsSome) {
    CSS::Scanner scanner;
    for (uint64_t nth = 3; nth >= 1; --nth) {
        const FailingMemory memory(Memory::kLibrary, nth, Refusal::kOnce);
        EXPECT_THROW(scanner.SetString("a"), std::bad_alloc);
    }
    scanner.SetString("a");
    EXPECT_EQ(scanner.yylex(), CSS::IDENT);
    EXPECT_EQ(scanner.yylex(), 0);
}

// A scanner whose buffer could not grow reads the next text from the start.
TEST(ScannerWithoutMemory, RaisesUntilItHasANewText) {
    CSS::Scanner scanner;
    scanner.SetString("first \"" + std::string(100'000, 'x') + "\" last");
    EXPECT_EQ(scanner.yylex(), CSS::IDENT);
    EXPECT_EQ(scanner.yylex(), CSS::S);
    {
        const FailingMemory memory(Memory::kLibrary, 1, Refusal::kOnce);
        EXPECT_THROW(scanner.yylex(), std::bad_alloc);
    }
    EXPECT_THROW(scanner.yylex(), std::bad_alloc);
    scanner.SetString("second");
    EXPECT_EQ(scanner.yylex(), CSS::IDENT);
    EXPECT_STREQ(scanner.YYText(), "second");
    EXPECT_EQ(scanner.yylex(), 0);
}

INSTANTIATE_TEST_SUITE_P(Each, WorkTest, testing::ValuesIn(kWorks), [](const auto& work) { return work.param.name; });

}  // namespace
