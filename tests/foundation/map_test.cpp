// Maps.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <random>
#include <string>
#include <vector>

#include "foundation/map_entries.h"
#include "tests/foundation/dull_hash.h"
#include "tests/foundation/strings.h"
#include "tests/support/allocations.h"
#include "tests/support/text.h"
#include "zor/containers.h"

namespace {

unsigned bucketOf(std::string const& key) { return hashOf(key) % 256; }

// The index-th word of the form "k<number>" that falls into the bucket.
std::string keyInBucket(unsigned bucket, int index) {
    for (int number = 0;; ++number) {
        std::string const key = "k" + std::to_string(number);
        if (bucketOf(key) == bucket && index-- == 0) return key;
    }
}

// A map for the length of a test, with values that are letters.
class Map {
public:
    Map() : map(zor_mapMake()) {}
    Map(Map const&) = delete;
    Map& operator=(Map const&) = delete;
    ~Map() { zor_mapDelete(map); }

    void set(std::string const& key, char value) { zor_mapSet(map, key.c_str(), letter(value)); }
    void set(ZorString* key, char value) { zor_mapSet(map, key, letter(value)); }
    // The value's letter, '-' when there is none.
    char get(std::string const& key) { return letterOf(zor_mapGet(map, key.c_str())); }
    char get(ZorString* key) { return letterOf(zor_mapGet(map, key)); }
    void remove(std::string const& key) { zor_mapRemove(map, key.c_str()); }
    void remove(ZorString* key) { zor_mapRemove(map, key); }

    // The letters of all values in their order.
    std::string values() {
        std::string all;
        ZorListNode* const list = zor_mapValues(map);
        for (ZorListNode* node = list; node; node = zor_listNextNode(node)) {
            all += letterOf(zor_listGetValue(node));
        }
        zor_listDelete(list);
        return all;
    }

    ZorMapEntry** get() { return map; }
    ZorMapEntry* entryIn(unsigned bucket) { return map[bucket]; }

    static void* letter(char value) {
        static char letters[128];
        letters[static_cast<int>(value)] = value;
        return &letters[static_cast<int>(value)];
    }
    static char letterOf(void const* value) {
        return value ? *static_cast<char const*>(value) : '-';
    }

private:
    ZorMapEntry** map;
};

} // namespace

TEST(Map, EntriesHaveThePromisedLayout) {
    EXPECT_EQ(offsetof(ZorMapEntry, key), 0U);
    EXPECT_EQ(offsetof(ZorMapEntry, value), sizeof(void*));
    EXPECT_EQ(offsetof(ZorMapEntry, next), 2 * sizeof(void*));
}

TEST(Map, StartsWith256EmptyBuckets) {
    Map map;
    for (unsigned i = 0; i < 256; ++i) EXPECT_EQ(map.entryIn(i), nullptr);
    EXPECT_EQ(map.get("volume"), '-');
    EXPECT_EQ(zor_mapValues(map.get()), nullptr);
}

TEST(Map, FindsWhatWasSet) {
    Map map;
    map.set("volume", 'v');
    map.set("ringer", 'r');
    EXPECT_EQ(map.get("volume"), 'v');
    EXPECT_EQ(map.get("ringer"), 'r');
    EXPECT_EQ(map.get("volum"), '-');
    EXPECT_EQ(map.get("volumes"), '-');
}

TEST(Map, KeysAreCaseSensitive) {
    Map map;
    map.set("Id", 'I');
    map.set("id", 'i');
    EXPECT_EQ(map.get("Id"), 'I');
    EXPECT_EQ(map.get("id"), 'i');
    EXPECT_EQ(map.get("ID"), '-');
}

TEST(Map, EmptyAndNullKeysAreTheEmptyText) {
    Map map;
    zor_mapSet(map.get(), "", Map::letter('e'));
    EXPECT_EQ(map.get(std::string()), 'e');
    EXPECT_EQ(map.get(permanent("")), 'e');
    EXPECT_EQ(zor_mapGet(map.get(), nullptr), Map::letter('e'));
    zor_mapSet(map.get(), nullptr, Map::letter('n'));
    EXPECT_EQ(map.values(), "n");
    zor_mapRemove(map.get(), nullptr);
    EXPECT_EQ(map.values(), "");
}

// Plain texts and strings are the same keys.
TEST(Map, PlainTextsAndStringsAreTheSameKeys) {
    Map map;
    Text const volume("volume");
    map.set(volume, 'a');
    EXPECT_EQ(map.get("volume"), 'a');
    map.set("ringer", 'b');
    EXPECT_EQ(map.get(Text("ringer")), 'b');
    map.remove(Text("ringer"));
    map.remove("volume");
    EXPECT_EQ(map.values(), "");
}

// Setting a key twice keeps one entry with the second value, and no second reference to the key.
TEST(Map, SettingTwiceKeepsOneEntry) {
    Map map;
    Text const key("volume");
    map.set("volume", 'a');
    map.set(key, 'b');
    EXPECT_EQ(map.values(), "b");
    EXPECT_EQ(map.get("volume"), 'b');
    EXPECT_EQ(static_cast<ZorString*>(key)->refCount, 1);
    EXPECT_EQ(map.entryIn(bucketOf("volume"))->key->refCount, 1);
}

