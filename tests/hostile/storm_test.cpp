// Long sequences of random operations on two stores: imports of broken texts, whole and in pieces,
// dictionaries that import and delete meanwhile, copies, deletions, exports, result sets. In
// between, an allocation fails or a function of the host throws. A failure names the seed and the
// operation; each sequence depends on its seed alone.

#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <new>
#include <string>

#include "tests/hostile/failing_host.h"
#include "tests/hostile/storm_operations.h"
#include "tests/support/allocations.h"
#include "tests/support/checked_semaphore.h"
#include "tests/support/sanitizer.h"

namespace {

constexpr int kOperations = 150;
constexpr long kSeeds = kThreadSanitizer ? 10 : 100; // in each group; one thread has no races

// The operation that runs, for the case that it ends the process.
volatile std::sig_atomic_t currentSeed = 0;
volatile std::sig_atomic_t currentOperation = 0;

class NamesOperationOnAbort {
public:
    NamesOperationOnAbort() : before(std::signal(SIGABRT, print)) {}
    NamesOperationOnAbort(NamesOperationOnAbort const&) = delete;
    NamesOperationOnAbort& operator=(NamesOperationOnAbort const&) = delete;
    ~NamesOperationOnAbort() { std::signal(SIGABRT, before); }

private:
    static void print(int) {
        std::fprintf(stderr, "seed %d, operation %d\n", int(currentSeed), int(currentOperation));
        std::signal(SIGABRT, SIG_DFL);
    }

    void (*before)(int);
};

// A sequence, and what went wrong in it on request.
class Sequence {
public:
    explicit Sequence(long sequenceSeed) : seed(sequenceSeed) {}

    void run() {
        HostLog const log;
        StormWorld world(dice);
        for (int i = 0; i < kOperations && !testing::Test::HasFailure(); ++i) {
            SCOPED_TRACE("seed " + std::to_string(seed) + ", operation " + std::to_string(i));
            currentSeed = int(seed);
            currentOperation = i;
            // Dice of its own: what an operation draws hangs on no failure of earlier ones.
            dice.seed(static_cast<unsigned long>(seed * kOperations + i));
            perform(world);
            EXPECT_EQ(heldLocks(), 0);
            EXPECT_FALSE(world.isImporting());
            if (i % 10 == 9) world.readAll();
        }
    }

    long outOfMemory = 0;
    long hostFailures = 0;

private:
    void perform(StormWorld& world) {
        StormWorld::Operation const work = world.draw();
        long const failingCall = dice.oneIn(8) ? 1 + dice.below(dice.oneIn(2) ? 3 : 30) : 0;
        long const failingBlock = dice.oneIn(3) ? 1 + dice.below(dice.oneIn(2) ? 8 : 200) : 0;
        FailingHostCall const throwing(failingCall);
        FailingAllocation const failing(failingBlock);
        try {
            work();
        } catch (std::bad_alloc const&) {
            ++outOfMemory;
            EXPECT_TRUE(failingBlock > 0 && failing.happened()) << "memory ran out unasked";
        } catch (HostFailure const&) {
            ++hostFailures;
        }
    }

    long seed;
    Dice dice;
};

} // namespace

class Storm : public testing::TestWithParam<long> {};

// No operation keeps a lock or leaves an import running, what the stores hold can be read at any
// time, and in the end nothing is left.
TEST_P(Storm, LeavesNothingBehind) {
    NamesOperationOnAbort const naming;
    long outOfMemory = 0;
    long hostFailures = 0;
    for (long seed = GetParam(); seed < GetParam() + kSeeds && !HasFailure(); ++seed) {
        long const before = liveBlocks();
        {
            Sequence sequence(seed);
            sequence.run();
            outOfMemory += sequence.outOfMemory;
            hostFailures += sequence.hostFailures;
        }
        ZorBuiltIn::deleteBuiltInTypes();
        EXPECT_EQ(liveBlocks(), before) << "left by seed " << seed;
        EXPECT_EQ(ZorCollection::refCount, 0) << "after seed " << seed;
        EXPECT_EQ(ZorSchema::sNodeMap.size(), 0U) << "after seed " << seed;
    }
    EXPECT_GT(outOfMemory, kSeeds);
    EXPECT_GT(hostFailures, kSeeds / 2);
}

INSTANTIATE_TEST_SUITE_P(Seeds, Storm,
                         testing::Values(1000, 2000, 3000, 4000, 5000, 6000, 7000, 8000),
                         [](auto const& instance) {
                             return "From" + std::to_string(instance.param);
                         });
