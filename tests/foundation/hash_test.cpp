// The hash by which keys find their buckets.

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "tests/foundation/dull_hash.h"
#include "zor/containers.h"

TEST(Hash, OfShortTextsIsKnown) {
    EXPECT_EQ(fnv0_32_str(""), 0U);
    EXPECT_EQ(fnv0_32_str("a"), 0x61U);
    EXPECT_EQ(fnv0_32_str("ab"), (0x61U * 16777619U) ^ 0x62U);
}

// Bytes count as 0 to 255, also where plain characters are signed.
TEST(Hash, TakesBytesAsUnsigned) {
    EXPECT_EQ(fnv0_32_str("\x80"), 0x80U);
    EXPECT_EQ(fnv0_32_str("\xFF"), 0xFFU);
    EXPECT_EQ(fnv0_32_str("\x01\xFF"), 16777619U ^ 0xFFU);
}

TEST(Hash, AgreesWithTheDullVersion) {
    std::mt19937 dice(99);
    for (int i = 0; i < 2000; ++i) {
        std::string text;
        for (auto length = dice() % 60; length > 0; --length) {
            text += static_cast<char>(dice() % 255 + 1);
        }
        ASSERT_EQ(fnv0_32_str(text.c_str()), hashOf(text)) << text;
    }
}

TEST(Hash, FirstCharacterIsTheFirstByte) {
    EXPECT_EQ(firstCharacterHash("abc"), 'a');
    EXPECT_EQ(firstCharacterHash("\xFE"
                                 "bc"),
              0xFE);
    EXPECT_EQ(firstCharacterHash(""), 0);
    EXPECT_EQ(firstCharacterHash(nullptr), 0);
}
