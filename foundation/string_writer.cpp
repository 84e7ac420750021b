// The output sinks of export.

#include "zor/text.h"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstring>

#include "foundation/out_of_memory.h"

using zor_internal::reportOutOfMemory;

namespace {

constexpr std::uint32_t kLargestCapacity = INT_MAX;

} // namespace

ZorDataWriter::~ZorDataWriter() = default;

ZorStringWriter::ZorStringWriter()
    : begin(localBuffer), end(localBuffer), capacity(sizeof localBuffer), used(1) {
    localBuffer[0] = '\0';
}

ZorStringWriter::~ZorStringWriter() {
    if (begin != localBuffer) delete[] begin;
}

void ZorStringWriter::writeData(char const* data, int length) {
    if (length < 1) length = static_cast<int>(std::strlen(data));
    std::uint32_t const needed =
        static_cast<std::uint32_t>(used) + static_cast<std::uint32_t>(length);
    char* outgrown = nullptr;
    auto newCapacity = static_cast<std::uint32_t>(capacity);
    if (needed > newCapacity) {
        if (needed > kLargestCapacity) reportOutOfMemory();
        while (newCapacity < needed) newCapacity *= 2;
        newCapacity = std::min(newCapacity, kLargestCapacity);
        char* const block = new char[newCapacity];
        std::memcpy(block, begin, static_cast<std::size_t>(used));
        if (begin != localBuffer) outgrown = begin;
        begin = block;
        end = block + used - 1;
        capacity = static_cast<int>(newCapacity);
    }
    std::memcpy(end, data, static_cast<std::size_t>(length));
    end += length;
    *end = '\0';
    used += length;
    delete[] outgrown; // only now: the data may be a part of it
}

std::string ZorStringWriter::getValue() { return std::string(begin); }
