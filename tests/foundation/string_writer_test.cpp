// The output sinks of export.

#include <gtest/gtest.h>

#include <climits>
#include <new>
#include <random>
#include <type_traits>

#include "tests/foundation/strings.h"
#include "tests/support/allocations.h"
#include "zor/text.h"

namespace {

// A sink of a host's own: notes what it is given.
class CountingWriter : public ZorDataWriter {
public:
    explicit CountingWriter(int& destroyedWriters) : destroyed(destroyedWriters) {}
    ~CountingWriter() override { ++destroyed; }

    void writeData(char const* data, int length) override {
        ++writes;
        text += length < 1 ? std::string(data) : std::string(data, static_cast<unsigned>(length));
    }

    int writes = 0;
    std::string text;

private:
    int& destroyed;
};

void expectWriter(ZorStringWriter& writer, std::string const& text, int capacity) {
    EXPECT_EQ(writer.capacity, capacity) << text.size() << " characters";
    EXPECT_EQ(writer.used, static_cast<int>(text.size()) + 1);
    EXPECT_EQ(writer.begin == writer.localBuffer, capacity == 1024) << text.size();
    EXPECT_EQ(writer.end - writer.begin, static_cast<std::ptrdiff_t>(text.size()));
    EXPECT_EQ(*writer.end, '\0');
    EXPECT_TRUE(writer.getValue() == text) << text.size() << " characters";
}

} // namespace

TEST(DataWriter, IsAnInterfaceWithoutData) {
    static_assert(std::is_abstract_v<ZorDataWriter>);
    static_assert(std::has_virtual_destructor_v<ZorDataWriter>);
    EXPECT_EQ(sizeof(ZorDataWriter), sizeof(void*));
}

// A host's own sink is written to and destroyed through the interface.
TEST(DataWriter, IsImplementedByAHost) {
    int destroyed = 0;
    auto* const counting = new CountingWriter(destroyed);
    ZorDataWriter* const writer = counting;
    writer->writeData("<a>", -1);
    writer->writeData("text and more", 4);
    writer->writeData("</a>", 0);
    EXPECT_EQ(counting->writes, 3);
    EXPECT_EQ(counting->text, "<a>text</a>");
    delete writer;
    EXPECT_EQ(destroyed, 1);
}

TEST(StringWriter, HasThePromisedLayout) {
    static_assert(std::is_base_of_v<ZorDataWriter, ZorStringWriter>);
    ZorStringWriter const writer;
    auto const offset = [&](void const* field) {
        return static_cast<char const*>(field) - reinterpret_cast<char const*>(&writer);
    };
    std::ptrdiff_t const word = sizeof(void*);
    EXPECT_EQ(offset(&writer.begin), word);
    EXPECT_EQ(offset(&writer.end), 2 * word);
    EXPECT_EQ(offset(&writer.capacity), 3 * word);
    EXPECT_EQ(offset(&writer.used), 3 * word + 4);
    EXPECT_EQ(offset(writer.localBuffer), 3 * word + 8);
    EXPECT_EQ(sizeof writer.localBuffer, 1024U);
}

TEST(StringWriter, BeginsEmptyInItsOwnBuffer) {
    long const before = allocatedBlocks();
    ZorStringWriter writer;
    EXPECT_EQ(allocatedBlocks(), before);
    expectWriter(writer, "", 1024);
}

TEST(StringWriter, CollectsWhatIsWritten) {
    ZorStringWriter writer;
    writer.writeData("<a>", 3);
    writer.writeData("text and more", 4);
    writer.writeData("</a>", -1);
    expectWriter(writer, "<a>text</a>", 1024);
}

// A length below 1 means all characters up to the NUL.
TEST(StringWriter, LengthBelowOneMeansTheWholeText) {
    ZorStringWriter writer;
    for (int const length : {0, -1, -1000}) writer.writeData("ab", length);
    writer.writeData("", 0);
    writer.writeData("", -1);
    expectWriter(writer, "ababab", 1024);
}

// The value ends at the first NUL that was written, although all is kept.
TEST(StringWriter, ValueEndsAtTheFirstNul) {
    ZorStringWriter writer;
    writer.writeData("a\0b", 3);
    EXPECT_EQ(writer.used, 4);
    EXPECT_EQ(writer.getValue(), "a");
}

