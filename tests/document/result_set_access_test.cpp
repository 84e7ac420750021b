// The current result: what it is, reading and writing its value.

#include <gtest/gtest.h>

#include <climits>

#include "tests/document/store.h"
#include "tests/support/incidents.h"

namespace {

class ResultAccess : public testing::Test {
protected:
    // The results of a select.
    std::unique_ptr<ZorResultSet> select(char const* path) {
        return std::unique_ptr<ZorResultSet>(store.document.select(path));
    }

    IncidentLog log;
    Store store{"a*2{i*2:int=5 u:uint f:float=0.5} t*3:string=abcdef b:bool"};
};

char const kPassed[] = "3 Passed end of result set\n";

// Every accessor, what it does past the end, and its fallback.
struct {
    char const* name;
    bool (*fallsBack)(ZorResultSet& set);
} const kAccessors[] = {
    {"getDefinition", [](ZorResultSet& set) { return set.getDefinition() == nullptr; }},
    {"getNodeName", [](ZorResultSet& set) { return set.getNodeName() == nullptr; }},
    {"getDataType", [](ZorResultSet& set) { return set.getDataType() == nullptr; }},
    {"getOccurrence", [](ZorResultSet& set) { return set.getOccurrence() == 0; }},
    {"getValue", [](ZorResultSet& set) { return set.getValue() == nullptr; }},
    {"setValue", [](ZorResultSet& set) { return set.setValue("1") == 0; }},
    {"setValue null", [](ZorResultSet& set) { return set.setValue(nullptr) == 0; }},
    {"restoreDefault",
     [](ZorResultSet& set) {
         set.restoreDefault();
         return true;
     }},
    {"getIntValue",
     [](ZorResultSet& set) {
         int isNull = 7;
         return set.getIntValue(&isNull) == 0 && isNull == 7;
     }},
    {"getIntValue null", [](ZorResultSet& set) { return set.getIntValue(nullptr) == 0; }},
    {"setIntValue", [](ZorResultSet& set) { return set.setIntValue(1) == 0; }},
    {"getUIntValue",
     [](ZorResultSet& set) {
         int isNull = 7;
         return set.getUIntValue(&isNull) == 0 && isNull == 7;
     }},
    {"getUIntValue null", [](ZorResultSet& set) { return set.getUIntValue(nullptr) == 0; }},
    {"setUIntValue", [](ZorResultSet& set) { return set.setUIntValue(1) == 0; }},
    {"getFloatValue",
     [](ZorResultSet& set) {
         int isNull = 7;
         return set.getFloatValue(&isNull) == 0 && isNull == 7;
     }},
    {"getFloatValue null", [](ZorResultSet& set) { return set.getFloatValue(nullptr) == 0; }},
    {"setFloatValue", [](ZorResultSet& set) { return set.setFloatValue(1) == 0; }},
    {"wasChanged", [](ZorResultSet& set) { return !set.wasChanged(); }},
    {"getValue into a buffer",
     [](ZorResultSet& set) {
         char buffer[] = "kept";
         int isNull = 7;
         set.getValue(buffer, 4, &isNull);
         return std::string(buffer) == "kept" && isNull == 1;
     }},
    {"getValue into a buffer, null",
     [](ZorResultSet& set) {
         char buffer[] = "kept";
         set.getValue(buffer, 4, nullptr);
         return std::string(buffer) == "kept";
     }},
    {"getValue into a text",
     [](ZorResultSet& set) {
         std::string text = "kept";
         bool isNull = false;
         set.getValue(text, &isNull);
         return text == "kept" && isNull;
     }},
    {"getValue into a text, null",
     [](ZorResultSet& set) {
         std::string text = "kept";
         set.getValue(text, nullptr);
         return text == "kept";
     }},
    {"getValue into an emptied text",
     [](ZorResultSet& set) {
         std::string text = "not kept";
         set.getValue(text);
         return text.empty();
     }},
};

} // namespace

