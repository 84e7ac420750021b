// Maps that have grown: what the index beside the chains finds is what stands in them.

#include "foundation/map_index.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <new>
#include <random>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "foundation/map_entries.h"
#include "tests/foundation/dull_hash.h"
#include "tests/support/allocations.h"
#include "tests/support/text.h"

using zor_internal::kBucketCount;
using zor_internal::MapIndex;

namespace {

// A map beside a dull one, which knows of every key when it was inserted.
class Both {
public:
    Both() : map(zor_mapMake()) {}
    Both(Both const&) = delete;
    Both& operator=(Both const&) = delete;
    ~Both() { zor_mapDelete(map); }

    // Null is a value, too.
    void set(std::string const& key, void* value) {
        zor_mapSet(map, key.c_str(), value);
        auto const [entry, isNew] = dull.try_emplace(key, Entry{value, clock});
        entry->second.value = value;
        clock += isNew;
    }

    void remove(std::string const& key) {
        zor_mapRemove(map, key.c_str());
        dull.erase(key);
    }

    void moveToEnd(std::string const& key) {
        if (dull.find(key) == dull.end()) return;
        zor_internal::moveToEnd(map, Text(key));
        dull[key].inserted = clock++;
    }

    void expectFound(std::string const& key) {
        auto const entry = dull.find(key);
        void* const value = entry == dull.end() ? nullptr : entry->second.value;
        ASSERT_EQ(zor_mapGet(map, key.c_str()), value) << key;
    }

    // Every chain holds its keys in the order in which they were inserted, and so do the values.
    void expectOrder() {
        std::vector<std::pair<std::string, void*>> inChains;
        for (unsigned i = 0; i < kBucketCount; ++i) {
            for (ZorMapEntry const* entry = map[i]; entry; entry = entry->next) {
                inChains.emplace_back(entry->key->text, entry->value);
            }
        }
        ASSERT_EQ(inChains, inOrder());
        ZorListNode* const values = zor_mapValues(map);
        ZorListNode const* at = values;
        for (auto const& entry : inChains) {
            ASSERT_TRUE(at);
            ASSERT_EQ(at->value, entry.second);
            at = at->next;
        }
        ASSERT_FALSE(at);
        zor_listDelete(values);
    }

    void expectAllFound() {
        for (auto const& entry : dull) expectFound(entry.first);
    }

    std::size_t size() const { return dull.size(); }
    ZorMapEntry** get() { return map; }

private:
    struct Entry {
        void* value;
        unsigned long inserted;
    };

    std::vector<std::pair<std::string, void*>> inOrder() const {
        std::vector<std::pair<std::string, Entry>> sorted(dull.begin(), dull.end());
        std::sort(sorted.begin(), sorted.end(), [](auto const& a, auto const& b) {
            return std::pair(hashOf(a.first) % kBucketCount, a.second.inserted) <
                   std::pair(hashOf(b.first) % kBucketCount, b.second.inserted);
        });
        std::vector<std::pair<std::string, void*>> result;
        for (auto const& [key, entry] : sorted) result.emplace_back(key, entry.value);
        return result;
    }

