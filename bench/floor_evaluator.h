// Select by hand, by the rules of zor's paths as far as they are names, occurrences and "//". A
// name is compared once for each node of the schema, never for its occurrences: those are
// strode through.

#pragma once

#include <memory>
#include <vector>

#include "bench/floor_store.h"

namespace bench {

struct FloorResult {
    FloorNode const* node;
    int occurrence; // from 0
    int flat;
};

using FloorResults = std::vector<FloorResult>;

// Null for a path that it does not understand.
std::unique_ptr<FloorResults> floorSelect(FloorDocument& document, char const* path);

} // namespace bench
