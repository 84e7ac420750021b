// The schema of the telephone of phone_data.h.

#pragma once

#include <memory>
#include <string>
#include <vector>

#include "bench/phone_data.h"

namespace bench {

// Its choices and ranges.
std::vector<PhoneType> const& phoneTypes();

// The tree for so many values, its root on top.
// REQUIRES: as for PhoneData.
std::unique_ptr<PhoneNode> makePhoneSchema(int values);

// Types and nodes in the definition language.
std::string definitionOf(PhoneNode const& root);

} // namespace bench
