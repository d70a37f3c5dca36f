#include "common/core/css/CSSColor.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <limits>
#include <locale>
#include <memory>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

using CSS::CSSColor;

namespace {

struct Row {
    const char* name;
    uint32_t rgb;
};

constexpr Row colors[] = {
    {"aliceblue", 0xF0F8FF},
    {"antiquewhite", 0xFAEBD7},
    {"aqua", 0x00FFFF},
    {"aquamarine", 0x7FFFD4},
    {"azure", 0xF0FFFF},
    {"beige", 0xF5F5DC},
    {"bisque", 0xFFE4C4},
    {"black", 0x000000},
    {"blanchedalmond", 0xFFEBCD},
    {"blue", 0x0000FF},
    {"blueviolet", 0x8A2BE2},
    {"brown", 0xA52A2A},
    {"burlywood", 0xDEB887},
    {"cadetblue", 0x5F9EA0},
    {"chartreuse", 0x7FFF00},
    {"chocolate", 0xD2691E},
    {"coral", 0xFF7F50},
    {"cornflowerblue", 0x6495ED},
    {"cornsilk", 0xFFF8DC},
    {"crimson", 0xDC143C},
    {"cyan", 0x00FFFF},
    {"darkblue", 0x00008B},
    {"darkcyan", 0x008B8B},
    {"darkgoldenrod", 0xB8860B},
    {"darkgray", 0xA9A9A9},
    {"darkgreen", 0x006400},
    {"darkgrey", 0xA9A9A9},
    {"darkkhaki", 0xBDB76B},
    {"darkmagenta", 0x8B008B},
    {"darkolivegreen", 0x556B2F},
    {"darkorange", 0xFF8C00},
    {"darkorchid", 0x9932CC},
    {"darkred", 0x8B0000},
    {"darksalmon", 0xE9967A},
    {"darkseagreen", 0x8FBC8F},
    {"darkslateblue", 0x483D8B},
    {"darkslategray", 0x2F4F4F},
    {"darkslategrey", 0x2F4F4F},
    {"darkturquoise", 0x00CED1},
    {"darkviolet", 0x9400D3},
    {"deeppink", 0xFF1493},
    {"deepskyblue", 0x00BFFF},
    {"dimgray", 0x696969},
    {"dimgrey", 0x696969},
    {"dodgerblue", 0x1E90FF},
    {"firebrick", 0xB22222},
    {"floralwhite", 0xFFFAF0},
    {"forestgreen", 0x228B22},
    {"fuchsia", 0xFF00FF},
    {"gainsboro", 0xDCDCDC},
    {"ghostwhite", 0xF8F8FF},
    {"gold", 0xFFD700},
    {"goldenrod", 0xDAA520},
    {"gray", 0x808080},
    {"green", 0x008000},
    {"greenyellow", 0xADFF2F},
    {"grey", 0x808080},
    {"honeydew", 0xF0FFF0},
    {"hotpink", 0xFF69B4},
    {"indianred", 0xCD5C5C},
    {"indigo", 0x4B0082},
    {"ivory", 0xFFFFF0},
    {"khaki", 0xF0E68C},
    {"lavender", 0xE6E6FA},
    {"lavenderblush", 0xFFF0F5},
    {"lawngreen", 0x7CFC00},
    {"lemonchiffon", 0xFFFACD},
    {"lightblue", 0xADD8E6},
    {"lightcoral", 0xF08080},
    {"lightcyan", 0xE0FFFF},
    {"lightgoldenrodyellow", 0xFAFAD2},
    {"lightgray", 0xD3D3D3},
    {"lightgreen", 0x90EE90},
    {"lightgrey", 0xD3D3D3},
    {"lightpink", 0xFFB6C1},
    {"lightsalmon", 0xFFA07A},
    {"lightseagreen", 0x20B2AA},
    {"lightskyblue", 0x87CEFA},
    {"lightslateblue", 0x8470FF},  // in no standard
    {"lightslategray", 0x778899},
    {"lightslategrey", 0x778899},
    {"lightsteelblue", 0xB0C4DE},
    {"lightyellow", 0xFFFFE0},
    {"lime", 0x00FF00},
    {"limegreen", 0x32CD32},
    {"linen", 0xFAF0E6},
    {"magenta", 0xFF00FF},
    {"maroon", 0x800000},
    {"mediumaquamarine", 0x66CDAA},
    {"mediumblue", 0x0000CD},
    {"mediumorchid", 0xBA55D3},
    {"mediumpurple", 0x9370D8},  // not the standard's 0x9370DB
    {"mediumseagreen", 0x3CB371},
    {"mediumslateblue", 0x7B68EE},
    {"mediumspringgreen", 0x00FA9A},
    {"mediumturquoise", 0x48D1CC},
    {"mediumvioletred", 0xC71585},
    {"midnightblue", 0x191970},
    {"mintcream", 0xF5FFFA},
    {"mistyrose", 0xFFE4E1},
    {"moccasin", 0xFFE4B5},
    {"navajowhite", 0xFFDEAD},
    {"navy", 0x000080},
    {"oldlace", 0xFDF5E6},
    {"olive", 0x808000},
    {"olivedrab", 0x6B8E23},
    {"orange", 0xFFA500},
    {"orangered", 0xFF4500},
    {"orchid", 0xDA70D6},
    {"palegoldenrod", 0xEEE8AA},
    {"palegreen", 0x98FB98},
    {"paleturquoise", 0xAFEEEE},
    {"palevioletred", 0xD87093},  // not the standard's 0xDB7093
    {"papayawhip", 0xFFEFD5},
    {"peachpuff", 0xFFDAB9},
    {"peru", 0xCD853F},
    {"pink", 0xFFC0CB},
    {"plum", 0xDDA0DD},
    {"powderblue", 0xB0E0E6},
    {"purple", 0x800080},
    {"red", 0xFF0000},
    {"rosybrown", 0xBC8F8F},
    {"royalblue", 0x4169E1},
    {"saddlebrown", 0x8B4513},
    {"salmon", 0xFA8072},
    {"sandybrown", 0xF4A460},
    {"seagreen", 0x2E8B57},
    {"seashell", 0xFFF5EE},
    {"sienna", 0xA0522D},
    {"silver", 0xC0C0C0},
    {"skyblue", 0x87CEEB},
    {"slateblue", 0x6A5ACD},
    {"slategray", 0x708090},
    {"slategrey", 0x708090},
    {"snow", 0xFFFAFA},
    {"springgreen", 0x00FF7F},
    {"steelblue", 0x4682B4},
    {"tan", 0xD2B48C},
    {"teal", 0x008080},
    {"thistle", 0xD8BFD8},
    {"tomato", 0xFF6347},
    {"turquoise", 0x40E0D0},
    {"violet", 0xEE82EE},
    {"violetred", 0xD02090},  // in no standard
    {"wheat", 0xF5DEB3},
    {"white", 0xFFFFFF},
    {"whitesmoke", 0xF5F5F5},
    {"yellow", 0xFFFF00},
    {"yellowgreen", 0x9ACD32},
};
static_assert(std::size(colors) == 149);

std::set<std::string> allNames() {
    std::set<std::string> names;
    for (const Row& row : colors) names.insert(row.name);
    return names;
}

// From a buffer that ends where the name ends, so that the sanitizer sees every byte read past it.
const CSS::ColorName* lookUp(const std::string& name) {
    const auto bytes = std::make_unique<char[]>(name.size());
    std::copy(name.begin(), name.end(), bytes.get());
    return CSS::LookupColor(bytes.get(), static_cast<unsigned int>(name.size()));
}

uint32_t fromText(const std::string& text) { return CSSColor(text).rgbaValue; }

std::string textOf(uint32_t word) {
    CSSColor color;
    color.rgbaValue = word;
    return color.stringValue();
}

class GermanLocale {
public:
    GermanLocale() {
        try {
            previous = std::locale::global(std::locale("de_DE.utf8"));
        } catch (const std::runtime_error&) {}
    }
    ~GermanLocale() {
        if (previous) std::locale::global(*previous);
    }
    GermanLocale(const GermanLocale&) = delete;
    GermanLocale& operator=(const GermanLocale&) = delete;
    bool exists() const { return previous.has_value(); }

private:
    std::optional<std::locale> previous;
};

}  // namespace

