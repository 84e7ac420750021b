// The validation of values by hand, for peers that have none.

#pragma once

#include <climits>
#include <cstring>
#include <string>
#include <vector>

#include "bench/phone_data.h"

namespace bench {

// What a type allows of numbers and texts, prepared. Types of real numbers, addresses and so on
// are not asked: no workload writes one by a peer without validation.
class ValueCheck {
public:
    // Borrows the type.
    explicit ValueCheck(PhoneType const& type)
        : minimum(type.minimum.empty() ? LONG_MIN : std::stol(type.minimum)),
          maximum(type.maximum.empty() ? LONG_MAX : std::stol(type.maximum)),
          options(type.options.empty() ? nullptr : &type.options),
          isDigits(type.base == "digit_string") {}

    bool accepts(long number) const { return minimum <= number && number <= maximum; }

    bool accepts(char const* text) const {
        if (options) return isOption(text);
        return !isDigits || areDigits(text);
    }

private:
    bool isOption(char const* text) const {
        for (std::string const& option : *options) {
            if (std::strcmp(option.c_str(), text) == 0) return true;
        }
        return false;
    }

    static bool areDigits(char const* text) {
        if (*text == '+' && !*++text) return false;
        return text[std::strspn(text, "0123456789#* ")] == '\0';
    }

    long minimum;
    long maximum;
    std::vector<std::string> const* options;
    bool isDigits;
};

} // namespace bench
