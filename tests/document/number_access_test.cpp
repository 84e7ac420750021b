// Values as host numbers.

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>

#include "tests/document/store.h"
#include "tests/support/incidents.h"
#include "tests/types/call_log.h"

namespace {

class NumberAccess : public testing::Test {
protected:
    IncidentLog log;
};

char const kUnsupported[] = "3 Unsupported Type Conversion\n";

// The three kinds of host numbers, with the same operations.
struct Kind {
    ZorExternalDataType kind;
    std::string setter;
    // Numbers small enough travel as a double or an int without loss.
    double (*get)(ZorDocument& document, ZorSchemaNode* node, long occurrence, int* isNull);
    int (*set)(ZorDocument& document, ZorSchemaNode* node, long occurrence, int value);

    std::string says(char const* what) const { return "3 " + setter + ": " + what + '\n'; }
};

Kind const kKinds[] = {
    {zorExtLong, "setIntNodeValue",
     [](ZorDocument& document, ZorSchemaNode* node, long occurrence, int* isNull) {
         return static_cast<double>(document.getIntNodeValue(node, occurrence, isNull));
     },
     [](ZorDocument& document, ZorSchemaNode* node, long occurrence, int value) {
         return document.setIntNodeValue(node, occurrence, value);
     }},
    {zorExtULong, "setUIntNodeValue",
     [](ZorDocument& document, ZorSchemaNode* node, long occurrence, int* isNull) {
         return static_cast<double>(document.getUIntNodeValue(node, occurrence, isNull));
     },
     [](ZorDocument& document, ZorSchemaNode* node, long occurrence, int value) {
         return document.setUIntNodeValue(node, occurrence, static_cast<unsigned long>(value));
     }},
    {zorExtDouble, "setFloatNodeValue",
     [](ZorDocument& document, ZorSchemaNode* node, long occurrence, int* isNull) {
         return document.getFloatNodeValue(node, occurrence, isNull);
     },
     [](ZorDocument& document, ZorSchemaNode* node, long occurrence, int value) {
         return document.setFloatNodeValue(node, occurrence, value);
     }},
};

std::vector<ZorDataType*> ownTypes() {
    ZorDataType* const choice = zor_choiceMake("mode");
    zor_choiceAddOption(choice, "1");
    auto const range = [](char const* name, char const* base) {
        return zor_rangeMake(ZorBuiltIn::getDataType(base), name, "1", "10");
    };
    return {choice, range("ints", "int"), range("uints", "uint"), range("floats", "float"),
            zor_derivedTypeMake("derived", nullptr, nullptr, nullptr, nullptr, nullptr,
                                ZorBuiltIn::getDataType("int"), nullptr)};
}

// A type of plain numbers whose conversions of longs note each call.
namespace noting {

u_zorItemValue toInternal(u_zorItemValue external) {
    CallLog::note("toInternal " + std::to_string(external.intValue));
    return external;
}

void setInternal(u_zorItemValue* internal, u_zorItemValue external) {
    CallLog::note("setInternal " + std::to_string(internal->intValue) + ' ' +
                  std::to_string(external.intValue));
    *internal = external;
}

void getExternal(u_zorItemValue internal, u_zorItemValue* external) {
    CallLog::note("getExternal " + std::to_string(internal.intValue));
    *external = internal;
}

int validate(void* userData, u_zorItemValue external) {
    CallLog::note("validate " + probe::tagOf(userData) + ' ' + std::to_string(external.intValue));
    return external.intValue < 100;
}

} // namespace noting

ZorDataType* notingType(ZorToInternalFn toInternal, ZorSetInternalFn setInternal,
                        ZorGetExternalFn getExternal, ZorExtValidateFn validate) {
    static char tag[] = "tag";
    ZorDataType* const type = makeProbe("noting", nullptr, tag, nullptr, nullptr);
    zor_dataTypeSetConversionFuncs(type, zorExtLong, toInternal, setInternal, getExternal, validate,
                                   nullptr);
    return type;
}

} // namespace

