// Values as text.

#include <gtest/gtest.h>

#include <climits>

#include "tests/document/store.h"
#include "tests/support/incidents.h"
#include "tests/types/call_log.h"

namespace {

class TextAccess : public testing::Test {
protected:
    IncidentLog log;
};

std::string invalid(std::string const& value) {
    return "3 setStringNodeValue: value (" + value + ") is not valid\n";
}

char const kNotData[] = "3 setStringNodeValue: node is not a data node\n";
char const kOutOfRange[] = "3 setStringNodeValue: occurrence is out of range\n";

ZorDataType* modeChoice() {
    ZorDataType* const type = zor_choiceMake("mode");
    zor_choiceAddOption(type, "on");
    zor_choiceAddOption(type, "off");
    return type;
}

ZorDataType* levelRange() {
    return zor_rangeMake(ZorBuiltIn::getDataType("int"), "level", "0", "10");
}

} // namespace

TEST_F(TextAccess, ReadsBackWhatTheTypeMakesOfATextThatIsSet) {
    struct {
        char const* type;
        char const* given;
        char const* read;
    } const cases[] = {
        {"string", "abc", "abc"},
        {"string", "", ""},
        {"string", " a b ", " a b "},
        {"int", "+007", "7"},
        {"int", "-2147483648", "-2147483648"},
        {"uint", "4294967295", "4294967295"},
        {"bool", "true", "true"},
        {"float", "1.50", "1.5"},
        {"digit_string", "+49 *#", "+49 *#"},
        {"ip_address", "192.168.001.1", "192.168.1.1"},
        {"ip_mask", "255.255.0.0", "255.255.0.0"},
        {"domain_name", "example", "example"},
        {"url", "any text", "any text"},
        {"mode", "off", "off"},
        {"level", "010", "10"},
    };
    for (auto const& [type, given, read] : cases) {
        Store store(std::string("a:") + type, {modeChoice(), levelRange()});
        EXPECT_EQ(store.set("a", 0, given), 1) << type;
        EXPECT_EQ(store.text("a"), read) << type << ' ' << given;
        EXPECT_TRUE(store.changed("a")) << type;
    }
}

TEST_F(TextAccess, AnEmptyCellReadsAsNull) {
    Store store("a*2:string b:int");
    EXPECT_EQ(store.text("a", 0), "(null)");
    EXPECT_EQ(store.text("a", 1), "(null)");
    EXPECT_EQ(store.text("b"), "(null)");
}

TEST_F(TextAccess, ReadingGivesANewReference) {
    Store store("a:string");
    store.set("a", 0, "a value of its own");
    ZorString* const value = store.document.getStringNodeValue(store["a"], 0);
    EXPECT_NE(value, store.document.values[0].value.stringValue);
    EXPECT_EQ(value->refCount, 1);
    value->removeRef();
}

TEST_F(TextAccess, SettingWritesOneCell) {
    Store store("a*2{b*3:int=0} c:int=0");
    EXPECT_EQ(store.set("a/b", 4, "7"), 1);
    EXPECT_EQ(store.cells(), "a/b=0,0,0,0,7*,0;c=0;");
}

// Writing the value that is there already counts as a change.
TEST_F(TextAccess, SettingMarksTheCellChangedWhateverTheValue) {
    Store store("a:int=5 b:int");
    EXPECT_EQ(store.set("a", 0, "5"), 1);
    EXPECT_EQ(store.set("b", 0, nullptr), 1);
    EXPECT_EQ(store.cells(), "a=5*;b=-*;");
}

TEST_F(TextAccess, NullEmptiesTheCell) {
    Store store("a:string=x b:float=0.5");
    for (int i = 0; i < 2; ++i) { // an empty cell stays empty
        EXPECT_EQ(store.set("a", 0, nullptr), 1);
        EXPECT_EQ(store.set("b", 0, nullptr), 1);
        EXPECT_EQ(store.cells(), "a=-*;b=-*;");
    }
    EXPECT_EQ(store.set("a", 0, ""), 1);
    EXPECT_EQ(store.cells(), "a=*;b=-*;");
}

TEST_F(TextAccess, MakesRewritesAndFreesValuesThroughTheType) {
    char tag[] = "tag";
    CallLog calls;
    Store store("a:probe", {makeProbe("probe", nullptr, tag, nullptr, nullptr)});
    store.set("a", 0, "7");
    EXPECT_EQ(calls.take(), "validate tag 7;fromString 7;");
    store.set("a", 0, "8");
    EXPECT_EQ(calls.take(), "validate tag 8;setFromString 8;");
    EXPECT_EQ(store.text("a"), "8");
    EXPECT_EQ(calls.take(), "toString 8;");
    store.set("a", 0, nullptr);
    EXPECT_EQ(calls.take(), "freeValue 8;");
    store.set("a", 0, nullptr);
    EXPECT_EQ(store.text("a"), "(null)");
    EXPECT_EQ(calls.take(), "");
}

