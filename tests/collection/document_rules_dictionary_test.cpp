// Documents whose schema comes from a dictionary: what it is asked, and the imports within imports.

#include <gtest/gtest.h>

#include <string>

#include "tests/collection/import_store.h"
#include "tests/collection/objects.h"
#include "zor/collection.h"

namespace {

constexpr char kUnresolved[] = "problem resolving document and schema name";

// A definition of schema NAME with one item, called as the schema.
std::string definitionOf(std::string const& name) {
    return "<phone><schema name='" + name + "'><item name='" + name +
           "' type='int'/></schema></phone>";
}

// A text with one <document> in line 2.
std::string documentText(std::string const& attributes, std::string const& content = "") {
    return "<phone>\n<document " + attributes + '>' + content + "</document></phone>";
}

} // namespace

TEST(DictionaryImport, UnknownSchemaIsFetched) {
    TestDictionary dictionary;
    dictionary.definitions["s"] = definitionOf("s");
    ImportStore store(&dictionary);
    EXPECT_EQ(store.import(documentText("name='d' schema='s'", "<s>5</s>")), "");
    EXPECT_EQ(store.calls(), "definition s;");
    EXPECT_EQ(store.values(), "s=5*");
    EXPECT_EQ(store.import(documentText("name='e' schema='s'", "<s>6</s>")), "");
    EXPECT_EQ(store.calls(), "") << "a schema that is there is not fetched again";
    EXPECT_EQ(store.values("e"), "s=6*");
}

TEST(DictionaryImport, SchemaThatTheDictionaryDoesNotKnowIsRefused) {
    TestDictionary dictionary;
    ImportStore store(&dictionary);
    EXPECT_EQ(store.import(documentText("name='d' schema='s'")),
              plainError("unknown schema name") + errorAt(2, 0, kUnresolved));
    EXPECT_EQ(store.calls(), "definition s;");
    EXPECT_EQ(store.values(), "no document");
}

TEST(DictionaryImport, SchemaNameIsAskedForWhenItIsNotGiven) {
    TestDictionary dictionary;
    dictionary.schemaNames["d"] = "s";
    dictionary.definitions["s"] = definitionOf("s");
    ImportStore store(&dictionary);
    EXPECT_EQ(store.import(documentText("name='d'", "<s>5</s>")), "");
    EXPECT_EQ(store.calls(), "name d;definition s;");
    EXPECT_EQ(store.values(), "s=5*");
}

TEST(DictionaryImport, DocumentThatTheDictionaryDoesNotKnowGetsTheDefaultSchema) {
    TestDictionary dictionary;
    ImportStore store(&dictionary);
    EXPECT_EQ(store.import(documentText("name='d'", "<itemValue>5</itemValue>")), "");
    EXPECT_EQ(store.calls(), "name d;");
    EXPECT_EQ(store.values(), "itemValue=5*");
}

TEST(DictionaryImport, ExistingDocumentIsNoneOfItsBusiness) {
    TestDictionary dictionary;
    dictionary.schemaNames["d"] = "s";
    dictionary.definitions["s"] = definitionOf("s");
    dictionary.definitions["t"] = definitionOf("t");
    ImportStore store(&dictionary);
    EXPECT_EQ(store.import(documentText("name='d'")), "");
    EXPECT_EQ(store.import(documentText("name='d'", "<s>1</s>")), "");
    EXPECT_EQ(store.calls(), "");
    EXPECT_EQ(store.import(documentText("name='d' schema='s'", "<s>2</s>")), "");
    EXPECT_EQ(store.calls(), "");
    EXPECT_EQ(store.import(documentText("name='d' schema='t'")),
              plainError("Existing Document d incompatible with schema t") +
                  errorAt(2, 0, kUnresolved));
    EXPECT_EQ(store.calls(), "");
    EXPECT_EQ(store.values(), "s=2*");
}

// Without a schema attribute the definition is imported whether it is needed or not.
TEST(DictionaryImport, DefinitionOfAKnownSchemaIsImportedAgain) {
    TestDictionary dictionary;
    dictionary.schemaNames["d"] = "s";
    dictionary.definitions["s"] =
        "<phone>\n <schema name='s'><item name='other' type='int'/></schema></phone>";
    ImportStore store(&dictionary);
    EXPECT_EQ(store.import(definitionOf("s")), "");
    EXPECT_EQ(store.import(documentText("name='d'", "<s>5</s>")),
              warningAt(2, 1, "Schema s Already Exists"));
    EXPECT_EQ(store.calls(), "name d;definition s;");
    EXPECT_EQ(store.values(), "s=5*");
}

