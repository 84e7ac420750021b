// The output sinks of export.

#include "zor/text.h"

#include <cstring>

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
    if (length > capacity - used) {
        int newCapacity = capacity;
        while (newCapacity < used + length) newCapacity *= 2;
        char* const block = new char[static_cast<unsigned>(newCapacity)];
        int const written = used - 1;
        std::memcpy(block, begin, static_cast<unsigned>(written));
        if (begin != localBuffer) delete[] begin;
        begin = block;
        end = block + written;
        capacity = newCapacity;
    }
    std::memcpy(end, data, static_cast<unsigned>(length));
    end += length;
    *end = '\0';
    used += length;
}

std::string ZorStringWriter::getValue() { return std::string(begin); }
