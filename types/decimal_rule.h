// Validation of decimal numbers by their digits alone, so that no number overflows on the way.

#pragma once

#include <cstdint>

namespace zor_internal {

// The rule of "int" and "uint": an optional sign out of `signs`, then digits whose value does not
// pass `limit`. Leading zeros never count.
// REQUIRES: `limit` is at least 9.
int decimalIsValid(char const* text, char const* signs, std::uint32_t limit);

} // namespace zor_internal
