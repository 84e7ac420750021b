// Strings: replacing the text.

#include <gtest/gtest.h>

#include "tests/foundation/strings.h"
#include "tests/support/allocations.h"
#include "tests/support/text.h"
#include "zor/string.h"

namespace {

// A private string with a block of 64 bytes, by which it can be told from a new one.
ZorString* roomyString() {
    ZorString* const string = ZorString::create("volume", -1);
    zor_stringPreAllocate(string, 60);
    return string;
}

} // namespace

TEST(StringSet, ReplacesTheTextByThePairs) {
    ZorString* const string = ZorString::create("volume", -1);
    ZorString* const replaced = string->set(3, "ring", -1, "er and", 2, "s", 1);
    EXPECT_EQ(replaced, string);
    EXPECT_EQ(replaced->refCount, 1);
    expectSound(replaced);
    EXPECT_EQ(taken(replaced), "ringers");
}

TEST(StringSet, KeepsTheBuffer) {
    ZorString* const string = ZorString::create(characters(100).c_str(), -1);
    char* const block = string->text;
    ZorString* const replaced = string->set(1, "short", -1);
    EXPECT_EQ(replaced, string);
    EXPECT_EQ(replaced->text, block);
    EXPECT_EQ(replaced->capacity, 112);
    EXPECT_EQ(taken(replaced), "short");
}

TEST(StringSet, GrowsWhenTheTextNeedsIt) {
    ZorString* string = ZorString::create("volume", -1);
    string = string->set(2, characters(30).c_str(), -1, characters(30).c_str(), -1);
    expectSound(string);
    EXPECT_EQ(string->capacity, 64);
    EXPECT_EQ(taken(string), characters(30) + characters(30));
}

// What another holder sees stays as it is; the new text has a new string.
TEST(StringSet, LeavesASharedStringUntouched) {
    ZorString* const held = roomyString();
    ZorString* const replaced = shared(held)->set(1, "ringer", -1);
    EXPECT_NE(replaced, held);
    EXPECT_EQ(replaced->refCount, 1);
    EXPECT_EQ(replaced->capacity, 33);
    EXPECT_EQ(held->refCount, 1);
    EXPECT_EQ(taken(replaced), "ringer");
    EXPECT_EQ(taken(held), "volume");
}

TEST(StringSet, LeavesPermanentStringsUntouched) {
    ZorString* const replaced = ZorString::create("true", -1)->set(1, "maybe", -1);
    EXPECT_EQ(content(permanent("true")), "true");
    EXPECT_EQ(permanent("true")->refCount, 0xFFFF);
    EXPECT_EQ(taken(replaced), "maybe");
}

TEST(StringSet, BecomesAPermanentString) {
    long const before = liveBlocks();
    EXPECT_EQ(ZorString::create("volume", -1)->set(2, "sch", -1, "ema", -1), permanent("schema"));
    EXPECT_EQ(permanent("true")->set(1, "false", -1), permanent("false"));
    EXPECT_EQ(liveBlocks(), before);
}

// Without pairs, what is left is an empty string that is not the permanent one.
TEST(StringSet, OfNoPairsEmptiesTheStringItself) {
    ZorString* const string = roomyString();
    EXPECT_EQ(string->set(0, nullptr, 0), string);
    expectSound(string);
    EXPECT_EQ(string->capacity, 64);
    EXPECT_EQ(string->refCount, 1);
    EXPECT_EQ(taken(string), "");
}

TEST(StringSet, OfNoPairsOnASharedStringMakesAnEmptyOne) {
    ZorString* const held = roomyString();
    for (ZorString* const original : {shared(held), permanent("true"), permanent("")}) {
        std::string const text = content(original);
        ZorString* const emptied = original->set(0, nullptr, 0);
        EXPECT_NE(emptied, original);
        EXPECT_NE(emptied, permanent(""));
        EXPECT_EQ(emptied->refCount, 1);
        EXPECT_EQ(taken(emptied), "");
        EXPECT_EQ(content(original), text);
    }
    EXPECT_EQ(held->refCount, 1);
    held->removeRef();
}

// One pair without characters is enough to find the permanent empty string.
TEST(StringSet, OfAPairWithoutCharactersIsThePermanentEmptyString) {
    EXPECT_EQ(roomyString()->set(1, "", -1), permanent(""));
    EXPECT_EQ(roomyString()->set(1, nullptr, 3), permanent(""));
    EXPECT_EQ(roomyString()->set(1, "abc", 0), permanent(""));
    EXPECT_EQ(roomyString()->set(1, "abc", -2), permanent(""));
}

// A permanent string may stand in after any pair. What goes on from it is a copy of it, and no
// longer the string (with its larger block) that the call began with.
TEST(StringSet, PermanentStringsStandInAfterAnyPair) {
    struct {
        char const* first;
        char const* second;
        char const* third;
        int capacity;
        char const* result;
    } const cases[] = {
        {"true", "x", "", 33, "truex"},   // after the first pair
        {"tr", "ue", "x", 33, "truex"},   // after the second
        {"", "ring", "er", 33, "ringer"}, // the empty one
        {nullptr, "ring", "er", 33, "ringer"}, {"Id", "le", "", 33, "Idle"},
        {"ring", "er", "", 64, "ringer"}, // after none
        {"tru", "ex", "", 64, "truex"},   // the text passes "true" within a pair
    };
    for (auto const& c : cases) {
        ZorString* const set = roomyString()->set(3, c.first, -1, c.second, -1, c.third, -1);
        expectSound(set);
        EXPECT_EQ(set->refCount, 1) << c.result;
        EXPECT_EQ(set->capacity, c.capacity) << c.result;
        EXPECT_EQ(taken(set), c.result);
    }
}
