#include "common/core/css/RuleIndex.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <libxml/HTMLparser.h>
#include <libxml/parser.h>

#include <memory>
#include <string>
#include <vector>

#include "common/core/css/Parser.h"

using CSS::RuleIndex;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// The index of the rules of a sheet, and elements to ask it for.
class Indexed {
public:
    explicit Indexed(const std::string& text) : sheet(CSS::Parser().Parse(text)) {
        for (const auto& rule : sheet->styleRules) index.add(*rule.Get());
    }
    std::vector<uint32_t> forElement(const std::string& xml) {
        document.reset(xmlReadMemory(xml.data(), static_cast<int>(xml.size()), nullptr, nullptr, 0));
        return index.candidatesFor(xmlDocGetRootElement(document.get()));
    }
    RuleIndex index;

private:
    const SharedPtr<CSS::Stylesheet> sheet;
    std::unique_ptr<xmlDoc, void (*)(xmlDoc*)> document{nullptr, xmlFreeDoc};
};

TEST(RuleIndexTest, FindsRulesByTheNameOfTheirRightmostPart) {
    Indexed indexed("p {} a {} q p {} p a {} p > p {}");
    EXPECT_THAT(indexed.forElement("<p/>"), ElementsAre(0, 2, 4));
    EXPECT_THAT(indexed.forElement("<a/>"), ElementsAre(1, 3));
    EXPECT_THAT(indexed.forElement("<b/>"), IsEmpty());
}

TEST(RuleIndexTest, FindsRulesByTheClassThatIsTheirFirstCondition) {
    Indexed indexed(".k {} p.k {} .m {} p.m.k {} p[x].k {}");
    EXPECT_THAT(indexed.forElement("<p class='k'/>"), ElementsAre(0, 1, 4));
    EXPECT_THAT(indexed.forElement("<p class='m'/>"), ElementsAre(2, 3, 4));
    EXPECT_THAT(indexed.forElement("<a class=' m\tk '/>"), ElementsAre(0, 1, 2, 3));
    EXPECT_THAT(indexed.forElement("<p/>"), ElementsAre(4));
}

TEST(RuleIndexTest, WhatNamesNeitherIsFoundForEveryElement) {
    Indexed indexed("* {} p {} [x=y] {} :first {}");
    EXPECT_THAT(indexed.forElement("<a/>"), ElementsAre(0, 2, 3));
    EXPECT_THAT(indexed.forElement("<p/>"), ElementsAre(0, 1, 2, 3));
}

TEST(RuleIndexTest, ARuleWithSeveralSelectorsIsFoundByEachAndOnce) {
    Indexed indexed("p, .k, a {} p, p {}");
    EXPECT_THAT(indexed.forElement("<p class='k k'/>"), ElementsAre(0, 1));
    EXPECT_THAT(indexed.forElement("<a/>"), ElementsAre(0));
    EXPECT_THAT(indexed.forElement("<b class='k'/>"), ElementsAre(0));
}

TEST(RuleIndexTest, TheOrderIsThatOfTheRules) {
    Indexed indexed(".k {} p {} * {} .m {} p {} .k {}");
    EXPECT_THAT(indexed.forElement("<p class='m k'/>"), ElementsAre(0, 1, 2, 3, 4, 5));
}

TEST(RuleIndexTest, NamesAreFoundWhateverTheirCase) {
    Indexed indexed("P {} p {}");
    EXPECT_THAT(indexed.forElement("<P/>"), ElementsAre(0, 1));  // which of them match is for the selectors to say
}

// By which the index goes. A bracket is not a letter, and has a lower case all the same.
TEST(RuleIndexTest, CaseInHTMLIsThatOfLatinLettersAndABracket) {
    for (int byte = 1; byte < 256; ++byte)
        for (int other = 1; other < 256; ++other) {
            const xmlChar one[] = {static_cast<xmlChar>(byte), 0}, two[] = {static_cast<xmlChar>(other), 0};
            const auto lower = [](int letter) { return letter >= 'A' && letter <= '[' ? letter + 32 : letter; };
            ASSERT_EQ(xmlStrcasecmp(one, two) == 0, lower(byte) == lower(other)) << byte << " " << other;
        }
}

TEST(RuleIndexTest, TextsHaveTheNameTextAndNoClass) {
    Indexed indexed("text {} .k {} p {}");
    xmlNode* text = xmlNewText(BAD_CAST "x");
    EXPECT_THAT(indexed.index.candidatesFor(text), ElementsAre(0));
    xmlFreeNode(text);
}

TEST(RuleIndexTest, ANodeWithoutANameIsGivenWhatEveryOneIs) {
    Indexed indexed("* {} p {}");
    const xmlNode nameless{};
    EXPECT_THAT(indexed.index.candidatesFor(&nameless), ElementsAre(0));
}

TEST(RuleIndexTest, CountsAndForgets) {
    Indexed indexed("p {} a {}");
    EXPECT_EQ(indexed.index.size(), 2u);
    indexed.index.clear();
    EXPECT_EQ(indexed.index.size(), 0u);
    EXPECT_THAT(indexed.forElement("<p/>"), IsEmpty());
}

}  // namespace