static_assert(sizeof(CSSColor) == 4 && std::is_trivially_copyable_v<CSSColor>, "a colour travels by value");
static_assert(std::is_same_v<decltype(CSSColor::rgbaValue), uint32_t>);

TEST(CSSColor, IsUnreadableAtFirst) { EXPECT_EQ(CSSColor().rgbaValue, 0U); }

TEST(CSSColor, EqualsAColorOfTheSameWord) {
    EXPECT_EQ(CSSColor("aqua"), CSSColor("cyan"));
    EXPECT_NE(CSSColor("aqua"), CSSColor("blue"));
    EXPECT_NE(CSSColor("black"), CSSColor());
}

TEST(CSSColorNames, EveryNameHasItsValue) {
    EXPECT_EQ(allNames().size(), 149U);
    for (const Row& row : colors) {
        SCOPED_TRACE(row.name);
        const CSS::ColorName* const found = lookUp(row.name);
        ASSERT_NE(found, nullptr);
        EXPECT_STREQ(found->name, row.name);
        EXPECT_EQ(found->rgb, row.rgb);
        EXPECT_EQ(fromText(row.name), 0xFF000000 | row.rgb);
    }
}

TEST(CSSColorNames, TheTwoOfNoStandardAreThere) {
    EXPECT_EQ(fromText("violetred"), 0xFFD02090);
    EXPECT_EQ(fromText("lightslateblue"), 0xFF8470FF);
}