TEST_F(TextAccess, TakesAStringAndSharesNothing) {
    Store store("a:string b:int");
    Text const text("a value of its own");
    ZorString const* const string = text;
    EXPECT_EQ(store.set("a", 0, string), 1);
    EXPECT_EQ(string->refCount, 1);
    EXPECT_EQ(store.text("a"), "a value of its own");
    EXPECT_EQ(store.set("b", 0, static_cast<ZorString*>(Text("12"))), 1);
    EXPECT_EQ(store.text("b"), "12");
    Text const odd("\xFF odd");
    EXPECT_EQ(store.set("a", 0, static_cast<ZorString*>(odd)), 1);
    EXPECT_EQ(store.text("a"), "\xFF odd");
}

// The new value may be, or lie in, the value that is replaced.
TEST_F(TextAccess, TakesItsOwnCharacters) {
    Store store("a:string");
    for (char const* const text :
         {"short text", "a text that is far too long for the inline buffer"}) {
        store.set("a", 0, text);
        ZorString* const inside = store.document.values[0].value.stringValue;
        EXPECT_EQ(store.set("a", 0, inside), 1);
        EXPECT_EQ(store.text("a"), text);
        EXPECT_EQ(store.set("a", 0, store.document.values[0].value.stringValue->text + 2), 1);
        EXPECT_EQ(store.text("a"), text + 2);
    }
}

TEST_F(TextAccess, RefusesATextThatTheTypeRefuses) {
    struct {
        char const* type;
        char const* good;
        char const* bad;
    } const cases[] = {
        {"int", "5", "x"},
        {"int", "5", ""},
        {"int", "5", "2147483648"},
        {"uint", "5", "-1"},
        {"bool", "true", "TRUE"},
        {"float", "0.5", "abc"},
        {"digit_string", "12", "12a"},
        {"ip_address", "1.2.3.4", "1.2.3"},
        {"ip_mask", "255.0.0.0", "255.0.255.0"},
        {"mode", "on", "On"},
        {"mode", "on", ""},
        {"level", "10", "11"},
    };
    for (auto const& [type, good, bad] : cases) {
        Store store(std::string("full*2:") + type + " empty:" + type, {modeChoice(), levelRange()});
        store.set("full", 0, good);
        store.document.nonBlockingSetStringNodeValue(store["full"], 1, good); // not marked
        std::string const before = store.cells();
        for (char const* const path : {"full", "empty"}) {
            EXPECT_EQ(store.set(path, 0, bad), 0) << type;
            EXPECT_EQ(log.take(), invalid(bad)) << type;
        }
        EXPECT_EQ(store.set("full", 1, static_cast<ZorString*>(Text(bad))), 0);
        EXPECT_EQ(log.take(), invalid(bad)) << type;
        EXPECT_EQ(store.cells(), before) << type << ' ' << bad;
    }
}

TEST_F(TextAccess, TakesTheLongestTextAndRefusesALongerOne) {
    std::string const longest(65534, 'x');
    std::string const longer(65535, 'x');
    for (char const* const type : {"string", "url"}) {
        Store store(std::string("a:") + type);
        EXPECT_EQ(store.set("a", 0, longest.c_str()), 1);
        EXPECT_EQ(store.text("a"), longest);
        EXPECT_EQ(store.set("a", 0, static_cast<ZorString*>(Text(longest))), 1);
        EXPECT_EQ(store.set("a", 0, longest.c_str()), 1);
        EXPECT_EQ(store.text("a"), longest);

        store.set("a", 0, "kept");
        EXPECT_EQ(store.set("a", 0, longer.c_str()), 0);
        EXPECT_EQ(log.take(), invalid(longer));
        store.document.nonBlockingSetStringNodeValue(store["a"], 0, longer.c_str());
        EXPECT_EQ(log.take(), invalid(longer));
        EXPECT_EQ(store.text("a"), "kept");
    }
    Store store("a:int"); // a valid number, but too long a text
    EXPECT_EQ(store.set("a", 0, (std::string(65534, '0') + '7').c_str()), 0);
    EXPECT_EQ(log.take(), invalid(std::string(65534, '0') + '7'));
    EXPECT_EQ(store.set("a", 0, (std::string(65533, '0') + '7').c_str()), 1);
    EXPECT_EQ(store.cells(), "a=7*;");
}

