// Faults that were found by reading, each held in place.
#include "dom/WQXMLAttr.h"
#include "tests/dom/Support.h"

namespace {

using namespace test;

TEST(RegressionTest, AWrapperInADroppedSubtreeMayHoldTheLastReferenceToItsDocument) {
    struct Owner : WQXMLElement {
        Ref<WQXMLDocument> document;
    };
    auto document = parse("<a/>");
    auto top = document->createElement(u"top");
    auto owner = WQXMLElement::newWithName<Owner>(u"owner");
    owner->document = document;
    top->appendChild(document->createElement(u"before"));
    top->appendChild(owner);
    top->appendChild(document->createElement(u"behind"));
    owner = nullptr;
    document = nullptr;
    EXPECT_TRUE(top->ownerDocument());
    top = nullptr;
}

TEST(RegressionTest, WhatAnInitialiserAddsToACopyNamesItsDocument) {
    struct Furnished : WQXMLElement {
        bool initWithXMLNode(_xmlNode* node) override {
            if (!WQXMLElement::initWithXMLNode(node)) return false;
            setAttribute_value(u"k", u"v");
            return true;
        }
    };
    const auto document = parse("<a/>");
    const auto original = WQXMLElement::newWithName<Furnished>(u"p");
    document->documentElement()->appendChild(original);
    const auto copy = wq::cast<WQXMLElement>(original->copy());
    EXPECT_EQ(copy->ownerDocument(), document);
    EXPECT_EQ(copy->firstAttribute()->ownerDocument(), document);
    EXPECT_EQ(copy->firstAttribute()->firstChild()->ownerDocument(), document);
}

TEST(RegressionTest, AnIdentifierThatWasEmptyForAWhileIsFoundAgain) {
    const auto document = parse("<!DOCTYPE a [<!ATTLIST a i ID #IMPLIED>]><a i='k'/>");
    const auto text = wq::cast<WQXMLText>(document->documentElement()->firstAttribute()->firstChild());
    text->setString(u"");
    EXPECT_EQ(xmlGetID(document->xmlDoc(), BAD_CAST "k"), nullptr);
    text->setString(u"m");
    EXPECT_NE(xmlGetID(document->xmlDoc(), BAD_CAST "m"), nullptr);
}

TEST(RegressionTest, AnObjectThatNoClassMadeIsCopiedAsAnElement) {
    struct Plain : WQXMLElement {};
    const auto element = Ref<WQXMLElement>(new Plain);
    ASSERT_TRUE(element->initWithName(u"p"));
    EXPECT_EQ(element->copy()->nodeName(), u"p");
}

TEST(RegressionTest, ADocumentOfTheApplicationKeepsItsOwnPrivateField) {
    const auto ours = parse("<a/>");
    int own = 0;
    xmlDocPtr document = xmlNewDoc(BAD_CAST "1.0");
    document->_private = &own;
    xmlNodePtr first = xmlNewDocNode(document, nullptr, BAD_CAST "e", nullptr);
    xmlNodePtr second = xmlNewDocNode(document, nullptr, BAD_CAST "f", nullptr);
    EXPECT_FALSE(static_cast<WQXMLNode*>(first->_private)->ownerDocument());
    xmlFreeNode(first);
    xmlFreeNode(second);
    EXPECT_EQ(document->_private, &own);
    xmlFreeDoc(document);
}

TEST(RegressionTest, TheOwnerOfAnAttributeIsItsElementAndItIsSpecified) {
    const auto document = parse("<a k='v'/>");
    const auto attribute = wq::cast<WQXMLAttr>(document->documentElement()->firstAttribute());
    EXPECT_EQ(attribute->ownerElement(), document->documentElement());
    EXPECT_TRUE(attribute->specified());
}

TEST(RegressionTest, SettingAnotherAttributeLeavesAnIdentifierKnownAsItWas) {
    const auto document = parse("<!DOCTYPE a [<!ATTLIST b id ID #IMPLIED>]><a><b id='k&amp;m'/></a>");
    const auto b = wq::cast<WQXMLElement>(find(document, u"b"));
    const auto before = document->getElementById(u"k&#38;m");
    EXPECT_EQ(before, b);
    b->setAttribute_value(u"other", u"1");
    b->setAttribute_namespaceURI_value(u"n:more", u"u:1", u"2");
    EXPECT_EQ(document->getElementById(u"k&#38;m"), b);
    b->setAttribute_value(u"id", u"new");
    EXPECT_FALSE(document->getElementById(u"k&#38;m"));
    EXPECT_EQ(document->getElementById(u"new"), b);
}

}  // namespace
