// Where a value is, in the languages of those who keep it.

#pragma once

#include <string>

#include "bench/phone_data.h"

namespace bench {

// The names on the way to the value, each behind the separator, and behind the name of what repeats
// index(occurrence), from 1.
template <typename Index>
std::string pathTo(PhoneValue const& value, char const* separator, Index const& index) {
    std::string path;
    for (PhoneStep const& step : value.path) {
        path.append(separator).append(step.node->name);
        if (step.node->occurrences > 1) path.append(index(step.occurrence));
    }
    return path;
}

// "/line[3]/key[1]/label"
inline std::string bracketPathTo(PhoneValue const& value) {
    return pathTo(value, "/",
                  [](int occurrence) { return "[" + std::to_string(occurrence) + "]"; });
}

} // namespace bench