    ZorMapEntry** map;
    std::map<std::string, Entry> dull;
    unsigned long clock = 0;
};

std::vector<std::string> words(int count) {
    std::vector<std::string> made;
    for (int i = 0; i < count; ++i) made.push_back("key" + std::to_string(i));
    return made;
}

std::vector<std::string> wordsInBucket(unsigned bucket, int count) {
    std::vector<std::string> made;
    for (int number = 0; static_cast<int>(made.size()) < count; ++number) {
        std::string key = "k" + std::to_string(number);
        if (hashOf(key) % kBucketCount == bucket) made.push_back(std::move(key));
    }
    return made;
}

// Two words of eight letters that lead from the hash of `prefix` to the same hash.
std::pair<std::string, std::string> wordsThatMeet(std::string const& prefix) {
    std::mt19937 dice(99);
    std::unordered_map<unsigned, std::string> known;
    for (;;) {
        std::string word;
        while (word.size() < 8) word += static_cast<char>('a' + dice() % 26);
        std::string const& earlier = known.try_emplace(hashOf(prefix + word), word).first->second;
        if (earlier != word) return {earlier, word};
    }
}

// 2^doublings keys of the same hash: either word of every pair, whatever came before it.
std::vector<std::string> wordsOfOneHash(int doublings) {
    std::vector<std::string> made = {""};
    for (int i = 0; i < doublings; ++i) {
        auto const [one, other] = wordsThatMeet(made.front());
        std::vector<std::string> longer;
        for (std::string const& word : made) {
            longer.push_back(word + one);
            longer.push_back(word + other);
        }
        made = std::move(longer);
    }
    return made;
}

void* valueOf(unsigned number) {
    static char values[97];
    return number % 97 == 0 ? nullptr : &values[number % 97];
}

// Many operations on keys out of a choice; more of them insert than remove until all are there.
void operateAtRandom(std::vector<std::string> const& keys, int steps, unsigned seed) {
    std::mt19937 dice(seed);
    Both both;
    for (int step = 0; step < steps; ++step) {
        std::string const& key = keys[dice() % keys.size()];
        switch (dice() % 16) {
        case 0:
        case 1:
        case 2:
            both.remove(key);
            break;
        case 3:
            both.moveToEnd(key);
            break;
        case 4:
        case 5:
        case 6:
        case 7:
            both.expectFound(key);
            break;
        default:
            both.set(key, valueOf(static_cast<unsigned>(dice())));
        }
        if (step % (steps / 8) == 0) both.expectOrder();
        if (testing::Test::HasFatalFailure()) return;
    }
    EXPECT_GT(both.size(), keys.size() / 3);
    both.expectOrder();
    for (std::string const& key : keys) both.expectFound(key);
    for (std::string const& key : keys) both.remove(key);
    EXPECT_EQ(zor_mapValues(both.get()), nullptr);
}

// A map with entries, and an index of them.
void fill(Both* both, std::vector<std::string> const& keys) {
    for (unsigned i = 0; i < keys.size(); ++i) both->set(keys[i], valueOf(i));
    if (!MapIndex::of(both->get())) MapIndex::make(both->get());
    ASSERT_TRUE(MapIndex::of(both->get()));
}

} // namespace

// Few entries need no index, many have one.
TEST(MapIndex, ComesWithTheNinthEntryOfAChain) {
    std::vector<std::string> const keys = wordsInBucket(9, 9);
    Both both;
    for (std::string const& key : keys) {
        EXPECT_FALSE(MapIndex::of(both.get()));
        both.set(key, valueOf(1));
        both.expectAllFound();
    }
    EXPECT_TRUE(MapIndex::of(both.get()));
    both.expectOrder();
}

TEST(MapIndex, SmallMapsAgreeWithADullOne) { operateAtRandom(words(300), 20000, 1); }

TEST(MapIndex, LargeMapsAgreeWithADullOne) { operateAtRandom(words(20000), 200000, 2); }

TEST(MapIndex, LongChainsAgreeWithADullMap) { operateAtRandom(wordsInBucket(255, 60), 20000, 3); }

// All want the same slot, and only their texts tell them apart.
TEST(MapIndex, KeysOfOneHashAgreeWithADullMap) {
    std::vector<std::string> const keys = wordsOfOneHash(8);
    for (std::string const& key : keys) ASSERT_EQ(hashOf(key), hashOf(keys[0]));
    operateAtRandom(keys, 10000, 4);
}

// As the first, a middle or the last of its chain, removed or moved, then inserted again.
TEST(MapIndex, EveryPlaceOfAChainMayGo) {
    std::vector<std::string> const keys = wordsInBucket(7, 12);
    for (std::string const& gone : keys) {
        Both both;
        fill(&both, keys);
        both.remove(gone);
        both.expectFound(gone);
        both.expectAllFound();
        both.set(gone, valueOf(50));
        both.moveToEnd(keys[3]);
        both.set("behind all", valueOf(51));
        both.expectAllFound();
        both.expectOrder();
    }
}

