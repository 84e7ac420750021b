// Strings: what they consist of, how they come about, what is read from them.

#include "zor/string.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <type_traits>

#include "tests/foundation/strings.h"
#include "tests/support/allocations.h"
#include "tests/support/text.h"

namespace {

int signOf(int number) { return (number > 0) - (number < 0); }

} // namespace

// The fields stand in the promised order and widths, on every host.
TEST(String, HasThePromisedLayout) {
    static_assert(std::is_standard_layout_v<ZorString> && !std::is_polymorphic_v<ZorString>);
    static_assert(std::is_same_v<decltype(ZorString::marker), signed char>);
    static_assert(std::is_same_v<decltype(ZorString::length), unsigned short>);
    EXPECT_EQ(offsetof(ZorString, marker), 0U);
    EXPECT_EQ(offsetof(ZorString, localBuffer), 1U);
    EXPECT_EQ(offsetof(ZorString, length), 34U);
    EXPECT_EQ(offsetof(ZorString, refCount), 36U);
    EXPECT_EQ(offsetof(ZorString, capacity), 38U);
    EXPECT_EQ(offsetof(ZorString, text), 40U);
}

// A string made of no pairs is empty, in its own buffer, with one reference.
TEST(String, ConstructedFromNothingIsEmpty) {
    ZorString const empty(0, nullptr, 0);
    expectSound(&empty);
    EXPECT_EQ(empty.length, 0);
    EXPECT_EQ(empty.capacity, 33);
    EXPECT_EQ(empty.refCount, 1);
}

TEST(String, ConstructionJoinsThePairs) {
    ZorString const joined(3, "line", -1, "Keys", 3, "1", 1);
    expectSound(&joined);
    EXPECT_EQ(content(&joined), "lineKey1");
    EXPECT_EQ(joined.refCount, 1);
}

// A pair without a text, or with a length of 0 or below -1, adds nothing.
TEST(String, ConstructionSkipsPairsWithoutCharacters) {
    ZorString const joined(6, nullptr, 4, "a", 1, "xyz", 0, "xyz", -2, nullptr, -1, "b", -1);
    EXPECT_EQ(content(&joined), "ab");
}

// The constructor never stands back behind a permanent string.
TEST(String, ConstructionIsNeverReplaced) {
    ZorString const own(2, "tr", -1, "ue", -1);
    EXPECT_EQ(content(&own), "true");
    EXPECT_EQ(own.refCount, 1);
    EXPECT_NE(&own, permanent("true"));
}

TEST(String, ConstructionKeepsCharactersBehindANul) {
    ZorString const binary(1, "a\0b", 3);
    EXPECT_EQ(content(&binary), std::string("a\0b", 3));
}

// A copy of a short string has the characters in its own buffer.
TEST(String, CopyOfAShortStringUsesItsOwnBuffer) {
    ZorString const original(1, "volume", -1);
    ZorString const copy(original);
    expectSound(&copy);
    EXPECT_TRUE(usesLocalBuffer(&copy));
    EXPECT_EQ(content(&copy), "volume");
    EXPECT_EQ(copy.refCount, 1);
}

// A copy of a long string has a block of the same capacity.
TEST(String, CopyOfALongStringHasABlockOfTheSameCapacity) {
    ZorString original(1, "volume", -1);
    zor_stringPreAllocate(&original, 100);
    ZorString const copy(original);
    expectSound(&copy);
    EXPECT_NE(copy.text, original.text);
    EXPECT_EQ(copy.capacity, original.capacity);
    EXPECT_EQ(content(&copy), "volume");
}

TEST(String, CopyOfASharedOrPermanentStringHasOneReference) {
    ZorString original(1, "volume", -1);
    original.refCount = 7;
    EXPECT_EQ(ZorString(original).refCount, 1);
    EXPECT_EQ(ZorString(*permanent("schema")).refCount, 1);
    original.refCount = 1;
}

TEST(String, CreateMakesAStringWithOneReference) {
    ZorString* const made = ZorString::create("volume", -1);
    expectSound(made);
    EXPECT_EQ(made->refCount, 1);
    EXPECT_EQ(taken(made), "volume");
}

TEST(String, CreateTakesAsManyCharactersAsAskedFor) {
    EXPECT_EQ(taken(ZorString::create("volume", 3)), "vol");
    EXPECT_EQ(taken(ZorString::create("vol\0ume", 7)), std::string("vol\0ume", 7));
}

// Each call makes a string of its own: what is not permanent is never interned.
TEST(String, CreateDoesNotInternOrdinaryTexts) {
    ZorString* const first = ZorString::create("volume", -1);
    ZorString* const second = ZorString::create("volume", -1);
    EXPECT_NE(first, second);
    first->removeRef();
    second->removeRef();
}

