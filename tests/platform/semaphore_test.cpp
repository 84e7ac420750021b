// The built-in semaphore.

#include <gtest/gtest.h>

#include <linux/seccomp.h>
#include <pthread.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include "tests/support/sanitizer.h"
#include "zor/platform.h"

namespace {

using Clock = std::chrono::steady_clock;

void sleepFor(int milliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

// The result of a take and how long it took.
struct Taken {
    int result;
    long milliseconds;
};

Taken timed(Semaphore& semaphore, int timeout) {
    auto const start = Clock::now();
    int const result = semaphore.take(timeout);
    using Milliseconds = std::chrono::duration<long, std::milli>;
    return {result, std::chrono::duration_cast<Milliseconds>(Clock::now() - start).count()};
}

// Of the second that it is by the clock on the wall.
int millisecondsLeft() {
    using std::chrono::milliseconds;
    auto const now = std::chrono::system_clock::now().time_since_epoch();
    return 1000 - static_cast<int>(std::chrono::duration_cast<milliseconds>(now).count() % 1000);
}

std::atomic<int> signalsCaught{0};

// A signal whose handler interrupts system calls, for as long as this lives.
class InterruptingSignal {
public:
    InterruptingSignal() {
        signalsCaught = 0;
        struct sigaction action = {};
        action.sa_handler = [](int) { ++signalsCaught; };
        sigemptyset(&action.sa_mask);
        action.sa_flags = 0; // no SA_RESTART
        sigaction(SIGUSR1, &action, &old);
    }
    InterruptingSignal(InterruptingSignal const&) = delete;
    InterruptingSignal& operator=(InterruptingSignal const&) = delete;
    ~InterruptingSignal() { sigaction(SIGUSR1, &old, nullptr); }

    // Interrupts the thread a few times.
    static void interrupt(std::thread& thread) {
        for (int i = 0; i < 5; ++i) {
            int const before = signalsCaught;
            pthread_kill(thread.native_handle(), SIGUSR1);
            while (signalsCaught == before) sleepFor(1);
        }
    }

private:
    struct sigaction old;
};

// What the child process exits with when it may not do without the kernel's help.
constexpr int kNotSupported = 77;

// Takes and gives in a process that the kernel kills at its first system call other than exit.
[[noreturn]] void takeWithoutSystemCalls() {
    Semaphore semaphore(1, 1, false);
    alarm(20); // should only this thread be killed
    if (prctl(PR_SET_SECCOMP, SECCOMP_MODE_STRICT) != 0) _exit(kNotSupported);
    int succeeded = 0;
    for (int i = 0; i < 100; ++i) {
        succeeded += semaphore.take(-1);
        succeeded += semaphore.give();
        succeeded += semaphore.take(0);
        succeeded += semaphore.take(0) == 0; // nothing available, and no waiting
        succeeded += semaphore.give();
    }
    syscall(SYS_exit, succeeded == 500 ? 0 : 1);
    __builtin_unreachable();
}

} // namespace

TEST(Semaphore, HasTheInitialUnits) {
    for (int initial = 0; initial <= 3; ++initial) {
        Semaphore semaphore(initial, 3, false);
        for (int i = 0; i < initial; ++i) EXPECT_EQ(semaphore.take(0), 1) << initial;
        EXPECT_EQ(semaphore.take(0), 0) << initial;
    }
}

TEST(Semaphore, TakesWhatIsAvailableWhateverTheTimeout) {
    for (int const timeout : {-1, -1000, 0, 1, 1000, 2147483647}) {
        Semaphore semaphore(1, 1, false);
        EXPECT_EQ(semaphore.take(timeout), 1) << timeout;
        EXPECT_EQ(semaphore.take(0), 0) << timeout;
    }
}

TEST(Semaphore, GivesUpToItsMaximum) {
    Semaphore semaphore(0, 2, false);
    EXPECT_EQ(semaphore.give(), 1);
    EXPECT_EQ(semaphore.give(), 1);
    EXPECT_EQ(semaphore.give(), 0); // nothing changes
    EXPECT_EQ(semaphore.take(0), 1);
    EXPECT_EQ(semaphore.take(0), 1);
    EXPECT_EQ(semaphore.take(0), 0);
    EXPECT_EQ(semaphore.give(), 1);
}

// As the store's locks are made.
TEST(Semaphore, OfMaximumOneIsALock) {
    Semaphore lock(1, 1, false);
    EXPECT_EQ(lock.give(), 0);
    EXPECT_EQ(lock.take(-1), 1);
    EXPECT_EQ(lock.take(0), 0);
    EXPECT_EQ(lock.give(), 1);
    EXPECT_EQ(lock.give(), 0);
    EXPECT_EQ(lock.take(-1), 1);
}

TEST(Semaphore, FlagHasNoEffect) {
    Semaphore semaphore(0, 1, true);
    EXPECT_EQ(semaphore.take(0), 0);
    EXPECT_EQ(semaphore.give(), 1);
    EXPECT_EQ(semaphore.give(), 0);
    EXPECT_EQ(semaphore.take(-1), 1);
}

TEST(Semaphore, TimeoutZeroDoesNotWait) {
    Semaphore semaphore(0, 1, false);
    auto const start = Clock::now();
    for (int i = 0; i < 1000; ++i) EXPECT_EQ(semaphore.take(0), 0);
    EXPECT_LT(Clock::now() - start, std::chrono::seconds(1));
}

// A timeout is in milliseconds: neither seconds nor microseconds, also beyond a second.
TEST(Semaphore, WaitsThatManyMilliseconds) {
    Semaphore semaphore(0, 1, false);
    for (int const timeout : {1, 30, 250, 1100}) {
        Taken const waited = timed(semaphore, timeout);
        EXPECT_EQ(waited.result, 0) << timeout;
        EXPECT_GE(waited.milliseconds, timeout - 1) << timeout;
        EXPECT_LT(waited.milliseconds, timeout + 5000) << timeout;
    }
    EXPECT_EQ(semaphore.give(), 1);
    EXPECT_EQ(semaphore.take(0), 1); // a wait in vain took nothing
}

// The end of the wait may lie in another second than its beginning.
TEST(Semaphore, WaitsAcrossTheEndOfASecond) {
    Semaphore semaphore(0, 1, false);
    while (millisecondsLeft() > 500) sleepFor(10);
    int const timeout = millisecondsLeft() + 100;
    Taken const waited = timed(semaphore, timeout);
    EXPECT_EQ(waited.result, 0);
    EXPECT_GE(waited.milliseconds, timeout - 1);
    EXPECT_LT(waited.milliseconds, timeout + 5000);
}

TEST(Semaphore, WakesAWaiterWhenAUnitIsGiven) {
    for (int const timeout : {-1, 60000}) {
        Semaphore semaphore(0, 1, false);
        Taken waited = {-1, -1};
        std::thread waiter([&] { waited = timed(semaphore, timeout); });
        sleepFor(30);
        EXPECT_EQ(semaphore.give(), 1);
        waiter.join();
        EXPECT_EQ(waited.result, 1) << timeout;
        EXPECT_LT(waited.milliseconds, 30000) << timeout;
        EXPECT_EQ(semaphore.take(0), 0) << timeout;
    }
}

// A give wakes one waiter, not all.
TEST(Semaphore, WakesOneWaiterPerUnit) {
    Semaphore semaphore(0, 3, false);
    std::atomic<int> woken{0};
    std::vector<std::thread> waiters;
    waiters.reserve(3);
    for (int i = 0; i < 3; ++i) {
        waiters.emplace_back([&] {
            EXPECT_EQ(semaphore.take(-1), 1);
            ++woken;
        });
    }
    for (int given = 1; given <= 3; ++given) {
        EXPECT_EQ(woken, given - 1);
        EXPECT_EQ(semaphore.give(), 1);
        while (woken < given) sleepFor(1);
        sleepFor(10);
    }
    for (std::thread& waiter : waiters) waiter.join();
    EXPECT_EQ(woken, 3);
    EXPECT_EQ(semaphore.take(0), 0);
}

TEST(Semaphore, HandsOverBetweenThreads) {
    constexpr int kRounds = 2000;
    Semaphore ping(0, 1, false);
    Semaphore pong(0, 1, false);
    int ball = 0;
    std::thread other([&] {
        for (int i = 0; i < kRounds; ++i) {
            EXPECT_EQ(ping.take(-1), 1);
            EXPECT_EQ(ball, 2 * i + 1);
            ++ball;
            EXPECT_EQ(pong.give(), 1);
        }
    });
    for (int i = 0; i < kRounds; ++i) {
        EXPECT_EQ(ball, 2 * i);
        ++ball;
        EXPECT_EQ(ping.give(), 1);
        EXPECT_EQ(pong.take(-1), 1);
    }
    other.join();
    EXPECT_EQ(ball, 2 * kRounds);
}

TEST(Semaphore, KeepsThreadsApart) {
    constexpr int kThreads = 4;
    constexpr int kRounds = 200000;
    Semaphore lock(1, 1, false);
    long guarded = 0;
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([&] {
            for (int round = 0; round < kRounds; ++round) {
                lock.take(-1);
                ++guarded;
                lock.give();
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(guarded, long{kThreads} * kRounds);
    EXPECT_EQ(lock.give(), 0);
}

// A signal does not end a wait without limit.
TEST(Semaphore, GoesOnWaitingAfterASignal) {
    InterruptingSignal signal;
    Semaphore semaphore(0, 1, false);
    std::atomic<bool> done{false};
    std::thread waiter([&] {
        EXPECT_EQ(semaphore.take(-1), 1);
        done = true;
    });
    sleepFor(20);
    signal.interrupt(waiter);
    sleepFor(20);
    EXPECT_FALSE(done);
    EXPECT_EQ(semaphore.give(), 1);
    waiter.join();
    EXPECT_EQ(signalsCaught, 5);
}

// Nor does it shorten or prolong one with a limit.
TEST(Semaphore, WaitsItsWholeTimeDespiteSignals) {
    InterruptingSignal signal;
    Semaphore semaphore(0, 1, false);
    Taken waited = {-1, -1};
    std::thread waiter([&] { waited = timed(semaphore, 400); });
    sleepFor(50);
    signal.interrupt(waiter);
    waiter.join();
    EXPECT_EQ(signalsCaught, 5);
    EXPECT_EQ(waited.result, 0);
    EXPECT_GE(waited.milliseconds, 399);
    EXPECT_LT(waited.milliseconds, 400 + 5000);
}

TEST(Semaphore, TakesAUnitGivenAfterASignal) {
    InterruptingSignal signal;
    Semaphore semaphore(0, 1, false);
    Taken waited = {-1, -1};
    std::thread waiter([&] { waited = timed(semaphore, 60000); });
    sleepFor(20);
    signal.interrupt(waiter);
    EXPECT_EQ(semaphore.give(), 1);
    waiter.join();
    EXPECT_EQ(waited.result, 1);
}

// Uncontended take and give stay in user space.
TEST(Semaphore, NeedsNoSystemCallsWhileUncontended) {
    // Its own thread makes system calls, and outlives the one that the kernel kills.
    if (kThreadSanitizer) GTEST_SKIP() << "not under ThreadSanitizer";
    pid_t const child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) takeWithoutSystemCalls();
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    if (WIFEXITED(status) && WEXITSTATUS(status) == kNotSupported) {
        GTEST_SKIP() << "this kernel does not tell system calls";
    }
    EXPECT_TRUE(WIFEXITED(status)) << "killed by signal " << WTERMSIG(status);
    EXPECT_EQ(WEXITSTATUS(status), 0);
}
