// <document>: which document it fills, and the rules it lends from the schema.

#include <gtest/gtest.h>

#include <string>

#include "collection/import_rule_info.h"
#include "tests/collection/import_store.h"
#include "tests/collection/objects.h"
#include "zor/collection.h"

namespace {

constexpr char kUnresolved[] = "problem resolving document and schema name";

// The content of the schema that most tests fill.
std::string const kSchema = "<item name='port' type='uint' default='80'/>"
                            "<branch name='line' occurrences='2'/>"
                            "<item name='label' type='string' parent='line'/>";
constexpr char kUntouched[] = "port=80 line/label=(null)|(null)";

// A store with that schema.
class DocumentStore : public ImportStore {
public:
    explicit DocumentStore(TestDictionary* schemaDictionary = nullptr)
        : ImportStore(schemaDictionary) {
        EXPECT_EQ(define(kSchema), "");
    }

    // Imports a <document> of these attributes and that content, in line 2.
    std::string document(std::string const& attributes, std::string const& content = "") {
        return import("<phone>\n<document " + attributes + '>' + content + "</document></phone>");
    }
};

ZorElementParseRules const* ruleAt(ZorListNode const* node) {
    return static_cast<ZorElementParseRules const*>(node->value);
}

// "NAME USAGE (ATTRIBUTES) {INNER RULES}"
std::string described(ZorElementParseRules const* rule) {
    std::string text =
        std::string(rule->elementName->text) + ' ' + std::to_string(rule->characterData) + " (";
    for (ZorListNode const* node = rule->attributes; node; node = node->next) {
        text += static_cast<ZorString const*>(node->value)->text;
    }
    text += ") {";
    for (ZorListNode const* node = rule->innerRules; node; node = node->next) {
        text += described(ruleAt(node)) + (node->next ? " " : "");
    }
    return text + '}';
}

} // namespace

TEST(DocumentRule, TakesNameAndSchemaAndHasARecordOfItsOwn) {
    ZorElementParseRules* const rule = zor_getDocumentParseRules();
    EXPECT_EQ(rule->refCount, 0);
    EXPECT_STREQ(rule->elementName->text, "document");
    EXPECT_EQ(rule->characterData, ignoreCharacterData);
    EXPECT_NE(rule->startElement, nullptr);
    EXPECT_NE(rule->endElement, nullptr);
    EXPECT_EQ(rule->innerRules, nullptr);
    ASSERT_NE(rule->attributes, nullptr);
    EXPECT_STREQ(static_cast<ZorString*>(rule->attributes->value)->text, "name");
    ASSERT_NE(rule->attributes->next, nullptr);
    EXPECT_STREQ(static_cast<ZorString*>(rule->attributes->next->value)->text, "schema");
    EXPECT_EQ(rule->attributes->next->next, nullptr);
    auto const* const info =
        static_cast<ImportRuleInfo*>(zor_XMLParseRulesGetElementUserData(rule));
    ASSERT_NE(info, nullptr);
    EXPECT_EQ(info->definitionNode, nullptr);
    EXPECT_EQ(info->currentParentIndex, 0U);
    EXPECT_EQ(info->occurrenceInParent, 0U);
    EXPECT_EQ(info->valueIndex, 0U);
    EXPECT_EQ(rule->freeElementUserData, deleteImportRuleInfo);
    delete rule;
}

TEST(DocumentRule, EveryCallMakesAFreshOne) {
    ZorElementParseRules* const first = zor_getDocumentParseRules();
    ZorElementParseRules* const second = zor_getDocumentParseRules();
    EXPECT_NE(first, second);
    EXPECT_NE(first->elementUserData, second->elementUserData);
    delete first;
    delete second;
}

// A rule of a data node keeps its text as it stands; both kinds take an occurrence.
TEST(DocumentRule, NodeRulesFollowTheSchema) {
    DocumentStore store;
    auto* const rule = new ZorElementParseRules("document", ignoreCharacterData, nullptr, nullptr);
    zor_internal::addNodeRules(rule, store.collection.getSchema("s")->getRootNode());
    EXPECT_EQ(described(rule), "document 0 () {port 2 (occurrence) {} "
                               "line 0 (occurrence) {label 2 (occurrence) {}}}");
    for (ZorListNode const* node = rule->innerRules; node; node = node->next) {
        ZorElementParseRules const* const inner = ruleAt(node);
        EXPECT_EQ(inner->refCount, 1);
        EXPECT_NE(inner->startElement, nullptr);
        EXPECT_NE(inner->endElement, nullptr);
        EXPECT_EQ(inner->freeElementUserData, deleteImportRuleInfo);
        auto const* const info = static_cast<ImportRuleInfo*>(inner->elementUserData);
        EXPECT_STREQ(info->definitionNode->getName(), inner->elementName->text);
        EXPECT_EQ(info->currentParentIndex, 0U);
        EXPECT_EQ(info->occurrenceInParent, 0U);
        EXPECT_EQ(info->valueIndex, 0U);
    }
    delete rule;
}

