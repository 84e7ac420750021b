// Objects that stand in several entries of a map.

#include "collection/removed_objects.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/allocations.h"

using zor_internal::forgetRepeated;

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
