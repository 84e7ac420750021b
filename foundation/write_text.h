// Writing whole texts.

#pragma once

#include <cstring>
#include <string>

#include "zor/text.h"

namespace zor_internal {

inline void writeText(ZorDataWriter* writer, char const* text) {
    writer->writeData(text, static_cast<int>(std::strlen(text)));
}

inline void writeText(ZorDataWriter* writer, std::string const& text) {
    writer->writeData(text.c_str(), static_cast<int>(text.size()));
}

} // namespace zor_internal