TEST(Map, SettingTwiceWithTheSameStringKeepsOneReference) {
    Map map;
    ZorString* const key = ZorString::create("volume", -1);
    map.set(key, 'a');
    map.set(key, 'b');
    map.set("volume", 'c');
    EXPECT_EQ(map.values(), "c");
    EXPECT_EQ(key->refCount, 2);
    EXPECT_EQ(map.entryIn(bucketOf("volume"))->key, key);
    map.remove("volume");
    EXPECT_EQ(key->refCount, 1);
    key->removeRef();
}

TEST(Map, PlainKeysBecomeStrings) {
    Map map;
    map.set("volume", 'a');
    map.set("schema", 'b');
    ZorString const* const key = map.entryIn(bucketOf("volume"))->key;
    EXPECT_EQ(content(key), "volume");
    EXPECT_EQ(key->refCount, 1);
    EXPECT_EQ(map.entryIn(bucketOf("schema"))->key, permanent("schema"));
}

// A frequent name costs its entry and nothing else.
TEST(Map, PermanentKeysCostNoAllocation) {
    Map map;
    long const before = allocatedBlocks();
    map.set(permanent("schema"), 'a');
    zor_mapSet(map.get(), "true", Map::letter('b'));
    EXPECT_EQ(allocatedBlocks() - before, 2);
}

// The caller may go on with its string; the map keeps the key it was given.
TEST(Map, KeyIsIndependentOfTheCallersString) {
    Map map;
    ZorString* key = ZorString::create("volume", -1);
    map.set(key, 'a');
    key = key->append(1, "s", 1);
    EXPECT_EQ(map.get("volume"), 'a');
    EXPECT_EQ(map.get(key), '-');
    key->removeRef();
}

// The text that a key is compared by ends at its first NUL.
TEST(Map, KeyEndsAtItsFirstNul) {
    Map map;
    Text const key(std::string("a\0b", 3));
    map.set(key, 'x');
    EXPECT_EQ(map.get("a"), 'x');
    map.set("a", 'y');
    EXPECT_EQ(map.values(), "y");
}

// A key that is longer than a string can be counts as its first 65,534 characters.
TEST(Map, KeyIsCutLikeEveryText) {
    for (int const length : {65534, 65535, 70000}) {
        Map map;
        std::string const key = characters(length);
        map.set(key, 'a');
        map.set(key, 'b');
        EXPECT_EQ(map.values(), "b") << length;
        EXPECT_EQ(map.get(key), 'b') << length;
        EXPECT_EQ(map.get(Text(key)), 'b') << length;
        map.remove(key);
        EXPECT_EQ(map.values(), "") << length;
    }
}

TEST(Map, StoredNullLooksLikeAbsence) {
    Map map;
    zor_mapSet(map.get(), "volume", nullptr);
    EXPECT_EQ(map.get("volume"), '-');
    EXPECT_EQ(map.values(), "-");
    map.set("volume", 'a');
    EXPECT_EQ(map.values(), "a");
}

TEST(Map, RemoveOfAnAbsentKeyDoesNothing) {
    Map map;
    map.remove("volume");
    std::string const key = keyInBucket(9, 0);
    map.set(key, 'a');
    map.remove(keyInBucket(9, 1));
    map.remove("volume");
    EXPECT_EQ(map.values(), "a");
}

// Removing the first, a middle or the last entry of a bucket leaves the others in their order.
TEST(Map, RemoveKeepsTheRestOfABucket) {
    for (int const removed : {0, 1, 2, 3}) {
        Map map;
        std::string left = "abcd";
        for (int i = 0; i < 4; ++i) map.set(keyInBucket(9, i), left[static_cast<unsigned>(i)]);
        map.remove(keyInBucket(9, removed));
        left.erase(static_cast<unsigned>(removed), 1);
        EXPECT_EQ(map.values(), left);
        EXPECT_EQ(map.get(keyInBucket(9, removed)), '-');
        EXPECT_EQ(map.get(keyInBucket(9, (removed + 1) % 4)), "bcda"[removed]);
    }
}

TEST(Map, RemoveDropsTheKeyReferenceAndNoValue) {
    Map map;
    ZorString* const key = ZorString::create("volume", -1);
    int* const value = new int(7);
    long const before = liveBlocks();
    zor_mapSet(map.get(), key, value);
    zor_mapRemove(map.get(), "volume");
    EXPECT_EQ(liveBlocks(), before);
    EXPECT_EQ(key->refCount, 1);
    EXPECT_EQ(*value, 7);
    delete value;
    key->removeRef();
}

