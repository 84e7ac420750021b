// Storage for a process-wide object that serves the static objects of a host, before main and
// after.
//
// References to `object` are constant expressions, so a static reference member may name it. Its
// owner constructs it by a function that every use goes through and that also runs at load, with
// the priority below. It is never destroyed.

#pragma once

#include "foundation/constinit.h"

namespace zor_internal {

// The priority of constructors that run before those of all ordinary static objects.
constexpr int kBeforeStaticInitialisers = 101;

template <typename T>
union Immortal {
    constexpr Immortal() : unused(0) {}
    // Leaves the object inside alone. NOLINTNEXTLINE(modernize-use-equals-default): that deletes it
    ~Immortal() {}
    char unused;
    T object;
};

} // namespace zor_internal
