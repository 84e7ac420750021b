// Importing files: paths, pieces of 4096 bytes, and where reading ends.

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "tests/collection/import_store.h"
#include "tests/support/text.h"
#include "zor/collection.h"

namespace {

// A file of that content for the length of a test.
class File {
public:
    explicit File(std::string const& content)
        : path(testing::TempDir() + "zor_import_" + std::to_string(getpid()) + ".xml") {
        std::FILE* const file = std::fopen(path.c_str(), "w");
        EXPECT_NE(file, nullptr) << path;
        EXPECT_EQ(std::fwrite(content.data(), 1, content.size(), file), content.size());
        std::fclose(file);
    }
    File(File const&) = delete;
    File& operator=(File const&) = delete;
    ~File() { std::remove(path.c_str()); }

    std::string const path;
};

// A collection "phone" that imports one file.
class FileStore {
public:
    // The incidents of the import, "@" in the place of the file's context.
    std::string import(std::string const& content) {
        File const file(content);
        collection.importFromFile(file.path.c_str());
        std::string incidents = log.take();
        std::string const context = "ZorCollection::importFromFile:" + file.path;
        for (std::size_t at; (at = incidents.find(context)) != std::string::npos;) {
            incidents.replace(at, context.size(), "@");
        }
        return incidents;
    }

    std::string shape() {
        ZorSchema const* const schema = collection.getSchema("s");
        return schema ? shapeOf(schema->getRootNode()) : "no schema";
    }

    IncidentLog log;
    ZorCollection collection{"phone"};
};

std::string incident(int severity, int line, int column, std::string const& text) {
    return std::to_string(severity) + " @" + atPosition(line, column) + text + '\n';
}

// `head`, lines of blanks, and `tail`, in all `size` bytes. The tail begins a line of its own.
std::string padded(std::string const& head, std::size_t size, std::string const& tail = "") {
    return head + std::string(size - head.size() - tail.size() - 1, ' ') + '\n' + tail;
}

constexpr char kHead[] = "<phone><schema name='s'>\n";
constexpr char kError[] = "<item name='e' type='nope'></item>\n"; // in line 2, if behind the head
constexpr char kTail[] = "<item name='z' type='int'/></schema></phone>";

std::string const kErrorInLine2 = incident(3, 2, 0, "type (nope) not found");

} // namespace

TEST(ImportFile, FileIsImported) {
    IncidentLog log;
    ZorCollection collection("phone");
    File const file("<phone><schema name='s'><item name='a' type='int'/></schema></phone>");
    collection.importFromFile(file.path.c_str());
    EXPECT_EQ(log.take(), "");
    EXPECT_EQ(shapeOf(collection.getSchema("s")->getRootNode()), "a:int");
}

TEST(ImportFile, PathMayBeAString) {
    IncidentLog log;
    ZorCollection collection("phone");
    File const file("<phone><schema name='s'/></phone>");
    Text const path(file.path);
    collection.importFromFile(static_cast<ZorString*>(path));
    EXPECT_NE(collection.getSchema("s"), nullptr);
}

TEST(ImportFile, MessageNamesTheFileAndThePosition) {
    IncidentLog log;
    ZorCollection collection("phone");
    File const file("<phone>\n<schema/></phone>");
    collection.importFromFile(file.path.c_str());
    EXPECT_EQ(log.take(), "3 ZorCollection::importFromFile:" + file.path +
                              "{zor_XMLParse: line 2, column 0 }missing name attribute\n");
}

TEST(ImportFile, MissingFileIsNotFound) {
    IncidentLog log;
    ZorCollection collection("phone");
    collection.importFromFile("/nowhere/at all/phone.xml");
    EXPECT_EQ(log.take(), "3 File: \"/nowhere/at all/phone.xml\" not found.\n");
    Text const path("nowhere.xml");
    collection.importFromFile(static_cast<ZorString*>(path));
    EXPECT_EQ(log.take(), "3 File: \"nowhere.xml\" not found.\n");
    collection.importFromFile("");
    EXPECT_EQ(log.take(), "3 File: \"\" not found.\n");
    collection.importFromFile(nullptr);
    EXPECT_EQ(log.take(), "3 File: \"\" not found.\n");
}

// A directory can be opened but not read: it is an empty input.
TEST(ImportFile, DirectoryIsAnEmptyInput) {
    IncidentLog log;
    ZorCollection collection("phone");
    std::string const path = testing::TempDir();
    collection.importFromFile(path.c_str());
    EXPECT_EQ(log.take(), "3 ZorCollection::importFromFile:" + path +
                              "{zor_XMLParse: line 1, column 0 }no element found\n");
}

TEST(ImportFile, EmptyFileHasNoElement) {
    FileStore store;
    EXPECT_EQ(store.import(""), incident(3, 1, 0, "no element found"));
}