// Nor is it tested for being empty.
TEST(DictionaryImport, EmptyDefinitionOfAKnownSchemaIsOnlyReported) {
    TestDictionary dictionary;
    dictionary.schemaNames["d"] = "s";
    ImportStore store(&dictionary);
    EXPECT_EQ(store.import(definitionOf("s")), "");
    EXPECT_EQ(store.import(documentText("name='d'", "<s>5</s>")),
              errorAt(1, 0, "no element found"));
    EXPECT_EQ(store.calls(), "name d;definition s;");
    EXPECT_EQ(store.values(), "s=5*");
}

// Whatever the definition is, it is the schema that counts.
TEST(DictionaryImport, DefinitionThatDoesNotDefineTheSchemaLeavesTheDocumentUnresolved) {
    struct {
        char const* definition;
        std::string incidents;
    } const rows[] = {
        {"<phone/>", ""},
        {"<phone><schema name='S'/></phone>", ""},
        {"<phone><collection name='c'><schema name='s'/></collection></phone>", ""},
        {"no XML", errorAt(1, 0, "syntax error")},
        {"<phone><schema/></phone>", errorAt(1, 7, "missing name attribute")},
        {"<fone><schema name='s'/></fone>",
         warningAt(1, 0, "element not recognised in this context <fone>") +
             warningAt(1, 0,
                       "Element is 'fone'. Possible valid elements are 'phone' . "
                       "outerContext->currentElement->elementName = 'root-node'")},
    };
    std::string const unresolved =
        plainError("ZorCollection::makeDocument{Schema (s) does not exist}") +
        errorAt(2, 0, kUnresolved);
    for (auto const& row : rows) {
        TestDictionary dictionary;
        dictionary.schemaNames["e"] = "s";
        dictionary.definitions["s"] = row.definition;
        ImportStore store(&dictionary);
        EXPECT_EQ(store.import(documentText("name='d' schema='s'")), row.incidents + unresolved)
            << row.definition;
        EXPECT_EQ(store.calls(), "definition s;");
        EXPECT_EQ(store.collection.getDocuments(), nullptr);

        ImportStore other(&dictionary);
        EXPECT_EQ(other.import(documentText("name='e'")), row.incidents + unresolved)
            << row.definition;
        EXPECT_EQ(other.calls(), "name e;definition s;");
        EXPECT_EQ(other.collection.getDocuments(), nullptr);
    }
}

TEST(DictionaryImport, EmptyDefinitionOfAnUnknownSchemaLeavesTheDocumentUnresolved) {
    TestDictionary dictionary;
    dictionary.schemaNames["d"] = "s";
    ImportStore store(&dictionary);
    EXPECT_EQ(store.import(documentText("name='d'")),
              errorAt(1, 0, "no element found") +
                  plainError("ZorCollection::makeDocument{Schema (s) does not exist}") +
                  errorAt(2, 0, kUnresolved));
    EXPECT_EQ(store.calls(), "name d;definition s;");
}

// An error in a definition is that of its own parser: the document around it goes on.
TEST(DictionaryImport, ErrorInADefinitionDoesNotStopTheImportAroundIt) {
    TestDictionary dictionary;
    dictionary.definitions["s"] = "<phone><schema name='s'><item name='a' type='int'/>\n"
                                  "<item name='b' type='nope'/></schema></phone>";
    ImportStore store(&dictionary);
    EXPECT_EQ(store.import("<phone><document name='d' schema='s'><a>1</a></document>"
                           "<document name='e' schema='s'><a>2</a></document></phone>"),
              errorAt(2, 0, "type (nope) not found"));
    EXPECT_EQ(store.values("d"), "a=1*");
    EXPECT_EQ(store.values("e"), "a=2*");
}

// The document around a definition goes on where it was, in its own line and column.
TEST(DictionaryImport, PositionsAreThoseOfTheTextThatIsParsed) {
    TestDictionary dictionary;
    dictionary.definitions["s"] = "<phone>\n\n\n\n  <schema name='s' x=''>"
                                  "<item name='a' type='int'/></schema></phone>";
    ImportStore store(&dictionary);
    EXPECT_EQ(store.import(documentText("name='d' schema='s'", "\n   <b/>")),
              warningAt(5, 2, "attribute not valid in this context (x)") +
                  notRecognisedAt(3, 3, "b", {"a"}, "document", "phone"));
}

