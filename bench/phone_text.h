// The texts of the telephone's values.

#pragma once

#include <string>

#include "bench/phone_data.h"

namespace bench {

// A text that the node's type accepts, and that zor gives back as it stands; it is not the default.
// Texts are of the lengths that such values have, and differ from occurrence to occurrence (from 0,
// in all); a few need escaping or are beyond ASCII.
std::string textFor(PhoneNode const& node, int flat);

// The text with the five characters of markup written as entities.
void appendEscaped(std::string& out, std::string const& text);

} // namespace bench
