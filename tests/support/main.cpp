// The runner. A test that passes but leaves blocks allocated, locks held, collections alive or the
// logging function's catch unread has failed.

#include <gtest/gtest.h>

#include "tests/support/allocations.h"
#include "tests/support/checked_semaphore.h"
#include "zor/collection.h"
#include "zor/types.h"

namespace {

class LeakCheck : public testing::EmptyTestEventListener {
    void OnTestStart(testing::TestInfo const&) override {
        ZorBuiltIn::deleteBuiltInTypes();
        before = liveBlocks();
        collectionsBefore = ZorCollection::refCount;
    }

    void OnTestEnd(testing::TestInfo const& test) override {
        ZorBuiltIn::deleteBuiltInTypes();
        if (!test.result()->Passed()) return;
        EXPECT_EQ(liveBlocks(), before) << "the test leaves blocks allocated";
        EXPECT_EQ(ZorCollection::refCount, collectionsBefore) << "the test leaves collections";
        EXPECT_EQ(heldLocks(), 0) << "the test leaves locks held";
    }

    long before = 0;
    int collectionsBefore = 0;
};

} // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    testing::UnitTest::GetInstance()->listeners().Append(new LeakCheck);
    { SCOPED_TRACE("makes the storage of traces now, not in the first test that has one"); }
    return RUN_ALL_TESTS();
}
