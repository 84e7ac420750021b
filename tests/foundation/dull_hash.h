// The hash of map keys, computed the long way.

#pragma once

#include <string>

inline unsigned hashOf(std::string const& text) {
    unsigned long long hash = 0;
    for (char const c : text) {
        hash = hash * 16777619ULL % 4294967296ULL;
        hash ^= static_cast<unsigned char>(c);
    }
    return static_cast<unsigned>(hash);
}