TEST(MapIndex, AChainMayBecomeEmptyAndFillAgain) {
    std::vector<std::string> const keys = wordsInBucket(0, 20);
    Both both;
    fill(&both, keys);
    for (std::string const& key : keys) both.remove(key);
    both.expectOrder();
    fill(&both, keys);
    both.expectAllFound();
    both.expectOrder();
}

// Moving an entry or removing one costs no new index.
TEST(MapIndex, StaysWhenEntriesMoveOrGo) {
    std::vector<std::string> const keys = words(5000);
    Both both;
    fill(&both, keys);
    Text const moved(keys[10]);
    Text const removed(keys[20]);
    long const before = allocatedBlocks();
    zor_internal::moveToEnd(both.get(), moved);
    EXPECT_EQ(zor_mapGet(both.get(), moved), valueOf(10));
    zor_mapRemove(both.get(), removed);
    EXPECT_EQ(zor_mapGet(both.get(), removed), nullptr);
    EXPECT_EQ(allocatedBlocks() - before, 0);
}

// It only saves time: where memory lacks for any part of it, lookups answer as ever.
TEST(MapIndex, LooksUpWhereMemoryLacks) {
    std::vector<std::string> const keys = words(5000);
    Both both;
    fill(&both, keys);
    int failures = 0;
    for (bool failed = true; failed;) {
        MapIndex::drop(both.get());
        std::vector<void*> found(keys.size());
        void* absent = nullptr;
        {
            FailingAllocation const failing(failures + 1);
            for (unsigned i = static_cast<unsigned>(keys.size()); i-- > 0;) { // long walks first
                found[i] = zor_mapGet(both.get(), keys[i].c_str());
                if (i % 100 == 0) absent = zor_mapGet(both.get(), "absent");
            }
            failed = failing.happened();
        }
        for (unsigned i = 0; i < keys.size(); ++i) ASSERT_EQ(found[i], valueOf(i)) << failures;
        ASSERT_EQ(absent, nullptr);
        failures += failed;
    }
    EXPECT_EQ(failures, 3); // the index, the ends of the chains, the slots
}

// Whatever allocation fails while entries come, a set does all or nothing.
TEST(MapIndex, SetsDoAllOrNothingWhereMemoryLacks) {
    std::vector<std::string> const keys = wordsInBucket(3, 12);
    int failures = 0;
    for (bool failed = true; failed;) {
        Both both;
        std::vector<std::string> refused;
        {
            FailingAllocation const failing(failures + 1);
            for (std::string const& key : keys) {
                try {
                    zor_mapSet(both.get(), key.c_str(), valueOf(7));
                } catch (std::bad_alloc const&) {
                    refused.push_back(key);
                }
            }
            failed = failing.happened();
        }
        for (std::string const& key : keys) {
            bool const isThere = std::find(refused.begin(), refused.end(), key) == refused.end();
            ASSERT_EQ(zor_mapGet(both.get(), key.c_str()), isThere ? valueOf(7) : nullptr);
        }
        EXPECT_LE(refused.size(), 1U);
        failures += failed;
    }
    EXPECT_GT(failures, 2 * static_cast<int>(keys.size()));
}

// The same while the index grows: it goes, and comes again.
TEST(MapIndex, GrowsOrGoesWhereMemoryLacks) {
    std::vector<std::string> const keys = words(600);
    for (int n = 1; n <= 3; ++n) {
        Both both;
        fill(&both, words(512));
        {
            // The key and its entry come first, then the slots.
            FailingAllocation const failing(n);
            try {
                zor_mapSet(both.get(), keys[512].c_str(), valueOf(1));
            } catch (std::bad_alloc const&) {
                EXPECT_LT(n, 3);
            }
            EXPECT_TRUE(failing.happened());
        }
        EXPECT_EQ(MapIndex::of(both.get()) != nullptr, n < 3);
        for (unsigned i = 512; i < keys.size(); ++i) both.set(keys[i], valueOf(i));
        both.expectAllFound();
        both.expectOrder();
    }
}
