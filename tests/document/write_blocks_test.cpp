// Which writes need no memory, counted.

#include <gtest/gtest.h>

#include <functional>
#include <memory>

#include "tests/document/store.h"
#include "tests/support/allocations.h"
#include "tests/support/incidents.h"

namespace {

// A document with a value of each kind, all of them set once.
class WriteBlocks : public testing::Test {
protected:
    WriteBlocks() {
        for (char const* const path :
             {"string", "url", "digits", "mode", "int", "uint", "bool", "float", "level", "ip"}) {
            EXPECT_EQ(store.set(path, 0, firstOf(path)), 1) << path;
        }
    }

    static std::vector<ZorDataType*> types() {
        ZorDataType* const mode = zor_choiceMake("mode");
        for (char const* const option : {"first", "second"}) zor_choiceAddOption(mode, option);
        return {mode, zor_rangeMake(ZorBuiltIn::getDataType("int"), "level", "0", "20")};
    }

    static char const* firstOf(std::string const& path) {
        if (path == "mode") return "first";
        if (path == "bool") return "true";
        if (path == "ip") return "10.0.0.1";
        return "12";
    }

    // How many blocks the work asks for.
    static long blocksOf(std::function<void()> const& work) {
        long const before = allocatedBlocks();
        work();
        return allocatedBlocks() - before;
    }

    // Expects that a text takes the place of a value without a block, by node and by result.
    void expectNoBlock(char const* path, char const* text) {
        ZorSchemaNode* const node = store[path];
        Text const string(text);
        EXPECT_EQ(blocksOf([&] { store.document.setStringNodeValue(node, 0, text); }), 0) << text;
        EXPECT_EQ(blocksOf([&] {
                      store.document.setStringNodeValue(node, 0, static_cast<ZorString*>(string));
                  }),
                  0)
            << text;
        std::unique_ptr<ZorResultSet> const result(store.document.select(path));
        EXPECT_EQ(blocksOf([&] { result->setValue(text); }), 0) << text;
        EXPECT_EQ(store.text(path), text);
    }

    IncidentLog log;
    Store store{"string:string url:url digits:digit_string mode:mode int:int uint:uint bool:bool "
                "float:float level:level ip:ip_address",
                types()};
};

} // namespace

TEST_F(WriteBlocks, AShortTextInPlaceOfAShortOneNeedsNone) {
    for (char const* const path : {"string", "url"}) {
        for (char const* const text :
             {"a", "a text of thirty-two characters.", "b", "true story", "x"}) {
            expectNoBlock(path, text);
        }
    }
    for (char const* const text : {"0", "0049*12#", "12345678901234567890123456789012"}) {
        expectNoBlock("digits", text);
    }
    for (char const* const text : {"second", "first"}) expectNoBlock("mode", text);
}

// A buffer that has grown serves every text that fits into it.
TEST_F(WriteBlocks, ALongTextInPlaceOfALongerOneNeedsNone) {
    store.set("string", 0, std::string(100, 'x').c_str());
    for (int const length : {100, 99, 50, 33, 32, 1, 100}) {
        expectNoBlock("string", std::string(static_cast<unsigned>(length), 'y').c_str());
    }
    EXPECT_EQ(blocksOf([&] { store.set("string", 0, std::string(200, 'z').c_str()); }),
              2); // one here
}

TEST_F(WriteBlocks, ANumberAsTextNeedsNone) {
    expectNoBlock("int", "-2147483648");
    expectNoBlock("uint", "4294967295");
    expectNoBlock("bool", "false");
    expectNoBlock("float", "1.5");
    expectNoBlock("level", "20");
    expectNoBlock("ip", "255.255.255.255");
}

TEST_F(WriteBlocks, ANumberNeedsNone) {
    ZorDocument& document = store.document;
    ZorSchemaNode* const node = store["int"];
    ZorSchemaNode* const unsignedNode = store["uint"];
    ZorSchemaNode* const floating = store["float"];
    ZorSchemaNode* const level = store["level"];
    EXPECT_EQ(blocksOf([&] {
                  EXPECT_EQ(document.setIntNodeValue(node, 0, -5), 1);
                  EXPECT_EQ(document.setIntNodeValue(level, 0, 5), 1);
                  EXPECT_EQ(document.setUIntNodeValue(unsignedNode, 0, 4000000000U), 1);
                  EXPECT_EQ(document.setFloatNodeValue(floating, 0, 0.25), 1);
                  EXPECT_EQ(document.getIntNodeValue(node, 0, nullptr), -5);
                  EXPECT_EQ(document.getIntNodeValue(level, 0, nullptr), 5);
                  EXPECT_EQ(document.getUIntNodeValue(unsignedNode, 0, nullptr), 4000000000U);
                  EXPECT_EQ(document.getFloatNodeValue(floating, 0, nullptr), 0.25);
              }),
              0);
}
