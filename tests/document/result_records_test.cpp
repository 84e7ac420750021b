// Result sets in any order of operations, compared with plain vectors.

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <random>
#include <vector>

#include "tests/document/store.h"
#include "tests/support/allocations.h"
#include "tests/support/incidents.h"

namespace {

// A result: which node, and which occurrence of it.
struct Record {
    ZorSchemaNode* node;
    long occurrence;
};

// A result set, and what it must hold.
struct Modelled {
    std::unique_ptr<ZorResultSet> set;
    std::vector<Record> records;
};

// Fresh, added to, joined, finalized, read and dropped at random.
class ResultRecords : public testing::Test {
protected:
    ResultRecords() {
        for (Modelled& some : all) begin(some);
    }

    std::size_t below(std::size_t sides) { return dice() % sides; }
    Modelled& any() { return all[below(std::size(all))]; }

    void begin(Modelled& some) {
        some.set = std::make_unique<ZorResultSet>(&store.document);
        some.records.clear();
    }

    void add(Modelled& to, std::size_t count) {
        for (; count > 0; --count) {
            Record const added{store[below(2) ? "a" : "b"], static_cast<long>(below(30000))};
            to.set->addResult(0, added.node, added.occurrence);
            to.records.push_back(added);
        }
    }

    void join(Modelled& to, Modelled& from) {
        if (&to == &from) return;
        to.set->combine(from.set.release());
        to.records.insert(to.records.end(), from.records.begin(), from.records.end());
        begin(from);
    }

    static void expectAt(Modelled const& some, std::size_t index) {
        some.set->seek(static_cast<unsigned>(index));
        ASSERT_FALSE(some.set->eof());
        EXPECT_EQ(some.set->getDefinition(), some.records[index].node);
        EXPECT_EQ(some.set->getOccurrence(), some.records[index].occurrence + 1);
        EXPECT_EQ(some.set->results[index]->flat, some.records[index].occurrence);
    }

    static void expectSame(Modelled const& some) {
        EXPECT_EQ(some.set->getResultCount(), some.records.size());
        for (std::size_t i = 0; i < some.records.size(); ++i) expectAt(some, i);
        some.set->seek(static_cast<unsigned>(some.records.size()));
        EXPECT_TRUE(some.set->eof());
    }

    void doAnything() {
        Modelled& some = any();
        switch (below(10)) {
        case 0:
            return join(some, any());
        case 1:
            return some.set->finalize();
        case 2:
            if (!some.records.empty()) expectAt(some, below(some.records.size()));
            return;
        case 3:
            if (below(4) == 0) begin(some);
            return;
        case 4:
            return add(some, below(200));
        default:
            return add(some, below(4));
        }
    }

    IncidentLog log;
    Store store{"a:int b:int"};
    std::mt19937 dice{64};
    Modelled all[4];
};

} // namespace

TEST_F(ResultRecords, AgreeWithVectorsInAnyOrderOfOperations) {
    std::size_t longest = 0;
    for (int round = 0; round < 60; ++round) {
        for (int step = 0; step < 80; ++step) {
            doAnything();
            ASSERT_FALSE(HasFailure()) << "round " << round << ", step " << step;
        }
        for (Modelled& some : all) {
            longest = std::max(longest, some.records.size());
            expectSame(some);
            begin(some);
        }
        ASSERT_FALSE(HasFailure()) << "round " << round;
    }
    EXPECT_GT(longest, 500U);
}

// A set of every size, read before the next result comes, and joined to another one.
TEST_F(ResultRecords, AgreeWithVectorsAtEverySize) {
    for (std::size_t size = 0; size <= 200; ++size) {
        begin(all[0]);
        begin(all[1]);
        add(all[0], size);
        add(all[1], 200 - size);
        if (size % 2) all[0].set->finalize();
        if (size % 3) all[1].set->finalize();
        add(all[1], size % 5);
        join(all[0], all[1]);
        add(all[0], 3);
        expectSame(all[0]);
        add(all[0], 1);
        expectSame(all[0]);
        ASSERT_FALSE(HasFailure()) << size;
    }
}

// What the blocks are for.
TEST_F(ResultRecords, CostABlockForManyResults) {
    long const before = allocatedBlocks();
    add(all[0], 1000);
    EXPECT_LE(allocatedBlocks() - before, 1000 / 64 + 7 + 12); // the model's vector grows, too
    expectSame(all[0]);
}
