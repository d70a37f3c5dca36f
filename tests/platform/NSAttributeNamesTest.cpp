#include "platform/NSAttributeNames.h"

#include <gtest/gtest.h>

#include "platform/NSDictionary.h"

TEST(NSAttributeNames, AreThoseOfThePlatform) {
    EXPECT_EQ(NSString(NSFontAttributeName), u"NSFont");
    EXPECT_EQ(NSString(NSForegroundColorAttributeName), u"NSColor");
    EXPECT_EQ(NSString(NSParagraphStyleAttributeName), u"NSParagraphStyle");
    EXPECT_EQ(NSString(NSUnderlineStyleAttributeName), u"NSUnderline");
    EXPECT_EQ(NSString(NSLinkAttributeName), u"NSLink");
}

TEST(NSAttributeNames, AreKeysOfADictionary) {
    const auto attributes = NSDictionary::dictionary({{NSUnderlineStyleAttributeName, 1.0}, {NSLinkAttributeName, u"a.html"}});
    EXPECT_TRUE(attributes->containsKey(NSUnderlineStyleAttributeName));
    EXPECT_EQ(attributes->objectForKey(NSLinkAttributeName).string(), u"a.html");
    EXPECT_FALSE(attributes->containsKey(NSFontAttributeName));
}