TEST(CSSColorNames, TheTwoThatDifferFromTheStandardKeepTheirOwnValues) {
    EXPECT_EQ(fromText("mediumpurple"), 0xFF9370D8);
    EXPECT_EQ(fromText("palevioletred"), 0xFFD87093);
}

TEST(CSSColorNames, SynonymsHaveTheSameValue) {
    constexpr const char* pairs[][2] = {
        {"aqua", "cyan"},
        {"fuchsia", "magenta"},
        {"gray", "grey"},
        {"darkgray", "darkgrey"},
        {"dimgray", "dimgrey"},
        {"lightgray", "lightgrey"},
        {"slategray", "slategrey"},
        {"darkslategray", "darkslategrey"},
        {"lightslategray", "lightslategrey"},
    };
    for (const auto& pair : pairs) {
        SCOPED_TRACE(pair[0]);
        EXPECT_NE(fromText(pair[0]), 0U);
        EXPECT_EQ(fromText(pair[0]), fromText(pair[1]));
        EXPECT_EQ(CSSColor(pair[0]).stringValue(), CSSColor(pair[1]).stringValue());
    }
}

TEST(CSSColorNames, AreCaseSensitive) {
    EXPECT_EQ(fromText("red"), 0xFFFF0000);
    EXPECT_EQ(fromText("Red"), 0U);
    EXPECT_EQ(fromText("RED"), 0U);
    EXPECT_EQ(fromText("LightGoldenrodYellow"), 0U);
}

TEST(CSSColorNames, NothingElseIsAName) {
    for (const char* const name :
         {"rebeccapurple", "transparent", "currentcolor", "inherit", "none", "mediumgray", "bluegreen", "redd", "aaa", "zzz", "xxxxxxxxxx",
          "lightgoldenrod", "zzzzzzzzzzzzzzzzzzzz", " red", "red ", "light blue", "rgb(0,0,0)", "\"red\"", "#red"}) {
        EXPECT_EQ(lookUp(name), nullptr) << name;
        EXPECT_EQ(fromText(name), 0U) << name;
    }
}

