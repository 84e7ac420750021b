// Large texts: values, names, attributes, paths.

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "tests/collection/import_store.h"
#include "tests/collection/objects.h"
#include "tests/hostile/flood.h"
#include "tests/support/allocations.h"
#include "zor/collection.h"

namespace {

constexpr long kMegabyte = 1000000;
constexpr long kLittle = 262144; // bytes: 256 KB
constexpr int kLongest = 65534;  // of what a string holds

std::string tooLong(int line, int column, std::string const& element) {
    return errorAt(line, column, "text is too long in element <" + element + ">");
}

} // namespace

// 100 MB in one value: refused as soon as no string holds them, and passed over after that.
TEST(LargeText, ValueOf100MBIsRefused) {
    IncidentLog log;
    PeakBytes const peak;
    ZorCollection collection("phone");
    Feed feed(collection);
    feed("<phone><document name='d'>\n<itemValue>");
    feed.repeat(std::string(10000, 'x'), 10000);
    feed.end("</itemValue></document></phone>");
    EXPECT_EQ(log.take(), tooLong(2, 11, "itemValue"));
    EXPECT_EQ(valuesOf(collection.getDocument("d")), "itemValue=");
    EXPECT_LT(peak.count(), 4 * kLittle);
}

// 100 MB where no text is looked at, and in an element that is not known.
TEST(LargeText, TextThatNobodyWantsCostsNothing) {
    IncidentLog log;
    PeakBytes const peak;
    ZorCollection collection("phone");
    Feed feed(collection);
    feed("<phone>\n");
    feed.repeat("text outside of values\n", 2 * kMegabyte);
    feed("\n<x>");
    feed.repeat("text\n", 10 * kMegabyte);
    feed.end("</x><document name='d'><itemValue>text</itemValue></document></phone>");
    EXPECT_EQ(log.take(),
              notRecognisedAt(int(2 * kMegabyte) + 3, 0, "x", {"collection", "schema", "document"},
                              "phone", "root-node"));
    EXPECT_EQ(valuesOf(collection.getDocument("d")), "itemValue=text*");
    EXPECT_LT(peak.count(), 2 * kLittle);
}

// 100 MB of comments, none of them long, and of blanks behind the root element.
TEST(LargeText, CommentsCostNothing) {
    IncidentLog log;
    PeakBytes const peak;
    ZorCollection collection("phone");
    Feed feed(collection);
    feed("<phone>");
    feed.repeat("<!-- comment --><?note?>", 2 * kMegabyte);
    feed("</phone>");
    feed.repeat("          ", 5 * kMegabyte);
    feed.end();
    EXPECT_EQ(log.take(), "");
    EXPECT_LT(peak.count(), 2 * kLittle);
}

// What the parser has to see as a whole, such as a tag, it holds as a whole; no more than a few
// times its size.
TEST(LargeText, TagsAndCommentsOf10MBAreParsed) {
    std::string const large(10 * kMegabyte, 'x');
    struct {
        std::string text;
        std::string incidents;
    } const rows[] = {
        {"<!--" + large + "-->", ""},
        {"<?" + large + "?>", ""},
        {"<schema name='" + large + "'/>",
         tooLong(2, 0, "schema") + unwoundAt(2, int(large.size()) + 17, "phone")},
        {"<document name='d' schema='" + large + "'/>",
         tooLong(2, 0, "document") + unwoundAt(2, int(large.size()) + 30, "phone")},
        {"<schema " + large + "='' name='s'/>",
         warningAt(2, 0, "attribute not valid in this context (" + large + ")")},
        {"<" + large + "/>",
         notRecognisedAt(2, 0, large, {"collection", "schema", "document"}, "phone", "root-node")},
    };
    for (auto const& row : rows) {
        IncidentLog log;
        ZorCollection collection("phone");
        std::string const text = "<phone>\n" + row.text + "</phone>";
        long reached = 0;
        {
            PeakBytes const peak;
            collection.importXML(text.c_str());
            reached = peak.count();
        }
        // The incidents are among it: the log's, and that in the making.
        EXPECT_LT(reached, 16 * long(large.size())) << row.text.substr(0, 20);
        EXPECT_TRUE(log.take() == row.incidents) << row.text.substr(0, 20);
    }
}

