// "string", "domain_name" and "url".

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "tests/support/allocations.h"
#include "tests/support/text.h"
#include "tests/types/typed_value.h"
#include "zor/types.h"

namespace {

ZorDataType* builtIn(char const* name) { return ZorBuiltIn::getDataType(name); }

ZorDataType* stringType() { return builtIn("string"); }

constexpr char const* kStringTypes[] = {"string", "digit_string", "domain_name", "url"};

int signOf(int number) { return (number > 0) - (number < 0); }

} // namespace

TEST(StringType, EveryTextIsValid) {
    for (char const* const name : {"string", "domain_name", "url"}) {
        for (char const* const text : {"", " ", "a", "not a domain", "http://x y", "<&>", "\x80"}) {
            EXPECT_EQ(zor_dataTypeValidate(builtIn(name), text), 1) << name << ' ' << text;
        }
        EXPECT_EQ(zor_dataTypeValidate(builtIn(name), static_cast<ZorString*>(Text("\xFF"))), 1);
    }
}

TEST(StringType, ReadsAndWritesTexts) {
    std::string const longText(1000, 'x');
    for (char const* const name : kStringTypes) {
        for (char const* const text : {"", "a", "  blanks kept  ", "true", longText.c_str()}) {
            EXPECT_EQ(readBack(name, text), text) << name;
        }
    }
}

// The comparison gives strcmp's own result. Only its sign is the same on every machine.
TEST(StringType, ComparesAsStrcmpDoes) {
    char const* const texts[] = {"", "a", "b", "z", "aa", "ab", "B", "a\x80", "\x01", "10", "9"};
    for (char const* const a : texts) {
        for (char const* const b : texts) {
            EXPECT_EQ(signOf(zor_dataTypeCompare(stringType(), a, b)), signOf(std::strcmp(a, b)))
                << a << ' ' << b;
        }
    }
    EXPECT_GT(zor_dataTypeCompare(stringType(), static_cast<ZorString*>(Text("\xFF")), "z"), 0);
    EXPECT_LT(zor_dataTypeCompare(stringType(), "z", static_cast<ZorString*>(Text("\xFF"))), 0);
}

TEST(StringType, DomainNameAndUrlHaveNoOrder) {
    for (char const* const name : {"domain_name", "url"}) {
        EXPECT_EQ(zor_dataTypeCompare(builtIn(name), "a", "b"), 0) << name;
        EXPECT_EQ(zor_dataTypeCompare(builtIn(name), "b", "a"), 0) << name;
    }
}

// A value owns a string of its own, which its type releases.
TEST(StringType, ValueOwnsOneReference) {
    stringType();
    long const before = liveBlocks();
    {
        TypedValue const value(stringType(), "private");
        EXPECT_EQ(value.value.stringValue->refCount, 1);
        EXPECT_EQ(liveBlocks(), before + 1);
    }
    EXPECT_EQ(liveBlocks(), before);
}

// A text of the permanent strings costs no memory.
TEST(StringType, FrequentTextsArePermanent) {
    TypedValue const value(stringType(), "false");
    EXPECT_EQ(value.value.stringValue, ZorString::create("false", -1));
    TypedValue const empty(stringType(), "");
    EXPECT_EQ(empty.value.stringValue, ZorString::create("", -1));
}

TEST(StringType, CopiesAreIndependent) {
    TypedValue value(stringType(), "before");
    TypedValue const copy(value);
    EXPECT_NE(copy.value.stringValue, value.value.stringValue);
    EXPECT_EQ(copy.value.stringValue->refCount, 1);
    value.set("after");
    EXPECT_EQ(copy.text(), "before");
    EXPECT_EQ(value.text(), "after");
}

TEST(StringType, TextIsANewReference) {
    TypedValue const value(stringType(), "text");
    ZorString* text = stringType()->toStringFn(value.value);
    EXPECT_NE(text, value.value.stringValue);
    text = text->append(1, " changed", -1);
    EXPECT_EQ(taken(text), "text changed");
    EXPECT_EQ(value.text(), "text");
}

TEST(StringType, IsSetInTheStringThatIsThere) {
    TypedValue value(stringType(), "before");
    ZorString const* const place = value.value.stringValue;
    value.set("after");
    EXPECT_EQ(value.value.stringValue, place);
    EXPECT_EQ(value.text(), "after");
    value.set(std::string(500, 'y').c_str());
    EXPECT_EQ(value.value.stringValue, place);
    EXPECT_EQ(value.text(), std::string(500, 'y'));
}

// Setting may put a permanent string in place of a private one, and the other way round.
TEST(StringType, SettingGoesOnWithTheStringThatItGets) {
    TypedValue value(stringType(), "private");
    value.set("true");
    EXPECT_EQ(value.value.stringValue, ZorString::create("true", -1));
    value.set("private again");
    EXPECT_EQ(value.text(), "private again");
    EXPECT_EQ(taken(ZorString::create("true", -1)), "true");
    value.set("");
    EXPECT_EQ(value.text(), "");
    value.set("third");
    EXPECT_EQ(value.text(), "third");
}

// Other holders of a value's string keep their text.
TEST(StringType, SettingLeavesSharedStringsAlone) {
    TypedValue value(stringType(), "shared");
    ZorString* const shared = value.value.stringValue;
    zor_stringAddRef(shared);
    value.set("new");
    EXPECT_EQ(value.text(), "new");
    EXPECT_EQ(shared->refCount, 1);
    EXPECT_EQ(taken(shared), "shared");
}

// A value may be set to a part of itself.
TEST(StringType, MayBeSetToItsOwnCharacters) {
    TypedValue value(stringType(), "0123456789");
    value.set(value.value.stringValue->text + 4);
    EXPECT_EQ(value.text(), "456789");
    value.set(value.value.stringValue->text);
    EXPECT_EQ(value.text(), "456789");
    TypedValue heap(stringType(), std::string(300, 'h').c_str());
    heap.set(heap.value.stringValue->text + 100);
    EXPECT_EQ(heap.text(), std::string(200, 'h'));
}