TEST(CSSColorNames, ANameWithOneByteChangedIsNone) {
    const std::set<std::string> names = allNames();
    for (const Row& row : colors) {
        SCOPED_TRACE(row.name);
        for (size_t i = 0; row.name[i]; ++i)
            for (int byte = 0; byte <= 0xFF; ++byte) {
                std::string name = row.name;
                name[i] = static_cast<char>(byte);
                if (lookUp(name) && names.count(name) == 0) ADD_FAILURE() << "byte " << byte << " at " << i << " is found";
            }
    }
}

TEST(CSSColorNames, ANameWithALetterMoreOrLessIsNone) {
    const std::set<std::string> names = allNames();
    for (const std::string& name : names)
        for (const std::string& other :
             {name + "s", name + '\0', name + " ", "x" + name, '\0' + name, name.substr(1), name.substr(0, name.size() - 1)})
            if (lookUp(other) && names.count(other) == 0) ADD_FAILURE() << other;
}

TEST(CSSColorNames, OnlyTheGivenLengthCounts) {
    const CSS::ColorName* const gold = CSS::LookupColor("goldenrod", 4);
    ASSERT_NE(gold, nullptr);
    EXPECT_STREQ(gold->name, "gold");
    EXPECT_EQ(CSS::LookupColor("goldenrod", 5), nullptr);
    EXPECT_EQ(CSS::LookupColor("gold", 3), nullptr);
}

TEST(CSSColorNames, ANullByteEndsNoName) {
    EXPECT_EQ(lookUp(std::string("red\0", 4)), nullptr);
    EXPECT_EQ(lookUp(std::string("red\0red", 7)), nullptr);
    EXPECT_EQ(lookUp(std::string("re\0", 3)), nullptr);
    EXPECT_EQ(lookUp(std::string("\0\0\0", 3)), nullptr);
    EXPECT_EQ(lookUp(std::string("gold\0nrod", 9)), nullptr);
    EXPECT_EQ(fromText(std::string("red\0", 4)), 0U);
    EXPECT_EQ(fromText(std::string("\0red", 4)), 0U);
}

TEST(CSSColorNames, TheShortestHasThreeLettersAndTheLongestTwenty) {
    EXPECT_NE(lookUp("tan"), nullptr);
    EXPECT_NE(lookUp("lightgoldenrodyellow"), nullptr);
    EXPECT_EQ(lookUp("lightgoldenrodyellows"), nullptr);
    EXPECT_EQ(lookUp("ta"), nullptr);
    EXPECT_EQ(lookUp("t"), nullptr);
    EXPECT_EQ(lookUp(""), nullptr);
}

TEST(CSSColorNames, OfTwentyOneLettersAreUnreadable) {
    EXPECT_EQ(fromText("lightgoldenrodyellows"), 0U);
    EXPECT_EQ(fromText(std::string(21, 'a')), 0U);
}

TEST(CSSColorNames, OfAWrongLengthAreNotLookedAt) {
    for (const unsigned int length : {0U, 1U, 2U, 21U, 22U, 256U + 3U, 65536U + 3U, UINT_MAX})
        EXPECT_EQ(CSS::LookupColor(nullptr, length), nullptr) << length;
}

TEST(CSSColorNames, HaveNoOtherBytesThanLetters) {
    for (int byte = 0x80; byte <= 0xFF; ++byte)
        for (size_t length = 3; length <= 20; ++length)
            if (lookUp(std::string(length, static_cast<char>(byte)))) ADD_FAILURE() << length << " times " << byte;
}

TEST(CSSColor, OfANumberIsOpaque) {
    EXPECT_EQ(CSSColor(0x123456).rgbaValue, 0xFF123456);
    EXPECT_EQ(CSSColor(0).rgbaValue, 0xFF000000);
}

TEST(CSSColor, OfANumberLosesTheAlphaOfIt) {
    EXPECT_EQ(CSSColor(0x12345678).rgbaValue, 0xFF345678);
    EXPECT_EQ(CSSColor(-1).rgbaValue, 0xFFFFFFFF);
    EXPECT_EQ(CSSColor(INT_MIN).rgbaValue, 0xFF000000);
}

