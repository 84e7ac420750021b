// Result sets: building, joining and the cursor.

#include <gtest/gtest.h>

#include <climits>

#include "tests/document/store.h"
#include "tests/support/incidents.h"

namespace {

class ResultSet : public testing::Test {
protected:
    IncidentLog log;
    Store store{"a*9:int=1 b*9:int=2 c*2{d*3:int=3}"};

    // A new set of that many first occurrences of the node.
    std::unique_ptr<ZorResultSet> some(char const* path, int count, bool finalized = false) {
        auto set = std::make_unique<ZorResultSet>(&store.document);
        for (int i = 0; i < count; ++i) set->addResult(0, store[path], i);
        if (finalized) set->finalize();
        return set;
    }
};

std::string expected(char const* path, int count) {
    std::string text;
    for (int i = 0; i < count; ++i) {
        text += std::string(path) + '[' + std::to_string(i + 1) + "]@" + std::to_string(i) + ' ';
    }
    return text;
}

} // namespace

TEST_F(ResultSet, ANewOneIsEmpty) {
    ZorResultSet const set(&store.document);
    EXPECT_EQ(set.document, &store.document);
    EXPECT_EQ(set.head, nullptr);
    EXPECT_EQ(set.tail, nullptr);
    EXPECT_EQ(set.results, nullptr);
    EXPECT_EQ(set.count, 0U);
    EXPECT_EQ(set.cursor, 0U);
    EXPECT_EQ(set.single, nullptr);
    EXPECT_TRUE(set.eof());
    EXPECT_EQ(set.getResultCount(), 0U);
}

TEST_F(ResultSet, ARecordHoldsNodeAndOccurrences) {
    ZorResultPointer const record(store["a"], 2, 5);
    EXPECT_EQ(record.node, store["a"]);
    EXPECT_EQ(record.occurrence, 2);
    EXPECT_EQ(record.flat, 5);
}

TEST_F(ResultSet, AddedResultsStandInAList) {
    ZorResultSet set(&store.document);
    set.addResult(0, store["a"], 2);
    EXPECT_EQ(set.head, set.tail);
    EXPECT_EQ(set.count, 1U);
    set.addResult(1, store["c/d"], 2);
    set.addResult(0, store["a"], 0);
    EXPECT_EQ(set.getResultCount(), 3U);
    std::string list;
    for (ZorListNode const* at = set.head; at; at = at->next) {
        auto const* const record = static_cast<ZorResultPointer const*>(at->value);
        list += pathOf(record->node) + ' ' + std::to_string(record->occurrence) + ' ' +
                std::to_string(record->flat) + ';';
    }
    EXPECT_EQ(list, "a 2 2;c/d 2 5;a 0 0;");
    EXPECT_EQ(set.results, nullptr);
}

// Flat occurrence: parent's x node's occurrences + own; a root counts once.
TEST_F(ResultSet, ReckonsTheFlatOccurrence) {
    ZorResultSet set(&store.document);
    set.addResult(0, store.shape.root(), 0);
    set.addResult(7, store.shape.root(), 0);
    set.addResult(4, store["a"], 3);
    set.addResult(1, store["c"], 1);
    set.addResult(INT_MAX, store["a"], 8);
    set.finalize();
    EXPECT_EQ(describe(set), "[1]@0 [1]@7 a[4]@39 c[2]@3 a[9]@2147483647 ");
}

// What no long holds, or what lies below 0, is no cell's either.
TEST_F(ResultSet, AFlatOccurrenceBeyondEveryNumberIsTheLargest) {
    ZorSchemaNode* const once = store.shape.root();
    ZorResultSet set(&store.document);
    set.addResult(LONG_MAX, store["a"], 0); // the product
    set.addResult(LONG_MAX, once, 1);       // the sum
    set.addResult(LONG_MAX, once, 0);
    set.addResult(-1, once, 0);
    set.finalize();
    for (unsigned i = 0; i < set.count; ++i) {
        EXPECT_EQ(set.results[i]->flat, INT_MAX) << "result " << i;
    }
}

TEST_F(ResultSet, FinalizingTurnsTheListIntoAnArray) {
    for (int const count : {0, 1, 2, 9}) {
        auto const set = some("a", count);
        set->finalize();
        EXPECT_EQ(set->head, nullptr);
        EXPECT_EQ(set->results == &set->single, count == 1);
        EXPECT_EQ(set->results == nullptr, count == 0);
        EXPECT_EQ(set->getResultCount(), static_cast<unsigned long>(count));
        EXPECT_EQ(set->cursor, 0U);
        set->finalize(); // again: nothing left to do
        EXPECT_EQ(describe(*set), expected("a", count));
    }
}

