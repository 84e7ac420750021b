// Importing text: the entry point itself, encodings, and what is left after broken input.

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "tests/collection/import_store.h"
#include "zor/collection.h"

namespace {

std::string const kDefinition = "<phone><schema name='s'>"
                                "<item name='port' type='uint' default='80'/>"
                                "</schema></phone>";

} // namespace

TEST(Import, MessageStandsBehindAnUnnamedContext) {
    IncidentLog log;
    ZorCollection collection("phone");
    collection.importXML("<phone>\n  <schema/></phone>");
    EXPECT_EQ(log.take(), "3 {zor_XMLParse: line 2, column 2 }missing name attribute\n");
    collection.importXML("");
    EXPECT_EQ(log.take(), "3 {zor_XMLParse: line 1, column 0 }no element found\n");
}

TEST(Import, NullTextIsAnEmptyOne) {
    IncidentLog log;
    ZorCollection collection("phone");
    collection.importXML(nullptr);
    EXPECT_EQ(log.take(), "3 {zor_XMLParse: line 1, column 0 }no element found\n");
}

TEST(Import, TextEndsAtItsNul) {
    IncidentLog log;
    ZorCollection collection("phone");
    collection.importXML("<phone/>\0<broken");
    EXPECT_EQ(log.take(), "");
}

TEST(Import, WholeTextIsParsedWhateverItsErrors) {
    ImportStore store;
    EXPECT_EQ(store.import("<phone><schema/>" + std::string(20000, ' ') + "\n<!-- -- --></phone>"),
              errorAt(1, 7, "missing name attribute") +
                  errorAt(2, 7, "not well-formed (invalid token)"));
}

TEST(Import, WhatWasImportedBeforeAnErrorStays) {
    ImportStore store;
    EXPECT_EQ(store.import("<phone><schema name='s'><item name='a' type='int'/>"
                           "<item name='b' type='int'/>\n</phone>"),
              errorAt(2, 2, "mismatched tag"));
    EXPECT_EQ(store.shape(), "a:int b:int");
}

TEST(Import, DeclaredEncodingIsTurnedIntoUtf8) {
    ImportStore store;
    EXPECT_EQ(store.import("<?xml version='1.0' encoding='ISO-8859-1'?>"
                           "<phone><document name='d\xFC'><itemValue>\xE4\xFF</itemValue>"
                           "</document></phone>"),
              "");
    EXPECT_EQ(store.values("d\xC3\xBC"), "itemValue=\xC3\xA4\xC3\xBF*");
    EXPECT_EQ(store.import("<phone><document name='e'><itemValue>\xE4</itemValue></document>"
                           "</phone>"),
              errorAt(1, 37, "not well-formed (invalid token)"));
}

TEST(Import, EntitiesOfTheTextAreExpanded) {
    ImportStore store;
    EXPECT_EQ(store.import("<!DOCTYPE phone [<!ENTITY greeting 'hello &amp; more'>]>"
                           "<phone><document name='&greeting;'>"
                           "<itemValue>[&greeting;]</itemValue></document></phone>"),
              "");
    EXPECT_EQ(store.values("hello & more"), "itemValue=[hello & more]*");
}

TEST(Import, WhiteSpaceInAttributesIsMadeBlank) {
    ImportStore store;
    EXPECT_EQ(store.import("<phone><schema name='a\n\tb&#10;c'/></phone>"), "");
    EXPECT_EQ(store.shape("a  b\nc"), "");
}

TEST(Import, DepthIsZeroBeforeAndAfter) {
    ImportStore store;
    EXPECT_EQ(store.collection.parseDepth, 0);
    EXPECT_EQ(store.import("<broken"), errorAt(1, 0, "unclosed token"));
    EXPECT_EQ(store.collection.parseDepth, 0);
    EXPECT_EQ(store.import(kDefinition), "");
    EXPECT_EQ(store.collection.parseDepth, 0);
}

