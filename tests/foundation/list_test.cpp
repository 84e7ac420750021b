// Lists.

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

#include "tests/support/allocations.h"
#include "zor/containers.h"

namespace {

// Values whose addresses stand for themselves.
char const kNames[] = "abcdefghij";

void* valueOf(char name) { return const_cast<char*>(&kNames[name - 'a']); }

char nameOf(ZorListNode const* node) { return *static_cast<char const*>(node->value); }

// A list of one node per letter.
ZorListNode* listOf(char const* names) {
    ZorListNode* const list = zor_listMake(valueOf(*names));
    while (*++names) zor_listAddNode(list, valueOf(*names));
    return list;
}

ZorListNode* nodeAt(ZorListNode* list, int index) {
    while (index-- > 0) list = zor_listNextNode(list);
    return list;
}

// The letters from this node to the end, after checking that the links agree in both directions.
std::string names(ZorListNode const* node) {
    std::string all;
    for (; node; node = node->next) {
        all += nameOf(node);
        if (node->next) {
            EXPECT_EQ(node->next->prev, node) << "behind " << all;
        }
    }
    return all;
}

int sameLetter(void const* value, void const* key) {
    return *static_cast<char const*>(value) - *static_cast<char const*>(key);
}

} // namespace

TEST(List, HasThePromisedLayout) {
    EXPECT_EQ(offsetof(ZorListNode, value), 0U);
    EXPECT_EQ(offsetof(ZorListNode, next), sizeof(void*));
    EXPECT_EQ(offsetof(ZorListNode, prev), 2 * sizeof(void*));
}

TEST(List, MakeGivesOneNode) {
    ZorListNode* const list = zor_listMake(valueOf('a'));
    EXPECT_EQ(list->value, valueOf('a'));
    EXPECT_EQ(list->next, nullptr);
    EXPECT_EQ(list->prev, nullptr);
    zor_listDelete(list);
}

TEST(List, AddNodeAppendsAndReturnsTheNewNode) {
    ZorListNode* const list = zor_listMake(valueOf('a'));
    ZorListNode* const second = zor_listAddNode(list, valueOf('b'));
    EXPECT_EQ(list->next, second);
    EXPECT_EQ(second->value, valueOf('b'));
    EXPECT_EQ(second->prev, list);
    EXPECT_EQ(second->next, nullptr);
    zor_listDelete(list);
}

// From whatever node the list is entered, the new one comes last.
TEST(List, AddNodeWalksToTheEnd) {
    ZorListNode* const list = listOf("abc");
    ZorListNode* const added = zor_listAddNode(nodeAt(list, 1), valueOf('d'));
    EXPECT_EQ(added, nodeAt(list, 3));
    EXPECT_EQ(names(list), "abcd");
    zor_listDelete(list);
}

TEST(List, ValuesMayBeNull) {
    ZorListNode* const list = zor_listMake(nullptr);
    zor_listAddNode(list, nullptr);
    EXPECT_EQ(zor_listGetValue(list), nullptr);
    EXPECT_EQ(zor_listFindNode(list, nullptr, nullptr), list);
    zor_listDelete(list);
}

TEST(List, FindComparesPointersWithoutAFunction) {
    ZorListNode* const list = listOf("abcb");
    EXPECT_EQ(zor_listFindNode(list, valueOf('b'), nullptr), nodeAt(list, 1));
    EXPECT_EQ(zor_listFindNode(nodeAt(list, 2), valueOf('b'), nullptr), nodeAt(list, 3));
    EXPECT_EQ(zor_listFindNode(list, valueOf('d'), nullptr), nullptr);
    EXPECT_EQ(zor_listFindNode(nodeAt(list, 1), valueOf('a'), nullptr), nullptr);
    char const equalLetter = 'b';
    EXPECT_EQ(zor_listFindNode(list, &equalLetter, nullptr), nullptr);
    zor_listDelete(list);
}

// The function gets the value first and the key second; 0 means found.
TEST(List, FindAsksTheFunction) {
    ZorListNode* const list = listOf("abcb");
    char const key = 'b';
    EXPECT_EQ(zor_listFindNode(list, &key, sameLetter), nodeAt(list, 1));
    char const missing = 'x';
    EXPECT_EQ(zor_listFindNode(list, &missing, sameLetter), nullptr);
    auto const valueIsFirst = [](void const* value, void const* k) {
        return value == valueOf('c') && k == nullptr ? 0 : 1;
    };
    EXPECT_EQ(zor_listFindNode(list, nullptr, valueIsFirst), nodeAt(list, 2));
    zor_listDelete(list);
}

