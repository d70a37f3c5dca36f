#include "platform/NSFontManager.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>

using namespace wq::literals;

namespace {

constexpr unsigned long kItalic = NSItalicFontMask, kBold = NSBoldFontMask, kNotBold = NSUnboldFontMask, kUpright = NSUnitalicFontMask;

Ref<NSFont> find(const NSString& family, unsigned long traits = 0, int weight = 5, double size = 12) {
    return NSFontManager::sharedFontManager()->fontWithFamily_traits_weight_size(family, traits, weight, size);
}

// What is asked of a family, and the face that answers: its file and its traits.
struct Choice {
    const char16_t* family;
    unsigned long traits;
    int weight;
    const char* file;
    uint32_t found;
};

void expectChoices(std::initializer_list<Choice> choices) {
    for (const Choice& choice : choices) {
        SCOPED_TRACE(
            testing::Message() << wq::toUTF8(NSString(choice.family)) << ", traits " << choice.traits << ", weight " << choice.weight);
        const auto font = find(choice.family, choice.traits, choice.weight);
        EXPECT_EQ(font->fontDescriptor()->symbolicTraits(), choice.found);
        EXPECT_TRUE(wq::toUTF8(font->path()).ends_with(choice.file)) << wq::toUTF8(font->path());
        EXPECT_EQ(font->familyName(), choice.family);
    }
}

}  // namespace

TEST(NSFontManager, TheMasksAreThoseOfThePlatform) {
    EXPECT_EQ(kItalic, 1u);
    EXPECT_EQ(kBold, 2u);
    EXPECT_EQ(kNotBold, 4u);
    EXPECT_EQ(kUpright, 16777216u);
}

TEST(NSFontManager, IsOneObject) {
    const auto manager = NSFontManager::sharedFontManager();
    ASSERT_NE(manager, nullptr);
    EXPECT_EQ(NSFontManager::sharedFontManager(), manager);
}

TEST(NSFontManager, ListsEachFamilyOnceInTheOrderOfBytes) {
    const std::vector<NSString> expected{u"DejaVu Sans",     u"TeX Gyre Adventor", u"TeX Gyre Bonum",    u"TeX Gyre Chorus",
                                         u"TeX Gyre Cursor", u"TeX Gyre Heros",    u"TeX Gyre Heros Cn", u"TeX Gyre Pagella",
                                         u"TeX Gyre Schola", u"TeX Gyre Termes",   u"WANDERER",          u"Wanderer"};
    EXPECT_EQ(NSFontManager::sharedFontManager()->availableFontFamilies(), expected);
}

TEST(NSFontManager, FindsEachFamilyThatItLists) {
    for (const NSString& family : NSFontManager::sharedFontManager()->availableFontFamilies()) {
        const auto font = find(family);
        ASSERT_TRUE(font) << wq::toUTF8(family);
        EXPECT_EQ(font->familyName(), family);
    }
}

TEST(NSFontManager, AnswersNullForAFamilyThatIsNotThereByThatVeryName) {
    for (const char16_t* family :
         {u"Nonesuch", u"Times", u"Sans", u"serif", u"tex gyre pagella", u"TeX Gyre Pagella ", u"TeX Gyre Pagella Bold", u"TeX Gyre", u""})
        EXPECT_EQ(find(family), nullptr) << wq::toUTF8(NSString(family));
    EXPECT_EQ(find(nullptr), nullptr);
    EXPECT_EQ(find(u"TeX Gyre Pagella\u0000"_ns), nullptr);
}

TEST(NSFontManager, HidesFamiliesWhoseNameBeginsWithADot) { EXPECT_EQ(find(u".Hidden"), nullptr); }

TEST(NSFontManager, KnowsAFaceByItsFirstEnglishNameAlone) {
    EXPECT_EQ(find(u"Foreign Name"), nullptr);
    EXPECT_EQ(find(u"Second Name"), nullptr);
    EXPECT_EQ(find(u"TeX Gyre Cursor", kItalic)->fontDescriptor()->symbolicTraits(), NSFontItalicTrait);
}

TEST(NSFontManager, TellsSpellingsOfAFamilyApart) {
    EXPECT_EQ(find(u"Wanderer", kBold)->fontDescriptor()->symbolicTraits(), 0u);
    EXPECT_EQ(find(u"WANDERER", kNotBold)->fontDescriptor()->symbolicTraits(), NSFontBoldTrait);
    EXPECT_EQ(find(u"wanderer"), nullptr);
}

