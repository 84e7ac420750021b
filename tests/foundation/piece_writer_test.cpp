// Pieces on their way to a writer, compared with plain concatenation.

#include "foundation/piece_writer.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "tests/foundation/strings.h"
#include "tests/types/recording_writer.h"

using zor_internal::PieceWriter;

namespace {

// Gives the pieces to a writer, which sees to it that each of its texts ends behind the counted
// bytes. Expects it to get all of them, in order, none of them empty and not one by one.
void expectConcatenation(std::vector<std::string> const& pieces) {
    RecordingWriter writer;
    PieceWriter out(&writer);
    std::string expected;
    for (std::string const& piece : pieces) {
        out.write(piece.data(), piece.size());
        expected += piece;
    }
    out.flush();
    std::string joined;
    for (std::string const& text : writer.writes) {
        EXPECT_FALSE(text.empty());
        joined += text;
    }
    EXPECT_TRUE(joined == expected) << joined.size() << " for " << expected.size();
    EXPECT_LE(writer.writes.size(), expected.size() / 256 + 1);
}

} // namespace

TEST(PieceWriter, OnePieceOfEveryLengthArrivesWhole) {
    for (int length = 0; length <= 1600; ++length) {
        expectConcatenation({characters(length)});
        ASSERT_FALSE(HasFailure()) << length;
    }
}

// The first piece nearly fills the buffer, or just does, or more than that.
TEST(PieceWriter, TwoPiecesAroundTheEndOfTheBufferArriveWhole) {
    for (int first = 505; first <= 516; ++first) {
        for (int second = 0; second <= 1030; second += second < 12 || second > 500 ? 1 : 61) {
            expectConcatenation({characters(first), characters(second), "end"});
            ASSERT_FALSE(HasFailure()) << first << " and " << second;
        }
    }
}

TEST(PieceWriter, RandomPiecesArriveWhole) {
    std::mt19937 dice(511);
    for (int round = 0; round < 200; ++round) {
        std::vector<std::string> pieces(dice() % 100);
        for (std::string& piece : pieces) {
            piece = characters(static_cast<int>(dice() % (dice() % 10 ? 20 : 1200)));
        }
        expectConcatenation(pieces);
        ASSERT_FALSE(HasFailure()) << "round " << round;
    }
}

// A writer may convert what it gets: it gets characters of several bytes whole.
TEST(PieceWriter, CharactersStayWhole) {
    for (std::string const character : {"\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x93\x9E"}) {
        for (int first = 500; first <= 512; ++first) {
            std::string text;
            while (text.size() < 1200) text += character;
            RecordingWriter writer;
            PieceWriter out(&writer);
            out.write(characters(first).c_str());
            out.write(text.c_str());
            out.flush();
            std::string joined;
            for (std::string const& piece : writer.writes) {
                EXPECT_NE(piece[0] & 0xC0, 0x80) << first;
                joined += piece;
            }
            EXPECT_TRUE(joined == characters(first) + text) << first;
        }
    }
    expectConcatenation({std::string(2000, '\x80')}); // no character at all
}

TEST(PieceWriter, AcceptsTextsUpToTheirNul) {
    RecordingWriter writer;
    PieceWriter out(&writer);
    out.write("<label");
    out.write("");
    out.write(">");
    EXPECT_TRUE(writer.writes.empty());
    out.flush();
    EXPECT_EQ(writer.writes, std::vector<std::string>{"<label>"});
}

TEST(PieceWriter, FlushingNothingWritesNothing) {
    RecordingWriter writer;
    PieceWriter out(&writer);
    out.flush();
    out.write("", 0);
    out.flush();
    EXPECT_TRUE(writer.writes.empty());
    out.write("a", 1);
    out.flush();
    out.flush();
    EXPECT_EQ(writer.writes, std::vector<std::string>{"a"});
}
