// How much a select may find and look at.

#include "document/select_limit.h"

#include <gtest/gtest.h>

#include "tests/document/store.h"
#include "tests/support/incidents.h"

using zor_internal::SelectLimit;

namespace {

constexpr long kResults = 65536; // of one step
constexpr long kVisits = 4194304;

// How often `count` may be called before it refuses.
template <typename Count>
long callsOf(Count count) {
    long calls = 0;
    while (count()) ++calls;
    return calls;
}

// Branches "b" that each have an item "i" behind that many branches without anything.
std::string wide(int occurrences, int emptyBranches) {
    std::string text = "b*" + std::to_string(occurrences) + "{";
    for (int i = 0; i < emptyBranches; ++i) text += "e" + std::to_string(i) + "{} ";
    return text + "i:int}";
}

class WideSelect : public testing::Test {
protected:
    IncidentLog log;
};

} // namespace

TEST(SelectLimit, GrowsWithTheCells) {
    for (long const cells : {0L, 1000L}) {
        Shape const shape("a*" + std::to_string(cells) + ":int");
        SelectLimit found(shape.root());
        EXPECT_EQ(callsOf([&] { return found.find(1); }), kResults + 4 * cells);
        EXPECT_TRUE(found.isExceeded());
        SelectLimit visited(shape.root());
        EXPECT_EQ(callsOf([&] { return visited.visit(); }), kVisits + 64 * cells);
        EXPECT_TRUE(visited.isExceeded());
    }
}

// Results are counted for each step, visits for all steps together, and a result is a visit, too.
TEST(SelectLimit, CountsVisitsOfAllSteps) {
    Shape const shape("");
    SelectLimit limit(shape.root());
    for (int step = 0; step < kVisits / kResults; ++step) {
        limit.startStep();
        long found = 0;
        while (found < kResults && limit.find(1)) ++found;
        ASSERT_EQ(found, kResults) << "in step " << step;
    }
    limit.startStep();
    EXPECT_FALSE(limit.isExceeded());
    EXPECT_FALSE(limit.find(1));
    EXPECT_TRUE(limit.isExceeded());
}

// What was given up stays given up, whatever is counted next.
TEST(SelectLimit, StaysExceeded) {
    Shape const shape("");
    SelectLimit limit(shape.root());
    callsOf([&] { return limit.find(1); });
    limit.startStep();
    EXPECT_FALSE(limit.find(1));
    EXPECT_FALSE(limit.visit());
    EXPECT_TRUE(limit.isExceeded());
}

// Few results, but so much to look at for them that the select is given up in the middle.
TEST_F(WideSelect, LookingAtTooMuchIsRefused) {
    Store store(wide(32767, 400));
    for (std::string const path : {"//i", "b//i"}) {
        EXPECT_EQ(store.select(path.c_str()), "") << path;
        EXPECT_EQ(log.take(), "3 path (" + path + ") reaches too many nodes\n");
    }
}

// The same with fewer branches to look at.
TEST_F(WideSelect, LookingAtAsMuchAsIsAllowedIsNot) {
    Store store(wide(1000, 400));
    for (char const* const path : {"//i", "b//i"}) {
        std::unique_ptr<ZorResultSet> const results(store.document.select(path));
        EXPECT_EQ(results->getResultCount(), 1000U) << path;
    }
    EXPECT_EQ(log.take(), "");
}

// One step that looks at too much adds nothing, and does not go on to the next entry.
TEST_F(WideSelect, AStepThatLooksAtTooMuchFindsNothing) {
    Store store(wide(32767, 400));
    ZorResultSet context(&store.document);
    for (int i = 0; i < 2; ++i) context.addResult(0, store.document.getRootNode(), 0);
    ZorResultSet results(&store.document);
    Text const name("i");
    XPathStep step{1, name, -1};
    EXPECT_EQ(store.document.findNode(&results, &context, 0, &step, 1), 0);
    EXPECT_EQ(results.getResultCount(), 0U);
}
