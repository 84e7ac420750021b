// The rules of the definition language, and its containers: the root, <collection> and <schema>.

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "tests/collection/import_store.h"
#include "zor/collection.h"

namespace {

ZorElementParseRules* ruleAt(ZorListNode* node) {
    return static_cast<ZorElementParseRules*>(zor_listGetValue(node));
}

ZorElementParseRules* ruleIn(ZorElementParseRules const* outer, std::string const& name) {
    ZorListNode* node = outer->innerRules;
    while (node && name != ruleAt(node)->elementName->text) node = node->next;
    EXPECT_NE(node, nullptr) << name;
    return node ? ruleAt(node) : nullptr;
}

// "NAME USAGE [start] [end] (ATTRIBUTES) {INNER} COUNT"
std::string described(ZorElementParseRules const* rule) {
    std::string text = rule->elementName->text;
    text += ' ' + std::to_string(rule->characterData);
    if (rule->startElement) text += " start";
    if (rule->endElement) text += " end";
    text += " (";
    for (ZorListNode* node = rule->attributes; node; node = node->next) {
        text += std::string(static_cast<ZorString*>(node->value)->text) + (node->next ? " " : "");
    }
    text += ") {";
    for (ZorListNode* node = rule->innerRules; node; node = node->next) {
        text += std::string(ruleAt(node)->elementName->text) + (node->next ? " " : "");
    }
    return text + "} " + std::to_string(rule->refCount);
}

// The rules of a collection for the length of a test.
class Rules {
public:
    explicit Rules(ZorCollection* collection) : root(zor_getZORParseRules(collection)) {
        ++root->refCount;
    }
    Rules(Rules const&) = delete;
    Rules& operator=(Rules const&) = delete;
    ~Rules() { zor_XMLParseRulesRemoveRef(root); }

    ZorElementParseRules* const root;
};

constexpr char kMissing[] = "missing name attribute";
constexpr char kBlank[] = "name must not be blank";

} // namespace

TEST(DefinitionRules, TreeStatesTheLanguage) {
    ZorCollection collection("phone");
    Rules const rules(&collection);
    ZorElementParseRules const* const root = rules.root;
    EXPECT_EQ(described(root), "phone 0 start () {collection schema document} 1");
    ZorElementParseRules const* const inner = ruleIn(root, "collection");
    EXPECT_EQ(described(inner), "collection 0 start (name) {collection schema document} 1");
    EXPECT_EQ(ruleIn(inner, "collection"), inner);
    ZorElementParseRules const* const schema = ruleIn(root, "schema");
    EXPECT_EQ(ruleIn(inner, "schema"), schema);
    EXPECT_EQ(described(schema), "schema 0 start (name) {branch item range choice} 2");
    EXPECT_EQ(described(ruleIn(schema, "branch")),
              "branch 0 start end (name occurrences parent) {} 1");
    EXPECT_EQ(described(ruleIn(schema, "item")),
              "item 0 start end (name occurrences type default parent) {} 1");
    EXPECT_EQ(described(ruleIn(schema, "range")),
              "range 0 start end (name baseType minValue maxValue) {} 1");
    ZorElementParseRules const* const choice = ruleIn(schema, "choice");
    EXPECT_EQ(described(choice), "choice 0 start (name) {option} 1");
    EXPECT_EQ(described(ruleIn(choice, "option")), "option 1 end () {} 1");
    ZorElementParseRules const* const document = ruleIn(root, "document");
    EXPECT_EQ(ruleIn(inner, "document"), document);
    EXPECT_EQ(described(document), "document 0 start end (name schema) {} 2");
}

TEST(DefinitionRules, RootRuleBelongsToTheCollection) {
    ZorCollection collection("phone");
    Rules const rules(&collection);
    EXPECT_EQ(zor_XMLParseRulesGetElementUserData(rules.root), &collection);
    EXPECT_EQ(rules.root->freeElementUserData, nullptr);
}

TEST(DefinitionRules, EveryCallMakesAFreshTree) {
    ZorCollection collection("phone");
    Rules const first(&collection);
    Rules const second(&collection);
    EXPECT_NE(first.root, second.root);
    EXPECT_NE(ruleIn(first.root, "schema"), ruleIn(second.root, "schema"));
    EXPECT_EQ(described(second.root), described(first.root));
}

TEST(DefinitionRoot, EmptyRootImportsNothing) {
    ImportStore store;
    std::string const before = store.content();
    EXPECT_EQ(store.import("<phone/>"), "");
    EXPECT_EQ(store.import("<phone> text that counts for nothing </phone>"), "");
    EXPECT_EQ(store.content(), before);
}