// A definition may bring documents, and they schemas of their own.
TEST(DictionaryImport, DefinitionsMayNest) {
    TestDictionary dictionary;
    dictionary.schemaNames["z"] = "c";
    dictionary.definitions["a"] =
        "<phone><document name='y' schema='b'><b>2</b></document>" + definitionOf("a").substr(7);
    dictionary.definitions["b"] =
        "<phone><document name='z'><c>3</c></document>" + definitionOf("b").substr(7);
    dictionary.definitions["c"] = definitionOf("c");
    ImportStore store(&dictionary);
    EXPECT_EQ(store.import(documentText("name='x' schema='a'", "<a>1</a>")), "");
    EXPECT_EQ(store.calls(), "definition a;definition b;name z;definition c;");
    EXPECT_EQ(store.values("x"), "a=1*");
    EXPECT_EQ(store.values("y"), "b=2*");
    EXPECT_EQ(store.values("z"), "c=3*");
    EXPECT_EQ(store.collection.parsers.size(), 4U);
    EXPECT_EQ(store.collection.parseDepth, 0);
}

// The definition may make the very document that waits for it.
TEST(DictionaryImport, DefinitionThatMakesTheDocumentLeavesItUnresolved) {
    TestDictionary dictionary;
    dictionary.definitions["s"] = "<phone><schema name='s'><item name='s' type='int'/></schema>"
                                  "<document name='d' schema='s'><s>7</s></document></phone>";
    ImportStore store(&dictionary);
    EXPECT_EQ(store.import(documentText("name='d' schema='s'")),
              plainError("ZorCollection::makeDocument{Document (d) already exists}") +
                  errorAt(2, 0, kUnresolved));
    EXPECT_EQ(store.values(), "s=7*");
}

// A sub-collection has the dictionary that the host gives it, and the definition's root is called
// like it.
TEST(DictionaryImport, SubCollectionAsksItsOwnDictionary) {
    TestDictionary dictionary;
    dictionary.definitions["s"] = "<lines><schema name='s'><item name='i' type='int'/></schema>"
                                  "</lines>";
    ImportStore store;
    EXPECT_EQ(store.import("<phone><collection name='lines'/></phone>"), "");
    store.each([&dictionary](ZorCollection& collection) {
        collection.getCollection("lines")->setDictionary(&dictionary);
    });
    EXPECT_EQ(store.import("<phone><collection name='lines'><document name='d' schema='s'>"
                           "<i>5</i></document></collection></phone>"),
              "");
    EXPECT_EQ(valuesOf(store.collection.getCollection("lines")->getDocument("d")), "i=5*");
    EXPECT_EQ(store.shape(), "no schema");
}

// Names reach the dictionary as they stand in the text, decoded.
TEST(DictionaryImport, NamesReachTheDictionaryDecoded) {
    TestDictionary dictionary;
    dictionary.schemaNames[" a&b "] = "<s>";
    dictionary.definitions["<s>"] =
        "<phone><schema name='&lt;s>'><item name='i' type='int'/></schema></phone>";
    ImportStore store(&dictionary);
    EXPECT_EQ(store.import(documentText("name=' a&amp;b '", "<i>5</i>")), "");
    EXPECT_EQ(store.calls(), "name  a&b ;definition <s>;");
    EXPECT_EQ(store.values(" a&b "), "i=5*");
}

namespace {

// A dictionary that imports a definition itself before it answers.
class ImportingDictionary : public ZorDictionary {
public:
    std::string getSchemaName(std::string const&) override {
        collection->importXML("<phone>\n\n<schema name='first' x=''/></phone>");
        return "second";
    }
    std::string getSchemaDefinition(std::string const& schemaName) override {
        EXPECT_NE(collection->getSchema("first"), nullptr);
        return definitionOf(schemaName);
    }
    ZorCollection* collection = nullptr;
};

} // namespace

// The host may import into the collection from within the dictionary.
TEST(DictionaryImport, DictionaryMayImport) {
    ImportingDictionary dictionary;
    IncidentLog log;
    ZorCollection collection("phone", &dictionary);
    dictionary.collection = &collection;
    collection.importXML(documentText("name='d'", "<second>5</second>").c_str());
    EXPECT_EQ(log.take(), warningAt(3, 0, "attribute not valid in this context (x)"));
    EXPECT_EQ(valuesOf(collection.getDocument("d")), "second=5*");
    EXPECT_EQ(collection.parsers.size(), 2U);
}

