// The output sinks of export.

#include "zor/text.h"

#include <climits>
#include <cstdint>
#include <cstring>

#include "foundation/out_of_memory.h"

using zor_internal::reportOutOfMemory;

namespace {

constexpr std::int64_t kLargestCapacity = INT_MAX;

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
    std::int64_t const needed = std::int64_t(used) + length;
    char* outgrown = nullptr;
    if (needed > capacity) {
        std::int64_t newCapacity = capacity;
        while (newCapacity < needed) newCapacity *= 2;
        if (newCapacity > kLargestCapacity) newCapacity = kLargestCapacity;
        if (newCapacity < needed) reportOutOfMemory();
        char* const block = new char[static_cast<std::size_t>(newCapacity)];
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
