// The tests' own platform: a Semaphore that fails a test which takes a lock twice in one thread,
// gives one that this thread did not take or destroys one that is held, and that can tell how many
// are held.
//
// Its bookkeeping orders no two threads: each has a list of its own locks, and what they share are
// relaxed counts. So a race that the locks leave open is as visible to ThreadSanitizer as it is on
// the built-in platform.

#include "tests/support/checked_semaphore.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>

#include "zor/platform.h"

namespace {

// The locks that the running thread holds. Plain storage, so that static objects of the library's
// users may lock before and after main, and no allocation is counted.
constexpr int kMostHeld = 16;
thread_local Semaphore const* heldHere[kMostHeld];
thread_local int heldHereCount = 0;

std::atomic<int> heldByAll{0};

Semaphore const** findHeld(Semaphore const* lock) {
    return std::find(heldHere, heldHere + heldHereCount, lock);
}

bool isHeldHere(Semaphore const* lock) { return findHeld(lock) != heldHere + heldHereCount; }

// Where going on would wait for ever or destroy the records.
[[noreturn]] void giveUp(char const* reason) {
    std::fprintf(stderr, "%s\n", reason);
    std::abort();
}

} // namespace

int heldLocks() { return heldByAll.load(std::memory_order_relaxed); }

// `maximum` is below 0 while the lock is held.
Semaphore::Semaphore(int initial, int most, bool) : maximum(most) {
    EXPECT_EQ(initial, 1) << "the store's semaphores are locks";
    EXPECT_EQ(most, 1) << "the store's semaphores are locks";
    sem_init(&semaphore, 0, static_cast<unsigned>(initial));
}

Semaphore::~Semaphore() {
    EXPECT_GT(__atomic_load_n(&maximum, __ATOMIC_RELAXED), 0) << "a lock was destroyed while held";
    sem_destroy(&semaphore);
}

int Semaphore::take(int timeout) {
    EXPECT_EQ(timeout, -1) << "the store waits without limit";
    if (isHeldHere(this)) giveUp("a lock was taken twice by one thread");
    if (heldHereCount == kMostHeld) giveUp("one thread holds more locks than the tests can note");
    while (sem_wait(&semaphore) != 0) {
    }
    __atomic_store_n(&maximum, -1, __ATOMIC_RELAXED);
    heldHere[heldHereCount++] = this;
    heldByAll.fetch_add(1, std::memory_order_relaxed);
    return 1;
}

int Semaphore::give() {
    Semaphore const** const held = findHeld(this);
    bool const wasTaken = held != heldHere + heldHereCount;
    EXPECT_TRUE(wasTaken) << "a lock was given that this thread did not take";
    if (!wasTaken) return 0;
    --heldHereCount;
    *held = heldHere[heldHereCount];
    heldByAll.fetch_sub(1, std::memory_order_relaxed);
    __atomic_store_n(&maximum, 1, __ATOMIC_RELAXED);
    return sem_post(&semaphore) == 0;
}
