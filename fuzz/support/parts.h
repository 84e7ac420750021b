// Inputs of several parts, with a line of two equals signs between them, so that seeds stay
// readable and every mutation of an input is one of its parts.

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

inline constexpr char kPartSeparator[] = "\n==\n";

inline std::string textOfInput(std::uint8_t const* data, std::size_t size) {
    return std::string(reinterpret_cast<char const*>(data), size);
}

// What C takes a text to be.
inline std::string upToNul(std::string const& text) { return text.substr(0, text.find('\0')); }

// At least `least` parts, the last ones empty where the input has fewer.
inline std::vector<std::string> partsOf(std::uint8_t const* data, std::size_t size,
                                        std::size_t least) {
    std::string const text = textOfInput(data, size);
    std::size_t const width = sizeof kPartSeparator - 1;
    std::vector<std::string> parts;
    std::size_t begin = 0;
    for (std::size_t at; (at = text.find(kPartSeparator, begin)) != std::string::npos;) {
        parts.push_back(text.substr(begin, at - begin));
        begin = at + width;
    }
    parts.push_back(text.substr(begin));
    if (parts.size() < least) parts.resize(least);
    return parts;
}