// A tag that comes in pieces is not read from its beginning for each of them.
TEST(LargeText, TagInPiecesTakesLinearTime) {
    IncidentStream const incidents([](long) { return std::string(); });
    expectLinearTime(
        4 * kMegabyte, [](long count) { return std::string(std::size_t(count), 'x'); },
        [](std::string const& name) {
            ZorCollection collection("phone");
            Feed feed(collection);
            feed("<phone><schema name='");
            for (std::size_t at = 0; at < name.size(); at += 4096) feed(name.substr(at, 4096));
            feed.end("'/></phone>");
        });
}

// The longest names there are: they are found, written and read again; the next longer ones are
// refused.
TEST(LargeText, NamesMayBeAsLongAsStrings) {
    IncidentLog log;
    PeakBytes const peak;
    std::string const name(kLongest, 'n');
    auto const textFor = [](std::string const& of) {
        return "<phone><schema name='" + of + "'><item name='" + of + "' type='int'/></schema>" +
               "<document name='" + of + "' schema='" + of + "'><" + of + ">7</" + of +
               "></document><collection name='" + of + "'/></phone>";
    };
    {
        ZorCollection collection("phone");
        collection.importXML(textFor(name).c_str());
        EXPECT_EQ(log.take(), "");
        EXPECT_EQ(valuesAt(collection.getDocument(name.c_str()), name.c_str()), "7");
        ZorCollection again("phone");
        std::string const text = collection.exportAll();
        again.importXML(text.c_str());
        EXPECT_EQ(log.take(), "");
        EXPECT_TRUE(again.exportAll() == text);

        collection.importXML(textFor(name + 'n').c_str());
        std::string const incidents = log.take(); // those of what follows name it, too
        EXPECT_EQ(incidents.substr(0, incidents.find('\n') + 1), tooLong(1, 7, "schema"));
        EXPECT_TRUE(collection.exportAll() == text);
    }
    EXPECT_LT(peak.count(), 100L * kLongest + kLittle);
}

// Paths of 1 MB select nothing, or what they say.
TEST(LargeText, SelectPathMayBeOf1MB) {
    IncidentLog log;
    ZorCollection collection("phone");
    collection.importXML("<phone><schema name='s'><branch name='b'/>"
                         "<item name='i' type='int' parent='b'/></schema>"
                         "<document name='d' schema='s'/></phone>");
    ZorDocument* const document = collection.getDocument("d");
    struct {
        std::string path;
        unsigned long answers;
    } const rows[] = {
        {Feed::repeated("b/", kMegabyte / 2), 0},
        {Feed::repeated("*/", kMegabyte / 2), 0},
        {Feed::repeated("//*", kMegabyte / 3), 0},
        {Feed::repeated("/", kMegabyte), 0},
        {Feed::repeated("b[1]/", kMegabyte / 5), 0},
        {Feed::repeated("[", kMegabyte), 0},
        {Feed::repeated("]", kMegabyte), 0},
        {std::string(kMegabyte, 'b'), 0},
        {"b/" + std::string(kMegabyte, 'i'), 0},
        {"*" + std::string(kMegabyte, 'x') + "/i", 0},
        {"*" + std::string(kLongest - 1, 'x') + "/i", 1},
    };
    PeakBytes const peak;
    for (auto const& row : rows) {
        std::unique_ptr<ZorResultSet> const found(document->select(row.path.c_str()));
        EXPECT_EQ(found->getResultCount(), row.answers) << row.path.substr(0, 20);
    }
    EXPECT_EQ(log.take(), "");
    EXPECT_LT(peak.count(), 2 * kLittle);
}

// So do paths to nodes; those in strings are shorter, and named in the incident.
TEST(LargeText, NodePathMayBeOf1MB) {
    IncidentLog log;
    ZorCollection collection("phone");
    collection.importXML("<phone><schema name='s'><branch name='b'/>"
                         "<item name='i' type='int' parent='b'/></schema></phone>");
    ZorSchemaNode* const root = collection.getSchema("s")->getRootNode();
    PeakBytes const peak;
    for (char const* const piece : {"b/", "/b", "*/", "/", "x", "*"}) {
        std::string const path = Feed::repeated(piece, kMegabyte);
        ZorListNode* found = nullptr;
        root->findSubNodes(&found, path.c_str(), -1);
        EXPECT_EQ(found, nullptr) << piece;
    }
    Text const path(Feed::repeated("/b", kLongest / 2));
    EXPECT_EQ(root->findSubNode(path), nullptr);
    EXPECT_EQ(log.take(),
              plainError("path (" + Feed::repeated("/b", kLongest / 2) + ") not found"));
    EXPECT_LT(peak.count(), 5 * kMegabyte);
}
