#include "common/core/include/Shared.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace {

// Writes down its own end, with the count that its destructor sees.
class Probe : public SharedObject {
public:
    explicit Probe(std::vector<int32_t>* someDeaths = nullptr) : deaths(someDeaths) {}
    ~Probe() override {
        if (deaths) deaths->push_back(refCount);
    }
    std::vector<int32_t>* deaths;
};
using Pointer = SharedPtr<Probe>;

// Puts something else into a pointer when it dies.
class Changer : public SharedObject {
public:
    Changer(SharedPtr<SharedObject>& aPlace, SharedObject* aTarget, int32_t& aCount) : place(aPlace), target(aTarget), count(aCount) {}
    ~Changer() override {
        count = target->refCount;
        place = SharedPtr<SharedObject>(target);
    }
    SharedPtr<SharedObject>& place;
    SharedObject* target;
    int32_t& count;
};

}  // namespace

TEST(SharedPtr, IsEmptyAtFirst) {
    const Pointer empty;
    EXPECT_EQ(empty.Get(), nullptr);
    EXPECT_FALSE(static_cast<bool>(empty));
    EXPECT_FALSE(static_cast<bool>(Pointer(nullptr)));
}

TEST(SharedPtr, ANewObjectHasACountOfOneAndDiesWithIt) {
    std::vector<int32_t> deaths;
    {
        const Pointer pointer(new Probe(&deaths));
        EXPECT_EQ(pointer->refCount, 1);
        EXPECT_EQ((*pointer).refCount, 1);
        EXPECT_TRUE(static_cast<bool>(pointer));
        EXPECT_TRUE(deaths.empty());
    }
    EXPECT_EQ(deaths, std::vector<int32_t>{0});
}

TEST(SharedPtr, CopiesCount) {
    const Pointer first(new Probe);
    {
        const Pointer second = first;
        EXPECT_EQ(first->refCount, 2);
        EXPECT_EQ(second.Get(), first.Get());
    }
    EXPECT_EQ(first->refCount, 1);
}

TEST(SharedPtr, TakesAnObjectThatAnotherOneHolds) {
    const Pointer first(new Probe);
    const Pointer second(first.Get());
    EXPECT_EQ(first->refCount, 2);
}

TEST(SharedPtr, AssigningItToItselfLeavesTheCount) {
    std::vector<int32_t> deaths;
    Pointer pointer(new Probe(&deaths));
    const Pointer& same = pointer;
    pointer = same;
    EXPECT_EQ(pointer->refCount, 1);
    EXPECT_TRUE(deaths.empty());
}

TEST(SharedPtr, AssigningTheSameObjectLeavesTheCount) {
    Pointer first(new Probe);
    const Pointer second = first;
    first = second;
    EXPECT_EQ(first->refCount, 2);
}

TEST(SharedPtr, AssigningAPlainPointerHoldsIt) {
    std::vector<int32_t> deaths;
    Pointer pointer(new Probe(&deaths));
    auto* const next = new Probe;
    pointer = next;
    EXPECT_EQ(deaths, std::vector<int32_t>{0});
    EXPECT_EQ(pointer.Get(), next);
    EXPECT_EQ(next->refCount, 1);
}

TEST(SharedPtr, AssigningEmptyDestroysTheOldObject) {
    std::vector<int32_t> deaths;
    Pointer pointer(new Probe(&deaths));
    pointer = Pointer();
    EXPECT_EQ(deaths, std::vector<int32_t>{0});
    EXPECT_EQ(pointer.Get(), nullptr);
    pointer = nullptr;
    EXPECT_EQ(pointer.Get(), nullptr);
}

TEST(SharedPtr, AssigningLeavesAnOldObjectThatOthersHold) {
    std::vector<int32_t> deaths;
    Pointer first(new Probe(&deaths));
    const Pointer second = first;
    first = Pointer(new Probe);
    EXPECT_TRUE(deaths.empty());
    EXPECT_EQ(second->refCount, 1);
}