// Past the end every accessor raises one incident and answers its fallback.
TEST_F(ResultAccess, EveryAccessorReportsTheEnd) {
    std::string const before = store.cells();
    for (auto const& [name, fallsBack] : kAccessors) {
        auto const none = select("nothing");
        EXPECT_TRUE(fallsBack(*none)) << name;
        EXPECT_EQ(log.take(), kPassed) << name;

        auto const one = select("b");
        one->next();
        EXPECT_TRUE(fallsBack(*one)) << name;
        EXPECT_EQ(log.take(), kPassed) << name;

        auto const many = select("t");
        many->seek(static_cast<unsigned>(many->getResultCount()));
        EXPECT_TRUE(fallsBack(*many)) << name;
        EXPECT_EQ(log.take(), kPassed) << name;
        many->rewind();
        EXPECT_STREQ(many->getNodeName(), "t");
    }
    EXPECT_EQ(store.cells(), before);
}

TEST_F(ResultAccess, TellsWhatTheResultIs) {
    auto const results = select("a/i");
    results->seek(3);
    EXPECT_EQ(results->getDefinition(), store["a/i"]);
    EXPECT_STREQ(results->getNodeName(), "i");
    EXPECT_EQ(results->getDataType(), ZorBuiltIn::getDataType("int"));
    EXPECT_EQ(results->getOccurrence(), 2);

    auto const branch = select("a[2]");
    EXPECT_EQ(branch->getDefinition(), store["a"]);
    EXPECT_STREQ(branch->getNodeName(), "a");
    EXPECT_EQ(branch->getDataType(), nullptr);
    EXPECT_EQ(branch->getOccurrence(), 2);
}

TEST_F(ResultAccess, ReadsAndWritesTheCellUnderTheCursor) {
    auto const results = select("a[2]/i[1]");
    EXPECT_EQ(taken(results->getValue()), "5");
    EXPECT_FALSE(results->wasChanged());
    EXPECT_EQ(results->setValue("8"), 1);
    EXPECT_TRUE(results->wasChanged());
    EXPECT_EQ(taken(results->getValue()), "8");
    EXPECT_EQ(store.cells(), "a/i=5,5,8*,5;a/u=-,-;a/f=0.5,0.5;t=abcdef,abcdef,abcdef;b=-;");
    EXPECT_EQ(results->setValue(nullptr), 1);
    EXPECT_EQ(taken(results->getValue()), "(null)");
    results->restoreDefault();
    EXPECT_FALSE(results->wasChanged());
    EXPECT_EQ(store.cells(), "a/i=5,5,5,5;a/u=-,-;a/f=0.5,0.5;t=abcdef,abcdef,abcdef;b=-;");
}

TEST_F(ResultAccess, ReadsAndWritesNumbers) {
    int isNull = 7;
    auto const ints = select("a[1]/i[2]");
    EXPECT_EQ(ints->setIntValue(-9), 1);
    EXPECT_EQ(ints->getIntValue(&isNull), -9);
    EXPECT_EQ(isNull, 0);

    auto const uints = select("a[2]/u");
    isNull = 7;
    EXPECT_EQ(uints->getUIntValue(&isNull), 0U);
    EXPECT_EQ(isNull, 1);
    EXPECT_EQ(uints->setUIntValue(4294967295UL), 1);
    EXPECT_EQ(uints->getUIntValue(&isNull), 4294967295UL);
    EXPECT_EQ(isNull, 0);

    auto const floats = select("a[2]/f");
    isNull = 7;
    EXPECT_EQ(floats->getFloatValue(&isNull), 0.5);
    EXPECT_EQ(isNull, 0);
    EXPECT_EQ(floats->setFloatValue(1.25), 1);
    EXPECT_EQ(floats->getFloatValue(nullptr), 1.25);

    EXPECT_EQ(store.cells(),
              "a/i=5,-9*,5,5;a/u=-,4294967295*;a/f=0.5,1.25*;t=abcdef,abcdef,abcdef;b=-;");
}

