// Many small pieces on their way to a writer.

#pragma once

#include <cstring>

#include "zor/text.h"

namespace zor_internal {

// Gives them to the writer some hundred bytes at a time: several calls for every value were a third
// of the time of an export. Like any text that a writer is given, what it gets ends with a NUL
// behind the counted bytes.
class PieceWriter {
public:
    explicit PieceWriter(ZorDataWriter* target) : writer(target) {}
    PieceWriter(PieceWriter const&) = delete;
    PieceWriter& operator=(PieceWriter const&) = delete;
    // Drops what was not flushed: only an exception leaves something.
    ~PieceWriter() = default;

    void write(char const* piece, std::size_t length) {
        while (length > kRoom - used) {
            std::size_t const fitting = kRoom - used;
            append(piece, fitting);
            flush();
            piece += fitting;
            length -= fitting;
        }
        append(piece, length);
    }

    void write(char const* text) { write(text, std::strlen(text)); }

    // Gives the writer what it has not got yet.
    void flush() {
        if (used == 0) return;
        buffer[used] = '\0';
        writer->writeData(buffer, static_cast<int>(used));
        used = 0;
    }

private:
    static constexpr std::size_t kRoom = 511;

    void append(char const* piece, std::size_t length) {
        std::memcpy(buffer + used, piece, length);
        used += length;
    }

    ZorDataWriter* writer;
    std::size_t used = 0;
    char buffer[kRoom + 1];
};

} // namespace zor_internal