TEST(DocumentImport, MakesADocumentOfTheSchema) {
    DocumentStore store;
    EXPECT_EQ(store.document("name='d' schema='s'", "<port>8080</port><line><label>a</label></line>"
                                                    "<line><label>b</label></line>"),
              "");
    EXPECT_EQ(store.values(), "port=8080* line/label=a*|b*");
    EXPECT_STREQ(store.collection.getDocument("d")->getName(), "d");
    EXPECT_EQ(store.collection.getSchema("s")->documentCount(), 1);
}

// What is left out keeps its default and is not changed.
TEST(DocumentImport, ElementsMayBeLeftOut) {
    DocumentStore store;
    EXPECT_EQ(store.document("name='d' schema='s'"), "");
    EXPECT_EQ(store.values(), kUntouched);
    EXPECT_EQ(store.document("name='e' schema='s'", "<line/><line><label>b</label></line>"), "");
    EXPECT_EQ(store.values("e"), "port=80 line/label=(null)|b*");
}

TEST(DocumentImport, ElementsMayComeInAnyOrder) {
    DocumentStore store;
    EXPECT_EQ(store.document("name='d' schema='s'", "<line><label>a</label></line><port>1</port>"
                                                    "<line><label>b</label></line>"),
              "");
    EXPECT_EQ(store.values(), "port=1* line/label=a*|b*");
}

TEST(DocumentImport, NameIsNeeded) {
    DocumentStore store;
    std::string const before = store.content();
    std::string const expected =
        plainError("missing \"name\" attribute") + errorAt(2, 0, kUnresolved);
    EXPECT_EQ(store.document(""), expected);
    EXPECT_EQ(store.document("schema='s'"), expected);
    EXPECT_EQ(store.document("schema='nope'"), expected);
    EXPECT_EQ(store.content(), before);
}

// Only absence is refused; blanks are part of a name.
TEST(DocumentImport, NameIsTakenAsItStands) {
    DocumentStore store;
    EXPECT_EQ(store.document("name='' schema='s'", "<port>1</port>"), "");
    EXPECT_EQ(store.document("name=' d ' schema='s'", "<port>2</port>"), "");
    EXPECT_EQ(store.values(""), "port=1* line/label=(null)|(null)");
    EXPECT_EQ(store.values(" d "), "port=2* line/label=(null)|(null)");
    EXPECT_EQ(store.values("d"), "no document");
}

TEST(DocumentImport, TakesNoOtherAttribute) {
    DocumentStore store;
    EXPECT_EQ(store.document("name='d' schema='s' occurrence='2'"),
              warningAt(2, 0, "attribute not valid in this context (occurrence)"));
    EXPECT_EQ(store.values(), kUntouched);
}

TEST(DocumentImport, ExistingDocumentIsFilled) {
    DocumentStore store;
    EXPECT_EQ(store.document("name='d' schema='s'", "<port>1</port>"), "");
    ZorDocument const* const document = store.collection.getDocument("d");
    EXPECT_EQ(store.document("name='d' schema='s'", "<line><label>a</label></line>"), "");
    EXPECT_EQ(store.document("name='d'", "<line occurrence='2'><label>b</label></line>"), "");
    EXPECT_EQ(store.collection.getDocument("d"), document);
    EXPECT_EQ(store.values(), "port=1* line/label=a*|b*");
}

// The counters are those of one <document> element.
TEST(DocumentImport, ExistingDocumentIsCountedFromTheStart) {
    DocumentStore store;
    EXPECT_EQ(store.import("<phone><document name='d' schema='s'>"
                           "<line><label>a</label></line></document>"
                           "<document name='d'><line><label>b</label></line></document></phone>"),
              "");
    EXPECT_EQ(store.values(), "port=80 line/label=b*|(null)");
}

TEST(DocumentImport, OtherSchemaOfAnExistingDocumentIsRefused) {
    for (std::string const schemaName : {"t", "nope", "S", " s", ""}) {
        DocumentStore store;
        EXPECT_EQ(store.import("<phone><schema name='t'/><document name='d' schema='s'>"
                               "<port>1</port></document></phone>"),
                  "");
        std::string const before = store.content();
        EXPECT_EQ(store.document("name='d' schema='" + schemaName + "'"),
                  plainError("Existing Document d incompatible with schema " + schemaName) +
                      errorAt(2, 0, kUnresolved));
        EXPECT_EQ(store.content(), before);
    }
}

