// Validation of decimal numbers by their digits alone, so that no number overflows on the way.

#pragma once

namespace zor_internal {

// The rule of "int" and "uint": an optional sign out of `signs`, then digits whose value does not
// pass `limit`, a text of ten digits. Leading zeros never count.
int decimalIsValid(char const* text, char const* signs, char const* limit);

} // namespace zor_internal
