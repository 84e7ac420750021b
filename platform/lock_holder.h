// A local holder of a semaphore that serves as a lock: given back on every return.

#pragma once

#include "zor/platform.h"

namespace zor_internal {

class LockHolder {
public:
    explicit LockHolder(Semaphore& semaphore) : held(semaphore) { held.take(-1); }
    LockHolder(LockHolder const&) = delete;
    LockHolder& operator=(LockHolder const&) = delete;
    ~LockHolder() { held.give(); }

private:
    Semaphore& held;
};

} // namespace zor_internal