TEST(DocumentImport, DefaultSchemaMayBeNamed) {
    DocumentStore store;
    EXPECT_EQ(store.document("name='d' schema='DefaultSchema'", "<itemValue>a</itemValue>"), "");
    EXPECT_EQ(store.document("name='d' schema='DefaultSchema'", "<itemValue>b</itemValue>"), "");
    EXPECT_EQ(store.values(), "itemValue=b*");
}

TEST(DocumentImport, UnknownSchemaIsRefusedWithoutDictionary) {
    DocumentStore store;
    std::string const before = store.content();
    for (char const* const schemaName : {"nope", "S", " s", ""}) {
        EXPECT_EQ(store.document(std::string("name='d' schema='") + schemaName + "'"),
                  plainError("unknown schema name") + errorAt(2, 0, kUnresolved))
            << schemaName;
    }
    EXPECT_EQ(store.content(), before);
}

TEST(DocumentImport, WithoutSchemaAndDictionaryTheDefaultSchemaIsUsed) {
    DocumentStore store;
    EXPECT_EQ(store.document("name='d'", "<itemValue>some text</itemValue>"), "");
    EXPECT_EQ(store.values(), "itemValue=some text*");
    EXPECT_STREQ(store.collection.getDocument("d")->getRootNode()->getName(), "DefaultSchema");
}

// Its absence is reported like that of any other schema.
TEST(DocumentImport, DefaultSchemaMayBeGone) {
    DocumentStore store;
    store.each([](ZorCollection& collection) { collection.deleteSchema("DefaultSchema"); });
    EXPECT_EQ(store.document("name='d'"),
              plainError("ZorCollection::makeDocument{Schema (DefaultSchema) does not exist}") +
                  errorAt(2, 0, kUnresolved));
    EXPECT_EQ(store.values(), "no document");
}

// Another schema of that name takes its place.
TEST(DocumentImport, DefaultSchemaMayBeReplaced) {
    DocumentStore store;
    store.each([](ZorCollection& collection) { collection.deleteSchema("DefaultSchema"); });
    EXPECT_EQ(store.import("<phone><schema name='DefaultSchema'>"
                           "<item name='n' type='int'/></schema>"
                           "<document name='d'><n>5</n></document></phone>"),
              "");
    EXPECT_EQ(store.values(), "n=5*");
}

// The error keeps the content from being looked at until its first unknown element lifts it; even
// then there are no rules for it.
TEST(DocumentImport, ContentOfAnUnresolvedDocumentIsNotStored) {
    DocumentStore store;
    EXPECT_EQ(store.document("name='d' schema='nope'", "\n<port>1</port>\n<line/>"),
              plainError("unknown schema name") + errorAt(2, 0, kUnresolved) +
                  notRecognisedAt(3, 0, "port", {}, "document", "phone") +
                  notRecognisedAt(4, 0, "line", {}, "document", "phone"));
    EXPECT_EQ(store.values(), "no document");
}

TEST(DocumentImport, ElementThatNamesNoNodeIsNotRecognised) {
    DocumentStore store;
    EXPECT_EQ(store.document("name='d' schema='s'", "\n<label>a</label>\n<line>\n<port>1</port>"
                                                    "<label>b</label></line><port>2</port>"),
              notRecognisedAt(3, 0, "label", {"port", "line"}, "document", "phone") +
                  notRecognisedAt(5, 0, "port", {"label"}, "line", "document"));
    EXPECT_EQ(store.values(), "port=2* line/label=b*|(null)");
}

// The rule has node rules from the start of its element to the end, and no longer.
TEST(DocumentImport, NodeRulesGoWithTheDocument) {
    IncidentLog log;
    ZorCollection collection("phone");
    ZorIncidentContext incidents("", nullptr, nullptr);
    ZorXmlParser parser(&collection, &incidents);
    parser.parse(("<phone><schema name='s'>" + kSchema + "</schema>").c_str(), -1, 0);
    ZorElementParseRules const* const root = parser.currentContext->parseRules;
    ZorElementParseRules const* const rule = ruleAt(root->innerRules->next->next);
    ASSERT_STREQ(rule->elementName->text, "document");
    EXPECT_EQ(rule->innerRules, nullptr);
    parser.parse("<document name='d' schema='s'>", -1, 0);
    EXPECT_EQ(described(rule), "document 0 (nameschema) {port 2 (occurrence) {} "
                               "line 0 (occurrence) {label 2 (occurrence) {}}}");
    parser.parse("<port>1</port></document>", -1, 0);
    EXPECT_EQ(rule->innerRules, nullptr);
    parser.parse("<document name='e'>", -1, 0);
    EXPECT_EQ(described(rule), "document 0 (nameschema) {itemValue 2 (occurrence) {}}");
    // An error keeps the end from being handled; the next start makes up for it.
    incidents.setMaxIncidentSeverity(severityError);
    parser.parse("</document>", -1, 0);
    EXPECT_NE(rule->innerRules, nullptr);
    incidents.setMaxIncidentSeverity(severityNone);
    parser.parse("\n<document/>", -1, 0);
    EXPECT_EQ(rule->innerRules, nullptr);
    EXPECT_EQ(log.take(), plainError("missing \"name\" attribute") + errorAt(2, 0, kUnresolved));
}

