// The built-in Semaphore over POSIX semaphores, which stay in user space while uncontended.

#include "zor/platform.h"

#include <cerrno>
#include <ctime>

namespace {

constexpr long kNanosecondsPerMillisecond = 1000000;
constexpr long kNanosecondsPerSecond = 1000000000;

timespec deadlineAfter(int milliseconds) {
    timespec at;
    clock_gettime(CLOCK_REALTIME, &at); // the clock that sem_timedwait reads
    at.tv_sec += milliseconds / 1000;
    at.tv_nsec += (milliseconds % 1000) * kNanosecondsPerMillisecond;
    if (at.tv_nsec >= kNanosecondsPerSecond) {
        at.tv_nsec -= kNanosecondsPerSecond;
        ++at.tv_sec;
    }
    return at;
}

} // namespace

Semaphore::Semaphore(int initial, int most, bool) : maximum(most) {
    sem_init(&semaphore, 0, static_cast<unsigned>(initial));
}

Semaphore::~Semaphore() { sem_destroy(&semaphore); }

int Semaphore::take(int timeout) {
    int result;
    if (timeout < 0) {
        do result = sem_wait(&semaphore);
        while (result != 0 && errno == EINTR);
    } else if (timeout == 0) {
        result = sem_trywait(&semaphore);
    } else {
        timespec const deadline = deadlineAfter(timeout);
        do result = sem_timedwait(&semaphore, &deadline);
        while (result != 0 && errno == EINTR);
    }
    return result == 0;
}

int Semaphore::give() {
    int available = 0;
    sem_getvalue(&semaphore, &available);
    if (available >= maximum) return 0;
    return sem_post(&semaphore) == 0;
}