TEST_F(TextAccess, ABranchHasNoValueAndTakesNone) {
    Store store("a*2{b:int=1}");
    for (ZorSchemaNode* const node :
         {store["a"], store.document.rootNode, static_cast<ZorSchemaNode*>(nullptr)}) {
        for (long const occurrence : {0L, 1L, -1L, 99L}) {
            EXPECT_EQ(taken(store.document.getStringNodeValue(node, occurrence)), "(null)");
            EXPECT_EQ(taken(store.document.nonBlockingGetStringNodeValue(node, occurrence)),
                      "(null)");
            for (char const* const value : {static_cast<char const*>(nullptr), "x"}) {
                EXPECT_EQ(store.document.setStringNodeValue(node, occurrence, value), 0);
                EXPECT_EQ(log.take(), kNotData);
                store.document.nonBlockingSetStringNodeValue(node, occurrence, value);
                EXPECT_EQ(log.take(), kNotData);
            }
        }
    }
    EXPECT_EQ(store.cells(), "a/b=1,1;");
}

TEST_F(TextAccess, AnOccurrenceThatDoesNotExistHasNoValueAndTakesNone) {
    Store store("a*2{b*3:int=1} c:int=2 d*0:int=3 e*-2{f*-3:int=4}");
    struct {
        char const* path;
        std::vector<long> outside;
    } const cases[] = {
        {"a/b", {-1, 6, 7, LONG_MAX, LONG_MIN}},
        {"c", {-1, 1}},
        {"d", {-1, 0, 1}},
        {"e/f", {-1, 0, 1, 5, 6}},
    };
    for (auto const& [path, outside] : cases) {
        for (long const occurrence : outside) {
            EXPECT_EQ(store.text(path, occurrence), "(null)") << path << occurrence;
            EXPECT_EQ(taken(store.document.nonBlockingGetStringNodeValue(store[path], occurrence)),
                      "(null)");
            for (char const* const value : {static_cast<char const*>(nullptr), "5"}) {
                EXPECT_EQ(store.set(path, occurrence, value), 0) << path << occurrence;
                EXPECT_EQ(log.take(), kOutOfRange) << path << occurrence;
                store.document.nonBlockingSetStringNodeValue(store[path], occurrence, value);
                EXPECT_EQ(log.take(), kOutOfRange) << path << occurrence;
            }
        }
    }
    EXPECT_EQ(store.cells(), "a/b=1,1,1,1,1,1;c=2;d=;e/f=;");
}

TEST_F(TextAccess, ANodeOfAnotherSchemaReachesNothing) {
    Store store("a:int=1");
    Store other("a:int=2");
    EXPECT_EQ(taken(store.document.getStringNodeValue(other["a"], 0)), "(null)");
    EXPECT_EQ(store.document.setStringNodeValue(other["a"], 0, "5"), 0);
    EXPECT_EQ(log.take(), kOutOfRange);
    EXPECT_EQ(store.cells(), "a=1;");
    EXPECT_EQ(other.cells(), "a=2;");
}

// Reported first: a node without values, then a value that is not valid, then an occurrence.
TEST_F(TextAccess, ReportsTheFirstReasonOnly) {
    Store store("a{b:int}");
    Store other("b:int");
    store.set("a", 9, "x");
    EXPECT_EQ(log.take(), kNotData);
    store.set("a/b", 9, "x");
    EXPECT_EQ(log.take(), invalid("x"));
    store.document.setStringNodeValue(other["b"], 0, "x");
    EXPECT_EQ(log.take(), invalid("x"));
    store.set("a/b", 9, "5");
    EXPECT_EQ(log.take(), kOutOfRange);
}

// The non-blocking setter leaves the changed mark as it is, set or not.
TEST_F(TextAccess, TheNonBlockingSetterDoesNotMark) {
    Store store("a*2:int=1 b:string");
    store.set("a", 0, "2");
    for (char const* const value : {"3", static_cast<char const*>(nullptr), "4", "5"}) {
        std::string const shown = value ? value : "-";
        for (long i = 0; i < 2; ++i) {
            store.document.nonBlockingSetStringNodeValue(store["a"], i, value);
            EXPECT_EQ(taken(store.document.nonBlockingGetStringNodeValue(store["a"], i)),
                      value ? value : "(null)");
        }
        EXPECT_EQ(store.cells(), "a=" + shown + "*," + shown + ";b=-;");
    }
    store.document.nonBlockingSetStringNodeValue(store["b"], 0, nullptr);
    store.document.nonBlockingSetStringNodeValue(store["b"], 0, static_cast<ZorString*>(Text("x")));
    EXPECT_EQ(store.cells(), "a=5*,5;b=x;");
}

TEST_F(TextAccess, TheNonBlockingSetterRefusesAlike) {
    Store store("a:int=1");
    store.document.nonBlockingSetStringNodeValue(store["a"], 0, "x");
    EXPECT_EQ(log.take(), invalid("x"));
    store.document.nonBlockingSetStringNodeValue(store["a"], 5, "x");
    EXPECT_EQ(log.take(), invalid("x"));
    EXPECT_EQ(store.cells(), "a=1;");
}
