// Named sets of types.

#include <gtest/gtest.h>

#include <memory>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/text.h"
#include "tests/types/call_log.h"
#include "zor/types.h"

namespace {

char tag[] = "tag";

// A type of string values with this default.
ZorDataType* makeType(void const* name, char const* defaultText = nullptr) {
    return zor_derivedTypeMake(name, defaultText, nullptr, nullptr, nullptr, nullptr,
                               ZorBuiltIn::getDataType("string"), nullptr);
}

ZorListNode* listOf(std::vector<ZorDataType*> const& types) {
    ZorListNode* list = nullptr;
    for (ZorDataType* const type : types) {
        if (list)
            zor_listAddNode(list, type);
        else
            list = zor_listMake(type);
    }
    return list;
}

// The names in the set, sorted.
std::string namesIn(ZorDataTypeCollection const& set) {
    std::vector<std::string> names;
    ZorListNode* const types = set.getDataTypes();
    for (ZorListNode* node = types; node; node = zor_listNextNode(node)) {
        names.emplace_back(zor_dataTypeName(static_cast<ZorDataType*>(zor_listGetValue(node))));
    }
    zor_listDelete(types);
    std::sort(names.begin(), names.end());
    std::string joined;
    for (std::string const& name : names) joined += name + ' ';
    return joined;
}

std::string defaultIn(ZorDataTypeCollection& set, char const* name) {
    ZorDataType* const type = set.getDataType(name);
    return type ? taken(zor_dataTypeDefault(type)) : "no type";
}

// Answers for every name, as the store's own sets answer for the built-in types.
class Generous : public ZorDataTypeCollection {
public:
    ZorDataType* getDataType(void const* name) override {
        ZorDataType* const own = ZorDataTypeCollection::getDataType(name);
        return own ? own : ZorBuiltIn::getDataType("url");
    }
};

} // namespace

TEST(TypeCollection, StartsEmpty) {
    ZorDataTypeCollection set;
    EXPECT_EQ(set.getDataTypes(), nullptr);
    EXPECT_EQ(set.getDataType("x"), nullptr);
}

TEST(TypeCollection, FieldsStandInTheDeclaredOrder) {
    ZorDataTypeCollection const set;
    EXPECT_LT(static_cast<void const*>(&set.typesSem), static_cast<void const*>(&set.types));
}

TEST(TypeCollection, FindsWhatWasAdded) {
    ZorDataTypeCollection set;
    ZorDataType* const x = makeType("x");
    ZorDataType* const y = makeType("y");
    EXPECT_EQ(set.addDataType(x), 1);
    EXPECT_EQ(set.addDataType(y), 1);
    EXPECT_EQ(set.getDataType("x"), x);
    EXPECT_EQ(set.getDataType("y"), y);
    EXPECT_EQ(set.getDataType(static_cast<ZorString*>(Text("y"))), y);
    EXPECT_EQ(namesIn(set), "x y ");
}

// Lookup is by the exact name.
TEST(TypeCollection, FindsNothingElse) {
    ZorDataTypeCollection set;
    set.addDataType(makeType("volume"));
    for (char const* const name : {"", "Volume", "volume ", " volume", "vol", "volumes"}) {
        EXPECT_EQ(set.getDataType(name), nullptr) << '"' << name << '"';
    }
    EXPECT_EQ(set.getDataType(nullptr), nullptr);
}

TEST(TypeCollection, KnowsNoBuiltInTypes) {
    ZorDataTypeCollection set;
    for (char const* const name : {"string", "int", "uint", "bool", "float"}) {
        EXPECT_EQ(set.getDataType(name), nullptr) << name;
    }
    // So their names are free.
    ZorDataType* const own = makeType("int");
    EXPECT_EQ(set.addDataType(own), 1);
    EXPECT_EQ(set.getDataType("int"), own);
}

// The first type of a name stays; the second one remains the caller's.
TEST(TypeCollection, RefusesASecondTypeOfOneName) {
    CallLog calls;
    ZorDataTypeCollection set;
    ZorDataType* const first = makeProbe("x", nullptr, nullptr);
    ZorDataType* const second = makeProbe("x", nullptr, tag);
    EXPECT_EQ(set.addDataType(first), 1);
    EXPECT_EQ(set.addDataType(second), 0);
    EXPECT_EQ(set.getDataType("x"), first);
    EXPECT_EQ(calls.take(), "") << "the refused type was destroyed";
    EXPECT_EQ(set.addDataType(first), 0) << "it is there already";
    EXPECT_EQ(namesIn(set), "x ");
    delete second;
}

TEST(TypeCollection, RefusesNull) {
    ZorDataTypeCollection set;
    EXPECT_EQ(set.addDataType(nullptr), 0);
    EXPECT_EQ(set.getDataTypes(), nullptr);
}

