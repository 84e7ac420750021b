// The table of the built-in types: its contents, its life, its lock.

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/text.h"
#include "zor/types.h"

namespace {

struct BuiltInRow {
    char const* name;
    char const* defaultText; // null: no default
    bool isOrdered;
    char const* hostKinds; // l long, u unsigned long, d double
};

constexpr BuiltInRow kBuiltIns[] = {
    {"string", "", true, ""},
    {"int", "0", true, "l"},
    {"uint", "0", true, "u"},
    {"bool", "false", true, "lu"},
    {"float", "0", true, "d"},
    {"digit_string", "", false, ""},
    {"ip_address", nullptr, true, "u"},
    {"ip_mask", nullptr, true, "u"},
    {"domain_name", nullptr, false, ""},
    {"url", nullptr, false, ""},
};

ZorDataType* builtIn(void const* name) { return ZorBuiltIn::getDataType(name); }

std::string hostKindsOf(ZorDataType const* type) {
    std::string kinds;
    for (int i = 0; i < 3; ++i) {
        ZorExtTypeFuncs const& functions = type->extFuncs[i];
        bool const isSupported = functions.toInternal && functions.setInternal;
        if (isSupported) kinds += "lud"[i];
        EXPECT_EQ(functions.getExternal != nullptr, isSupported);
        EXPECT_EQ(functions.validate != nullptr, isSupported);
        EXPECT_EQ(functions.compare != nullptr, isSupported);
    }
    return kinds;
}

std::size_t tableSize() {
    ZorListNode* const types = zor_mapValues(ZorBuiltIn::builtInTypes);
    std::size_t count = 0;
    for (ZorListNode const* node = types; node; node = zor_listNextNode(node)) ++count;
    zor_listDelete(types);
    return count;
}

} // namespace

TEST(BuiltInTable, HasTheTenTypes) {
    for (BuiltInRow const& row : kBuiltIns) {
        ZorDataType* const type = builtIn(row.name);
        ASSERT_NE(type, nullptr) << row.name;
        EXPECT_STREQ(zor_dataTypeName(type), row.name);
    }
    EXPECT_EQ(tableSize(), std::size(kBuiltIns));
}

TEST(BuiltInTable, TypesHaveTheirDefaults) {
    for (BuiltInRow const& row : kBuiltIns) {
        EXPECT_EQ(taken(zor_dataTypeDefault(builtIn(row.name))),
                  row.defaultText ? row.defaultText : "(null)")
            << row.name;
    }
}

TEST(BuiltInTable, SomeTypesAreOrdered) {
    for (BuiltInRow const& row : kBuiltIns) {
        EXPECT_EQ(builtIn(row.name)->compareFn != nullptr, row.isOrdered) << row.name;
    }
}

TEST(BuiltInTable, TypesConvertTheirHostKinds) {
    for (BuiltInRow const& row : kBuiltIns) {
        EXPECT_EQ(hostKindsOf(builtIn(row.name)), row.hostKinds) << row.name;
    }
}

// A host kind that a type does not convert is not valid, whatever the number.
TEST(BuiltInTable, OtherHostKindsAreRefused) {
    for (BuiltInRow const& row : kBuiltIns) {
        ZorDataType* const type = builtIn(row.name);
        std::string const kinds = row.hostKinds;
        if (kinds.find('l') == std::string::npos) {
            EXPECT_EQ(zor_dataTypeValidateInt(type, 0), 0) << row.name;
            EXPECT_EQ(zor_dataTypeCompareInt(type, 1, 0), 0) << row.name;
        }
        if (kinds.find('u') == std::string::npos) {
            EXPECT_EQ(zor_dataTypeValidateUInt(type, 0), 0) << row.name;
            EXPECT_EQ(zor_dataTypeCompareUInt(type, 1, 0), 0) << row.name;
        }
        if (kinds.find('d') == std::string::npos) {
            EXPECT_EQ(zor_dataTypeValidateFloat(type, 0), 0) << row.name;
            EXPECT_EQ(zor_dataTypeCompareFloat(type, 1, 0), 0) << row.name;
        }
    }
}

TEST(BuiltInTable, TypesHaveNoUserDataFlagsOrExport) {
    for (BuiltInRow const& row : kBuiltIns) {
        ZorDataType const* const type = builtIn(row.name);
        EXPECT_EQ(type->userData, nullptr) << row.name;
        EXPECT_EQ(type->freeUserDataFn, nullptr) << row.name;
        EXPECT_EQ(type->cloneUserDataFn, nullptr) << row.name;
        EXPECT_EQ(type->xmlExportFn, nullptr) << row.name;
        EXPECT_EQ(type->flags, row.defaultText ? 0 : ZorDataType::noDefault) << row.name;
    }
}