// Every way of asking for no characters gives the permanent empty string.
TEST(String, CreateOfNothingIsThePermanentEmptyString) {
    ZorString* const empty = &ZorString::stdZorStrings[0];
    EXPECT_EQ(ZorString::create(nullptr, 5), empty);
    EXPECT_EQ(ZorString::create(nullptr, -1), empty);
    EXPECT_EQ(ZorString::create(nullptr, 0), empty);
    EXPECT_EQ(ZorString::create("abc", 0), empty);
    EXPECT_EQ(ZorString::create("abc", -2), empty);
    EXPECT_EQ(ZorString::create("", -1), empty);
}

// Creating a permanent text gives the permanent object, which releasing leaves intact.
TEST(String, CreateOfAPermanentTextIsThePermanentObject) {
    ZorString* const made = ZorString::create("true", -1);
    EXPECT_EQ(made, permanent("true"));
    made->removeRef();
    EXPECT_EQ(content(made), "true");
    EXPECT_EQ(made->refCount, 0xFFFF);
    EXPECT_EQ(ZorString::create("truex", 4), made);
}

TEST(String, CreateOfAPermanentTextAllocatesNothing) {
    long const before = allocatedBlocks();
    for (ZorString& string : ZorString::stdZorStrings) (void)ZorString::create(string.text, -1);
    EXPECT_EQ(allocatedBlocks(), before);
}

// 32 characters fit into the string itself, the 33rd needs a block of 48 bytes.
TEST(String, CreateUsesABlockFrom33CharactersOn) {
    ZorString* const shortOne = ZorString::create(characters(40).c_str(), 32);
    expectSound(shortOne);
    EXPECT_TRUE(usesLocalBuffer(shortOne));
    EXPECT_EQ(taken(shortOne), characters(32));

    ZorString* const longOne = ZorString::create(characters(40).c_str(), 33);
    expectSound(longOne);
    EXPECT_EQ(longOne->capacity, 48);
    EXPECT_EQ(taken(longOne), characters(33));
}

// A name of up to 32 characters is one block: the object.
TEST(String, ShortStringsNeedNoSecondBlock) {
    std::string const text = characters(32);
    long const before = allocatedBlocks();
    ZorString* const made = ZorString::create(text.c_str(), -1);
    EXPECT_EQ(allocatedBlocks() - before, 1);
    made->removeRef();
}

TEST(String, CopyFunctionMakesAnIndependentString) {
    Text const original("volume");
    ZorString* const copy = zor_stringCopy(original);
    EXPECT_NE(copy, static_cast<ZorString*>(original));
    EXPECT_EQ(copy->refCount, 1);
    EXPECT_EQ(taken(copy), "volume");
}

TEST(String, CopyFunctionKeepsCharactersBehindANul) {
    Text const original(std::string("a\0b", 3));
    EXPECT_EQ(taken(zor_stringCopy(original)), std::string("a\0b", 3));
}

// Copying a private string whose text is permanent, a permanent one, or null gives a permanent one.
TEST(String, CopyFunctionGivesPermanentStrings) {
    ZorString* const own = privateString("schema");
    EXPECT_EQ(zor_stringCopy(own), permanent("schema"));
    EXPECT_EQ(zor_stringCopy(permanent("Id")), permanent("Id"));
    EXPECT_EQ(zor_stringCopy(nullptr), permanent(""));
    own->removeRef();
}

// Strings compare alphabetically, byte by byte, whatever their lengths.
TEST(String, ComparesAlphabetically) {
    struct {
        char const* left;
        char const* right;
        int sign;
    } const cases[] = {
        {"abc", "abc", 0}, {"abc", "b", -1}, {"b", "abc", 1},  {"ab", "abc", -1},
        {"", "a", -1},     {"", "", 0},      {"Id", "id", -1}, {"true", "true", 0},
        {"z", "\x80", -1}, {"a\n", "a", 1},  {"10", "9", -1},
    };
    for (auto const& c : cases) {
        Text const left(c.left);
        Text const right(c.right);
        EXPECT_EQ(signOf(zor_stringCompare(left, right)), c.sign) << c.left << " and " << c.right;
    }
}

TEST(String, LengthAndValueAreThoseOfTheText) {
    Text const text("volume");
    EXPECT_EQ(zor_stringLength(text), 6);
    EXPECT_STREQ(zor_stringValue(text), "volume");
    EXPECT_EQ(zor_stringLength(permanent("")), 0);
    EXPECT_STREQ(zor_stringValue(permanent("")), "");
}

TEST(String, IsToldFromPlainTextByItsFirstByte) {
    Text const text("volume");
    EXPECT_EQ(zor_isString(static_cast<ZorString*>(text)), 1);
    EXPECT_EQ(zor_isString(permanent("true")), 1);
    EXPECT_EQ(zor_isString("volume"), 0);
    EXPECT_EQ(zor_isString(""), 0);
    EXPECT_EQ(zor_isString("\xFE"), 0);
    EXPECT_EQ(zor_isString(nullptr), 0);
}

// Plain text that begins with the marker byte is taken for a string: it cannot be a name.
TEST(String, PlainTextWithTheMarkerByteLooksLikeAString) {
    EXPECT_EQ(zor_isString("\xFFname"), 1);
    EXPECT_EQ(zor_isString("n\xFF"), 0);
}