TEST(Import, ParserIsMadeOnceAndKept) {
    ImportStore store;
    EXPECT_TRUE(store.collection.parsers.empty());
    EXPECT_EQ(store.import("<phone/>"), "");
    ASSERT_EQ(store.collection.parsers.size(), 1U);
    ZorXmlParser const* const parser = store.collection.parsers[0];
    ASSERT_NE(parser->incidentContext, nullptr);
    EXPECT_EQ(parser->incidentContext->label, "");
    EXPECT_EQ(parser->incidentContext->render, nullptr);
    EXPECT_EQ(parser->incidentContext->renderData, nullptr);
    EXPECT_EQ(store.import("<phone/>"), "");
    EXPECT_EQ(store.import("<phone"), errorAt(1, 0, "unclosed token"));
    EXPECT_EQ(store.import(kDefinition), "");
    ASSERT_EQ(store.collection.parsers.size(), 1U);
    EXPECT_EQ(store.collection.parsers[0], parser);
    EXPECT_EQ(store.shape(), "port:uint=80");
}

// What is imported is the same as what is made in memory.
TEST(Import, SchemaMadeInMemoryIsFilledToo) {
    ImportStore store;
    store.each([](ZorCollection& collection) {
        ZorSchema* const schema = collection.makeSchema("s");
        ZorSchemaNode* const line = schema->makeBranchNode(schema->getRootNode(), "line", 2);
        schema->makeDataNode(line, "label", 1, schema->getDataType("string"), "none");
    });
    EXPECT_EQ(store.fill("<line/><line><label>a</label></line>"), "");
    EXPECT_EQ(store.values(), "line/label=none|a*");
}

// What export writes, import reads: the same values, and the same text again.
TEST(Import, ExportedCollectionCanBeImported) {
    ImportStore store;
    EXPECT_EQ(store.import("<phone><schema name='s'>"
                           "<choice name='mode'><option>on</option><option>off</option></choice>"
                           "<range name='level' baseType='int' minValue='-3' maxValue='3'/>"
                           "<branch name='line' occurrences='3'/>"
                           "<branch name='key' occurrences='2' parent='line'/>"
                           "<item name='label' type='string' default='' parent='line/key'/>"
                           "<item name='mode' type='mode' default='off' parent='line'/>"
                           "<item name='level' type='level' occurrences='2'/>"
                           "</schema><document name='d' schema='s'>"
                           "<line occurrence='2'><key/><key><label>a &lt;b&gt;</label></key>"
                           "<mode>on</mode></line><level occurrence='2'>-2</level></document>"
                           "<document name='e' schema='s'><line><key><label>\"\"</label></key>"
                           "</line></document></phone>"),
              "");
    std::string const text = store.collection.exportAll();
    ImportStore copy;
    EXPECT_EQ(copy.import(text), "");
    EXPECT_EQ(copy.content(), store.content());
    EXPECT_EQ(copy.collection.exportAll(), text);
}

// The collection may die with an import that stopped inside everything.
TEST(Import, CollectionMayDieAfterAnUnfinishedImport) {
    IncidentLog log;
    for (char const* const text :
         {"<phone><schema name='s'><item name='a' type='int' default='5'>",
          "<phone><schema name='s'><range name='r' baseType='int' minValue='1' maxValue='2'>",
          "<phone><document name='d'><itemValue>five",
          "<phone><collection name='c'><document name='d'><itemValue>five"}) {
        auto collection = std::make_unique<ZorCollection>("phone");
        collection->importXML(text);
        EXPECT_EQ(log.take(),
                  errorAt(1, static_cast<int>(std::string(text).size()), "no element found"));
        collection.reset();
    }
}