// An entry may be removed by the very key that it holds.
TEST(Map, RemoveByTheKeyOfTheEntry) {
    Map map;
    map.set("volume", 'a');
    map.remove(map.entryIn(bucketOf("volume"))->key);
    map.set("ringer", 'b');
    zor_mapRemove(map.get(), map.entryIn(bucketOf("ringer"))->key->text);
    EXPECT_EQ(map.values(), "");
}

// The bucket of a key is its hash modulo 256.
TEST(Map, KeysStandInTheirBuckets) {
    for (unsigned bucket = 0; bucket < 256; ++bucket) {
        Map map;
        map.set(keyInBucket(bucket, 0), 'a');
        ASSERT_NE(map.entryIn(bucket), nullptr) << "bucket " << bucket;
        EXPECT_EQ(content(map.entryIn(bucket)->key), keyInBucket(bucket, 0));
        EXPECT_EQ(map.entryIn(bucket)->next, nullptr);
    }
}

// Values come in the order of the buckets, whatever was set first.
TEST(Map, ValuesComeInBucketOrder) {
    Map map;
    map.set(keyInBucket(7, 0), 'a');
    map.set(keyInBucket(3, 0), 'b');
    map.set(keyInBucket(255, 0), 'c');
    map.set(keyInBucket(0, 0), 'd');
    EXPECT_EQ(map.values(), "dbac");
}

// Within a bucket they come in the order of insertion; setting again keeps the place, removing and
// setting again moves to the end.
TEST(Map, ValuesOfABucketComeInInsertionOrder) {
    Map map;
    for (int i = 0; i < 4; ++i) map.set(keyInBucket(5, i), "abcd"[i]);
    EXPECT_EQ(map.values(), "abcd");
    map.set(keyInBucket(5, 1), 'B');
    EXPECT_EQ(map.values(), "aBcd");
    map.remove(keyInBucket(5, 0));
    map.set(keyInBucket(5, 0), 'a');
    EXPECT_EQ(map.values(), "Bcda");
}

TEST(Map, ValuesListStandsApartFromTheMap) {
    Map map;
    map.set("volume", 'a');
    ZorListNode* const values = zor_mapValues(map.get());
    map.remove("volume");
    EXPECT_EQ(values->value, Map::letter('a'));
    EXPECT_EQ(values->next, nullptr);
    EXPECT_EQ(values->prev, nullptr);
    zor_listDelete(values);
}

// Deleting frees the entries, the key references and the buckets, and no values.
TEST(Map, DeleteFreesAllButTheValues) {
    ZorString* const key = ZorString::create("volume", -1);
    int* const value = new int(7);
    long const before = liveBlocks();
    ZorMapEntry** const map = zor_mapMake();
    zor_mapSet(map, key, value);
    for (int i = 0; i < 5; ++i) zor_mapSet(map, keyInBucket(9, i).c_str(), value);
    EXPECT_EQ(key->refCount, 2);
    zor_mapDelete(map);
    EXPECT_EQ(liveBlocks(), before);
    EXPECT_EQ(key->refCount, 1);
    EXPECT_EQ(*value, 7);
    delete value;
    key->removeRef();
}

// The entry keeps its value, the others their order.
TEST(Map, AnEntryMovesToTheEndOfItsBucket) {
    std::string keys[3];
    for (int i = 0; i < 3; ++i) keys[i] = keyInBucket(7, i);
    struct {
        int moved;
        char const* values;
    } const cases[] = {{0, "bca"}, {1, "acb"}, {2, "abc"}};
    for (auto const& [moved, values] : cases) {
        Map map;
        for (int i = 0; i < 3; ++i) map.set(keys[i], static_cast<char>('a' + i));
        Text const key(keys[moved]);
        zor_internal::moveToEnd(map.get(), key);
        EXPECT_EQ(map.values(), values) << moved;
        EXPECT_EQ(map.get(keys[moved]), 'a' + moved);
    }
}

// Many random operations agree with a list of pairs that is searched from its start.
TEST(Map, RandomOperationsAgreeWithADullMap) {
    std::mt19937 dice(4711);
    Map map;
    std::vector<std::pair<std::string, char>> dull;
    for (int step = 0; step < 20000; ++step) {
        std::string const key = "key" + std::to_string(dice() % 700);
        char const value = static_cast<char>('a' + dice() % 26);
        auto const found = std::find_if(dull.begin(), dull.end(),
                                        [&](auto const& entry) { return entry.first == key; });
        switch (dice() % 3) {
        case 0:
            map.set(key, value);
            if (found != dull.end())
                found->second = value;
            else
                dull.emplace_back(key, value);
            break;
        case 1:
            map.remove(key);
            if (found != dull.end()) dull.erase(found);
            break;
        default:
            ASSERT_EQ(map.get(key), found == dull.end() ? '-' : found->second) << key;
        }
    }
    std::stable_sort(dull.begin(), dull.end(), [](auto const& a, auto const& b) {
        return bucketOf(a.first) < bucketOf(b.first);
    });
    std::string expected;
    for (auto const& entry : dull) expected += entry.second;
    EXPECT_GT(expected.size(), 256U);
    EXPECT_EQ(map.values(), expected);
}