TEST(NSFontManager, GivesTheFontItsSize) {
    EXPECT_EQ(find(u"DejaVu Sans", 0, 5, 10.5)->pointSize(), 10.5);
    EXPECT_EQ(find(u"DejaVu Sans", 0, 5, 0)->pointSize(), 12.0);
    EXPECT_EQ(find(u"DejaVu Sans", 0, 5, -3)->pointSize(), 12.0);
}

TEST(NSFontManager, FindsEachFaceByItsTraits) {
    expectChoices(
        {{u"TeX Gyre Pagella", 0, 5, "/texgyrepagella-regular.otf", 0},
         {u"TeX Gyre Pagella", kItalic, 5, "/texgyrepagella-italic.otf", 1},
         {u"TeX Gyre Pagella", kBold, 5, "/texgyrepagella-bold.otf", 2},
         {u"TeX Gyre Pagella", kItalic | kBold, 5, "/texgyrepagella-bolditalic.otf", 3},
         {u"TeX Gyre Pagella", kNotBold, 5, "/texgyrepagella-regular.otf", 0},
         {u"TeX Gyre Pagella", kNotBold | kItalic, 5, "/texgyrepagella-italic.otf", 1},
         {u"TeX Gyre Pagella", kNotBold | kUpright, 5, "/texgyrepagella-regular.otf", 0},
         {u"TeX Gyre Pagella", kBold | kUpright, 5, "/texgyrepagella-bold.otf", 2}});
}

TEST(NSFontManager, TheWeightDecidesWithoutABitForBold) {
    expectChoices(
        {{u"TeX Gyre Pagella", kUpright, 0, "/texgyrepagella-regular.otf", 0},
         {u"TeX Gyre Pagella", kUpright, 8, "/texgyrepagella-regular.otf", 0},
         {u"TeX Gyre Pagella", kUpright, 9, "/texgyrepagella-bold.otf", 2},
         {u"TeX Gyre Pagella", kItalic, 14, "/texgyrepagella-bolditalic.otf", 3},
         {u"TeX Gyre Pagella", kNotBold, 9, "/texgyrepagella-regular.otf", 0},
         {u"TeX Gyre Pagella", kBold, 1, "/texgyrepagella-bold.otf", 2}});
}

TEST(NSFontManager, TheStyleWinsWhereBitsContradictEachOther) {
    expectChoices(
        {{u"TeX Gyre Pagella", kBold | kNotBold, 5, "/texgyrepagella-bold.otf", 2},
         {u"TeX Gyre Pagella", kItalic | kUpright, 5, "/texgyrepagella-italic.otf", 1}});
}

TEST(NSFontManager, AnswersTheNearestFaceWithItsOwnTraitsWhereOneIsMissing) {
    expectChoices(
        {{u"DejaVu Sans", kItalic, 5, "/DejaVuSans.ttf", 0},
         {u"DejaVu Sans", kItalic | kBold, 5, "/DejaVuSans-Bold.ttf", 2},
         {u"TeX Gyre Chorus", kBold | kUpright, 5, "/texgyrechorus-mediumitalic.otf", 0},
         {u"TeX Gyre Bonum", kUpright, 5, "/texgyrebonum-italic.otf", 1},
         {u"TeX Gyre Bonum", kBold | kUpright, 5, "/texgyrebonum-bolditalic.otf", 3},
         {u"TeX Gyre Heros Cn", kBold, 5, "/texgyreheroscn-bold.otf", 2}});
}

TEST(NSFontManagerDeathTest, WithoutAnyFontThereIsNoFamily) {
    const auto counted = [] {
        setenv("FONTCONFIG_FILE", WQ_SOURCE_FOLDER "/tests/fonts/none.conf", 1);
        const auto families = NSFontManager::sharedFontManager()->availableFontFamilies();
        std::cerr << '[' << families.size() << (find(u"Sans") ? " and Sans]" : "]");
        std::exit(0);
    };
    EXPECT_EXIT(counted(), testing::ExitedWithCode(0), "\\[0\\]");
}

TEST(NSFontManager, NullKnowsNoFont) {
    const Ref<NSFontManager> null;
    EXPECT_TRUE(null->availableFontFamilies().empty());
    EXPECT_EQ(null->fontWithFamily_traits_weight_size(u"DejaVu Sans", 0, 5, 12), nullptr);
}
