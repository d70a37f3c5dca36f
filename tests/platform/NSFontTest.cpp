#include "platform/NSFont.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <iostream>

#include "platform/NSFontManager.h"

TEST(NSFont, TheUsersFontIsThatOfTheConfiguration) {
    const auto font = NSFont::userFontOfSize(10.5);
    EXPECT_EQ(font->familyName(), u"TeX Gyre Pagella");
    EXPECT_EQ(font->pointSize(), 10.5);
    EXPECT_EQ(font->fontDescriptor()->symbolicTraits(), 0u);
}

TEST(NSFont, KnowsTheFileOfItsFace) {
    const auto font = NSFont::userFontOfSize(12);
    EXPECT_TRUE(wq::toUTF8(font->path()).ends_with("/texgyrepagella-regular.otf")) << wq::toUTF8(font->path());
    EXPECT_EQ(wq::toUTF8(font->path()).front(), '/');
    EXPECT_EQ(font->faceIndex(), 0);
}

TEST(NSFont, ASizeNotAboveZeroIsReadAsTwelve) {
    for (const double size : {0.0, -0.0, -1.0, std::nan("")}) EXPECT_EQ(NSFont::userFontOfSize(size)->pointSize(), 12.0) << size;
    EXPECT_EQ(NSFont::userFontOfSize(0.25)->pointSize(), 0.25);
}

TEST(NSFont, ItsDescriptorTellsFamilyAndSize) {
    const auto descriptor = NSFont::userFontOfSize(9)->fontDescriptor();
    EXPECT_EQ(descriptor->familyName(), u"TeX Gyre Pagella");
    EXPECT_EQ(descriptor->pointSize(), 9.0);
}

TEST(NSFont, ItsDescriptorOutlivesIt) {
    Ref<NSFontDescriptor> descriptor;
    {
        const auto font = NSFont::userFontOfSize(9);
        descriptor = font->fontDescriptor();
        EXPECT_EQ(font->fontDescriptor(), descriptor);
    }
    EXPECT_EQ(descriptor->pointSize(), 9.0);
}

TEST(NSFont, IsDescribedByFamilySizeAndTraits) {
    const auto described = [](unsigned long traits, double size) {
        return NSFontManager::sharedFontManager()->fontWithFamily_traits_weight_size(u"TeX Gyre Termes", traits, 5, size)->description();
    };
    EXPECT_EQ(described(0, 10.5), u"TeX Gyre Termes 10.5");
    EXPECT_EQ(described(NSItalicFontMask, 12), u"TeX Gyre Termes 12 italic");
    EXPECT_EQ(described(NSBoldFontMask, 12), u"TeX Gyre Termes 12 bold");
    EXPECT_EQ(described(NSItalicFontMask | NSBoldFontMask, 12), u"TeX Gyre Termes 12 bold italic");
}

TEST(NSFontDeathTest, WithoutAnyFontTheUsersIsSans) {
    const auto described = [] {
        setenv("FONTCONFIG_FILE", WQ_SOURCE_FOLDER "/tests/fonts/none.conf", 1);
        const auto font = NSFont::userFontOfSize(11);
        std::cerr << '[' << wq::toUTF8(font->description()) << (font->path() ? " in a file]" : "]");
        std::exit(0);
    };
    EXPECT_EXIT(described(), testing::ExitedWithCode(0), "\\[Sans 11\\]");
}

TEST(NSFont, NullAnswersNothing) {
    const Ref<NSFont> null;
    EXPECT_EQ(null->familyName(), nullptr);
    EXPECT_EQ(null->pointSize(), 0.0);
    EXPECT_EQ(null->fontDescriptor(), nullptr);
    EXPECT_EQ(null->fontDescriptor()->symbolicTraits(), 0u);
    EXPECT_EQ(null->fontDescriptor()->familyName(), nullptr);
    EXPECT_EQ(null->fontDescriptor()->pointSize(), 0.0);
    EXPECT_EQ(null->path(), nullptr);
    EXPECT_EQ(null->faceIndex(), 0);
    EXPECT_EQ(null->description(), nullptr);
}

TEST(NSFont, EqualsOneOfTheSameFaceAndSize) {
    const auto font = [](const NSString& family, unsigned long traits, double size) {
        return NSFontManager::sharedFontManager()->fontWithFamily_traits_weight_size(family, traits, 5, size);
    };
    const auto one = font(u"TeX Gyre Pagella", 0, 12);
    EXPECT_TRUE(one->isEqual(font(u"TeX Gyre Pagella", 0, 12)));
    EXPECT_TRUE(one->isEqual(NSFont::userFontOfSize(12)));
    EXPECT_FALSE(one->isEqual(font(u"TeX Gyre Pagella", 0, 12.5)));
    EXPECT_FALSE(one->isEqual(font(u"TeX Gyre Pagella", NSItalicFontMask, 12)));
    EXPECT_FALSE(one->isEqual(font(u"TeX Gyre Termes", 0, 12)));
    EXPECT_FALSE(one->isEqual(one->fontDescriptor()));
    EXPECT_FALSE(one->isEqual(nullptr));
    EXPECT_FALSE(Ref<NSFont>()->isEqual(nullptr));
    EXPECT_FALSE(Ref<NSFont>()->isEqual(one));
}
