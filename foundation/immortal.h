// Storage for a process-wide object that is usable before its file's static initialisers have run
// and is never destroyed.
//
// References to `object` are constant expressions, so a static reference member may name it. The
// object itself is constructed by its owner on first use. Never being destroyed, it serves the
// static objects of a host for as long as they live.

#pragma once

namespace zor_internal {

template <typename T>
union Immortal {
    constexpr Immortal() : unused(0) {}
    // Leaves the object inside alone. NOLINTNEXTLINE(modernize-use-equals-default): that deletes it
    ~Immortal() {}
    char unused;
    T object;
};

} // namespace zor_internal

// Makes the compiler refuse a static object that is not initialised before all code runs.
#ifdef __clang__
#define ZOR_CONSTINIT [[clang::require_constant_initialization]]
#else
#define ZOR_CONSTINIT __constinit
#endif