TEST(SharedPtr, TheOldObjectGoesBeforeTheNewOneIsCounted) {
    SharedPtr<SharedObject> source(new Probe), unused;
    int32_t count = -1;
    SharedPtr<SharedObject> target(new Changer(unused, source.Get(), count));
    target = source;
    EXPECT_EQ(count, 1);  // the source's own
    EXPECT_EQ(target->refCount, 3);
}

TEST(SharedPtr, TheSourceIsReadAfterTheOldObjectHasGone) {
    const SharedPtr<SharedObject> other(new Probe);
    SharedPtr<SharedObject> source(new Probe);
    int32_t count = -1;
    SharedPtr<SharedObject> target(new Changer(source, other.Get(), count));
    target = source;  // the death of the old object puts `other` into the source
    EXPECT_EQ(source.Get(), other.Get());
    EXPECT_EQ(target.Get(), other.Get());
    EXPECT_EQ(other->refCount, 3);
}

TEST(SharedPtr, IsOnePointerWide) { EXPECT_EQ(sizeof(Pointer), sizeof(void*)); }

TEST(SharedObject, BelongsToNobodyAtFirst) {
    const Probe onTheStack;
    EXPECT_EQ(onTheStack.refCount, 0);
}

TEST(SharedObject, ThatNobodyHeldIsDestroyedDirectly) {
    std::vector<int32_t> deaths;
    delete new Probe(&deaths);
    EXPECT_EQ(deaths, std::vector<int32_t>{0});
}

TEST(SharedObject, ACopyIsANewObject) {
    const Pointer original(new Probe);
    const Probe copy(*original);
    EXPECT_EQ(copy.refCount, 0);
    EXPECT_EQ(original->refCount, 1);
}

TEST(SharedObject, AssigningLeavesTheCountsAlone) {
    const Pointer left(new Probe), right(new Probe);
    const Pointer again = right;
    *left = *right;
    EXPECT_EQ(left->refCount, 1);
    EXPECT_EQ(right->refCount, 2);
}

TEST(SharedObjectDeathTest, DestroyingAHeldObjectEndsTheProcessInEveryBuild) {
    EXPECT_DEATH(
        {
            auto* const object = new Probe;
            const Pointer pointer(object);
            delete object;
        },
        "Assertion failed: \\(refCount == 0\\), function ~SharedObject, file common/core/include/Shared, line [0-9]+\\.\n");
}

namespace {

void assertNumber(int number, int& evaluations) { WQ_HARD_ASSERT("folder/File", "assertNumber", ++evaluations > 0 && number != 13); }

[[maybe_unused]] void neverReached() { WQ_HARD_ASSERT("folder/File", "neverReached", 0); }

}  // namespace

#ifdef WQ_NO_HARD_ASSERTIONS

TEST(HardAssertion, CompiledOutIsNotEvaluated) {
    int evaluations = 0;
    assertNumber(13, evaluations);
    EXPECT_EQ(evaluations, 0);
    neverReached();
}

#else

TEST(HardAssertion, ThatHoldsIsEvaluatedOnce) {
    int evaluations = 0;
    assertNumber(1, evaluations);
    EXPECT_EQ(evaluations, 1);
}

TEST(HardAssertionDeathTest, ThatFailsPrintsItsPlaceAndAborts) {
    int evaluations = 0;
    EXPECT_EXIT(
        assertNumber(13, evaluations), testing::KilledBySignal(SIGABRT),
        "^Assertion failed: \\(\\+\\+evaluations > 0 && number != 13\\), function assertNumber, file folder/File, line [0-9]+\\.\n");
}

TEST(HardAssertionDeathTest, OfABranchThatIsNeverReachedPrintsZero) {
    EXPECT_DEATH(neverReached(), "Assertion failed: \\(0\\), function neverReached, file folder/File, line [0-9]+\\.");
}

#endif

TEST(HardAssertionDeathTest, TheOneThatStaysFailsInEveryBuild) {
    EXPECT_DEATH(
        WQ_HARD_ASSERT_ALWAYS("folder/File", "operation", 1 > 2),
        "Assertion failed: \\(1 > 2\\), function operation, file folder/File, line [0-9]+\\.");
}