TEST(ImportFile, NulIsNoCharacterOfXml) {
    FileStore store;
    EXPECT_EQ(store.import(std::string("<phone>\0</phone>", 16)),
              incident(3, 1, 7, "not well-formed (invalid token)"));
}

// The pool belongs to texts: a file has a parser of its own, and schemas that its documents need
// are the outermost imports.
TEST(ImportFile, PoolIsNotUsed) {
    TestDictionary dictionary;
    FileStore store;
    store.collection.setDictionary(&dictionary);
    EXPECT_EQ(store.import("<phone><document name='d'/></phone>"), "");
    EXPECT_TRUE(store.collection.parsers.empty());
    dictionary.definitions["s"] =
        "<phone>\n<schema name='s'><item name='a' type='int'/></schema></phone>";
    EXPECT_EQ(store.import("<phone><document name='e' schema='s'><a>5</a></document></phone>"), "");
    EXPECT_EQ(store.collection.parsers.size(), 1U);
    EXPECT_EQ(store.collection.parseDepth, 0);
    EXPECT_EQ(valuesOf(store.collection.getDocument("e")), "a=5*");
}

// The file is none of the imports that nest.
TEST(ImportFile, SixteenImportsMayNestInAFile) {
    TestDictionary dictionary;
    FileStore store;
    store.collection.setDictionary(&dictionary);
    dictionary.definitions["s"] = "<phone>\n<document name='d' schema='s'/></phone>";
    std::string const unresolved = "problem resolving document and schema name";
    std::string expected = plainError("schema definitions are nested too deeply");
    for (int depth = 0; depth < 16; ++depth) {
        expected += plainError("ZorCollection::makeDocument{Schema (s) does not exist}") +
                    errorAt(2, 0, unresolved);
    }
    expected += plainError("ZorCollection::makeDocument{Schema (s) does not exist}") +
                incident(3, 2, 0, unresolved);
    EXPECT_EQ(store.import("<phone>\n<document name='d' schema='s'/></phone>"), expected);
    EXPECT_EQ(store.collection.parsers.size(), 16U);
    EXPECT_EQ(store.collection.parseDepth, 0);
}

// A correct file may have any size, around the pieces in which it is read.
TEST(ImportFile, CorrectFileOfAnySizeIsImported) {
    for (std::size_t const size : {4094U, 4095U, 4096U, 4097U, 8191U, 8192U, 8193U, 12288U}) {
        FileStore store;
        EXPECT_EQ(store.import(padded(kHead, size, kTail)), "") << size;
        EXPECT_EQ(store.shape(), "z:int") << size;
    }
}

// An element may lie across the end of a piece, wherever it is cut.
TEST(ImportFile, ElementMayLieAcrossTwoPieces) {
    std::string const element = "<item name='across' type='string' default='a&amp;b'/>";
    for (std::size_t before = 0; before <= element.size(); ++before) {
        FileStore store;
        EXPECT_EQ(store.import(padded(kHead, 4096 - before) + element + kTail), "") << before;
        EXPECT_EQ(store.shape(), "across:string=a&b z:int") << before;
    }
}

// A file that ends early is found out at its end, which is the first piece below 4096 bytes.
TEST(ImportFile, UnfinishedFileOfAnySizeIsReported) {
    for (std::size_t const size : {4095U, 4096U, 4097U, 8191U, 8192U, 8193U}) {
        FileStore store;
        EXPECT_EQ(store.import(padded(kHead, size, "<branch name='b'/>")),
                  incident(3, 3, 18, "no element found"))
            << size;
        EXPECT_EQ(store.shape(), "b{}") << size;
    }
}

// After a piece with an error, nothing more is read; not even the end of a file that is just as
// long as the piece. A piece that is shorter is the last one, and parsed as such.
TEST(ImportFile, ReadingEndsAfterThePieceWithTheError) {
    std::string const unfinished = incident(3, 3, 0, "no element found");
    struct {
        std::size_t size;
        std::string incidents;
    } const rows[] = {
        {4094, kErrorInLine2 + unfinished},
        {4095, kErrorInLine2 + unfinished},
        {4096, kErrorInLine2},
        {4097, kErrorInLine2},
        {8192, kErrorInLine2},
        {20000, kErrorInLine2},
    };
    for (auto const& row : rows) {
        FileStore store;
        std::string const head = std::string(kHead) + kError;
        EXPECT_EQ(store.import(head.substr(0, head.size() - 1) +
                               std::string(row.size - head.size(), ' ') + '\n'),
                  row.incidents)
            << row.size;
    }
}

