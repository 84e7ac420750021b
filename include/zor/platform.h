// What the store needs from the device's platform: a counting semaphore and a trace profile.
//
// With ZOR_PLATFORM=builtin the library brings both, as declared here. With ZOR_PLATFORM=external
// the host's own platform library brings them: its header is included instead and must declare
// the two classes with the same members.

#pragma once

#ifdef ZOR_PLATFORM_HEADER
#include ZOR_PLATFORM_HEADER
#else

#include <semaphore.h>

#include "zor/export.h"

class ZOR_API Semaphore {
public:
    // A semaphore with `initial` units available and never more than `maximum`. The flag is for
    // platforms that tell kinds of semaphores apart; it has no effect here.
    // REQUIRES: 0 <= initial <= maximum.
    Semaphore(int initial, int maximum, bool flag);
    Semaphore(Semaphore const&) = delete;
    Semaphore& operator=(Semaphore const&) = delete;
    // REQUIRES: no thread waits.
    ~Semaphore();

    // Takes one unit. `timeout` -1 (or any negative number) waits without limit, 0 does not wait,
    // a positive number waits that many milliseconds by the wall clock, so that setting the clock
    // changes the wait. 1 when a unit was taken, 0 when not.
    int take(int timeout);

    // Gives one unit back and wakes one waiter, if any. 1, or 0 when the maximum is available
    // already: then nothing changes. (Surplus gives by several threads at the same moment may pass
    // the maximum; a user that gives only what it took never comes near.)
    int give();

private:
    sem_t semaphore;
    int maximum;
};

// Hosts derive from it; it is never deleted through a pointer to this class.
class ZOR_API TraceProfile {
public:
    // Non-zero when trace output of this level is wanted for the profile of that name. This one
    // always answers 1.
    virtual int Get(char const* name, int level, int flag);

    // The profile that is asked; a host points it at its own. Null silences all incidents.
    // Initially a profile that always answers 1.
    static TraceProfile* _instance;
};

#endif
