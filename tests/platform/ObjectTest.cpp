#include "platform/Object.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <stdexcept>

namespace {

using testing::HasSubstr;
using testing::StartsWith;

class Thing : public wq::Object {
public:
    virtual bool initWithNumber(int aNumber) {
        number = aNumber;
        return aNumber >= 0;
    }
    int twice() const { return 2 * number; }
    int number = 0;
    bool* died = nullptr;
    ~Thing() override {
        if (died) *died = true;
    }
};
class Special : public Thing {
public:
    bool initWithNumber(int aNumber) override { return Thing::initWithNumber(aNumber + 100); }
};
class Other : public wq::Object {};

// Answers something else when it is null, and passes that on to its subclasses.
template <class T> class NilCounter : public T {
public:
    int answer() const override { return -1; }
};
class Counter : public wq::Object {
public:
    template <class T> using Nil = NilCounter<T>;
    virtual int answer() const { return 42; }
};
class ApplicationCounter : public Counter {};

class Stubborn : public wq::Object {
    void teardown() override { throw std::runtime_error("still needed"); }
};

Ref<Thing> newThing(int number = 0) { return wq::make<Thing>(&Thing::initWithNumber, number); }

}  // namespace

TEST(Ref, IsOnePointerWide) { EXPECT_EQ(sizeof(Ref<Thing>), sizeof(void*)); }

TEST(Ref, HoldsANewObjectWithACountOfOne) { EXPECT_EQ(newThing()->referenceCount(), 1); }

TEST(Ref, CopyingCountsAndLettingGoGivesTheCountUp) {
    auto first = newThing();
    {
        const Ref<Thing> second = first;
        EXPECT_EQ(first->referenceCount(), 2);
        EXPECT_EQ(second.get(), first.get());
    }
    EXPECT_EQ(first->referenceCount(), 1);
}

TEST(Ref, TheLastOneEndsTheObject) {
    bool died = false;
    auto first = newThing();
    first->died = &died;
    auto second = first;
    first = nullptr;
    EXPECT_FALSE(died);
    second = nullptr;
    EXPECT_TRUE(died);
}

TEST(Ref, MovingHandsTheCountOver) {
    auto first = newThing();
    Thing* const object = first.get();
    const Ref<Thing> second = std::move(first);
    EXPECT_EQ(second.get(), object);
    EXPECT_EQ(second->referenceCount(), 1);
    EXPECT_EQ(first, nullptr);
}

TEST(Ref, AssigningItToItselfChangesNothing) {
    auto thing = newThing(7);
    const auto& same = thing;
    thing = same;
    EXPECT_EQ(thing->number, 7);
    EXPECT_EQ(thing->referenceCount(), 1);
}

TEST(Ref, MovingItIntoItselfChangesNothing) {
    auto thing = newThing(7);
    auto& same = thing;
    thing = std::move(same);
    EXPECT_EQ(thing->number, 7);
    EXPECT_EQ(thing->referenceCount(), 1);
}

TEST(Ref, AssigningEndsTheOldObject) {
    bool died = false;
    auto thing = newThing(1);
    thing->died = &died;
    thing = newThing(2);
    EXPECT_TRUE(died);
    EXPECT_EQ(thing->number, 2);
}

TEST(Ref, ConvertsToABaseByCopyAndByMove) {
    auto special = wq::make<Special>(&Special::initWithNumber, 1);
    const Ref<Thing> copy = special;
    EXPECT_EQ(copy->referenceCount(), 2);
    EXPECT_TRUE(copy == special);
    const Ref<wq::Object> moved = std::move(special);
    EXPECT_EQ(moved->referenceCount(), 2);
    EXPECT_EQ(special, nullptr);
}

TEST(Ref, DoesNotConvertToADerivedOrAnUnrelatedClass) {
    EXPECT_FALSE((std::is_convertible_v<Ref<Thing>, Ref<Special>>));
    EXPECT_FALSE((std::is_convertible_v<Ref<Thing>, Ref<Other>>));
    EXPECT_TRUE((std::is_convertible_v<Ref<Special>, Ref<Thing>>));
}

TEST(Ref, MadeFromAPointerCountsTheObject) {
    const auto first = newThing();
    const Ref<Thing> second(first.get());
    EXPECT_EQ(first->referenceCount(), 2);
}