// A root element of another name matches no rule, and nothing in it is looked at.
TEST(DefinitionRoot, OtherRootIsNotRecognised) {
    ImportStore store;
    std::string const before = store.content();
    EXPECT_EQ(store.import("<fone><schema name='s'/><document name='d'/><schema/></fone>"),
              "2 {zor_XMLParse: line 1, column 0 }element not recognised in this context <fone>\n"
              "2 {zor_XMLParse: line 1, column 0 }Element is 'fone'. Possible valid elements are "
              "'phone' . outerContext->currentElement->elementName = 'root-node'\n");
    EXPECT_EQ(store.content(), before);
}

TEST(DefinitionRoot, RootIsNamedExactlyLikeTheCollection) {
    ImportStore store(nullptr, "Telephone");
    EXPECT_EQ(store.import("<Telephone><schema name='s'/></Telephone>"), "");
    EXPECT_EQ(store.shape(), "");
    EXPECT_EQ(store.import("<telephone><schema name='t'/></telephone>"),
              warningAt(1, 0, "element not recognised in this context <telephone>") +
                  warningAt(1, 0,
                            "Element is 'telephone'. Possible valid elements are 'Telephone' . "
                            "outerContext->currentElement->elementName = 'root-node'"));
    EXPECT_EQ(store.shape("t"), "no schema");
}

// The name may be one of the language's own words.
TEST(DefinitionRoot, CollectionMayBeCalledLikeAnElement) {
    ImportStore store(nullptr, "schema");
    EXPECT_EQ(
        store.import("<schema><schema name='s'><item name='i' type='int'/></schema></schema>"), "");
    EXPECT_EQ(store.shape(), "i:int");
}

TEST(DefinitionRoot, RootTakesNoAttribute) {
    ImportStore store;
    EXPECT_EQ(store.import("<phone name='x' version='1'><schema name='s'/></phone>"),
              warningAt(1, 0, "attribute not valid in this context (name)") +
                  warningAt(1, 0, "attribute not valid in this context (version)"));
    EXPECT_EQ(store.shape(), "");
}

TEST(DefinitionRoot, OnlyContainersAndDocumentsStandUnderIt) {
    ImportStore store;
    EXPECT_EQ(
        store.import("<phone>\n<item name='i' type='int'/></phone>"),
        notRecognisedAt(2, 0, "item", {"collection", "schema", "document"}, "phone", "root-node"));
}

TEST(DefinitionCollection, MakesASubCollection) {
    ImportStore store;
    EXPECT_EQ(store.import("<phone><collection name='lines'>"
                           "<schema name='s'><item name='i' type='int'/></schema>"
                           "<document name='d' schema='s'><i>5</i></document>"
                           "</collection></phone>"),
              "");
    ZorCollection* const lines = store.collection.getCollection("lines");
    ASSERT_NE(lines, nullptr);
    EXPECT_STREQ(lines->getName(), "lines");
    EXPECT_EQ(lines->getDictionary(), nullptr);
    EXPECT_EQ(shapeOf(lines->getSchema("s")->getRootNode()), "i:int");
    EXPECT_EQ(valuesOf(lines->getDocument("d")), "i=5*");
    EXPECT_EQ(store.shape(), "no schema");
    EXPECT_EQ(store.values(), "no document");
}

TEST(DefinitionCollection, ExistingSubCollectionIsExtended) {
    ImportStore store;
    EXPECT_EQ(store.import("<phone><collection name='c'><schema name='a'/></collection></phone>"),
              "");
    ZorCollection* const first = store.collection.getCollection("c");
    EXPECT_EQ(store.import("<phone><collection name='c'><schema name='b'/></collection>"
                           "<collection name='c'><schema name='e'/></collection></phone>"),
              "");
    EXPECT_EQ(store.collection.getCollection("c"), first);
    for (char const* const name : {"a", "b", "e"}) EXPECT_NE(first->getSchema(name), nullptr);
}

TEST(DefinitionCollection, CollectionsNest) {
    ImportStore store;
    std::string text = "<phone>";
    for (int i = 0; i < 40; ++i) text += "<collection name='c" + std::to_string(i) + "'>";
    text += "<schema name='s'/>";
    for (int i = 0; i < 40; ++i) text += "</collection>";
    EXPECT_EQ(store.import(text + "</phone>"), "");
    ZorCollection* inner = &store.collection;
    for (int i = 0; i < 40 && inner; ++i) {
        inner = inner->getCollection(("c" + std::to_string(i)).c_str());
    }
    ASSERT_NE(inner, nullptr);
    EXPECT_NE(inner->getSchema("s"), nullptr);
}

