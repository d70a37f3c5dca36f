#include "platform/NSDictionary.h"

#include <gtest/gtest.h>

#include <vector>

#include "platform/WQXMLException.h"

TEST(NSDictionary, IsEmptyAtFirst) {
    const auto dictionary = NSDictionary::dictionary();
    EXPECT_EQ(dictionary->count(), 0u);
    EXPECT_TRUE(dictionary->begin() == dictionary->end());
}

TEST(NSDictionary, AnswersWhatItWasMadeWith) {
    const auto dictionary = NSDictionary::dictionary({{u"flag", true}, {u"size", 10.5}, {u"name", u"Ada"}});
    EXPECT_EQ(dictionary->count(), 3u);
    EXPECT_TRUE(dictionary->objectForKey(u"flag").boolean());
    EXPECT_EQ(dictionary->objectForKey(u"size").number(), 10.5);
    EXPECT_EQ(dictionary->objectForKey(u"name").string(), u"Ada");
}

TEST(NSDictionary, AnswersNullForAnAbsentAndForTheNullKey) {
    const auto dictionary = NSDictionary::dictionary({{u"a", true}});
    EXPECT_FALSE(static_cast<bool>(dictionary->objectForKey(u"b")));
    EXPECT_FALSE(static_cast<bool>(dictionary->objectForKey(u"")));
    EXPECT_FALSE(static_cast<bool>(dictionary->objectForKey(nullptr)));
    EXPECT_FALSE(dictionary->containsKey(nullptr));
    EXPECT_EQ(dictionary->count(), 1u);
}

TEST(NSDictionary, KnowsAKeyThatHoldsNullFalseOrZero) {
    const auto dictionary = NSDictionary::dictionary({{u"null", nullptr}, {u"false", false}, {u"zero", 0.0}});
    EXPECT_EQ(dictionary->count(), 3u);
    for (const char16_t* key : {u"null", u"false", u"zero"}) EXPECT_TRUE(dictionary->containsKey(key));
    EXPECT_FALSE(dictionary->containsKey(u"absent"));
    EXPECT_FALSE(static_cast<bool>(dictionary->objectForKey(u"null")));
}

TEST(NSDictionary, TheEmptyKeyIsAKey) {
    const auto dictionary = NSDictionary::dictionary({{u"", u"x"}});
    EXPECT_EQ(dictionary->objectForKey(u"").string(), u"x");
}

TEST(NSDictionary, SettingReplaces) {
    const auto dictionary = NSDictionary::dictionary({{u"a", u"old"}});
    dictionary->setObject_forKey(u"new", u"a");
    EXPECT_EQ(dictionary->objectForKey(u"a").string(), u"new");
    dictionary->setObject_forKey(nullptr, u"a");
    EXPECT_TRUE(dictionary->containsKey(u"a"));
    EXPECT_EQ(dictionary->count(), 1u);
}

TEST(NSDictionary, RemovingForgetsTheKey) {
    const auto dictionary = NSDictionary::dictionary({{u"a", true}, {u"b", true}});
    dictionary->removeObjectForKey(u"a");
    EXPECT_FALSE(dictionary->containsKey(u"a"));
    dictionary->removeObjectForKey(u"a");
    dictionary->removeObjectForKey(nullptr);
    EXPECT_EQ(dictionary->count(), 1u);
}

TEST(NSDictionary, TheNullKeyRaisesAndChangesNothing) {
    const auto dictionary = NSDictionary::dictionary({{u"a", true}});
    try {
        dictionary->setObject_forKey(true, nullptr);
        FAIL() << "nothing was raised";
    } catch (const WQXMLException& exception) {
        EXPECT_EQ(exception.name(), u"NSInvalidArgumentException");
    }
    EXPECT_EQ(dictionary->count(), 1u);
    EXPECT_THROW(NSDictionary::dictionary({{nullptr, true}}), WQXMLException);
}

TEST(NSDictionary, NullIsEmptyAndTakesNothing) {
    const Ref<NSDictionary> null;
    null->setObject_forKey(true, u"a");
    null->setObject_forKey(true, nullptr);
    null->removeObjectForKey(u"a");
    EXPECT_EQ(null->count(), 0u);
    EXPECT_FALSE(null->containsKey(u"a"));
    EXPECT_FALSE(static_cast<bool>(null->objectForKey(u"a")));
    EXPECT_TRUE(null->begin() == null->end());
}

TEST(NSDictionary, HoldsDictionaries) {
    const auto inner = NSDictionary::dictionary({{u"deep", u"found"}});
    const auto outer = NSDictionary::dictionary({{u"inner", inner}});
    EXPECT_EQ(outer->objectForKey(u"inner").object<NSDictionary>()->objectForKey(u"deep").string(), u"found");
    EXPECT_FALSE(static_cast<bool>(outer->objectForKey(u"absent").object<NSDictionary>()->objectForKey(u"deep")));
}

TEST(NSDictionary, IsSharedByItsHolders) {
    const auto one = NSDictionary::dictionary();
    const Ref<NSDictionary> same = one;
    one->setObject_forKey(true, u"a");
    EXPECT_TRUE(same->containsKey(u"a"));
}

TEST(NSDictionary, KeepsItsKeysInOrder) {
    const auto dictionary = NSDictionary::dictionary({{u"b", 1.0}, {u"", 2.0}, {u"a", 3.0}, {u"B", 4.0}});
    std::vector<NSString> keys;
    for (const auto& [key, value] : *dictionary.get()) keys.push_back(key);
    EXPECT_EQ(keys, (std::vector<NSString>{u"", u"B", u"a", u"b"}));
}

TEST(NSDictionary, ACopyGoesItsOwnWayAndSharesValues) {
    const auto inner = NSDictionary::dictionary();
    const auto original = NSDictionary::dictionary({{u"inner", inner}, {u"null", nullptr}});
    const auto copy = original->mutableCopy();
    copy->setObject_forKey(1.0, u"more");
    EXPECT_EQ(copy->count(), 3u);
    EXPECT_EQ(original->count(), 2u);
    EXPECT_EQ(copy->objectForKey(u"inner").object(), inner);
    EXPECT_FALSE(Ref<NSDictionary>()->mutableCopy());
}

TEST(NSDictionary, EqualsOneOfEqualEntries) {
    const auto inner = [](double value) { return NSDictionary::dictionary({{u"x", value}}); };
    const auto one = NSDictionary::dictionary({{u"a", inner(1)}, {u"b", u"2"}});
    EXPECT_TRUE(one->isEqual(one));
    EXPECT_TRUE(one->isEqual(NSDictionary::dictionary({{u"b", u"2"}, {u"a", inner(1)}})));
    EXPECT_TRUE(NSDictionary::dictionary()->isEqual(NSDictionary::dictionary()));
    EXPECT_FALSE(one->isEqual(NSDictionary::dictionary({{u"a", inner(2)}, {u"b", u"2"}})));
    EXPECT_FALSE(one->isEqual(NSDictionary::dictionary({{u"a", inner(1)}, {u"c", u"2"}})));
    EXPECT_FALSE(one->isEqual(NSDictionary::dictionary({{u"a", inner(1)}})));
    EXPECT_FALSE(NSDictionary::dictionary({{u"a", inner(1)}})->isEqual(one));
}

TEST(NSDictionary, NullEqualsNothing) {
    const Ref<NSDictionary> null;
    EXPECT_FALSE(null->isEqual(null));
    EXPECT_FALSE(null->isEqual(NSDictionary::dictionary()));
    EXPECT_FALSE(NSDictionary::dictionary()->isEqual(null));
}