TEST(CSSColorFractions, GoToTheirPlaces) {
    EXPECT_EQ(CSSColor(1, 0, 0, 0).rgbaValue, 0x00FF0000U);
    EXPECT_EQ(CSSColor(0, 1, 0, 0).rgbaValue, 0x0000FF00U);
    EXPECT_EQ(CSSColor(0, 0, 1, 0).rgbaValue, 0x000000FFU);
    EXPECT_EQ(CSSColor(0, 0, 0, 1).rgbaValue, 0xFF000000U);
    EXPECT_EQ(CSSColor(0.2F, 0.4F, 0.6F, 0.8F).rgbaValue, 0xCC336699U);
}

TEST(CSSColorFractions, MakeHalfTransparentRed) { EXPECT_EQ(CSSColor(1.0F, 0.0F, 0.0F, 0.5F).rgbaValue, 0x7FFF0000U); }

TEST(CSSColorFractions, OfTransparentBlackAreTheUnreadableWord) { EXPECT_EQ(CSSColor(0, 0, 0, 0).rgbaValue, 0U); }

TEST(CSSColorFractions, AreCutAndWrapInEveryComponent) {
    constexpr struct {
        float fraction;
        uint32_t component;
    } rows[] = {
        {0.0F, 0x00},   {-0.0F, 0x00},  {0.1F, 0x19},   {0.25F, 0x3F},      {0.5F, 0x7F}, {0.75F, 0xBF}, {0.9F, 0xE5},
        {0.996F, 0xFD}, {0.999F, 0xFE}, {1.0F, 0xFF},   {1.004F, 0x00},     {1.5F, 0x7E}, {2.0F, 0xFE},  {-0.001F, 0x00},
        {-0.5F, 0x81},  {-1.0F, 0x01},  {100.3F, 0xE8}, {1.0078431F, 0x00},  // 256.9999999 in double precision, 257 in single
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.fraction);
        EXPECT_EQ(CSSColor(row.fraction, 0, 0, 0).rgbaValue, row.component << 16);
        EXPECT_EQ(CSSColor(0, row.fraction, 0, 0).rgbaValue, row.component << 8);
        EXPECT_EQ(CSSColor(0, 0, row.fraction, 0).rgbaValue, row.component);
        EXPECT_EQ(CSSColor(0, 0, 0, row.fraction).rgbaValue, row.component << 24);
    }
}

TEST(CSSColorFractions, ThatAreNoNumbersOrTooLargeAreZero) {
    using Limits = std::numeric_limits<float>;
    for (const float fraction :
         {Limits::quiet_NaN(), Limits::infinity(), -Limits::infinity(), Limits::max(), Limits::lowest(), 1e10F, -1e10F}) {
        SCOPED_TRACE(fraction);
        EXPECT_EQ(CSSColor(fraction, 0, 0, 1).rgbaValue, 0xFF000000);
        EXPECT_EQ(CSSColor(1, fraction, 1, 1).rgbaValue, 0xFFFF00FF);
        EXPECT_EQ(CSSColor(1, 1, fraction, 1).rgbaValue, 0xFFFFFF00);
        EXPECT_EQ(CSSColor(1, 1, 1, fraction).rgbaValue, 0x00FFFFFFU);
    }
}

TEST(CSSColorHash, TakesDigitsOfBothCases) {
    EXPECT_EQ(fromText("#FFF"), 0xFFFFFFFF);
    EXPECT_EQ(fromText("#ffffff"), 0xFFFFFFFF);
    EXPECT_EQ(fromText("#aBcDeF"), 0xFFABCDEF);
    EXPECT_EQ(fromText("#AbCdEf"), 0xFFABCDEF);
    EXPECT_EQ(fromText("#012345"), 0xFF012345);
    EXPECT_EQ(fromText("#678901"), 0xFF678901);
}