// The rules of a document that was left open are gone before its schema is, whatever is imported
// next.
TEST(Import, SchemaMayBeDeletedAfterAnUnfinishedDocument) {
    std::string const unfinished = "<phone><schema name='s'><branch name='b' occurrences='2'/>"
                                   "<item name='a' type='string' parent='b'/></schema>"
                                   "<document name='d' schema='s'>\n<b><a>x</a></b><b><a>y";
    struct {
        char const* text;
        std::string incidents;
        char const* values;
    } const rows[] = {
        {"<phone><document name='d'><itemValue>5</itemValue></document></phone>", "",
         "itemValue=5*"},
        {"<phone><schema name='s'><item name='a' type='int'/></schema>"
         "<document name='d' schema='s'><a>5</a></document></phone>",
         "", "a=5*"},
        {"<phone><document name='d'>\n<b><a>z</a></b></document></phone>",
         notRecognisedAt(2, 0, "b", {"itemValue"}, "document", "phone"), "itemValue="},
        {"<phone><document name='d'>", errorAt(1, 26, "no element found"), "itemValue="},
        {"<phone/>", "", "no document"},
        {"", errorAt(1, 0, "no element found"), "no document"},
    };
    for (auto const& row : rows) {
        ImportStore store;
        EXPECT_EQ(store.import(unfinished), errorAt(2, 22, "no element found"));
        EXPECT_EQ(store.values(), "b/a=x*|(null)");
        store.each([](ZorCollection& collection) {
            collection.deleteDocument("d");
            collection.deleteSchema("s");
        });
        EXPECT_EQ(store.import(row.text), row.incidents) << row.text;
        EXPECT_EQ(store.values(), row.values) << row.text;
    }
}

// The same when an error kept the document's end from being handled.
TEST(Import, SchemaMayBeDeletedAfterAnErrorInsideADocument) {
    ImportStore store;
    EXPECT_EQ(store.import("<phone><schema name='s'><branch name='b'/>"
                           "<item name='a' type='string' parent='b'/></schema>"
                           "<document name='d' schema='s'>\n<b><a>x</a><a>y</a></b></document>"
                           "</phone>"),
              errorAt(2, 11, "Too many occurrences of element <a>"));
    store.each([](ZorCollection& collection) {
        collection.deleteAllDocuments();
        collection.deleteSchema("s");
    });
    EXPECT_EQ(store.import("<phone>\n<document name='d'>\n<b><a>z</a></b></document></phone>"),
              notRecognisedAt(3, 0, "b", {"itemValue"}, "document", "phone"));
    EXPECT_EQ(store.values(), "itemValue=");
}

// Within one import, too, the next document begins with rules of its own.
TEST(Import, RulesOfAnUnendedDocumentAreGoneAtTheNext) {
    ImportStore store;
    EXPECT_EQ(store.define("<item name='a' type='string'/>"), "");
    EXPECT_EQ(store.import("<phone>\n"
                           "<document name='d' schema='s'><a>x</a>\n"
                           "<a>y</a></document>\n"
                           "<document name='e' x=''>\n"
                           "<a>z</a><itemValue>v</itemValue></document></phone>"),
              errorAt(3, 0, "Too many occurrences of element <a>") +
                  warningAt(4, 0, "attribute not valid in this context (x)") +
                  notRecognisedAt(5, 0, "a", {"itemValue"}, "document", "phone"));
    EXPECT_EQ(store.values("d"), "a=x*");
    EXPECT_EQ(store.values("e"), "itemValue=v*");
}

// A text or attribute that no string can hold is refused before it is stored.
TEST(Import, TextLongerThanAStringIsRefused) {
    std::string const longest(65534, 'x');
    IncidentLog log;
    ZorCollection collection("phone");
    collection.importXML(
        ("<phone><document name='d'><itemValue>" + longest + "</itemValue></document></phone>")
            .c_str());
    EXPECT_EQ(log.take(), "");
    EXPECT_EQ(valuesOf(collection.getDocument("d")), "itemValue=" + longest + '*');
    collection.importXML(
        ("<phone><document name='e'>\n<itemValue>" + longest + "x</itemValue></document></phone>")
            .c_str());
    EXPECT_EQ(log.take(), errorAt(2, 11, "text is too long in element <itemValue>"));
    EXPECT_EQ(valuesOf(collection.getDocument("e")), "itemValue=");
    collection.importXML(
        ("<phone>\n<document name='" + longest + "x'></document>\n</phone>").c_str());
    EXPECT_EQ(log.take(),
              errorAt(2, 0, "text is too long in element <document>") + unwoundAt(3, 0, "phone"));
    collection.importXML(("<phone>\n<schema name='" + longest + "x'/>\n</phone>").c_str());
    EXPECT_EQ(log.take(),
              errorAt(2, 0, "text is too long in element <schema>") + unwoundAt(3, 0, "phone"));
}