// Each depth has a parser of its own, made when it is first needed and kept.
TEST(DictionaryImport, ParsersAreKeptByDepth) {
    TestDictionary dictionary;
    IncidentLog log;
    ZorCollection collection("phone", &dictionary);
    EXPECT_EQ(collection.parsers.size(), 0U);
    collection.importXML(definitionOf("a").c_str());
    ASSERT_EQ(collection.parsers.size(), 1U);
    ZorXmlParser const* const first = collection.parsers[0];
    dictionary.definitions["b"] = definitionOf("b");
    collection.importXML(documentText("name='d' schema='b'", "<b>1</b>").c_str());
    ASSERT_EQ(collection.parsers.size(), 2U);
    EXPECT_EQ(collection.parsers[0], first);
    ZorXmlParser const* const second = collection.parsers[1];
    EXPECT_NE(first->incidentContext, second->incidentContext);
    dictionary.definitions["c"] = definitionOf("c");
    collection.importXML(definitionOf("e").c_str());
    collection.importXML(documentText("name='f' schema='c'", "<c>2</c>").c_str());
    ASSERT_EQ(collection.parsers.size(), 2U);
    EXPECT_EQ(collection.parsers[0], first);
    EXPECT_EQ(collection.parsers[1], second);
    EXPECT_EQ(valuesOf(collection.getDocument("f")), "c=2*");
    EXPECT_EQ(collection.parseDepth, 0);
}

namespace {

// A dictionary every one of whose schemas has a definition that needs the next one.
class EndlessDictionary : public ZorDictionary {
public:
    std::string getSchemaName(std::string const&) override { return ""; }
    std::string getSchemaDefinition(std::string const& schemaName) override {
        ++asked;
        deepest = std::max(deepest, collection->parseDepth);
        if (asked == enough) return definitionOf(schemaName);
        std::string const next = 's' + std::to_string(asked);
        std::string const own = definitionOf(schemaName);
        return own.substr(0, own.size() - 8) + "\n<document name='of " + next + "' schema='" +
               next + "'></document></phone>";
    }

    ZorCollection* collection = nullptr;
    int asked = 0;
    int enough = 0;
    int deepest = 0;
};

} // namespace

// Sixteen imports may run within each other, the outermost included.
TEST(DictionaryImport, SixteenImportsMayNest) {
    EndlessDictionary dictionary;
    dictionary.enough = 15;
    IncidentLog log;
    ZorCollection collection("phone", &dictionary);
    dictionary.collection = &collection;
    collection.importXML(documentText("name='d' schema='s'", "<s>1</s>").c_str());
    EXPECT_EQ(log.take(), "");
    EXPECT_EQ(dictionary.deepest, 15);
    EXPECT_EQ(collection.parsers.size(), 16U);
    EXPECT_EQ(collection.parseDepth, 0);
    EXPECT_EQ(valuesOf(collection.getDocument("d")), "s=1*");
    EXPECT_EQ(valuesOf(collection.getDocument("of s14")), "s14=(null)");
}

// The next one is refused, and its document is unresolved; all others are made.
TEST(DictionaryImport, SeventeenthImportIsRefused) {
    EndlessDictionary dictionary;
    IncidentLog log;
    ZorCollection collection("phone", &dictionary);
    dictionary.collection = &collection;
    collection.importXML(documentText("name='d' schema='s'", "<s>1</s>").c_str());
    EXPECT_EQ(log.take(),
              "3 schema definitions are nested too deeply\n"
              "3 ZorCollection::makeDocument{Schema (s15) does not exist}\n"
              "3 {zor_XMLParse: line 2, column 0 }problem resolving document and schema name\n");
    EXPECT_EQ(dictionary.asked, 16);
    EXPECT_EQ(dictionary.deepest, 16);
    EXPECT_EQ(collection.parsers.size(), 16U);
    EXPECT_EQ(collection.parseDepth, 0);
    EXPECT_EQ(valuesOf(collection.getDocument("d")), "s=1*");
    EXPECT_EQ(valuesOf(collection.getDocument("of s14")), "s14=(null)");
    EXPECT_EQ(collection.getDocument("of s15"), nullptr);
}

// A definition that asks for itself again is the same case.
TEST(DictionaryImport, DefinitionThatNeedsItselfIsStopped) {
    TestDictionary dictionary;
    dictionary.definitions["s"] = documentText("name='d' schema='s'");
    IncidentLog log;
    ZorCollection collection("phone", &dictionary);
    collection.importXML(documentText("name='d' schema='s'").c_str());
    std::string expected = plainError("schema definitions are nested too deeply");
    std::string calls;
    for (int depth = 0; depth < 16; ++depth) {
        expected += plainError("ZorCollection::makeDocument{Schema (s) does not exist}") +
                    errorAt(2, 0, kUnresolved);
        calls += "definition s;";
    }
    EXPECT_EQ(log.take(), expected);
    EXPECT_EQ(dictionary.takeCalls(), calls);
    // Nothing is left of it: the next import finds its way.
    dictionary.definitions["s"] = definitionOf("s");
    collection.importXML(documentText("name='d' schema='s'", "<s>5</s>").c_str());
    EXPECT_EQ(log.take(), "");
    EXPECT_EQ(valuesOf(collection.getDocument("d")), "s=5*");
    EXPECT_EQ(collection.parsers.size(), 16U);
}