TEST(ImportFile, ErrorInTheSecondPieceEndsReadingThere) {
    std::string const error = incident(3, 3, 0, "type (nope) not found");
    std::string const unfinished = incident(3, 4, 0, "no element found");
    struct {
        std::size_t size;
        std::string incidents;
    } const rows[] = {{8191, error + unfinished}, {8192, error}, {8193, error}, {12288, error}};
    for (auto const& row : rows) {
        FileStore store;
        std::string const first = padded(kHead, 4096);
        EXPECT_EQ(store.import(padded(first + std::string(kError, sizeof kError - 2), row.size)),
                  row.incidents)
            << row.size;
    }
}

// What stands in the same piece as the error is parsed, expat's own errors included.
TEST(ImportFile, PieceWithTheErrorIsParsedToItsEnd) {
    std::string const head = std::string(kHead) + kError;
    FileStore inside;
    EXPECT_EQ(inside.import(padded(head, 4096, "</oops>") + "</phone>"),
              kErrorInLine2 + incident(3, 4, 2, "mismatched tag"));
    FileStore outside;
    EXPECT_EQ(outside.import(padded(head, 4096) + "</oops>"), kErrorInLine2);
}

TEST(ImportFile, BrokenPieceEndsReading) {
    FileStore store;
    EXPECT_EQ(store.import(padded("<phone></oops>", 20000)), incident(3, 1, 9, "mismatched tag"));
}

// It is the last incident that counts: a warning behind the error lets reading go on.
TEST(ImportFile, WarningBehindTheErrorLetsReadingGoOn) {
    std::string const head = std::string(kHead) + kError + "<branch name='b' x=''/>\n";
    FileStore store;
    EXPECT_EQ(store.import(padded(head, 9000, kTail)),
              kErrorInLine2 + incident(2, 3, 0, "attribute not valid in this context (x)"));
    EXPECT_EQ(store.shape(), "b{} z:int");
}

TEST(ImportFile, WarningAloneStopsNothing) {
    FileStore store;
    EXPECT_EQ(store.import(
                  padded("<phone><schema name='DefaultSchema'/><schema name='s'>\n", 9000, kTail)),
              incident(2, 1, 7, "Schema DefaultSchema Already Exists"));
    EXPECT_EQ(store.shape(), "z:int");
}

// Nor does an incident that is not the parser's, such as a refused value.
TEST(ImportFile, RefusedValueStopsNothing) {
    FileStore store;
    EXPECT_EQ(
        store.import(padded("<phone><schema name='s'><item name='a' type='int'/></schema>"
                            "<document name='d' schema='s'><a>x</a></document>",
                            9000, "<document name='e' schema='s'><a>5</a></document></phone>")),
        plainError("setStringNodeValue: value (x) is not valid"));
    EXPECT_EQ(valuesOf(store.collection.getDocument("d")), "a=(null)");
    EXPECT_EQ(valuesOf(store.collection.getDocument("e")), "a=5*");
}

// What came before the error stays, and the next file starts afresh.
TEST(ImportFile, NextFileStartsAfresh) {
    FileStore store;
    EXPECT_EQ(store.import(padded("<phone><schema name='t'/><schema/>", 9000)),
              incident(3, 1, 25, "missing name attribute"));
    EXPECT_NE(store.collection.getSchema("t"), nullptr);
    EXPECT_EQ(store.import(padded(kHead, 100, kTail)), "");
    EXPECT_EQ(store.shape(), "z:int");
}

// A text that crosses pieces is one text; it may be as long as a string, and no longer.
TEST(ImportFile, TextMayCrossManyPieces) {
    std::string const longest(65534, 'x');
    FileStore store;
    EXPECT_EQ(store.import("<phone><document name='d'><itemValue>" + longest +
                           "</itemValue></document></phone>"),
              "");
    EXPECT_EQ(valuesOf(store.collection.getDocument("d")), "itemValue=" + longest + '*');
    // The incident is raised at the start of the part that is too much: that of the 17th piece.
    EXPECT_EQ(store.import("<phone><document name='e'><itemValue>" + longest + "x" + longest +
                           "</itemValue></document></phone>"),
              incident(3, 1, 16 * 4096, "text is too long in element <itemValue>"));
    EXPECT_EQ(valuesOf(store.collection.getDocument("e")), "itemValue=");
}

// The desk telephone of the examples: large, and read in many pieces.
TEST(ImportFile, ExampleIsImportedInSilence) {
    IncidentLog log;
    ZorCollection collection("deskphone");
    std::string const folder = ZOR_EXAMPLES_DIR "/desk-phone/";
    collection.importFromFile((folder + "definition.xml").c_str());
    EXPECT_EQ(log.take(), "");
    collection.importFromFile((folder + "config.xml").c_str());
    EXPECT_EQ(log.take(), "");
    ZorListNode* const documents = collection.getDocuments();
    EXPECT_NE(documents, nullptr);
    zor_listDelete(documents);
}
