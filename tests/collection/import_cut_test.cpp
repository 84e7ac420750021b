// Input that ends anywhere, or is damaged anywhere, followed by correct input.

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "tests/collection/import_store.h"
#include "tests/xml/bare_expat.h"
#include "zor/collection.h"

namespace {

// Everything that the definition language and a document can hold.
std::string const kText =
    "<phone>\n"
    "<collection name='c'><schema name='s'><item name='i' type='int'/></schema></collection>\n"
    "<schema name='s'>\n"
    "<choice name='mode'><option>on</option><option> off </option></choice>\n"
    "<range name='level' baseType='int' minValue='-3' maxValue='3'/>\n"
    "<branch name='line' occurrences='2'/>\n"
    "<branch name='key' parent='line' occurrences='2'/>\n"
    "<item name='label' type='string' default='a&amp;b' parent='/line/key'/>\n"
    "<item name='mode' type='mode' default='off'/>\n"
    "<item name='level' type='level'/>\n"
    "</schema>\n"
    "<document name='d' schema='s'>\n"
    "<line><key><label>one</label></key><key occurrence='2'><label>t&lt;o</label></key></line>\n"
    "<line occurrence='2'><key><label>\"\"</label></key></line>\n"
    "<mode>on</mode><level>-2</level>\n"
    "</document>\n"
    "<document name='e'><itemValue>text</itemValue></document>\n"
    "</phone>\n";

// What it makes.
constexpr char kShape[] = "line*2{key*2{label:string=a&b}} mode:mode=off level:level";
constexpr char kValues[] = "line/key/label=one*|t<o*|*|a&b mode=on* level=-2*";

void expectEverything(ZorCollection& collection, std::string const& what) {
    ZorSchema const* const schema = collection.getSchema("s");
    ASSERT_NE(schema, nullptr) << what;
    EXPECT_EQ(shapeOf(schema->getRootNode()), kShape) << what;
    EXPECT_EQ(valuesOf(collection.getDocument("d")), kValues) << what;
    EXPECT_EQ(valuesOf(collection.getDocument("e")), "itemValue=text*") << what;
}

// Takes away what an import of the text may have made.
void clear(ZorCollection& collection) {
    collection.deleteAllDocuments();
    collection.deleteSchema("s");
    collection.deleteAllCollections();
}

} // namespace

TEST(ImportCut, TextIsCorrect) {
    ImportStore store;
    EXPECT_EQ(store.import(kText), "");
    expectEverything(store.collection, "whole");
}

// Each time expat's complaint is the only incident, and the correct text then makes everything.
TEST(ImportCut, InputThatEndsAnywhereLeavesNothingBehind) {
    IncidentLog log;
    ZorCollection collection("phone");
    std::size_t const end = kText.rfind('>'); // without it the input is incomplete
    for (std::size_t length = 0; length <= end && !testing::Test::HasFailure(); ++length) {
        std::string const cut = kText.substr(0, length);
        collection.importXML(cut.c_str());
        EXPECT_EQ(log.take(), complaintOfExpat({cut}, true)) << "cut at " << length;
        clear(collection);
        collection.importXML(kText.c_str());
        EXPECT_EQ(log.take(), "") << "cut at " << length;
        expectEverything(collection, "cut at " + std::to_string(length));
        clear(collection);
    }
    EXPECT_EQ(collection.parsers.size(), 1U);
}

// The same where only the schema and its documents are taken away: the rest is met again.
TEST(ImportCut, SchemaMayBeDeletedWhileTheRestStays) {
    IncidentLog log;
    for (std::size_t length = 0; length < kText.size() && !testing::Test::HasFailure(); ++length) {
        ZorCollection collection("phone");
        std::string const cut = kText.substr(0, length);
        collection.importXML(cut.c_str());
        log.take();
        collection.deleteSchema("s");
        ZorCollection* const inner = collection.getCollection("c");
        bool const isThere = inner && inner->getSchema("s");
        collection.importXML(kText.c_str());
        EXPECT_EQ(log.take(), isThere ? warningAt(2, 21, "Schema s Already Exists") : "")
            << "cut at " << length;
        expectEverything(collection, "cut at " + std::to_string(length));
    }
}

// A parser that is driven by hand and reset behaves like those of the pool.
TEST(ImportCut, ResetParserImportsEverything) {
    IncidentLog log;
    ZorCollection collection("phone");
    ZorIncidentContext incidents("", nullptr, nullptr);
    ZorXmlParser parser(&collection, &incidents);
    for (std::size_t length = 0; length < kText.size() && !testing::Test::HasFailure(); ++length) {
        parser.parse(kText.data(), static_cast<int>(length), 0);
        EXPECT_EQ(log.take(), "") << "cut at " << length;
        clear(collection);
        parser.reset(&collection);
        parser.parse(kText.data(), static_cast<int>(kText.size()), 1);
        EXPECT_EQ(log.take(), "") << "cut at " << length;
        expectEverything(collection, "cut at " + std::to_string(length));
        clear(collection);
        parser.reset(&collection);
    }
}

namespace {

// The text with one to three pieces of it lost, doubled or exchanged.
std::string damaged(std::mt19937& random) {
    auto const below = [&random](std::size_t limit) {
        return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random);
    };
    std::string text = kText;
    for (std::size_t left = 1 + below(3); left > 0; --left) {
        std::size_t const at = below(text.size());
        std::size_t const length = 1 + below(12);
        switch (below(4)) {
        case 0:
            text.erase(at, length);
            break;
        case 1:
            text.insert(at, text.substr(below(text.size()), length));
            break;
        case 2:
            text[at] = kText[below(kText.size())];
            break;
        default: {
            // A whole line, so that the text stays XML more often.
            std::size_t const begin = text.rfind('\n', at);
            std::size_t const end = text.find('\n', at);
            if (begin == std::string::npos || end == std::string::npos) break;
            std::string const line = text.substr(begin, end - begin);
            if (below(2) == 0)
                text.erase(begin, line.size());
            else
                text.insert(begin, line);
        }
        }
    }
    return text;
}

} // namespace

// Whatever the damage, pieces of every length give what the whole gives, and the correct text
// imports normally afterwards.
TEST(ImportCut, DamagedInputIsTheSameInPieces) {
    std::mt19937 random(20);
    int unlike = 0;
    for (int round = 0; round < 150; ++round) {
        std::string const text = damaged(random);
        ImportStore store;
        if (!store.import(text).empty()) ++unlike;
        store.each([](ZorCollection& collection) { clear(collection); });
        EXPECT_EQ(store.import(kText), "") << text;
        expectEverything(store.collection, text);
        if (testing::Test::HasFailure()) return;
    }
    EXPECT_GT(unlike, 75) << "the damage is too small to show anything";
}