TEST(Ref, MadeFromANullPointerIsNull) {
    Thing* const nothing = nullptr;
    EXPECT_EQ(Ref<Thing>(nothing), nullptr);
}

TEST(Ref, AdoptingTakesACountOverAndLeakingHandsItOn) {
    auto first = newThing();
    Thing* const object = first.leak();
    EXPECT_EQ(first, nullptr);
    EXPECT_EQ(object->referenceCount(), 1);
    const auto second = Ref<Thing>::adopt(object);
    EXPECT_EQ(second->referenceCount(), 1);
}

TEST(Ref, LeakingNullGivesNull) { EXPECT_EQ(Ref<Thing>().leak(), nullptr); }

TEST(Ref, ResetLetsGo) {
    bool died = false;
    auto thing = newThing();
    thing->died = &died;
    thing.reset();
    EXPECT_TRUE(died);
    EXPECT_EQ(thing, nullptr);
    thing.reset();
    EXPECT_EQ(thing, nullptr);
}

TEST(Ref, ResetLetsPassWhatTeardownRaises) {
    auto* const object = new Stubborn;
    Ref<Stubborn> stubborn(object);
    EXPECT_THROW(stubborn.reset(), std::runtime_error);
    EXPECT_EQ(stubborn, nullptr);
    delete object;
}

TEST(RefDeathTest, WhatTeardownRaisesInADestructorEndsTheProcess) {
    EXPECT_DEATH({ const Ref<Stubborn> stubborn(new Stubborn); }, "still needed");
}

TEST(Ref, IsEqualToWhatHoldsTheSameObject) {
    const auto one = newThing(1);
    const auto same = one;
    const auto other = newThing(1);
    EXPECT_TRUE(one == same);
    EXPECT_FALSE(one == other);
    EXPECT_TRUE(one != other);
    EXPECT_TRUE(one == one.get());
    EXPECT_FALSE(one == nullptr);
    EXPECT_TRUE(Ref<Thing>() == nullptr);
}

TEST(Ref, IsACondition) {
    EXPECT_TRUE(static_cast<bool>(newThing()));
    EXPECT_FALSE(static_cast<bool>(Ref<Thing>()));
}

TEST(NullObject, AnswersQueries) {
    const Ref<Thing> nothing;
    EXPECT_EQ(nothing->twice(), 0);
    EXPECT_TRUE(nothing->isNil());
    EXPECT_EQ(nothing->description(), nullptr);
}

TEST(NullObject, IsNoOrdinaryObject) { EXPECT_FALSE(newThing()->isNil()); }

TEST(NullObject, NeverGetsIntoARef) {
    const Ref<Thing> nothing;
    const Ref<Thing> again(nothing.operator->());
    EXPECT_EQ(again, nullptr);
    EXPECT_EQ(again.get(), nullptr);
    EXPECT_EQ(Ref<Thing>(wq::nil<Special>()), nullptr);
}

TEST(NullObject, IsOneForEachClass) {
    EXPECT_EQ(Ref<Thing>().operator->(), Ref<Thing>().operator->());
    EXPECT_EQ(Ref<Thing>().operator->(), wq::nil<Thing>());
    EXPECT_NE(static_cast<Thing*>(wq::nil<Special>()), wq::nil<Thing>());
}

TEST(NullObject, OfAnApplicationsSubclassAnswersLikeThatOfItsBase) {
    EXPECT_EQ(Ref<Counter>()->answer(), -1);
    EXPECT_EQ(Ref<ApplicationCounter>()->answer(), -1);
    EXPECT_EQ(Ref<ApplicationCounter>(new ApplicationCounter)->answer(), 42);
    EXPECT_NE(static_cast<Counter*>(wq::nil<ApplicationCounter>()), wq::nil<Counter>());
}

#ifdef WQ_COUNT_OBJECTS
TEST(NullObject, IsNotCountedAsLiving) {
    class Fresh : public wq::Object {};
    const int64_t before = wq::Object::numberOfLivingObjects();
    EXPECT_TRUE(Ref<Fresh>()->isNil());
    EXPECT_EQ(wq::Object::numberOfLivingObjects(), before);
}

TEST(Object, IsCountedAsLivingUntilItDies) {
    const int64_t before = wq::Object::numberOfLivingObjects();
    auto thing = newThing();
    EXPECT_EQ(wq::Object::numberOfLivingObjects(), before + 1);
    thing = nullptr;
    EXPECT_EQ(wq::Object::numberOfLivingObjects(), before);
}

