#include "platform/WQXMLException.h"

#include <gtest/gtest.h>

#include <type_traits>

TEST(WQXMLException, AnswersNameAndReason) {
    const WQXMLException exception(u"NameException", u"Gr\u00FC\u00DFe");
    EXPECT_EQ(exception.name(), u"NameException");
    EXPECT_EQ(exception.reason(), u"Gr\u00FC\u00DFe");
}

TEST(WQXMLException, IsCaughtAndPrintedAsAnyOther) {
    try {
        throw WQXMLException(u"NameException", u"Gr\u00FC\u00DFe");
    } catch (const std::exception& exception) {
        EXPECT_STREQ(
            exception.what(),
            "NameException: Gr\xC3\xBC\xC3\x9F"
            "e");
    }
}

TEST(WQXMLException, KeepsItsTextsWhenCopied) {
    WQXMLException copy(u"", u"");
    {
        const WQXMLException original(u"NameException", u"reason");
        copy = original;
    }
    EXPECT_EQ(copy.name(), u"NameException");
    EXPECT_STREQ(copy.what(), "NameException: reason");
}

TEST(WQXMLException, TakesNull) {
    const WQXMLException exception(nullptr, nullptr);
    EXPECT_EQ(exception.name(), nullptr);
    EXPECT_EQ(exception.reason(), nullptr);
    EXPECT_STREQ(exception.what(), ": ");
}

TEST(WQXMLException, NamesTheAssertionsException) {
    EXPECT_EQ(NSString(NSInternalInconsistencyException), u"NSInternalInconsistencyException");
}
