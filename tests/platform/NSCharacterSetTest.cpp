#include "platform/NSCharacterSet.h"

#include <gtest/gtest.h>

#include "platform/NSRange.h"

namespace {

using namespace wq::literals;

NSCharacterSet controls() { return NSCharacterSet::controlCharacterSet(); }

TEST(NSCharacterSetTest, ControlCharactersAreThoseOfTheTwoControlBlocks) {
    const auto set = controls();
    for (uint32_t unit = 0; unit <= 0xFFFF; ++unit)
        EXPECT_EQ(set.characterIsMember(static_cast<char16_t>(unit)), unit < 0x20 || (unit >= 0x7F && unit < 0xA0)) << unit;
}

TEST(NSCharacterSetTest, CharactersAreTakenOutOfACopy) {
    const auto set = controls();
    const auto without = set.setWithoutCharacters(u"\t\n\r");
    for (char16_t unit : {u'\t', u'\n', u'\r'}) {
        EXPECT_TRUE(set.characterIsMember(unit));
        EXPECT_FALSE(without.characterIsMember(unit));
    }
    for (char16_t unit : {u'\0', u'\b', u'\v', u'\f', u'\x0E', u'\x1F', u'\x7F', u'\x85'}) EXPECT_TRUE(without.characterIsMember(unit));
    EXPECT_FALSE(without.characterIsMember(u'a'));
}

TEST(NSCharacterSetTest, TakingOutWhatIsNoMemberChangesNothing) {
    for (const NSString& characters : {NSString(), u""_ns, u"a"_ns, u"\U0001F600"_ns}) {
        const auto without = controls().setWithoutCharacters(characters);
        EXPECT_TRUE(without.characterIsMember(u'\t'));
        EXPECT_FALSE(without.characterIsMember(u'a'));
    }
}

TEST(NSCharacterSetTest, ANulCanBeTakenOut) {
    const auto without = controls().setWithoutCharacters(u"\0\1"_ns);
    EXPECT_FALSE(without.characterIsMember(u'\0'));
    EXPECT_FALSE(without.characterIsMember(u'\1'));
    EXPECT_TRUE(without.characterIsMember(u'\2'));
}

TEST(NSCharacterSetTest, ACopyOutlivesTheSetThatItCameFrom) {
    auto set = controls();
    const auto first = set.setWithoutCharacters(u"\t");
    set = first.setWithoutCharacters(u"\n");
    EXPECT_FALSE(set.characterIsMember(u'\t'));
    EXPECT_FALSE(set.characterIsMember(u'\n'));
    EXPECT_TRUE(first.characterIsMember(u'\n'));
}

struct Search {
    NSString string;
    uint64_t from, found;
};

TEST(NSCharacterSetTest, TheFirstMemberIsFoundFromAPlaceOn) {
    const auto set = controls();
    for (const Search& row : {
             Search{u"a\1b\2", 0, 1},
             Search{u"a\1b\2", 1, 1},
             Search{u"a\1b\2", 2, 3},
             Search{u"a\1b\2", 3, 3},
             Search{u"a\1b\2", 4, NSNotFound},
             Search{u"a\1b\2", 5, NSNotFound},
             Search{u"a\1b\2", NSNotFound, NSNotFound},
             Search{u"\1", 0, 0},
             Search{u"\0"_ns, 0, 0},
             Search{u"ab\0"_ns, 0, 2},
             Search{u"plain", 0, NSNotFound},
             Search{u"", 0, NSNotFound},
             Search{NSString(), 0, NSNotFound},
             Search{NSString(), 1, NSNotFound},
             Search{u"\U0001F600\1", 0, 2},
             Search{u"\U0001F600\1", 1, 2},
             Search{std::u16string{0xD800, 0xDC01, 0xDC01, 1}, 0, 3},
             Search{std::u16string{0x0101, 0x017F, 0xFFFF}, 0, NSNotFound},
         }) {
        SCOPED_TRACE(wq::toUTF8(wq::printed(row.string)) + " from " + std::to_string(row.from));
        EXPECT_EQ(set.indexOfMember(row.string, row.from), row.found);
    }
    EXPECT_EQ(set.indexOfMember(u"a\1"), 1u);
}

}  // namespace