TEST(Object, AnImmortalOneIsNotAmongTheLiving) {
    const int64_t before = wq::Object::numberOfLivingObjects();
    static Thing* const thing = wq::immortal<Thing>();
    EXPECT_EQ(wq::Object::numberOfLivingObjects(), before);
    EXPECT_FALSE(thing->isNil());
    Ref<Thing>(thing).reset();
    EXPECT_EQ(thing->referenceCount(), 1);
}
#endif

TEST(Class, HasOneDescriptor) {
    EXPECT_EQ(&wq::Class::of<Thing>(), &wq::Class::of<Thing>());
    EXPECT_NE(&wq::Class::of<Thing>(), &wq::Class::of<Special>());
}

TEST(Class, MakesAnObjectOfExactlyItself) {
    const wq::Class& made = wq::Class::of<Special>();
    const auto object = Ref<wq::Object>::adopt(made.make());
    EXPECT_EQ(object->referenceCount(), 1);
    EXPECT_EQ(wq::Class::of(*object.get()), &made);
    EXPECT_NE(dynamic_cast<Special*>(object.get()), nullptr);
}

TEST(Class, OfAnObjectIsTheOneItWasMadeWith) {
    const Ref<Thing> special = wq::make<Special>(&Special::initWithNumber, 1);
    EXPECT_EQ(wq::Class::of(*special.get()), &wq::Class::of<Special>());
    EXPECT_EQ(wq::Class::of(*newThing().get()), &wq::Class::of<Thing>());
}

TEST(Class, OfAnObjectThatNoClassMadeIsNull) {
    const Ref<Thing> thing(new Thing);
    EXPECT_EQ(wq::Class::of(*thing.get()), nullptr);
    EXPECT_EQ(wq::Class::of(*wq::nil<Thing>()), nullptr);
}

TEST(Make, CallsTheInitialiserOfTheMadeClass) {
    EXPECT_EQ(newThing(5)->number, 5);
    const auto special = wq::make<Thing>(wq::Class::of<Special>(), &Thing::initWithNumber, 5);
    EXPECT_EQ(special->number, 105);
    EXPECT_EQ(wq::Class::of(*special.get()), &wq::Class::of<Special>());
}

TEST(Make, IsNullIfTheInitialiserAnswersFalse) { EXPECT_EQ(newThing(-1), nullptr); }

TEST(Cast, FindsTheDerivedClass) {
    const Ref<wq::Object> object = wq::make<Special>(&Special::initWithNumber, 1);
    EXPECT_EQ(wq::cast<Special>(object).get(), object.get());
    EXPECT_EQ(wq::cast<Thing>(object).get(), object.get());
    EXPECT_EQ(object->referenceCount(), 1);
}

TEST(Cast, IsNullForAnotherClassAndForNull) {
    EXPECT_EQ(wq::cast<Special>(newThing()), nullptr);
    EXPECT_EQ(wq::cast<Other>(Ref<wq::Object>(newThing())), nullptr);
    EXPECT_EQ(wq::cast<Special>(Ref<Thing>()), nullptr);
}

TEST(Object, DescribesItselfByClassAndAddress) {
    const auto thing = newThing();
    const std::string description = wq::toUTF8(thing->description());
    EXPECT_THAT(description, StartsWith("<"));
    EXPECT_THAT(description, HasSubstr(fmt::format("Thing: {}>", fmt::ptr(thing.get()))));
}

TEST(Object, DescribesItselfByItsTrueClass) {
    const Ref<wq::Object> object = wq::make<Special>(&Special::initWithNumber, 1);
    EXPECT_THAT(wq::toUTF8(object->description()), HasSubstr("Special: 0x"));
}

TEST(Object, EqualsItselfAloneUnlessItsClassSaysOtherwise) {
    const auto thing = newThing();
    EXPECT_TRUE(thing->isEqual(thing));
    EXPECT_TRUE(thing->isEqual(Ref<wq::Object>(thing)));
    EXPECT_FALSE(thing->isEqual(newThing()));
    EXPECT_FALSE(thing->isEqual(nullptr));
    EXPECT_FALSE(Ref<Thing>()->isEqual(nullptr));
    EXPECT_FALSE(Ref<Thing>()->isEqual(thing));
}