TEST(StringWriter, ValueIsACopy) {
    ZorStringWriter writer;
    writer.writeData("ab", 2);
    std::string const value = writer.getValue();
    writer.writeData("cd", 2);
    EXPECT_EQ(value, "ab");
    EXPECT_EQ(writer.getValue(), "abcd");
}

// The 1,024th single character moves the text to a block of 2,048 bytes, the 2,048th to 4,096.
TEST(StringWriter, MovesToABlockOnThe1024thCharacter) {
    ZorStringWriter writer;
    std::string text;
    long const before = liveBlocks();
    auto const writeUpTo = [&](unsigned length) {
        while (text.size() < length) {
            char const c = static_cast<char>('a' + text.size() % 26);
            text += c;
            writer.writeData(&c, 1);
        }
    };
    text.reserve(5000);
    long const withText = liveBlocks();
    writeUpTo(1023);
    EXPECT_EQ(liveBlocks(), withText);
    expectWriter(writer, text, 1024);
    writeUpTo(1024);
    EXPECT_EQ(liveBlocks() - withText, 1);
    expectWriter(writer, text, 2048);
    writeUpTo(2047);
    expectWriter(writer, text, 2048);
    writeUpTo(2048);
    EXPECT_EQ(liveBlocks() - withText, 1) << "the outgrown block is freed";
    expectWriter(writer, text, 4096);
    EXPECT_GT(withText, before);
}

// One large write doubles the capacity as often as it takes.
TEST(StringWriter, DoublesUntilTheTextFits) {
    struct {
        int length;
        int capacity;
    } const cases[] = {
        {1, 1024},    {1023, 1024}, {1024, 2048}, {2047, 2048},     {2048, 4096},
        {4095, 4096}, {4096, 8192}, {5000, 8192}, {100000, 131072}, {131071, 131072},
    };
    for (auto const& c : cases) {
        std::string const text = characters(c.length);
        ZorStringWriter atOnce;
        atOnce.writeData(text.c_str(), c.length);
        expectWriter(atOnce, text, c.capacity);
        ZorStringWriter inTwo;
        inTwo.writeData("x", 1);
        inTwo.writeData(text.c_str() + 1, 0);
        expectWriter(inTwo, "x" + text.substr(1), c.capacity);
    }
}

// What would be longer than an int can say is refused as a block that cannot be had, before any of
// it is read.
TEST(StringWriter, RefusesMoreThanAnIntCanSay) {
    ZorStringWriter writer;
    writer.writeData("ab", 2);
    EXPECT_THROW(writer.writeData("x", INT_MAX - 2), std::bad_alloc);
    EXPECT_THROW(writer.writeData("x", INT_MAX), std::bad_alloc);
    expectWriter(writer, "ab", 1024);
}

TEST(StringWriter, FreesItsBlock) {
    std::string const text = characters(3000);
    long const before = liveBlocks();
    {
        ZorStringWriter writer;
        writer.writeData(text.c_str(), -1);
        EXPECT_EQ(liveBlocks() - before, 1);
    }
    EXPECT_EQ(liveBlocks(), before);
    ZorDataWriter* const throughBase = new ZorStringWriter;
    throughBase->writeData(text.c_str(), -1);
    delete throughBase;
    EXPECT_EQ(liveBlocks(), before);
}

// Doubling costs few blocks, whatever the number of writes.
TEST(StringWriter, AllocatesOnlyWhenItDoubles) {
    ZorStringWriter writer;
    long const before = allocatedBlocks();
    for (int i = 0; i < 100000; ++i) writer.writeData("x", 1);
    EXPECT_EQ(allocatedBlocks() - before, 7); // 2,048 to 131,072
}

TEST(StringWriter, PiecesOfAnySizeAddUp) {
    std::mt19937 dice(1357);
    for (unsigned const largest : {5U, 100U, 3000U}) {
        ZorStringWriter writer;
        std::string expected;
        int capacity = 1024;
        for (int i = 0; i < 200; ++i) {
            std::string const piece = characters(static_cast<int>(dice() % largest + 1));
            writer.writeData(piece.c_str(), static_cast<int>(piece.size()));
            expected += piece;
            while (capacity < static_cast<int>(expected.size()) + 1) capacity *= 2;
            ASSERT_EQ(writer.capacity, capacity);
        }
        expectWriter(writer, expected, capacity);
    }
}
