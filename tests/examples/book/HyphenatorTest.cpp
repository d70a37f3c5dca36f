#include "examples/book/Hyphenator.h"

#include <gmock/gmock.h>

#include <string>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// The text with a hyphen wherever one may stand.
std::u16string divided(std::u16string text, std::string_view language = "en") {
    const auto breaks = Hyphenator(language).breaksOf(text);
    for (size_t index = breaks.size(); index-- > 0;) text.insert(breaks[index], u"-");
    return text;
}

TEST(HyphenatorTest, DividesWords) {
    EXPECT_EQ(divided(u"hyphenation"), u"hyphen-ation");
    EXPECT_EQ(divided(u"slanting machinery"), u"slant-ing machin-ery");
}

TEST(HyphenatorTest, BreaksAreInOrderAndBehindUnits) {
    EXPECT_THAT(Hyphenator("en").breaksOf(u"a slanting multiplication"), ElementsAre(7, 14, 16, 19, 21));
}

TEST(HyphenatorTest, ThreeLettersStayTogetherAtEitherEnd) {
    for (const char16_t* word : {u"ability", u"ferrymen", u"elevated", u"machinery", u"operator"})
        for (const size_t each : Hyphenator("en").breaksOf(word)) {
            EXPECT_GE(each, 3u);
            EXPECT_LE(each, std::u16string_view(word).size() - 3);
        }
}

TEST(HyphenatorTest, ShortWordsAreNotDivided) {
    EXPECT_THAT(Hyphenator("en").breaksOf(u"the river water table a ox"), IsEmpty());
    EXPECT_THAT(Hyphenator("en").breaksOf(u""), IsEmpty());
    EXPECT_THAT(Hyphenator("en").breaksOf(u" \n. -"), IsEmpty());
}

TEST(HyphenatorTest, SignsAroundAWordAreNoPartOfIt) {
    EXPECT_EQ(divided(u"“slanting,” (slanting) 7slanting"), u"“slant-ing,” (slant-ing) 7slant-ing");
    EXPECT_EQ(divided(u"slanting—slanting"), u"slant-ing—slant-ing");
}

TEST(HyphenatorTest, CapitalsAreLetters) { EXPECT_EQ(divided(u"Slanting"), u"Slant-ing"); }

TEST(HyphenatorTest, PlacesCountUnitsAlsoBehindOtherCharacters) {
    EXPECT_EQ(divided(u"😀 é slanting"), u"😀 é slant-ing");
    EXPECT_EQ(divided(std::u16string(u"\xD800 slanting")), std::u16string(u"\xD800 slant-ing"));
    EXPECT_THAT(Hyphenator("en").breaksOf(u"ééééééé 😀😀😀😀😀😀😀"), IsEmpty());
}

TEST(HyphenatorTest, VariantsOfEnglishAreEnglish) {
    EXPECT_EQ(divided(u"slanting", "en-GB"), u"slant-ing");
    EXPECT_EQ(divided(u"slanting", "en-US"), u"slant-ing");
}

TEST(HyphenatorTest, OtherLanguagesDivideNothing) {
    for (const char* language : {"", "de", "fr-FR", "xx-en", "/", "enm"}) {
        SCOPED_TRACE(language);
        EXPECT_EQ(divided(u"slanting machinery", language), u"slanting machinery");
    }
}

TEST(HyphenatorTest, VeryLongWordsAreDividedToo) {
    std::u16string word;
    for (int index = 0; index < 2000; ++index) word += u"slanting";
    const auto breaks = Hyphenator("en").breaksOf(word);
    EXPECT_GT(breaks.size(), 1000u);
    EXPECT_LE(breaks.back(), word.size() - 3);
}

}  // namespace