// Which kinds a type converts is decided by the conversions it carries.
TEST_F(NumberAccess, EveryTypeConvertsItsKindsAndRefusesTheOthers) {
    struct {
        char const* type;
        char const* text;
        std::string kinds; // i, u, f
        double number;
    } const cases[] = {
        {"string", "1", "", 0},
        {"int", "5", "i", 5},
        {"uint", "5", "u", 5},
        {"bool", "true", "iu", 1},
        {"float", "2.5", "f", 2.5},
        {"digit_string", "1", "", 0},
        {"ip_address", "0.0.1.2", "u", 258},
        {"ip_mask", "0.0.0.0", "u", 0},
        {"domain_name", "1", "", 0},
        {"url", "1", "", 0},
        {"mode", "1", "", 0},
        {"ints", "5", "i", 5},
        {"uints", "5", "u", 5},
        {"floats", "2.5", "f", 2.5},
        {"derived", "5", "", 0},
    };
    for (auto const& [type, text, kinds, number] : cases) {
        Store store(std::string("a:") + type, ownTypes());
        store.document.nonBlockingSetStringNodeValue(store["a"], 0, text);
        for (Kind const& kind : kKinds) {
            bool const supported = kinds.find("iuf"[kind.kind]) != std::string::npos;
            int isNull = 7;
            EXPECT_EQ(kind.get(store.document, store["a"], 0, &isNull), supported ? number : 0)
                << type << kind.kind;
            EXPECT_EQ(isNull, !supported) << type << kind.kind;
            EXPECT_EQ(log.take(), supported ? "" : kUnsupported) << type << kind.kind;
            if (supported) continue;
            EXPECT_EQ(kind.set(store.document, store["a"], 0, 1), 0) << type << kind.kind;
            EXPECT_EQ(log.take(), kUnsupported) << type << kind.kind;
        }
        EXPECT_EQ(store.cells(), std::string("a=") + text + ';') << type;
    }
}

TEST_F(NumberAccess, ReadsBackWhatWasSet) {
    Store store("i:int u:uint f:float b:bool a:ip_address m:ip_mask");
    int isNull = 7;
    for (long const number : {0L, 1L, -1L, long(INT_MAX), long(INT_MIN)}) {
        EXPECT_EQ(store.document.setIntNodeValue(store["i"], 0, number), 1);
        EXPECT_EQ(store.document.getIntNodeValue(store["i"], 0, &isNull), number);
        EXPECT_EQ(isNull, 0);
        EXPECT_EQ(store.text("i"), std::to_string(number));
    }
    for (unsigned long const number : {0UL, 1UL, 2147483648UL, 4294967295UL}) {
        EXPECT_EQ(store.document.setUIntNodeValue(store["u"], 0, number), 1);
        EXPECT_EQ(store.document.getUIntNodeValue(store["u"], 0, &isNull), number);
        EXPECT_EQ(store.text("u"), std::to_string(number));
    }
    for (double const number : {0.0, -1.5, 1e300, 0.1}) {
        EXPECT_EQ(store.document.setFloatNodeValue(store["f"], 0, number), 1);
        EXPECT_EQ(store.document.getFloatNodeValue(store["f"], 0, &isNull), number);
    }
    EXPECT_EQ(store.text("f"), "0.1");
    EXPECT_EQ(store.document.setUIntNodeValue(store["a"], 0, 0xC0A80001UL), 1);
    EXPECT_EQ(store.text("a"), "192.168.0.1");
    EXPECT_EQ(store.document.setUIntNodeValue(store["m"], 0, 0xFFFFFF00UL), 1);
    EXPECT_EQ(store.cells(),
              "i=-2147483648*;u=4294967295*;f=0.1*;b=-;a=192.168.0.1*;m=255.255.255.0*;");
}

// What is stored as one kind and read as the other converts as 32-bit two's complement.
TEST_F(NumberAccess, ABoolConvertsBetweenTheKinds) {
    Store store("b:bool");
    int isNull = 7;
    struct {
        unsigned long stored;
        long read;
        char const* text;
    } const cases[] = {
        {0, 0, "false"},
        {1, 1, "true"},
        {2, 2, "true"},
        {2147483647, 2147483647, "true"},
        {2147483648UL, INT_MIN, "true"},
        {4294967295UL, -1, "true"},
    };
    for (auto const& [stored, read, text] : cases) {
        EXPECT_EQ(store.document.setUIntNodeValue(store["b"], 0, stored), 1);
        EXPECT_EQ(store.document.getIntNodeValue(store["b"], 0, &isNull), read) << stored;
        EXPECT_EQ(store.text("b"), text) << stored;
        EXPECT_EQ(store.document.setIntNodeValue(store["b"], 0, read), 1);
        EXPECT_EQ(store.document.getUIntNodeValue(store["b"], 0, &isNull), stored) << read;
        EXPECT_EQ(store.text("b"), text) << read;
    }
}

TEST_F(NumberAccess, AnEmptyCellReadsAsNullAndZero) {
    Store store("i:int u:uint f:float");
    char const* const paths[] = {"i", "u", "f"};
    for (Kind const& kind : kKinds) {
        int isNull = 7;
        EXPECT_EQ(kind.get(store.document, store[paths[kind.kind]], 0, &isNull), 0);
        EXPECT_EQ(isNull, 1);
    }
}