// 256 collections within each other are as deep as it goes; what stands in the next one is skipped.
TEST(DefinitionCollection, CollectionsNestTo256Levels) {
    for (int const levels : {255, 256, 257, 1000}) {
        IncidentLog log;
        ZorCollection collection("phone");
        std::string text = "<phone>\n";
        for (int i = 0; i < levels; ++i) text += "<collection name='c'>";
        text += "<schema name='s'/>";
        for (int i = 0; i < levels; ++i) text += "</collection>";
        collection.importXML((text + "</phone>").c_str());
        int made = 0;
        ZorCollection* inner = &collection;
        while (ZorCollection* const next = inner->getCollection("c")) {
            inner = next;
            ++made;
        }
        EXPECT_EQ(made, std::min(levels, 256));
        EXPECT_EQ(inner->getSchema("s") != nullptr, levels <= 256) << levels;
        // The end tag of the schema, which was not opened, and 257 others close what is open.
        std::string expected = levels <= 256 ? "" : errorAt(2, 256 * 21, "nested too deeply");
        int const ends = levels * 21 + 18;
        for (int i = 257; i < levels; ++i) expected += unwoundAt(2, ends + i * 13, "collection");
        if (levels > 256) expected += unwoundAt(2, ends + levels * 13, "phone");
        EXPECT_EQ(log.take(), expected) << levels;
    }
}

// Only nodes trim their names.
TEST(DefinitionCollection, BlanksInNamesStay) {
    ImportStore store;
    EXPECT_EQ(store.import("<phone><collection name=' c '/><collection name=' '/></phone>"), "");
    EXPECT_NE(store.collection.getCollection(" c "), nullptr);
    EXPECT_EQ(store.collection.getCollection("c"), nullptr);
    EXPECT_NE(store.collection.getCollection(" "), nullptr);
}

TEST(DefinitionCollection, NameIsNeeded) {
    ImportStore store;
    EXPECT_EQ(store.import("<phone>\n<collection/></phone>"), errorAt(2, 0, kMissing));
    EXPECT_EQ(store.import("<phone>\n<collection name=''/></phone>"), errorAt(2, 0, kBlank));
    EXPECT_EQ(store.collection.getCollections(), nullptr);
}

TEST(DefinitionCollection, TakesNoOtherAttribute) {
    ImportStore store;
    EXPECT_EQ(store.import("<phone>\n<collection name='c' schema='s'/></phone>"),
              warningAt(2, 0, "attribute not valid in this context (schema)"));
    EXPECT_NE(store.collection.getCollection("c"), nullptr);
}

// What stands in a rejected collection is skipped without a word. (The warnings about the attribute
// lift the error, so that the elements are looked at again.)
TEST(DefinitionCollection, ContentOfARejectedCollectionIsSkippedSilently) {
    ImportStore store;
    std::string const before = store.content();
    EXPECT_EQ(store.import("<phone>\n"
                           "<collection name=''>\n"
                           "<schema name='s' x='1'>\n"
                           "<item name='i' type='int'/>\n"
                           "<branch/>\n"
                           "<foo x='1'/>\n"
                           "<range/>\n"
                           "<choice><option/></choice>\n"
                           "</schema>\n"
                           "<schema/>\n"
                           "<document/>\n"
                           "<document name='d'><itemValue>5</itemValue></document>\n"
                           "<collection/>\n"
                           "<collection name='c'><schema name='s'/><foo/></collection>\n"
                           "</collection>\n"
                           "</phone>"),
              errorAt(2, 0, kBlank) + warningAt(3, 0, "attribute not valid in this context (x)"));
    EXPECT_EQ(store.content(), before);
}

TEST(DefinitionSchema, MakesASchema) {
    ImportStore store;
    EXPECT_EQ(store.import("<phone><schema name='s'/><schema name='t'></schema></phone>"), "");
    ZorSchema* const schema = store.collection.getSchema("s");
    ASSERT_NE(schema, nullptr);
    EXPECT_STREQ(schema->getName(), "s");
    EXPECT_EQ(schema->collection, &store.collection);
    EXPECT_EQ(shapeOf(schema->getRootNode()), "");
    EXPECT_EQ(store.shape("t"), "");
}

TEST(DefinitionSchema, NameIsNeeded) {
    ImportStore store;
    std::string const before = store.content();
    EXPECT_EQ(store.import("<phone>\n<schema/></phone>"), errorAt(2, 0, kMissing));
    EXPECT_EQ(store.import("<phone>\n<schema name=''/></phone>"), errorAt(2, 0, kBlank));
    EXPECT_EQ(store.content(), before);
}