TEST_F(ResultSet, NeitherSortsNorRemovesDuplicates) {
    ZorResultSet set(&store.document);
    for (int const occurrence : {5, 2, 5, 0}) set.addResult(0, store["a"], occurrence);
    set.finalize();
    EXPECT_EQ(describe(set), "a[6]@5 a[3]@2 a[6]@5 a[1]@0 ");
}

TEST_F(ResultSet, IsDestroyedAtAnyStage) {
    for (int const count : {0, 1, 2, 5}) {
        some("a", count);
        some("a", count, true);
        auto const added = some("a", count, true);
        added->addResult(0, store["b"], 0); // behind finalize
    }
}

// Whatever the sizes and stages, wherever the cursors: first these results, then the other's.
TEST_F(ResultSet, CombiningKeepsTheOrder) {
    for (int const left : {0, 1, 2, 3}) {
        for (int const right : {0, 1, 2, 3}) {
            for (int stage = 0; stage < 16; ++stage) {
                auto const set = some("a", left, stage & 1);
                auto other = some("b", right, stage & 2);
                if (stage & 4) set->seek(static_cast<unsigned>(left));
                if (stage & 8) other->seek(static_cast<unsigned>(right) + 1);
                set->combine(other.release());
                EXPECT_EQ(set->getResultCount(), static_cast<unsigned long>(left + right));
                set->addResult(0, store["c"], 1);
                set->finalize();
                EXPECT_EQ(set->cursor, stage & 4 ? static_cast<unsigned>(left) : 0U);
                set->rewind();
                EXPECT_EQ(describe(*set), expected("a", left) + expected("b", right) + "c[2]@1 ")
                    << left << ' ' << right << ' ' << stage;
            }
        }
    }
}

TEST_F(ResultSet, CombinesAgainAndAgain) {
    auto const set = some("a", 2);
    std::string all = expected("a", 2);
    for (int i = 0; i < 4; ++i) {
        set->combine(some("b", i, i % 2).release());
        all += expected("b", i);
        if (i == 2) set->finalize();
        set->addResult(0, store["c"], 0);
        all += "c[1]@0 ";
    }
    set->finalize();
    EXPECT_EQ(describe(*set), all);
}

// The results of a set whose cursor has moved stay where they are.
TEST_F(ResultSet, CombiningKeepsTheResultsBehindTheCursor) {
    auto const set = some("a", 2, true);
    set->next();
    set->next();
    ASSERT_TRUE(set->eof());
    set->combine(some("b", 1).release());
    EXPECT_FALSE(set->eof());
    set->finalize();
    EXPECT_EQ(describe(*set), "b[1]@0 ");
    set->rewind();
    EXPECT_EQ(describe(*set), "a[1]@0 a[2]@1 b[1]@0 ");
}

TEST_F(ResultSet, TheCursorGoesFromResultToResultAndStopsAtTheEnd) {
    auto const set = some("a", 3, true);
    for (long i = 1; i <= 3; ++i) {
        EXPECT_FALSE(set->eof());
        EXPECT_EQ(set->getOccurrence(), i);
        set->next();
    }
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(set->eof());
        EXPECT_EQ(set->cursor, 3U);
        set->next();
    }
}

TEST_F(ResultSet, SeeksAndRewinds) {
    auto const set = some("a", 3, true);
    set->seek(2);
    EXPECT_EQ(set->getOccurrence(), 3);
    set->seek(1);
    EXPECT_EQ(set->getOccurrence(), 2);
    for (unsigned int const end : {3U, 4U, UINT_MAX}) {
        set->seek(end);
        EXPECT_TRUE(set->eof()) << end;
        set->next();
        EXPECT_EQ(set->cursor, end);
        EXPECT_EQ(set->getOccurrence(), 0);
        EXPECT_EQ(log.take(), "3 Passed end of result set\n");
    }
    set->rewind();
    EXPECT_FALSE(set->eof());
    EXPECT_EQ(set->getOccurrence(), 1);
    EXPECT_EQ(set->getResultCount(), 3U);
}

TEST_F(ResultSet, CombiningWithNothingOrItselfChangesNothing) {
    auto const set = some("a", 3);
    set->combine(nullptr);
    set->combine(set.get());
    set->finalize();
    EXPECT_EQ(set->getResultCount(), 3U);
}

// An occurrence that 31 bits do not hold is kept as one that does not exist.
TEST_F(ResultSet, AnOccurrenceBeyond31BitsReachesNoCell) {
    for (long const parentFlat : {LONG_MAX, LONG_MIN, 1L << 30, -1L}) {
        ZorResultSet set(&store.document);
        set.addResult(parentFlat, store["a"], 0);
        set.finalize();
        EXPECT_EQ(set.results[0]->flat, INT_MAX) << parentFlat;
        EXPECT_EQ(set.getValue(), nullptr) << parentFlat;
    }
}
