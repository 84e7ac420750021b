// Writing whole texts.

#pragma once

#include <initializer_list>
#include <string>

#include "zor/text.h"

namespace zor_internal {

void writeText(ZorDataWriter* writer, char const* text);
void writeText(ZorDataWriter* writer, std::string const& text);

// Writes the texts one behind the other in a single write.
void writeJoined(ZorDataWriter* writer, std::initializer_list<char const*> texts);

} // namespace zor_internal
