// Inputs that ask for so many values that it only takes long to make them.
//
// One import may make 16 million values, which a short text can ask for, and they are made and
// visited one by one. Such inputs are left to the tests; here they would only crowd out others.

#pragma once

#include <cstdlib>
#include <string>

// Whether the occurrences that the text states, all multiplied, and the documents that it makes
// come to more than about 250,000 values. A branch beside another is taken for one inside it.
inline bool asksForVeryMuch(std::string const& text) {
    constexpr double kMost = 1 << 18;
    static std::string const counted = "occurrences=";
    static std::string const document = "<document";
    double values = 1;
    double documents = 1;
    for (std::size_t at = 0; (at = text.find(counted, at)) != std::string::npos;) {
        at += counted.size() + 1; // and the quote
        if (at > text.size()) break;
        auto const number = static_cast<short>(std::atoi(text.c_str() + at));
        if (number > 1) values *= number;
    }
    for (std::size_t at = 0; (at = text.find(document, at)) != std::string::npos; ++at) ++documents;
    return values * documents > kMost;
}