TEST_F(NumberAccess, ANullFlagIsAllowed) {
    Store store("i:int=5 u:uint=5 f:float=5 e*3{}");
    char const* const paths[] = {"i", "u", "f"};
    for (Kind const& kind : kKinds) {
        ZorSchemaNode* const node = store[paths[kind.kind]];
        EXPECT_EQ(kind.get(store.document, node, 0, nullptr), 5);
        EXPECT_EQ(kind.get(store.document, node, 1, nullptr), 0);
        EXPECT_EQ(kind.get(store.document, store["e"], 0, nullptr), 0);
        store.document.setStringNodeValue(node, 0, nullptr);
        EXPECT_EQ(kind.get(store.document, node, 0, nullptr), 0);
    }
    EXPECT_EQ(store.document.getIntNodeValue(store["f"], 0, nullptr), 0);
    EXPECT_EQ(log.take(), kUnsupported);
}

TEST_F(NumberAccess, SettingMarksOneCellChanged) {
    Store store("i*2:int=5 u*2:uint f*2:float=0.5");
    char const* const paths[] = {"i", "u", "f"};
    for (Kind const& kind : kKinds) {
        EXPECT_EQ(kind.set(store.document, store[paths[kind.kind]], 1, 5), 1);
    }
    EXPECT_EQ(store.cells(), "i=5,5*;u=-,5*;f=0.5,5*;");
}

TEST_F(NumberAccess, RefusesANumberThatTheTypeRefuses) {
    Store store("i*2:ints=5 u*2:uints=5 f*2:floats=5", ownTypes());
    char const* const paths[] = {"i", "u", "f"};
    for (Kind const& kind : kKinds) {
        ZorSchemaNode* const node = store[paths[kind.kind]];
        kind.set(store.document, node, 1, 6);
        store.document.nonBlockingSetStringNodeValue(node, 0, nullptr);
        for (int const number : {0, 11}) {
            for (long const occurrence : {0L, 1L}) {
                EXPECT_EQ(kind.set(store.document, node, occurrence, number), 0);
                EXPECT_EQ(log.take(), kind.says("value is not valid"));
            }
        }
    }
    EXPECT_EQ(store.cells(), "i=-,6*;u=-,6*;f=-,6*;");

    Store masks("m:ip_mask");
    EXPECT_EQ(masks.document.setUIntNodeValue(masks["m"], 0, 0x00FFFFFFUL), 0);
    EXPECT_EQ(log.take(), "3 setUIntNodeValue: value is not valid\n");
    EXPECT_EQ(masks.cells(), "m=-;");
}

// A number that does not fit 32 bits is refused instead of being cut.
TEST_F(NumberAccess, RefusesNumbersBeyond32Bits) {
    if (sizeof(long) == 4) GTEST_SKIP() << "no such numbers here";
    Store store("i:int u:uint b:bool a:ip_address m:ip_mask");
    unsigned long const tooLarge = static_cast<unsigned long>(UINT64_C(1) << 32);
    for (char const* const path : {"i", "b"}) {
        for (std::int64_t const wide :
             {INT_MAX + INT64_C(1), INT_MIN - INT64_C(1), INT64_MAX, INT64_MIN}) {
            long const number = static_cast<long>(wide);
            EXPECT_EQ(store.document.setIntNodeValue(store[path], 0, number), 0);
            EXPECT_EQ(log.take(), "3 setIntNodeValue: value is not valid\n") << path << number;
        }
    }
    for (char const* const path : {"u", "b", "a", "m"}) {
        for (unsigned long const number : {tooLarge, ULONG_MAX, tooLarge + 0xFFFFFF00UL}) {
            EXPECT_EQ(store.document.setUIntNodeValue(store[path], 0, number), 0);
            EXPECT_EQ(log.take(), "3 setUIntNodeValue: value is not valid\n") << path << number;
        }
    }
    EXPECT_EQ(store.cells(), "i=-;u=-;b=-;a=-;m=-;");
}

TEST_F(NumberAccess, ABranchHasNoNumberAndTakesNone) {
    Store store("a*2{b:int=1}");
    for (Kind const& kind : kKinds) {
        for (ZorSchemaNode* const node :
             {store["a"], store.document.rootNode, static_cast<ZorSchemaNode*>(nullptr)}) {
            int isNull = 7;
            EXPECT_EQ(kind.get(store.document, node, 0, &isNull), 0);
            EXPECT_EQ(isNull, 1);
            EXPECT_EQ(kind.set(store.document, node, 0, 5), 0);
            EXPECT_EQ(log.take(), kind.says("node is not a data node"));
        }
    }
    EXPECT_EQ(store.cells(), "a/b=1,1;");
}

