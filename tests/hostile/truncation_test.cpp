// Files that end anywhere.

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "tests/hostile/sweep.h"

// The correct text makes what the sweeps compare with.
TEST(SmallPhone, HoldsEverything) {
    IncidentLog log;
    ZorCollection collection("desk");
    std::string const definition = small_phone::kDefinition;
    collection.importXML(small_phone::fileOf(definition + small_phone::kDocuments).c_str());
    EXPECT_EQ(log.take(), "");
    EXPECT_EQ(contentOf(collection), small_phone::kContent);
}

// The same where it comes in two files.
TEST(SmallPhone, MayBeFilledByAFileOfItsOwn) {
    IncidentLog log;
    ZorCollection collection("desk");
    collection.importXML(small_phone::fileOf(small_phone::kDefinition).c_str());
    collection.importXML(small_phone::fileOf(small_phone::kDocuments).c_str());
    EXPECT_EQ(log.take(), "");
    EXPECT_EQ(contentOf(collection), small_phone::kContent);
}

class Truncation : public testing::TestWithParam<std::string> {};

// A file that is cut at any byte does no harm, and the whole one is imported after it.
TEST_P(Truncation, IsSurvivedAtEveryByte) {
    std::unique_ptr<Sweep> const sweep = makeSweep(GetParam());
    std::string const& text = sweep->text();
    for (std::size_t length = 0; length < text.size() && !HasFailure(); ++length) {
        SCOPED_TRACE("cut at " + std::to_string(length));
        sweep->expectRecoveryFrom(text.substr(0, length));
    }
}

INSTANTIATE_TEST_SUITE_P(File, Truncation, testing::Values<std::string>("Whole", "Refill"),
                         [](auto const& instance) { return instance.param; });
