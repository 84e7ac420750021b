// Many small pieces on their way to a writer.

#pragma once

#include <cstring>

#include "zor/text.h"

namespace zor_internal {

// Gives them to the writer some hundred bytes at a time: with several calls for every value
// an export takes half as many instructions again. Like any text that a writer is given, what it
// gets ends with a NUL behind the counted bytes, and as it may convert them, characters of several
// bytes arrive whole.
class PieceWriter {
public:
    explicit PieceWriter(ZorDataWriter* target) : writer(target) {}
    PieceWriter(PieceWriter const&) = delete;
    PieceWriter& operator=(PieceWriter const&) = delete;
    // Drops what was not flushed: only an exception leaves something.
    ~PieceWriter() = default;

    void write(char const* piece, std::size_t length) {
        while (length > kRoom - used) {
            std::size_t const fitting = upToCharacter(piece, kRoom - used);
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

    // Of a longer piece, as much of `fitting` bytes as ends between two characters of UTF-8.
    static std::size_t upToCharacter(char const* piece, std::size_t fitting) {
        auto const isInside = [piece](std::size_t at) { return (piece[at] & 0xC0) == 0x80; };
        std::size_t end = fitting;
        while (end > 0 && fitting - end < 3 && isInside(end)) --end;
        return isInside(end) ? fitting : end;
    }

    void append(char const* piece, std::size_t length) {
        std::memcpy(buffer + used, piece, length);
        used += length;
    }

    ZorDataWriter* writer;
    std::size_t used = 0;
    char buffer[kRoom + 1];
};

} // namespace zor_internal
