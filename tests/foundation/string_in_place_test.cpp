// Short strings that are made and copied, and changes of a private string by one pair, compared
// with std::string.

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>

#include "tests/foundation/strings.h"
#include "zor/string.h"

namespace {

struct Pair {
    char const* chars;
    int length;
};

int upTo(std::mt19937& dice, int sides) {
    return static_cast<int>(dice() % static_cast<unsigned>(sides));
}

std::string charactersOf(Pair const& pair) {
    if (!pair.chars || pair.length < -1) return "";
    if (pair.length == -1) return pair.chars;
    return std::string(pair.chars, static_cast<unsigned>(pair.length));
}

// A pair of the characters at `chars`, of which there are `count`.
Pair pairOf(std::mt19937& dice, char const* chars, int count) {
    switch (upTo(dice, 6)) {
    case 0:
        return {chars, 0};
    case 1:
        return {chars, -9};
    case 2:
        return {chars, upTo(dice, count + 1)};
    case 3:
        return {nullptr, upTo(dice, 40) - 1};
    default:
        return {chars, -1};
    }
}

Pair anyPair(std::mt19937& dice, ZorString const* string) {
    static char const* const texts[] = {
        "true",
        "e",
        "tru",
        "",
        "Id",
        "I",
        "d",
        "fals",
        "schem",
        "a",
        "a text of thirty-one characters",
        "a text of thirty-two characters.",
        "a text of thirty-three characters",
        "a text that is longer than any buffer inside an object, and goes on for a while",
    };
    if (upTo(dice, 2) == 0) { // its own characters
        int const offset = upTo(dice, string->length + 1);
        return pairOf(dice, string->text + offset, string->length - offset);
    }
    char const* const text = texts[upTo(dice, int(std::size(texts)))];
    return pairOf(dice, text, static_cast<int>(std::strlen(text)));
}

// Expects that the string is what `create` is to give for a text: the permanent one, or a private
// one in the smallest buffer.
void expectMade(ZorString* made, std::string const& text) {
    ASSERT_EQ(content(made), text);
    if (ZorString const* const expected = permanent(text)) {
        EXPECT_EQ(made, expected);
        return;
    }
    int const need = static_cast<int>(text.size()) + 1;
    EXPECT_EQ(made->refCount, 1) << text;
    EXPECT_EQ(made->capacity, need <= 33 ? 33 : grownCapacity(need)) << text;
    expectSound(made);
    made->removeRef();
}

void expectMadeAndCopied(std::string const& text) {
    int const length = static_cast<int>(text.size());
    expectMade(ZorString::create(text.data(), length), text);
    expectMade(ZorString::create(text.c_str(), -1), text);
    ZorString* const original = privateString(text);
    expectMade(zor_stringCopy(original), text);
    zor_stringPreAllocate(original, 300); // a copy has no more room than it needs
    expectMade(zor_stringCopy(original), text);
    EXPECT_EQ(content(original), text);
    original->removeRef();
}

std::string afterPair(ZorString const* string, bool appends, Pair const& pair) {
    std::string const text = (appends ? content(string) : "") + charactersOf(pair);
    return text.substr(0, 65534);
}

ZorString* change(ZorString* string, bool appends, Pair const& pair) {
    return appends ? string->append(1, pair.chars, pair.length)
                   : string->set(1, pair.chars, pair.length);
}

// Changes the private string by the pair and compares. What it has become then.
ZorString* changeAndCompare(ZorString* string, bool appends, Pair const& pair) {
    std::string const expected = afterPair(string, appends, pair);
    int const need = static_cast<int>(expected.size()) + 1;
    int const capacity = need <= string->capacity ? string->capacity : grownCapacity(need);
    char const* const block = need <= string->capacity ? string->text : nullptr;

    ZorString* const changed = change(string, appends, pair);

    EXPECT_TRUE(content(changed) == expected) << expected.substr(0, 100);
    if (ZorString const* const known = permanent(expected)) {
        EXPECT_EQ(changed, known);
        return changed;
    }
    EXPECT_EQ(changed, string);
    EXPECT_EQ(changed->refCount, 1);
    EXPECT_EQ(changed->capacity, capacity);
    if (block) {
        EXPECT_EQ(changed->text, block) << "room that was there";
    }
    expectSound(changed);
    return changed;
}

} // namespace

TEST(StringInPlace, EveryLengthIsMadeAndCopied) {
    for (int length = 0; length <= 70; ++length) expectMadeAndCopied(characters(length));
    for (ZorString const& known : ZorString::stdZorStrings) {
        expectMadeAndCopied(known.text);
        expectMadeAndCopied(known.text + std::string("x"));
        if (HasFailure()) break;
    }
}

TEST(StringInPlace, ChangesByOnePairAgreeWithTheModel) {
    std::mt19937 dice(13);
    int permanents = 0;
    for (int round = 0; round < 300; ++round) {
        ZorString* string = privateString(characters(upTo(dice, 50)));
        for (int step = 0; step < 60; ++step) {
            bool const appends = upTo(dice, 2) == 0;
            string = changeAndCompare(string, appends, anyPair(dice, string));
            ASSERT_FALSE(HasFailure()) << "round " << round << ", step " << step;
            if (string->refCount == 1 && string->length < 4000) continue;
            permanents += string->refCount != 1;
            string->removeRef();
            string = privateString(characters(upTo(dice, 50)));
        }
        string->removeRef();
    }
    EXPECT_GT(permanents, 1000);
}

// Nothing is written behind the largest buffer, and what is too long is cut.
TEST(StringInPlace, IsCutAtTheLongestText) {
    std::string const tooLong = characters(70000);
    for (int length = 65530; length <= 65534; ++length) {
        for (int const added : {-1, 0, 1, 2, 3, 4, 5, 65533, 65534, 65535, 70000}) {
            for (bool const appends : {true, false}) {
                ZorString* const string = privateString(characters(length));
                changeAndCompare(string, appends, {tooLong.c_str(), added})->removeRef();
                ASSERT_FALSE(HasFailure()) << length << " and " << added;
            }
        }
    }
    for (int const length : {-1, 65534, 65535, 70000}) {
        changeAndCompare(privateString("short"), false, {tooLong.c_str(), length})->removeRef();
    }
}
