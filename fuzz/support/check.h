// Properties. One that does not hold ends the process, in every kind of build, so that the fuzzer
// keeps the input.

#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>

inline void check(bool condition, char const* what) {
    if (condition) return;
    std::fprintf(stderr, "Property violated: %s\n", what);
    std::abort();
}

// The same for two texts, both of which are shown.
inline void checkSame(std::string const& actual, std::string const& expected, char const* what) {
    if (actual == expected) return;
    std::fprintf(stderr, "--- expected\n%s\n--- actual\n%s\n---\n", expected.c_str(),
                 actual.c_str());
    check(false, what);
}