// Rules are lent for one document only.
TEST(DocumentImport, NextDocumentHasTheRulesOfItsOwnSchema) {
    DocumentStore store;
    EXPECT_EQ(store.import("<phone>\n"
                           "<document name='d' schema='s'><port>1</port></document>\n"
                           "<document name='e'>\n"
                           "<port>2</port>\n"
                           "<itemValue>3</itemValue>\n"
                           "</document>\n"
                           "<document name='f' schema='s'><port>4</port></document>\n"
                           "</phone>"),
              notRecognisedAt(4, 0, "port", {"itemValue"}, "document", "phone"));
    EXPECT_EQ(store.values("d"), "port=1* line/label=(null)|(null)");
    EXPECT_EQ(store.values("e"), "itemValue=3*");
    EXPECT_EQ(store.values("f"), "port=4* line/label=(null)|(null)");
}

TEST(DocumentImport, SchemaWithoutNodesHasNoContent) {
    ImportStore store;
    EXPECT_EQ(store.define(""), "");
    EXPECT_EQ(store.fill("<a/>"), notRecognisedAt(2, 0, "a", {}, "document", "phone"));
    EXPECT_EQ(store.values(), "");
}

// A schema with documents takes no new nodes; the import says so as for any other reason.
TEST(DocumentImport, SchemaOfALiveDocumentIsKnownAndStays) {
    DocumentStore store;
    EXPECT_EQ(store.document("name='d' schema='s'"), "");
    EXPECT_EQ(store.define("<item name='more' type='int'/>"),
              warningAt(1, 7, "Schema s Already Exists"));
    EXPECT_EQ(store.values(), kUntouched);
}

TEST(DocumentImport, DocumentsOfASubCollectionAreItsOwn) {
    DocumentStore store;
    EXPECT_EQ(store.import("<phone>\n"
                           "<document name='d' schema='s'><port>1</port></document>\n"
                           "<collection name='c'>\n"
                           "<document name='d'><itemValue>2</itemValue></document>\n"
                           "</collection>\n"
                           "<document name='d' schema='s'><port>3</port></document>\n"
                           "</phone>"),
              "");
    EXPECT_EQ(store.values(), "port=3* line/label=(null)|(null)");
    EXPECT_EQ(valuesOf(store.collection.getCollection("c")->getDocument("d")), "itemValue=2*");
}

// Nor are the schemas around it a sub-collection's.
TEST(DocumentImport, SubCollectionKnowsItsOwnSchemasOnly) {
    DocumentStore store;
    EXPECT_EQ(store.import("<phone><collection name='c'>\n<document name='d' schema='s'>"
                           "</document></collection></phone>"),
              plainError("unknown schema name") + errorAt(2, 0, kUnresolved));
}

TEST(DocumentImport, DefinitionAndDocumentsMayShareOneText) {
    ImportStore store;
    EXPECT_EQ(store.import("<phone><schema name='s'>" + kSchema +
                           "</schema><document name='d' schema='s'><port>1</port></document>"
                           "<schema name='t'><item name='x' type='bool'/></schema>"
                           "<document name='e' schema='t'><x>true</x></document></phone>"),
              "");
    EXPECT_EQ(store.values("d"), "port=1* line/label=(null)|(null)");
    EXPECT_EQ(store.values("e"), "x=true*");
}

// A full schema refuses the document as it refuses its caller in memory.
TEST(DocumentImport, DocumentThatCannotBeMadeIsUnresolved) {
    ImportStore store;
    EXPECT_EQ(store.define("<branch name='b' occurrences='32767'/>"
                           "<item name='i' type='int' occurrences='32767' parent='b'/>"),
              "");
    EXPECT_EQ(store.import("<phone>\n<document name='d' schema='s'></document></phone>"),
              plainError("ZorCollection::makeDocument{Schema (s) has too many values}") +
                  errorAt(2, 0, kUnresolved));
}

// A document is filled under the name it is stored by, with its own schema.
TEST(DocumentImport, CopiedDocumentIsFilledUnderItsKey) {
    DocumentStore store;
    EXPECT_EQ(store.document("name='d' schema='s'", "<port>1</port>"), "");
    store.each([](ZorCollection& collection) {
        collection.copyDocument("copy", collection.getDocument("d"));
    });
    EXPECT_EQ(store.document("name='copy' schema='s'", "<port>2</port>"), "");
    EXPECT_EQ(store.values("d"), "port=1* line/label=(null)|(null)");
    EXPECT_EQ(store.values("copy"), "port=2* line/label=(null)|(null)");
}
