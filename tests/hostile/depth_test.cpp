// Elements within each other: unknown ones by the 100,000, collections and branches beyond their
// limit.

#include <gtest/gtest.h>

#include <string>

#include "tests/collection/import_store.h"
#include "tests/hostile/flood.h"
#include "tests/support/allocations.h"
#include "zor/collection.h"

namespace {

constexpr int kMany = 100000;
constexpr int kDeepest = 256; // of collections and of branches

// What an open element may take: its context, and the parser's record of its name.
constexpr long kPerElement = 512;
constexpr long kLittle = 262144; // bytes: 256 KB

// How many collections are in each other.
int depthOf(ZorCollection& collection) {
    int depth = 0;
    for (ZorCollection* inner = &collection; (inner = inner->getCollection("c")); ++depth) {
    }
    return depth;
}

} // namespace

// Only the outermost is reported, and what follows is imported.
TEST(Depth, UnknownElementsMayNestWithoutEnd) {
    IncidentLog log;
    PeakBytes const peak;
    ZorCollection collection("phone");
    Feed feed(collection);
    feed("<phone>\n");
    feed.repeat("<x>", kMany);
    feed.repeat("</x>", kMany);
    feed.end("<schema name='s'><item name='i' type='int'/></schema></phone>");
    EXPECT_EQ(log.take(), notRecognisedAt(2, 0, "x", {"collection", "schema", "document"}, "phone",
                                          "root-node"));
    EXPECT_EQ(shapeOf(collection.getSchema("s")->getRootNode()), "i:int");
    EXPECT_LT(peak.count(), kMany * kPerElement + kLittle);
}

// The same inside a document, where the import goes on with the values.
TEST(Depth, UnknownElementsMayNestInADocument) {
    IncidentLog log;
    PeakBytes const peak;
    ZorCollection collection("phone");
    Feed feed(collection);
    feed("<phone>\n<document name='d'>\n");
    feed.repeat("<x>", kMany);
    feed.repeat("</x>", kMany);
    feed.end("<itemValue>text</itemValue></document></phone>");
    EXPECT_EQ(log.take(), notRecognisedAt(3, 0, "x", {"itemValue"}, "document", "phone"));
    EXPECT_EQ(valuesOf(collection.getDocument("d")), "itemValue=text*");
    EXPECT_LT(peak.count(), kMany * kPerElement + kLittle);
}

// Elements that never end are closed by the next import.
TEST(Depth, UnknownElementsMayStayOpen) {
    IncidentLog log;
    PeakBytes const peak;
    ZorCollection collection("phone");
    collection.importXML(("<phone>\n" + Feed::repeated("<x>", kMany)).c_str());
    EXPECT_EQ(log.take(), notRecognisedAt(2, 0, "x", {"collection", "schema", "document"}, "phone",
                                          "root-node") +
                              errorAt(2, 3 * kMany, "no element found"));
    long const before = liveBytes();
    collection.importXML("<phone><schema name='s'/></phone>");
    EXPECT_EQ(log.take(), "");
    EXPECT_NE(collection.getSchema("s"), nullptr);
    EXPECT_LE(liveBytes(), before + kLittle);
    EXPECT_LT(peak.count(), kMany * kPerElement + kLittle);
}

// 256 collections within each other are made. The next one is refused, and everything up to the end
// tags of those that were not opened is passed over; each of the rest finds nothing to close.
TEST(Depth, CollectionsNestUpTo256) {
    std::string const refusal = errorAt(2, kDeepest * 21, "nested too deeply");
    PeakBytes const peak;
    ZorCollection collection("phone");
    {
        int const opened = kDeepest + 1;
        IncidentStream incidents([&](long i) {
            if (i == 0) return refusal;
            // 258 end tags have closed what was open, the root element among it.
            int const column = kMany * 21 + (opened + int(i)) * 13;
            bool const isRoot = i == kMany - opened;
            return unwoundAt(2, column, isRoot ? "phone" : "collection");
        });
        Feed feed(collection);
        feed("<phone>\n");
        feed.repeat("<collection name='c'>", kMany);
        feed.repeat("</collection>", kMany);
        feed.end("</phone>");
        EXPECT_EQ(incidents.difference(), "");
        EXPECT_EQ(incidents.count(), 1 + kMany - opened);
    }
    EXPECT_EQ(depthOf(collection), kDeepest);
    EXPECT_LT(peak.count(), kMany * kPerElement + kLittle);

    // What was made stays, and is extended by the next import.
    IncidentLog log;
    collection.importXML("<phone><collection name='c'><schema name='s'/></collection></phone>");
    EXPECT_EQ(log.take(), "");
    EXPECT_NE(collection.getCollection("c")->getSchema("s"), nullptr);
    EXPECT_EQ(depthOf(collection), kDeepest);
}

// 256 branches within each other are made, and items in them; further ones are refused.
TEST(Depth, BranchesNestUpTo256) {
    IncidentLog log;
    PeakBytes const peak;
    ZorCollection collection("phone");
    std::string text = "<phone>\n<schema name='s'>\n<branch name='b'/>\n";
    for (int depth = 1; depth < 2 * kDeepest; ++depth) {
        text += "<branch name='b' parent='" + Feed::repeated("/b", depth) + "' x=''/>\n";
    }
    collection.importXML((text + "</schema></phone>").c_str());
    std::string expected;
    for (int depth = 1; depth < 2 * kDeepest; ++depth) {
        std::string const path = Feed::repeated("/b", depth);
        int const line = 3 + depth;
        // The warning lets the work go on.
        expected += warningAt(line, 0, "attribute not valid in this context (x)");
        if (depth == kDeepest) expected += errorAt(line, 0, "nested too deeply");
        if (depth > kDeepest) {
            expected += plainError("path (" + path + ") not found") +
                        errorAt(line, 0, "Can't find specified parent node" + path);
        }
    }
    EXPECT_EQ(log.take(), expected);
    int depth = 0;
    ZorSchemaNode const* node = collection.getSchema("s")->getRootNode();
    while ((node = node->getFirstChildNode())) ++depth;
    EXPECT_EQ(depth, kDeepest);
    EXPECT_LT(peak.count(), 12 * long(text.size()) + kLittle); // the log among it
}
