// The runner of the stress tests: the library on its built-in platform, without the bookkeeping of
// the other tests. Each thread keeps the incidents that it raised; a test that leaves any fails.

#include <gtest/gtest.h>

#include "tests/stress/threads.h"

namespace {

thread_local std::string raisedHere;

void noteIncident(severity sev, std::string& message) {
    raisedHere += std::to_string(static_cast<int>(sev)) + ' ' + message + '\n';
}

class SilenceCheck : public testing::EmptyTestEventListener {
    void OnTestEnd(testing::TestInfo const&) override {
        EXPECT_EQ(takeIncidents(), "") << "incidents that the test did not take";
        EXPECT_EQ(ZorCollection::refCount, 0) << "the test leaves collections";
    }
};

} // namespace

std::string takeIncidents() {
    std::string taken;
    taken.swap(raisedHere);
    return taken;
}

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    testing::UnitTest::GetInstance()->listeners().Append(new SilenceCheck);
    zor_setLoggingFunction(noteIncident); // once, before there is any thread
    return RUN_ALL_TESTS();
}