// A type's name is a string object, whatever its first byte.
TEST(TypeCollection, NamesMayBeginWithTheMarkerByte) {
    Text const name("\xFFname");
    ZorDataTypeCollection set;
    ZorDataType* const type = makeType(static_cast<ZorString*>(name));
    EXPECT_EQ(set.addDataType(type), 1);
    EXPECT_EQ(set.getDataType(static_cast<ZorString*>(name)), type);
}

TEST(TypeCollection, DestroysItsTypes) {
    CallLog calls;
    {
        ZorDataTypeCollection set;
        set.addDataType(makeProbe("x", nullptr, tag));
        EXPECT_EQ(calls.take(), "");
    }
    EXPECT_EQ(calls.take(), "freeUserData tag;");
}

// Many types share buckets and are still told apart.
TEST(TypeCollection, HoldsManyTypes) {
    ZorDataTypeCollection set;
    std::vector<ZorDataType*> types;
    for (int i = 0; i < 1000; ++i) {
        types.push_back(makeType(("type " + std::to_string(i)).c_str()));
        ASSERT_EQ(set.addDataType(types.back()), 1) << i;
    }
    for (int i = 0; i < 1000; ++i) {
        EXPECT_EQ(set.getDataType(("type " + std::to_string(i)).c_str()),
                  types[static_cast<unsigned>(i)]);
    }
}

// The list is the caller's; deleting it leaves the types.
TEST(TypeCollection, ListsItsTypes) {
    ZorDataTypeCollection set;
    ZorDataType* const x = makeType("x");
    set.addDataType(x);
    ZorListNode* const list = set.getDataTypes();
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(zor_listGetValue(list), x);
    EXPECT_EQ(zor_listNextNode(list), nullptr);
    zor_listDelete(list);
    EXPECT_EQ(set.getDataType("x"), x);
}

// In the order of the map that holds them.
TEST(TypeCollection, ListsInTheOrderOfItsMap) {
    ZorDataTypeCollection set;
    for (char const* const name : {"delta", "alpha", "charlie", "bravo", "echo"}) {
        set.addDataType(makeType(name));
    }
    ZorListNode* const list = set.getDataTypes();
    ZorListNode* const values = zor_mapValues(set.types);
    ZorListNode* value = values;
    for (ZorListNode* node = list; node; node = zor_listNextNode(node)) {
        ASSERT_NE(value, nullptr);
        EXPECT_EQ(zor_listGetValue(node), zor_listGetValue(value));
        value = zor_listNextNode(value);
    }
    EXPECT_EQ(value, nullptr);
    zor_listDelete(list);
    zor_listDelete(values);
}

TEST(TypeCollection, LookupMayBeOverridden) {
    Generous set;
    ZorDataType* const own = makeType("own");
    set.addDataType(own);
    ZorDataTypeCollection& base = set;
    EXPECT_EQ(base.getDataType("own"), own);
    EXPECT_EQ(base.getDataType("anything"), ZorBuiltIn::getDataType("url"));
}

// Destroying a set through its base destroys all of it.
TEST(TypeCollection, IsDestroyedThroughItsBase) {
    ZorDataTypeCollection* const set = new Generous;
    set->addDataType(makeType("own"));
    delete set;
}

TEST(TypeCollectionCopy, OfNoListIsEmpty) {
    ZorDataTypeCollection set(nullptr);
    EXPECT_EQ(set.getDataTypes(), nullptr);
    EXPECT_EQ(set.addDataType(makeType("x")), 1);
}

TEST(TypeCollectionCopy, HasCopiesOfItsOwn) {
    ZorDataType* const x = makeType("x", "first");
    ZorDataType* const y = makeType("y", "second");
    ZorDataTypeCollection set(listOf({x, y}));
    EXPECT_EQ(namesIn(set), "x y ");
    EXPECT_NE(set.getDataType("x"), x);
    EXPECT_NE(set.getDataType("y"), y);
    delete x;
    delete y;
    EXPECT_EQ(defaultIn(set, "x"), "first");
    EXPECT_EQ(defaultIn(set, "y"), "second");
}

TEST(TypeCollectionCopy, OfAnotherSetHasTheSameTypes) {
    ZorDataTypeCollection source;
    ZorDataType* const choice = zor_choiceMake("mode");
    zor_choiceAddOption(choice, "on");
    zor_choiceAddOption(choice, "off");
    source.addDataType(choice);
    source.addDataType(zor_rangeMake(ZorBuiltIn::getDataType("int"), "volume", "1", "10"));
    source.addDataType(makeType("plain", "text"));

    ZorDataTypeCollection copy(source.getDataTypes());
    EXPECT_EQ(namesIn(copy), "mode plain volume ");
    EXPECT_EQ(defaultIn(copy, "mode"), "on");
    EXPECT_EQ(defaultIn(copy, "volume"), "1");
    EXPECT_EQ(defaultIn(copy, "plain"), "text");
    EXPECT_NE(zor_dataTypeValidate(copy.getDataType("mode"), "off"), 0);
    EXPECT_EQ(zor_dataTypeValidate(copy.getDataType("volume"), "11"), 0);
    EXPECT_EQ(namesIn(source), "mode plain volume ");
}

