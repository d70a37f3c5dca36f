#include "platform/NSError.h"

#include <gtest/gtest.h>

#include <cerrno>

TEST(NSError, AnswersWhatItWasMadeWith) {
    const auto error = NSError::errorWithDomain_code_description(NSPOSIXErrorDomain, ENOENT, u"No such file");
    EXPECT_EQ(error->domain(), u"NSPOSIXErrorDomain");
    EXPECT_EQ(error->code(), 2);
    EXPECT_EQ(error->localizedDescription(), u"No such file");
}

TEST(NSError, IsDescribedByItsText) {
    EXPECT_EQ(NSError::errorWithDomain_code_description(u"libcurl", 6, u"No host")->description(), u"No host");
}

TEST(NSError, KeepsNegativeAndLargeCodes) {
    EXPECT_EQ(NSError::errorWithDomain_code_description(u"d", -5000000000, u"")->code(), -5000000000);
}

TEST(NSError, NullAnswersNothing) {
    const Ref<NSError> null;
    EXPECT_EQ(null->domain(), nullptr);
    EXPECT_EQ(null->code(), 0);
    EXPECT_EQ(null->localizedDescription(), nullptr);
    EXPECT_EQ(null->description(), nullptr);
}