TEST_F(ResultAccess, SeesWhatWasSetElsewhere) {
    auto const results = select("t[2]");
    store.set("t", 1, "new");
    EXPECT_EQ(taken(results->getValue()), "new");
    EXPECT_TRUE(results->wasChanged());
}

// The incidents of the document pass through.
TEST_F(ResultAccess, RefusalsAreTheDocuments) {
    auto const ints = select("a/i");
    EXPECT_EQ(ints->setValue("x"), 0);
    EXPECT_EQ(log.take(), "3 setStringNodeValue: value (x) is not valid\n");
    EXPECT_EQ(ints->setUIntValue(1), 0);
    EXPECT_EQ(log.take(), "3 Unsupported Type Conversion\n");
    int isNull = 7;
    EXPECT_EQ(ints->getFloatValue(&isNull), 0);
    EXPECT_EQ(isNull, 1);
    EXPECT_EQ(log.take(), "3 Unsupported Type Conversion\n");
    EXPECT_EQ(ints->setFloatValue(1), 0);
    EXPECT_EQ(log.take(), "3 Unsupported Type Conversion\n");
}

// A loop over everything meets branches: they answer as empty cells and take no value.
TEST_F(ResultAccess, ABranchHasNoValueAndTakesNone) {
    auto const results = select("a");
    int isNull = 7;
    bool isNullText = false;
    char buffer[] = "kept";
    std::string text = "kept";
    EXPECT_EQ(results->getValue(), nullptr);
    EXPECT_EQ(results->getIntValue(&isNull), 0);
    EXPECT_EQ(isNull, 1);
    isNull = 7;
    EXPECT_EQ(results->getUIntValue(&isNull), 0U);
    EXPECT_EQ(isNull, 1);
    isNull = 7;
    EXPECT_EQ(results->getFloatValue(&isNull), 0);
    EXPECT_EQ(isNull, 1);
    isNull = 7;
    results->getValue(buffer, 4, &isNull);
    EXPECT_EQ(isNull, 1);
    EXPECT_STREQ(buffer, "kept");
    results->getValue(text, &isNullText);
    EXPECT_TRUE(isNullText);
    EXPECT_EQ(text, "kept");
    EXPECT_FALSE(results->wasChanged());
    results->restoreDefault();
    EXPECT_EQ(log.take(), "");

    EXPECT_EQ(results->setValue("1"), 0);
    EXPECT_EQ(log.take(), "3 setStringNodeValue: node is not a data node\n");
    EXPECT_EQ(results->setIntValue(1), 0);
    EXPECT_EQ(log.take(), "3 setIntNodeValue: node is not a data node\n");
    EXPECT_EQ(results->setUIntValue(1), 0);
    EXPECT_EQ(log.take(), "3 setUIntNodeValue: node is not a data node\n");
    EXPECT_EQ(results->setFloatValue(1), 0);
    EXPECT_EQ(log.take(), "3 setFloatNodeValue: node is not a data node\n");
}

// The text is cut to size - 1 characters and the rest of the buffer filled with NULs.
TEST_F(ResultAccess, CopiesTheTextIntoABufferOfAnySize) {
    struct {
        char const* value;
        int size;
        std::string buffer; // of 8 characters "~" before
    } const cases[] = {
        {"abcdef", 4, std::string("abc\0~~~~", 8)},
        {"ab", 4, std::string("ab\0\0~~~~", 8)},
        {"abc", 4, std::string("abc\0~~~~", 8)},
        {"abcd", 4, std::string("abc\0~~~~", 8)},
        {"abcdef", 8, std::string("abcdef\0\0", 8)},
        {"abcdefgh", 8, std::string("abcdefg\0", 8)},
        {"abcdef", 2, std::string("a\0~~~~~~", 8)},
        {"abcdef", 1, std::string("\0~~~~~~~", 8)},
        {"", 1, std::string("\0~~~~~~~", 8)},
        {"", 3, std::string("\0\0\0~~~~~", 8)},
        {"abcdef", 0, "~~~~~~~~"},
        {"abcdef", -1, "~~~~~~~~"},
        {"abcdef", INT_MIN, "~~~~~~~~"},
        {"", 0, "~~~~~~~~"},
    };
    for (auto const& [value, size, expected] : cases) {
        auto const results = select("t[1]");
        results->setValue(value);
        std::string buffer(8, '~');
        int isNull = 7;
        results->getValue(buffer.data(), size, &isNull);
        EXPECT_EQ(buffer, expected) << value << " into " << size;
        EXPECT_EQ(isNull, 0) << value << " into " << size;

        std::string again(8, '~');
        results->getValue(again.data(), size, nullptr);
        EXPECT_EQ(again, expected) << value << " into " << size;
    }
}