// A range over a built-in type, or any that is not copied along, keeps its base.
TEST(TypeCollectionCopy, RangeKeepsABaseFromElsewhere) {
    ZorDataTypeCollection source;
    ZorDataType* const integer = ZorBuiltIn::getDataType("int");
    source.addDataType(zor_rangeMake(integer, "wide", "0", "100"));
    ZorDataTypeCollection copy(source.getDataTypes());
    EXPECT_EQ(zor_rangeBaseType(copy.getDataType("wide")), integer);
}

// A range over a type that is copied along refers to the copy, so that the source may go.
TEST(TypeCollectionCopy, RangeFollowsABaseThatIsCopiedAlong) {
    auto source = std::make_unique<ZorDataTypeCollection>();
    ZorDataType* const wide = zor_rangeMake(ZorBuiltIn::getDataType("int"), "wide", "0", "100");
    source->addDataType(wide);
    source->addDataType(zor_rangeMake(wide, "narrow", "10", "20"));
    ZorDataTypeCollection copy(source->getDataTypes());
    source.reset();
    ZorDataType* const narrow = copy.getDataType("narrow");
    EXPECT_EQ(zor_rangeBaseType(narrow), copy.getDataType("wide"));
    EXPECT_EQ(zor_dataTypeValidate(narrow, "15"), 1);
    EXPECT_EQ(zor_dataTypeValidate(narrow, "21"), 0);
}

// Of two types with one name the first counts; the sources are left as they are.
TEST(TypeCollectionCopy, TakesTheFirstOfOneName) {
    ZorDataType* const first = makeType("x", "first");
    ZorDataType* const second = makeType("x", "second");
    {
        ZorDataTypeCollection set(listOf({first, second}));
        EXPECT_EQ(namesIn(set), "x ");
        EXPECT_EQ(defaultIn(set, "x"), "first");
    }
    EXPECT_EQ(taken(zor_dataTypeDefault(first)), "first");
    EXPECT_EQ(taken(zor_dataTypeDefault(second)), "second");
    delete first;
    delete second;
}

TEST(TypeCollectionLock, AddingWaitsForIt) {
    ZorDataTypeCollection set;
    ZorDataType* const x = makeType("x");
    set.typesSem.take(-1);
    std::thread adder([&] { set.addDataType(x); });
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_EQ(zor_mapGet(set.types, "x"), nullptr) << "adding did not wait";
    set.typesSem.give();
    adder.join();
    EXPECT_EQ(set.getDataType("x"), x);
}

TEST(TypeCollectionLock, LookupWaitsForIt) {
    ZorDataTypeCollection set;
    ZorDataType* const x = makeType("x");
    set.addDataType(x);
    std::atomic<ZorDataType*> found{nullptr};
    set.typesSem.take(-1);
    std::thread seeker([&] { found = set.getDataType("x"); });
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_EQ(found, nullptr) << "the lookup did not wait";
    set.typesSem.give();
    seeker.join();
    EXPECT_EQ(found, x);
}

// Listing takes no lock; taking it once more in one thread would never end.
TEST(TypeCollectionLock, ListingTakesNoLock) {
    ZorDataTypeCollection set;
    set.addDataType(makeType("x"));
    set.typesSem.take(-1);
    ZorListNode* const list = set.getDataTypes();
    set.typesSem.give();
    EXPECT_NE(list, nullptr);
    zor_listDelete(list);
}

// Each refusal gives the lock back.
TEST(TypeCollectionLock, IsGivenBackOnRefusal) {
    ZorDataTypeCollection set;
    ZorDataType* const second = makeType("x");
    set.addDataType(makeType("x"));
    EXPECT_EQ(set.addDataType(second), 0);
    EXPECT_EQ(set.addDataType(second), 0);
    EXPECT_EQ(set.getDataType("none"), nullptr);
    EXPECT_NE(set.getDataType("x"), nullptr);
    delete second;
}

TEST(TypeCollectionLock, ThreadsMayAddAtTheSameMoment) {
    ZorDataTypeCollection set;
    int added[4] = {};
    {
        std::vector<std::thread> adders;
        for (int& count : added) {
            adders.emplace_back([&set, &count] {
                for (int i = 0; i < 200; ++i) {
                    ZorDataType* const type = makeType(std::to_string(i).c_str());
                    if (set.addDataType(type))
                        ++count;
                    else
                        delete type;
                }
            });
        }
        for (std::thread& adder : adders) adder.join();
    }
    EXPECT_EQ(added[0] + added[1] + added[2] + added[3], 200);
}