TEST(List, FindInAnEmptyListFindsNothing) {
    EXPECT_EQ(zor_listFindNode(nullptr, valueOf('a'), nullptr), nullptr);
    EXPECT_EQ(zor_listFindNode(nullptr, valueOf('a'), sameLetter), nullptr);
}

TEST(List, StepsInBothDirections) {
    ZorListNode* const list = listOf("abc");
    ZorListNode* const second = zor_listNextNode(list);
    EXPECT_EQ(nameOf(second), 'b');
    EXPECT_EQ(zor_listPrevNode(second), list);
    EXPECT_EQ(zor_listPrevNode(list), nullptr);
    EXPECT_EQ(zor_listNextNode(nodeAt(list, 2)), nullptr);
    zor_listDelete(list);
}

TEST(List, ValuesAreReadAndReplaced) {
    ZorListNode* const list = listOf("abc");
    zor_listSetValue(nodeAt(list, 1), valueOf('j'));
    EXPECT_EQ(zor_listGetValue(nodeAt(list, 1)), valueOf('j'));
    EXPECT_EQ(names(list), "ajc");
    zor_listDelete(list);
}

TEST(List, JoinAppendsTheSecondList) {
    ZorListNode* const a = listOf("ab");
    ZorListNode* const b = listOf("cd");
    zor_listJoin(a, b);
    EXPECT_EQ(names(a), "abcd");
    EXPECT_EQ(b->prev, nodeAt(a, 1));
    zor_listDelete(a);
}

TEST(List, JoinFromTheMiddleAppendsAtTheEnd) {
    ZorListNode* const a = listOf("abc");
    zor_listJoin(nodeAt(a, 1), listOf("de"));
    EXPECT_EQ(names(a), "abcde");
    zor_listDelete(a);
}

// What is joined is cut out of its old list, which ends before it from then on.
TEST(List, JoinCutsTheSecondListOutOfItsOldOne) {
    ZorListNode* const a = listOf("ab");
    ZorListNode* const old = listOf("cde");
    ZorListNode* const middle = nodeAt(old, 1);
    zor_listJoin(a, middle);
    EXPECT_EQ(names(a), "abde");
    EXPECT_EQ(names(old), "c");
    EXPECT_EQ(old->next, nullptr);
    EXPECT_EQ(middle->prev, nodeAt(a, 1));
    zor_listDelete(a);
    zor_listDelete(old);
}

// Joining a list with its own end leaves it as it is.
TEST(List, JoinWithTheOwnEndChangesNothing) {
    ZorListNode* const list = listOf("abcd");
    zor_listJoin(list, nodeAt(list, 2));
    EXPECT_EQ(names(list), "abcd");
    zor_listDelete(list);
}

TEST(List, JoinOfNothingChangesNothing) {
    ZorListNode* const list = listOf("ab");
    zor_listJoin(list, nullptr);
    EXPECT_EQ(names(list), "ab");
    zor_listDelete(list);
}

TEST(List, DeleteFreesEveryNodeAndNoValue) {
    long const before = liveBlocks();
    int* const value = new int(7);
    ZorListNode* const list = zor_listMake(value);
    zor_listAddNode(list, value);
    zor_listDelete(list);
    EXPECT_EQ(liveBlocks() - before, 1);
    EXPECT_EQ(*value, 7);
    delete value;
}

// Deleting from the middle truncates the list.
TEST(List, DeleteFromTheMiddleTruncates) {
    ZorListNode* const list = listOf("abc");
    long const before = liveBlocks();
    zor_listDelete(nodeAt(list, 1));
    EXPECT_EQ(before - liveBlocks(), 2);
    EXPECT_EQ(names(list), "a");
    EXPECT_EQ(list->next, nullptr);
    zor_listDelete(list);
}

TEST(List, DeleteOfNothingDoesNothing) {
    long const before = liveBlocks();
    zor_listDelete(nullptr);
    EXPECT_EQ(liveBlocks(), before);
}
