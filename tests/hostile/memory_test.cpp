// What an import needs, and what it keeps when it is over.

#include <gtest/gtest.h>

#include <string>

#include "tests/hostile/flood.h"
#include "tests/support/allocations.h"
#include "tests/support/incidents.h"
#include "zor/collection.h"

namespace {

constexpr long kLittle = 262144; // bytes: 256 KB

// The bytes that a collection holds more than before it imported the text.
long keptAfter(std::string const& text) {
    IncidentLog log;
    ZorCollection collection("phone");
    collection.importXML("<phone/>");
    long const before = liveBytes();
    collection.importXML(text.c_str());
    log.take(); // with its storage
    return liveBytes() - before;
}

} // namespace

// A text in memory is not copied as a whole.
TEST(ImportMemory, DoesNotGrowWithTheText) {
    std::string const text = "<phone>" + Feed::repeated("<!-- comment -->\n", 1000000) + "</phone>";
    IncidentLog log;
    PeakBytes const peak;
    ZorCollection("phone").importXML(text.c_str());
    EXPECT_EQ(log.take(), "");
    EXPECT_LT(peak.count(), 2 * kLittle);
}

// What the parser needed for a text goes with it, also where that ended in the middle.
TEST(ImportMemory, IsGivenBackWhenTheImportIsOver) {
    std::string const large = Feed::repeated("x", 10000000);
    EXPECT_LT(keptAfter("<phone><!--" + large + "--></phone>"), kLittle);
    EXPECT_LT(keptAfter("<phone><" + large + "/></phone>"), kLittle);
    EXPECT_LT(keptAfter("<phone>" + Feed::repeated("<x>", 100000)), kLittle);
    EXPECT_LT(keptAfter("<phone><x" +
                        series(100000, [](long i) { return " a" + std::to_string(i) + "=''"; }) +
                        "/></phone>"),
              kLittle);
}
