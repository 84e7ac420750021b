// Objects that stand in several entries of a map.

#include "collection/removed_objects.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "foundation/map_index.h"
#include "tests/support/allocations.h"

using zor_internal::forgetRepeated;
using zor_internal::kDocuments;
using zor_internal::MapIndex;
using zor_internal::Removed;

namespace {

// A chain of entries, one for each letter: equal letters are one object.
class Chain {
public:
    explicit Chain(std::string const& letters) : objects(letters), entries(letters.size()) {
        for (std::size_t i = 0; i < letters.size(); ++i) {
            entries[i] = {nullptr, &alphabet[letters[i] - 'a'], nullptr};
            if (i > 0) entries[i - 1].next = &entries[i];
        }
    }

    ZorMapEntry* first() { return entries.data(); }

    // The letters again, '-' where the entry has none any more.
    std::string left() const {
        std::string result = objects;
        for (std::size_t i = 0; i < entries.size(); ++i) {
            if (!entries[i].value) result[i] = '-';
        }
        return result;
    }

private:
    char alphabet[26] = {};
    std::string objects;
    std::vector<ZorMapEntry> entries;
};

std::string leftOf(std::string const& letters) {
    Chain chain(letters);
    forgetRepeated(chain.first());
    return chain.left();
}

std::string leftWithoutMemory(std::string const& letters) {
    Chain chain(letters);
    FailingAllocation const failing(1);
    forgetRepeated(chain.first());
    EXPECT_TRUE(failing.happened());
    return chain.left();
}

struct Case {
    char const* chain;
    char const* left;
};

constexpr Case kCases[] = {
    {"a", "a"},
    {"aa", "a-"},
    {"abc", "abc"},
    {"zyzxyz", "zy-x--"},
    {"aaaaaaaaab", "a--------b"},
    {"qwertyuiopasdfghjklzxcvbnmqwertyuiopasdfghjklzxcvbnm",
     "qwertyuiopasdfghjklzxcvbnm--------------------------"},
};

} // namespace

// The first entry of every object stays.
TEST(RemovedObjects, AreLeftInTheirFirstEntry) {
    for (Case const& chain : kCases) EXPECT_EQ(leftOf(chain.chain), chain.left);
}

// No entry is repeated, and none forgotten, when there is no memory to sort them in.
TEST(RemovedObjects, AreLeftThereWithoutMemory) {
    for (Case const& chain : kCases) EXPECT_EQ(leftWithoutMemory(chain.chain), chain.left);
}

// A map of thousands is not indexed anew because one object out of them was looked for.
TEST(RemovedObjects, LeaveTheIndexOfAMapWhereNoneIsWanted) {
    ZorCollection store("cfg");
    std::unique_ptr<ZorDocument> const document(store.makeDocument("DefaultSchema", "one"));
    zor_mapRemove(store.documents, "one");
    MapIndex const* const index = MapIndex::make(store.documents);
    zor_mapSet(store.documents, "two", document.get());
    auto const isOther = [](void const* object, void const* other) { return object == other; };
    {
        Removed removed(kDocuments);
        removed.takeIf(store.documents, isOther, &store);
        EXPECT_EQ(MapIndex::of(store.documents), index);
    }
    EXPECT_EQ(zor_mapGet(store.documents, "two"), document.get());
    zor_mapRemove(store.documents, "two");
}

// Of an indexed map, what was taken is not found any more, what is left is.
TEST(RemovedObjects, AreNotFoundInAnIndexedMap) {
    ZorCollection store("cfg");
    for (char const* const name : {"one", "two", "three"})
        store.makeDocument("DefaultSchema", name);
    MapIndex::make(store.documents);
    ZorDocument* const two = store.getDocument("two");
    auto const isIt = [](void const* object, void const* it) { return object == it; };
    {
        Removed removed(kDocuments);
        removed.takeIf(store.documents, isIt, two);
    }
    EXPECT_EQ(store.getDocument("two"), nullptr);
    EXPECT_TRUE(store.getDocument("one"));
    EXPECT_TRUE(store.getDocument("three"));
}
