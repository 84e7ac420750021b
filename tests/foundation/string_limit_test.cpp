// Strings: texts of up to 65,534 characters are kept intact, longer ones are cut there.

#include <gtest/gtest.h>

#include "tests/foundation/strings.h"
#include "tests/support/allocations.h"
#include "tests/support/text.h"
#include "zor/string.h"

namespace {

struct Size {
    int asked;
    int kept;
    int capacity;
};

// On both sides of where a rounded buffer size would no longer fit into 16 bits, and of the limit.
constexpr Size kSizes[] = {
    {65503, 65503, 65520}, {65517, 65517, 65520}, {65518, 65518, 65520},  {65519, 65519, 65535},
    {65520, 65520, 65535}, {65533, 65533, 65535}, {65534, 65534, 65535},  {65535, 65534, 65535},
    {65536, 65534, 65535}, {65550, 65534, 65535}, {131072, 65534, 65535},
};

std::string cut(std::string const& text) { return text.substr(0, 65534); }

// Whether the string has this text and this capacity; releases it.
void expectKept(ZorString* string, Size const& size, std::string const& text) {
    expectSound(string);
    EXPECT_EQ(string->length, size.kept) << size.asked << " characters";
    EXPECT_EQ(string->capacity, size.capacity) << size.asked << " characters";
    EXPECT_TRUE(content(string) == cut(text)) << size.asked << " characters";
    string->removeRef();
}

} // namespace

TEST(StringLimit, CreateKeepsUpTo65534Characters) {
    for (Size const& size : kSizes) {
        std::string const text = characters(size.asked);
        expectKept(ZorString::create(text.c_str(), -1), size, text);
        expectKept(ZorString::create(text.c_str(), size.asked), size, text);
    }
}

TEST(StringLimit, ConstructionKeepsUpTo65534Characters) {
    for (Size const& size : kSizes) {
        std::string const text = characters(size.asked);
        int const half = size.asked / 2;
        expectKept(new ZorString(2, text.c_str(), half, text.c_str() + half, -1), size, text);
    }
}

TEST(StringLimit, AppendKeepsUpTo65534Characters) {
    for (Size const& size : kSizes) {
        std::string const text = characters(size.asked);
        ZorString* const begun = ZorString::create(text.c_str(), 40);
        expectKept(begun->append(1, text.c_str() + 40, -1), size, text);
    }
}

TEST(StringLimit, SetKeepsUpTo65534Characters) {
    for (Size const& size : kSizes) {
        std::string const text = characters(size.asked);
        ZorString* const other = ZorString::create("volume", -1);
        expectKept(other->set(2, text.c_str(), 40, text.c_str() + 40, -1), size, text);
    }
}

TEST(StringLimit, CopiesKeepUpTo65534Characters) {
    for (Size const& size : kSizes) {
        std::string const text = characters(size.asked);
        ZorString* const original = ZorString::create(text.c_str(), -1);
        expectKept(zor_stringCopy(original), size, text);
        expectKept(new ZorString(*original), size, text);
        expectKept(shared(original)->append(0, nullptr, 0), size, text);
        original->removeRef();
    }
}

TEST(StringLimit, PreAllocateMakesRoomForUpTo65534Characters) {
    for (Size const& size : kSizes) {
        ZorString* string = ZorString::create("volume", -1);
        zor_stringPreAllocate(string, size.asked);
        EXPECT_EQ(string->capacity, size.capacity) << "room for " << size.asked;
        EXPECT_EQ(content(string), "volume");

        std::string const text = characters(size.asked);
        long const before = allocatedBlocks();
        string = string->append(1, text.c_str() + 6, -1);
        EXPECT_EQ(allocatedBlocks(), before) << "room for " << size.asked;
        expectKept(string, size, "volume" + text.substr(6));
    }
}

TEST(StringLimit, PreAllocateOfTheLargestSizeIsSafe) {
    ZorString* const string = ZorString::create("volume", -1);
    zor_stringPreAllocate(string, 2147483647);
    expectSound(string);
    EXPECT_EQ(string->capacity, 65535);
    EXPECT_EQ(taken(string), "volume");
}

TEST(StringLimit, TrimKeepsUpTo65534Characters) {
    struct {
        int kept;
        int blanks;
        int capacity;
        bool sameBlock;
    } const cases[] = {
        {65533, 1, 65535, true},  {65519, 1, 65535, true},   {65519, 15, 65535, true},
        {65518, 1, 65520, false}, {65518, 16, 65520, false}, {65503, 1, 65520, true},
        {65502, 1, 65504, false}, {1, 65533, 33, false},
    };
    for (auto const& c : cases) {
        std::string const blanks(static_cast<unsigned>(c.blanks), ' ');
        for (std::string const& text : {blanks + characters(c.kept), characters(c.kept) + blanks}) {
            ZorString* const string = privateString(text);
            ASSERT_EQ(string->length, c.kept + c.blanks);
            char* const block = string->text;
            ASSERT_EQ(string->trim(), string);
            EXPECT_EQ(string->text == block, c.sameBlock) << c.kept << " of " << c.kept + c.blanks;
            expectKept(string, {c.kept, c.kept, c.capacity}, characters(c.kept));
        }
    }
}

TEST(StringLimit, TrimOfASharedLongStringKeepsEveryCharacter) {
    ZorString* const held = privateString(' ' + characters(65533));
    expectKept(shared(held)->trim(), {65533, 65533, 65535}, characters(65533));
    EXPECT_EQ(held->refCount, 1);
    held->removeRef();
}

// At the limit nothing more is added, by whatever number of pairs.
TEST(StringLimit, AFullStringStaysAsItIs) {
    std::string const text = characters(65534);
    ZorString* string = ZorString::create(text.c_str(), -1);
    char* const block = string->text;
    string = string->append(3, "a", 1, "bc", -1, text.c_str(), -1);
    EXPECT_EQ(string->text, block);
    expectKept(string, {65534, 65534, 65535}, text);
}

// A pair that no longer fits is cut, and what follows it is dropped.
TEST(StringLimit, CutsWithinAPair) {
    std::string const text = characters(65530);
    ZorString* const string = ZorString::create(text.c_str(), -1);
    expectKept(string->append(3, "12", 2, "3456", 4, "7", 1), {65534, 65534, 65535}, text + "1234");
}

// A string that fills up one character at a time ends at the limit.
TEST(StringLimit, GrowsCharacterByCharacterToTheLimit) {
    std::string const text = characters(65600);
    ZorString* string = privateString(text.substr(0, 65490));
    for (unsigned i = 65490; i < text.size(); ++i) {
        string = string->append(1, &text[i], 1);
        int const length = static_cast<int>(i) + 1;
        ASSERT_EQ(string->length, length < 65534 ? length : 65534);
        ASSERT_EQ(string->text[string->length], '\0');
        ASSERT_LT(string->length, string->capacity);
    }
    expectKept(string, {65600, 65534, 65535}, text);
}