TEST(CSSColorHash, DoublesThreeDigits) {
    EXPECT_EQ(fromText("#abc"), 0xFFAABBCC);
    EXPECT_EQ(fromText("#12F"), 0xFF1122FF);
}

TEST(CSSColorHash, OfBlackIsReadable) {
    EXPECT_EQ(fromText("#000"), 0xFF000000);
    EXPECT_EQ(fromText("#000000"), 0xFF000000);
}

TEST(CSSColorHash, OfAnyOtherLengthIsUnreadable) {
    for (const char* const text : {"#", "#1", "#12", "#1234", "#12345", "#1234567", "#12345678", "#123456789", "##abc"})
        EXPECT_EQ(fromText(text), 0U) << text;
    EXPECT_EQ(fromText("#" + std::string(100000, 'f')), 0U);
}

TEST(CSSColorHash, CountsBytesOfUTF8) {
    EXPECT_EQ(fromText("#1\xC3\xA4"), 0xFF000011);           // the two digits in front of a letter of two bytes
    EXPECT_EQ(fromText("#12\xC3\xA4"), 0U);                  // four bytes
    EXPECT_EQ(fromText("#12\xF0\x9F\x8E\xA8"), 0xFF000012);  // a letter of four bytes
    EXPECT_EQ(fromText("#\xC3\xA4\xC3\xB6\xC3\xBC"), 0U);
    EXPECT_EQ(fromText("#\xEF\xBC\x91"), 0U);  // a fullwidth digit
}

TEST(CSSColorText, WithoutNumberSignOrNameIsUnreadable) {
    for (const char* const text : {"", " ", "fff", "ffffff", "000000", " #fff", "x#fff", "0xffffff", "rgb(1, 2, 3)", "\"#fff\""})
        EXPECT_EQ(fromText(text), 0U) << text;
}

TEST(CSSColorText, WithMoreBehindTheColorIsUnreadable) {
    EXPECT_EQ(fromText("red;"), 0U);
    EXPECT_EQ(fromText("#fff "), 0U);
    EXPECT_EQ(fromText("#ffffff "), 0U);
    EXPECT_EQ(fromText("#fff;"), 0U);
}

TEST(CSSColorHash, DropsTheDigitsBehindTheFirstBadOne) {
    EXPECT_EQ(fromText("#12x456"), 0xFF000012);
    EXPECT_EQ(fromText("#12 456"), 0xFF000012);
    EXPECT_EQ(fromText("#abcdeg"), 0xFF0ABCDE);
    EXPECT_EQ(fromText("#1zzzzz"), 0xFF000001);
    EXPECT_EQ(fromText("#fg0"), 0xFF0000FF);
    EXPECT_EQ(fromText("#1-2"), 0xFF000011);
    EXPECT_EQ(fromText("#00000g"), 0xFF000000);
}

TEST(CSSColorHash, WithoutAUsableFirstDigitIsUnreadable) {
    for (const char* const text :
         {"#ggg", "#gfffff", "#x12345", "#xff", "#gff", "#      ", "#   ", "#-----1", "#- 1234", "#+-1234", "#zzzzzz", "#.12345"})
        EXPECT_EQ(fromText(text), 0U) << text;
}

TEST(CSSColorHash, PassesOverLeadingSpace) {
    EXPECT_EQ(fromText("# 12345"), 0xFF012345);
    EXPECT_EQ(fromText("#     1"), 0xFF000001);
    EXPECT_EQ(fromText("#\t\n\v\f\r7"), 0xFF000007);
    EXPECT_EQ(fromText("# 12"), 0xFF001122);
}

TEST(CSSColorHash, TakesASign) {
    EXPECT_EQ(fromText("#+12345"), 0xFF012345);
    EXPECT_EQ(fromText("#-12345"), 0xFFFEDCBB);  // the low 24 bits of the negative number
    EXPECT_EQ(fromText("#-00001"), 0xFFFFFFFF);
    EXPECT_EQ(fromText("#-fffff"), 0xFFF00001);
    EXPECT_EQ(fromText("#-00000"), 0xFF000000);
    EXPECT_EQ(fromText("#  -1fg"), 0xFFFFFFE1);
}