TEST_F(ResultAccess, NoValueLeavesTheBufferUntouched) {
    auto const results = select("b");
    for (int const size : {8, 1, 0}) {
        std::string buffer(8, '~');
        int isNull = 7;
        results->getValue(buffer.data(), size, &isNull);
        EXPECT_EQ(buffer, "~~~~~~~~");
        EXPECT_EQ(isNull, 1);
        results->getValue(buffer.data(), size, nullptr);
        EXPECT_EQ(buffer, "~~~~~~~~");
    }
}

TEST_F(ResultAccess, CopiesTheTextIntoAString) {
    auto const full = select("t[1]");
    auto const empty = select("b");
    std::string text = "before";
    bool isNull = true;
    full->getValue(text, &isNull);
    EXPECT_EQ(text, "abcdef");
    EXPECT_FALSE(isNull);
    empty->getValue(text, &isNull);
    EXPECT_EQ(text, "abcdef"); // unchanged
    EXPECT_TRUE(isNull);
    text = "before";
    full->getValue(text, nullptr);
    EXPECT_EQ(text, "abcdef");
    empty->getValue(text, nullptr);
    EXPECT_EQ(text, "abcdef");

    text = "before";
    full->getValue(text);
    EXPECT_EQ(text, "abcdef");
    empty->getValue(text);
    EXPECT_EQ(text, "");
    full->setValue("");
    text = "before";
    full->getValue(text, &isNull);
    EXPECT_EQ(text, "");
    EXPECT_FALSE(isNull);
}

TEST_F(ResultAccess, TakesATextThatBeginsLikeAString) {
    auto const results = select("t[1]");
    EXPECT_EQ(results->setValue("\xFF odd"), 1);
    EXPECT_EQ(taken(results->getValue()), "\xFF odd");
}

TEST_F(ResultAccess, LoopsOverEverything) {
    store.set("b", 0, "true");
    std::string seen;
    for (auto const results = select("//*"); !results->eof(); results->next()) {
        std::string text;
        results->getValue(text);
        seen += std::string(results->getNodeName()) + '[' +
                std::to_string(results->getOccurrence()) + "]=" + text + ' ';
    }
    EXPECT_EQ(seen, "a[1]= a[2]= i[1]=5 i[2]=5 u[1]= f[1]=0.5 i[1]=5 i[2]=5 u[1]= f[1]=0.5 "
                    "t[1]=abcdef t[2]=abcdef t[3]=abcdef b[1]=true ");
}

// A plain text that begins like a string is a text all the same, and may not be too long either.
TEST_F(ResultAccess, SetsATextThatBeginsLikeAString) {
    auto const results = select("t[1]");
    std::string const text = "\xFF\xFE text";
    EXPECT_EQ(results->setValue(text.c_str()), 1);
    EXPECT_EQ(taken(results->getValue()), text);
    std::string const tooLong = "\xFF" + std::string(ZorString::maxLength, 'x');
    EXPECT_EQ(results->setValue(tooLong.c_str()), 0);
    EXPECT_EQ(log.take(), "3 setStringNodeValue: value (" + tooLong + ") is not valid\n");
    EXPECT_EQ(taken(results->getValue()), text);
}
