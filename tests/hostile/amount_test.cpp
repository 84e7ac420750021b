// Many of one thing: attributes, names, errors.

#include <gtest/gtest.h>

#include <string>

#include "tests/collection/import_store.h"
#include "tests/hostile/flood.h"
#include "tests/support/allocations.h"
#include "zor/collection.h"

namespace {

constexpr long kMany = 100000;
constexpr long kLittle = 262144; // bytes: 256 KB

// That many attributes with names of their own.
std::string attributes(long count) {
    return series(count, [](long i) { return " a" + std::to_string(i) + "=''"; });
}

// Imports the text into a collection of its own.
void importAfresh(std::string const& text) { ZorCollection("phone").importXML(text.c_str()); }

} // namespace

// An element that the rules do not know, with 100,000 attributes, is reported once.
TEST(Amount, UnknownElementMayHave100000Attributes) {
    std::string const text = "<phone>\n<x" + attributes(kMany) + "/></phone>";
    IncidentLog log;
    PeakBytes const peak;
    importAfresh(text);
    EXPECT_EQ(log.take(), notRecognisedAt(2, 0, "x", {"collection", "schema", "document"}, "phone",
                                          "root-node"));
    EXPECT_LT(peak.count(), long(text.size()) * 16 + kLittle);
}

// Of one that they know, each attribute that they do not is reported, and the others count.
TEST(Amount, KnownElementMayHave100000Attributes) {
    std::string const text =
        "<phone>\n<schema" + attributes(kMany / 2) + " name='s'" +
        series(kMany / 2, [](long i) { return " b" + std::to_string(i) + "=''"; }) + "/></phone>";
    PeakBytes const peak;
    IncidentStream incidents([](long i) {
        std::string const name = (i < kMany / 2 ? "a" : "b") + std::to_string(i % (kMany / 2));
        return warningAt(2, 0, "attribute not valid in this context (" + name + ")");
    });
    ZorCollection collection("phone");
    collection.importXML(text.c_str());
    EXPECT_EQ(incidents.difference(), "");
    EXPECT_EQ(incidents.count(), kMany);
    EXPECT_NE(collection.getSchema("s"), nullptr);
    EXPECT_LT(peak.count(), long(text.size()) * 16 + kLittle);
}

TEST(Amount, AttributesTakeLinearTime) {
    IncidentStream const incidents([](long) { return std::string(); });
    expectLinearTime(
        kMany, [](long count) { return "<phone><schema" + attributes(count) + "/></phone>"; },
        importAfresh);
}

// 100,000 elements of different unknown names.
TEST(Amount, EveryUnknownElementIsReported) {
    PeakBytes const peak;
    IncidentStream incidents([](long i) {
        std::string const all =
            notRecognisedAt(int(2 + i / 3), 0, "x" + std::to_string(i / 3),
                            {"collection", "schema", "document"}, "phone", "root-node");
        std::size_t begin = 0;
        for (long line = 0; line < i % 3; ++line) begin = all.find('\n', begin) + 1;
        return all.substr(begin, all.find('\n', begin) + 1 - begin);
    });
    ZorCollection collection("phone");
    Feed feed(collection);
    feed("<phone>\n");
    long size = 0;
    for (long i = 0; i < kMany; ++i) {
        std::string const element = "<x" + std::to_string(i) + "/>\n";
        size += long(element.size());
        feed(element);
    }
    feed.end("</phone>");
    EXPECT_EQ(incidents.difference(), "");
    EXPECT_EQ(incidents.count(), 3 * kMany);
    // The parser keeps each name.
    EXPECT_LT(peak.count(), size * 16 + kLittle);
}

// 1,000,000 errors, each let through by a warning before it, cost no memory.
TEST(Amount, AMillionErrorsAreReported) {
    PeakBytes const peak;
    IncidentStream incidents([](long i) {
        int const line = int(2 + i / 2);
        return i % 2 == 0 ? warningAt(line, 0, "attribute not valid in this context (x)")
                          : errorAt(line, 0, "missing name attribute");
    });
    ZorCollection collection("phone");
    Feed feed(collection);
    feed("<phone>\n");
    feed.repeat("<schema x=''/>\n", 1000000);
    feed.end("</phone>");
    EXPECT_EQ(incidents.difference(), "");
    EXPECT_EQ(incidents.count(), 2000000);
    EXPECT_LT(peak.count(), 2 * kLittle);
}

// 1,000,000 refused values of one item, too, and the good one behind them is stored.
TEST(Amount, AMillionRefusedValuesAreReported) {
    std::string const refusal = plainError("setStringNodeValue: value (many) is not valid");
    PeakBytes const peak;
    IncidentStream incidents([&refusal](long) { return refusal; });
    ZorCollection collection("phone");
    Feed feed(collection);
    feed("<phone><schema name='s'><item name='i' type='int'/></schema>\n"
         "<document name='d' schema='s'>");
    feed.repeat("<i occurrence='1'>many</i>\n", 1000000);
    feed.end("<i occurrence='1'>7</i></document></phone>");
    EXPECT_EQ(incidents.difference(), "");
    EXPECT_EQ(incidents.count(), 1000000);
    EXPECT_EQ(valuesOf(collection.getDocument("d")), "i=7*");
    EXPECT_LT(peak.count(), 2 * kLittle);
}
