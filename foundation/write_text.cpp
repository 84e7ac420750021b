#include "foundation/write_text.h"

#include <cstring>

namespace zor_internal {

void writeText(ZorDataWriter* writer, char const* text) {
    writer->writeData(text, static_cast<int>(std::strlen(text)));
}

void writeText(ZorDataWriter* writer, std::string const& text) {
    writer->writeData(text.c_str(), static_cast<int>(text.size()));
}

void writeJoined(ZorDataWriter* writer, std::initializer_list<char const*> texts) {
    std::string joined;
    for (char const* const text : texts) joined += text;
    writeText(writer, joined);
}

} // namespace zor_internal
