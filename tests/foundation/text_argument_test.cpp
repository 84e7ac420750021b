// Arguments that are a string or plain text, and the holders of references and lists.

#include "foundation/text_argument.h"

#include <gtest/gtest.h>

#include "foundation/list_ref.h"
#include "foundation/string_ref.h"
#include "tests/foundation/strings.h"
#include "tests/support/allocations.h"
#include "tests/support/text.h"

using zor_internal::ListRef;
using zor_internal::stringOf;
using zor_internal::StringRef;
using zor_internal::textOf;

TEST(TextArgument, ReadsStringsPlainTextsAndNull) {
    Text const string("volume");
    EXPECT_STREQ(textOf(static_cast<ZorString*>(string)), "volume");
    // Volatile, so that no optimiser sees a literal where a string might stand.
    char const* const volatile plain = "volume";
    char const* const volatile empty = "";
    EXPECT_STREQ(textOf(plain), "volume");
    EXPECT_STREQ(textOf(empty), "");
    EXPECT_STREQ(textOf(nullptr), "");
}

TEST(TextArgument, AStringGainsAReference) {
    ZorString* const string = ZorString::create("volume", -1);
    EXPECT_EQ(stringOf(string), string);
    EXPECT_EQ(string->refCount, 2);
    string->removeRef();
    string->removeRef();
    EXPECT_EQ(stringOf(permanent("Id")), permanent("Id"));
}

TEST(TextArgument, PlainTextBecomesAString) {
    EXPECT_EQ(taken(stringOf("volume")), "volume");
    EXPECT_EQ(stringOf("true"), permanent("true"));
    EXPECT_EQ(stringOf(""), permanent(""));
    EXPECT_EQ(stringOf(nullptr), permanent(""));
}

TEST(StringRef, ReleasesItsReferenceAtTheEnd) {
    ZorString* const string = ZorString::create("volume", -1);
    {
        StringRef const reference(shared(string));
        EXPECT_TRUE(reference);
        EXPECT_EQ(reference.get(), string);
        EXPECT_STREQ(reference.text(), "volume");
        EXPECT_EQ(string->refCount, 2);
    }
    EXPECT_EQ(string->refCount, 1);
    string->removeRef();
}

TEST(StringRef, HandsOverItsReference) {
    StringRef reference(ZorString::create("volume", -1));
    ZorString* const string = reference.release();
    EXPECT_FALSE(reference);
    EXPECT_EQ(string->refCount, 1);
    EXPECT_EQ(taken(string), "volume");
}

TEST(StringRef, GoesOnWithWhatAMutatorReturned) {
    StringRef reference(ZorString::create("tru", -1));
    reference.replace(reference.get()->append(1, "e", 1));
    EXPECT_EQ(reference.get(), permanent("true"));
}

TEST(StringRef, MayHoldNothing) {
    StringRef const reference(nullptr);
    EXPECT_FALSE(reference);
}

TEST(ListRef, FreesItsNodesAtTheEnd) {
    int value = 1;
    long const before = liveBlocks();
    {
        ListRef const list(zor_listMake(&value));
        zor_listAddNode(list.first(), &value);
        EXPECT_EQ(list.first()->value, &value);
        EXPECT_EQ(liveBlocks() - before, 2);
    }
    EXPECT_EQ(liveBlocks(), before);
    ListRef const nothing(nullptr);
    EXPECT_EQ(nothing.first(), nullptr);
}