TEST(DefinitionSchema, BlanksInNamesStay) {
    ImportStore store;
    EXPECT_EQ(store.import("<phone><schema name='  s '/><schema name=' '/></phone>"), "");
    EXPECT_EQ(store.shape("  s "), "");
    EXPECT_EQ(store.shape(" "), "");
    EXPECT_EQ(store.shape("s"), "no schema");
}

TEST(DefinitionSchema, NameMayHoldEscapedCharacters) {
    ImportStore store;
    EXPECT_EQ(store.import("<phone><schema name='a&lt;&#x20AC;&quot;'/></phone>"), "");
    EXPECT_EQ(store.shape("a<\xE2\x82\xAC\""), "");
}

// A second schema of a name is only a warning; everything in it is passed over.
TEST(DefinitionSchema, ExistingSchemaIsLeftAlone) {
    ImportStore store;
    EXPECT_EQ(store.define("<item name='i' type='int'/>"), "");
    std::string const before = store.content();
    EXPECT_EQ(store.import("<phone>\n"
                           "<schema name='s'>\n"
                           "<branch name='b' parent='nope'/>\n"
                           "<item name='j' type='int'/>\n"
                           "<item name='k' type='nope' default='x'/>\n"
                           "<range name='r' baseType='int' minValue='5' maxValue='1'/>\n"
                           "<range/>\n"
                           "<choice name='c'><option>a</option><option/></choice>\n"
                           "<choice/>\n"
                           "</schema>\n"
                           "</phone>"),
              "2 {zor_XMLParse: line 2, column 0 }Schema s Already Exists\n");
    EXPECT_EQ(store.content(), before);
}

TEST(DefinitionSchema, ImportGoesOnBehindAnExistingSchema) {
    ImportStore store;
    EXPECT_EQ(store.import("<phone>\n"
                           "<schema name='s'/>\n"
                           "<schema name='s'><item name='i' type='int'/></schema>\n"
                           "<schema name='t'><item name='i' type='int'/></schema>\n"
                           "</phone>"),
              warningAt(3, 0, "Schema s Already Exists"));
    EXPECT_EQ(store.shape("s"), "");
    EXPECT_EQ(store.shape("t"), "i:int");
}

TEST(DefinitionSchema, DefaultSchemaExistsFromTheStart) {
    ImportStore store;
    EXPECT_EQ(store.import("<phone>\n<schema name='DefaultSchema'/></phone>"),
              warningAt(2, 0, "Schema DefaultSchema Already Exists"));
    EXPECT_EQ(store.shape("DefaultSchema"), "itemValue:string=");
}

// The names and occurrences of nodes are looked at before it is found that they have no schema.
TEST(DefinitionSchema, NodesOfARejectedSchemaAreStillCheckedFirst) {
    ImportStore store;
    EXPECT_EQ(store.define(""), "");
    EXPECT_EQ(store.define("<branch/>"),
              warningAt(1, 7, "Schema s Already Exists") + errorAt(2, 0, kMissing));
    EXPECT_EQ(store.define("<item name=' '/>"),
              warningAt(1, 7, "Schema s Already Exists") + errorAt(2, 0, kBlank));
    EXPECT_EQ(store.define("<item name='i' occurrences='0'/>"),
              warningAt(1, 7, "Schema s Already Exists") +
                  errorAt(2, 0, "value of occurrences must be an integer greater than 0"));
}

TEST(DefinitionSchema, SchemasDoNotNest) {
    ImportStore store;
    EXPECT_EQ(
        store.import("<phone><schema name='s'>\n<schema name='t'/></schema></phone>"),
        notRecognisedAt(2, 0, "schema", {"branch", "item", "range", "choice"}, "schema", "phone"));
    EXPECT_EQ(store.shape("t"), "no schema");
}

// The same name in different collections makes different schemas.
TEST(DefinitionSchema, NamesAreThoseOfOneCollection) {
    ImportStore store;
    EXPECT_EQ(store.import("<phone><schema name='s'><item name='a' type='int'/></schema>"
                           "<collection name='c'>"
                           "<schema name='s'><item name='b' type='int'/></schema>"
                           "</collection></phone>"),
              "");
    EXPECT_EQ(store.shape(), "a:int");
    ZorCollection* const inner = store.collection.getCollection("c");
    EXPECT_EQ(shapeOf(inner->getSchema("s")->getRootNode()), "b:int");
}