TEST(CSSColorHash, OfThreeDoublesTheSignToo) {
    EXPECT_EQ(fromText("#-12"), 0U);
    EXPECT_EQ(fromText("#+12"), 0U);
    EXPECT_EQ(fromText("# -1"), 0U);
}

TEST(CSSColorHash, TakesALeadingZeroX) {
    EXPECT_EQ(fromText("#0x1234"), 0xFF001234);
    EXPECT_EQ(fromText("#0XABCD"), 0xFF00ABCD);
    EXPECT_EQ(fromText("#-0x12f"), 0xFFFFFED1);
    EXPECT_EQ(fromText("# 0x12f"), 0xFF00012F);
    EXPECT_EQ(fromText("#0x0x12"), 0xFF000000);
}

TEST(CSSColorHash, OfAZeroXWithoutDigitsIsTheZeroBeforeIt) {
    EXPECT_EQ(fromText("#0xf"), 0xFF000000);  // doubled, "00xxff"
    EXPECT_EQ(fromText("#0xg000"), 0xFF000000);
    EXPECT_EQ(fromText("#0x-123"), 0xFF000000);
    EXPECT_EQ(fromText("#0x 123"), 0xFF000000);
}

TEST(CSSColorHash, EndsAtANullByte) {
    EXPECT_EQ(fromText(std::string("#12\0a56", 7)), 0xFF000012);
    EXPECT_EQ(fromText(std::string("#f\0f", 4)), 0xFF0000FF);
    EXPECT_EQ(fromText(std::string("#\0ffffff", 7)), 0U);
    EXPECT_EQ(fromText(std::string("#fff\0", 5)), 0U);  // four bytes
    EXPECT_EQ(fromText(std::string("#fffff\0", 7)), 0xFF0FFFFF);
}

TEST(CSSColorHash, DoesNotMindAnErrorFromBefore) {
    errno = ERANGE;
    EXPECT_EQ(fromText("#123456"), 0xFF123456);
    errno = EINVAL;
    EXPECT_EQ(fromText("#abc"), 0xFFAABBCC);
}

TEST(CSSColorString, IsSixDigitsInLowerCase) {
    EXPECT_EQ(textOf(0xFF123456), "#123456");
    EXPECT_EQ(textOf(0xFFABCDEF), "#abcdef");
    EXPECT_EQ(textOf(0xFFFFFFFF), "#ffffff");
    EXPECT_EQ(textOf(0xFF010203), "#010203");
    EXPECT_EQ(textOf(0xFF000A00), "#000a00");
}

TEST(CSSColorString, DropsAlpha) {
    EXPECT_EQ(textOf(0x7FFF0000), "#ff0000");
    EXPECT_EQ(textOf(0x00123456), "#123456");
}

TEST(CSSColorString, OfTheUnreadableColorIsBlack) {
    EXPECT_EQ(CSSColor().stringValue(), "#000000");
    EXPECT_EQ(CSSColor("black").stringValue(), "#000000");
}

TEST(CSSColorString, IsReadBackAsTheSameWord) {
    for (const Row& row : colors) {
        const CSSColor color{std::string(row.name)};
        EXPECT_EQ(CSSColor(color.stringValue()), color) << row.name;
    }
}

TEST(CSSColor, IsReadAndWrittenAlikeInEveryLocale) {
    const GermanLocale locale;
    if (!locale.exists()) GTEST_SKIP() << "this system has no German locale";
    EXPECT_EQ(fromText("#123456"), 0xFF123456);
    EXPECT_EQ(fromText("#1.2345"), 0xFF000001);
    EXPECT_EQ(fromText("#1,2345"), 0xFF000001);
    EXPECT_EQ(fromText("indigo"), 0xFF4B0082);
    EXPECT_EQ(textOf(0xFF123456), "#123456");
    EXPECT_EQ(textOf(0xFF000000), "#000000");
}
