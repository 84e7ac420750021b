// The tests' own platform: a Semaphore that fails a test which takes a lock twice in one thread or
// gives one that was not taken, and that can tell whether a lock is still held.

#include "tests/support/checked_semaphore.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <mutex>
#include <thread>

#include "zor/platform.h"

namespace {

std::mutex guard;
// Never destroyed: static objects of the library's users may outlive this file's.
auto& holders() {
    static auto* const map = new std::map<Semaphore const*, std::thread::id>;
    return *map;
}

} // namespace

int heldLocks() {
    std::lock_guard<std::mutex> const lock(guard);
    return static_cast<int>(holders().size());
}

Semaphore::Semaphore(int initial, int most, bool) : maximum(most) {
    sem_init(&semaphore, 0, static_cast<unsigned>(initial));
}

Semaphore::~Semaphore() {
    {
        std::lock_guard<std::mutex> const lock(guard);
        EXPECT_EQ(holders().erase(this), 0U) << "a lock was destroyed while held";
    }
    sem_destroy(&semaphore);
}

int Semaphore::take(int timeout) {
    EXPECT_EQ(timeout, -1) << "the store waits without limit";
    {
        std::lock_guard<std::mutex> const lock(guard);
        auto const found = holders().find(this);
        if (found != holders().end() && found->second == std::this_thread::get_id()) {
            std::fprintf(stderr, "a lock was taken twice by one thread\n");
            std::abort(); // waiting would never end
        }
    }
    while (sem_wait(&semaphore) != 0) {
    }
    std::lock_guard<std::mutex> const lock(guard);
    holders()[this] = std::this_thread::get_id();
    return 1;
}

int Semaphore::give() {
    {
        std::lock_guard<std::mutex> const lock(guard);
        EXPECT_EQ(holders().erase(this), 1U) << "a lock was given that was not taken";
    }
    int available = 0;
    sem_getvalue(&semaphore, &available);
    EXPECT_LT(available, maximum) << "a lock was given too often";
    return sem_post(&semaphore) == 0;
}