TEST(BuiltInTable, LookupTakesAString) {
    Text const name("digit_string");
    ZorString* const string = name;
    EXPECT_EQ(builtIn(string), builtIn("digit_string"));
    EXPECT_EQ(string->refCount, 1);
}

// Lookup is by the exact name.
TEST(BuiltInTable, UnknownNamesAreNull) {
    for (char const* const name :
         {"", " int", "int ", "Int", "INT", "in", "integer", "ip-address", "choice", "range"}) {
        EXPECT_EQ(builtIn(name), nullptr) << '"' << name << '"';
    }
    EXPECT_EQ(builtIn(nullptr), nullptr);
}

TEST(BuiltInTable, IsMadeByTheFirstLookup) {
    EXPECT_EQ(ZorBuiltIn::builtInTypes, nullptr);
    EXPECT_EQ(builtIn("no such type"), nullptr);
    EXPECT_NE(ZorBuiltIn::builtInTypes, nullptr);
    EXPECT_EQ(tableSize(), std::size(kBuiltIns));
}

TEST(BuiltInTable, LookupsReturnTheSameObject) {
    for (BuiltInRow const& row : kBuiltIns) EXPECT_EQ(builtIn(row.name), builtIn(row.name));
}

// After deleteBuiltInTypes the next lookup makes new types.
TEST(BuiltInTable, IsMadeAgainAfterDeletion) {
    ZorDataType* const before = builtIn("int");
    // A holder of the name keeps the allocator from handing out the same block for the new type.
    ZorDataType* const keeper = new ZorDataType(before);
    ZorBuiltIn::deleteBuiltInTypes();
    EXPECT_EQ(ZorBuiltIn::builtInTypes, nullptr);
    ZorString* const oldName = keeper->name;
    ZorDataType* const after = builtIn("int");
    EXPECT_TRUE(after && after->name != oldName);
    EXPECT_EQ(oldName->refCount, 1) << "only the copy holds the old name";
    EXPECT_EQ(tableSize(), std::size(kBuiltIns));
    delete keeper;
}

TEST(BuiltInTable, DeletingNoTableDoesNothing) {
    ZorBuiltIn::deleteBuiltInTypes();
    ZorBuiltIn::deleteBuiltInTypes();
    EXPECT_EQ(ZorBuiltIn::builtInTypes, nullptr);
}

// The lock belongs to the callers of makeBuiltInTypes; taking it once more would never end.
TEST(BuiltInTable, FillingTheTableTakesNoLock) {
    ZorBuiltIn::builtInTypesSem.take(-1);
    ZorBuiltIn::makeBuiltInTypes();
    ZorBuiltIn::builtInTypesSem.give();
    EXPECT_EQ(tableSize(), std::size(kBuiltIns));
    ZorDataType* const made =
        static_cast<ZorDataType*>(zor_mapGet(ZorBuiltIn::builtInTypes, "url"));
    EXPECT_EQ(builtIn("url"), made);
}

// Lookups wait for the lock.
TEST(BuiltInTable, LookupWaitsForTheLock) {
    ZorDataType* found = nullptr;
    ZorBuiltIn::builtInTypesSem.take(-1);
    std::thread seeker([&found] { found = builtIn("int"); });
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_EQ(ZorBuiltIn::builtInTypes, nullptr) << "the lookup did not wait";
    ZorBuiltIn::builtInTypesSem.give();
    seeker.join();
    EXPECT_EQ(found, builtIn("int"));
}

TEST(BuiltInTable, DeletionWaitsForTheLock) {
    builtIn("int");
    ZorBuiltIn::builtInTypesSem.take(-1);
    std::thread destroyer(ZorBuiltIn::deleteBuiltInTypes);
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_NE(ZorBuiltIn::builtInTypes, nullptr) << "the deletion did not wait";
    ZorBuiltIn::builtInTypesSem.give();
    destroyer.join();
    EXPECT_EQ(ZorBuiltIn::builtInTypes, nullptr);
}

// Threads that look up at the same moment get one and the same table.
TEST(BuiltInTable, IsMadeOnceForAllThreads) {
    for (int round = 0; round < 20; ++round) {
        ZorBuiltIn::deleteBuiltInTypes();
        std::vector<ZorDataType*> found(4);
        {
            std::vector<std::thread> seekers;
            seekers.reserve(found.size());
            for (ZorDataType*& result : found) {
                seekers.emplace_back([&result] { result = builtIn("ip_mask"); });
            }
            for (std::thread& seeker : seekers) seeker.join();
        }
        for (ZorDataType* const result : found) ASSERT_EQ(result, builtIn("ip_mask"));
    }
}