TEST_F(NumberAccess, AnOccurrenceThatDoesNotExistHasNoNumberAndTakesNone) {
    Store store("i*2:int=5 u*2:uint=5 f*2:float=5");
    Store other("i*2:int=5 u*2:uint=5 f*2:float=5");
    char const* const paths[] = {"i", "u", "f"};
    for (Kind const& kind : kKinds) {
        ZorSchemaNode* const node = store[paths[kind.kind]];
        for (long const occurrence : {-1L, 2L, LONG_MAX, LONG_MIN}) {
            int isNull = 7;
            EXPECT_EQ(kind.get(store.document, node, occurrence, &isNull), 0);
            EXPECT_EQ(isNull, 1);
            EXPECT_EQ(kind.set(store.document, node, occurrence, 6), 0);
            EXPECT_EQ(log.take(), kind.says("occurrence is out of range"));
        }
        int isNull = 7;
        EXPECT_EQ(kind.get(store.document, other[paths[kind.kind]], 0, &isNull), 0);
        EXPECT_EQ(isNull, 1);
        EXPECT_EQ(kind.set(store.document, other[paths[kind.kind]], 0, 6), 0);
        EXPECT_EQ(log.take(), kind.says("occurrence is out of range"));
    }
    EXPECT_EQ(store.cells(), "i=5,5;u=5,5;f=5,5;");
    EXPECT_EQ(other.cells(), "i=5,5;u=5,5;f=5,5;");
}

// Reported first: a node without values, a kind that is not converted, a number that is not
// valid, an occurrence.
TEST_F(NumberAccess, ReportsTheFirstReasonOnly) {
    Store store("i:ints u:uints f:floats s:string", ownTypes());
    char const* const paths[] = {"i", "u", "f"};
    for (Kind const& kind : kKinds) {
        kind.set(store.document, store.document.rootNode, 9, 11);
        EXPECT_EQ(log.take(), kind.says("node is not a data node"));
        kind.set(store.document, store["s"], 9, 11);
        EXPECT_EQ(log.take(), kUnsupported);
        kind.set(store.document, store[paths[kind.kind]], 9, 11);
        EXPECT_EQ(log.take(), kind.says("value is not valid"));
        kind.set(store.document, store[paths[kind.kind]], 9, 10);
        EXPECT_EQ(log.take(), kind.says("occurrence is out of range"));
        kind.get(store.document, store["s"], 9, nullptr);
        EXPECT_EQ(log.take(), kUnsupported);
    }
}

TEST_F(NumberAccess, ConvertsThroughTheFunctionsOfTheType) {
    CallLog calls;
    Store store("a:noting", {notingType(noting::toInternal, noting::setInternal,
                                        noting::getExternal, noting::validate)});
    store.document.setIntNodeValue(store["a"], 0, 7);
    EXPECT_EQ(calls.take(), "validate tag 7;toInternal 7;");
    store.document.setIntNodeValue(store["a"], 0, 8);
    EXPECT_EQ(calls.take(), "validate tag 8;setInternal 7 8;");
    EXPECT_EQ(store.document.getIntNodeValue(store["a"], 0, nullptr), 8);
    EXPECT_EQ(calls.take(), "getExternal 8;");
    store.document.setIntNodeValue(store["a"], 0, 100);
    EXPECT_EQ(log.take(), "3 setIntNodeValue: value is not valid\n");
    EXPECT_EQ(calls.take(), "validate tag 100;");
}

// A setter needs both conversions inwards, a getter the one outwards.
TEST_F(NumberAccess, AKindIsConvertedOnlyWhenItsFunctionsAreThere) {
    CallLog calls;
    ZorDataType* const halves[] = {
        notingType(nullptr, noting::setInternal, nullptr, noting::validate),
        notingType(noting::toInternal, nullptr, nullptr, noting::validate),
    };
    for (ZorDataType* const half : halves) {
        Store store("a:noting", {half});
        EXPECT_EQ(store.document.setIntNodeValue(store["a"], 0, 7), 0);
        EXPECT_EQ(log.take(), kUnsupported);
        EXPECT_EQ(store.document.getIntNodeValue(store["a"], 0, nullptr), 0);
        EXPECT_EQ(log.take(), kUnsupported);
        EXPECT_EQ(calls.take(), "");
    }

    Store outwards("a:noting", {notingType(nullptr, nullptr, noting::getExternal, nullptr)});
    outwards.set("a", 0, "7");
    EXPECT_EQ(outwards.document.getIntNodeValue(outwards["a"], 0, nullptr), 7);

    Store unchecked("a:noting",
                    {notingType(noting::toInternal, noting::setInternal, nullptr, nullptr)});
    EXPECT_EQ(unchecked.document.setIntNodeValue(unchecked["a"], 0, 7), 0);
    EXPECT_EQ(log.take(), "3 setIntNodeValue: value is not valid\n");
    EXPECT_EQ(unchecked.cells(), "a=-;");
}
