// <branch> and <item>: what they make, and what they refuse in which order.

#include <gtest/gtest.h>

#include <string>

#include "collection/node_info.h"
#include "tests/collection/import_store.h"
#include "tests/support/text.h"
#include "zor/collection.h"

namespace {

constexpr char kMissing[] = "missing name attribute";
constexpr char kBlank[] = "name must not be blank";
constexpr char kOccurrences[] = "value of occurrences must be an integer greater than 0";
constexpr char kNoParent[] = "Can't find specified parent node";
constexpr char kNoBranch[] = "Could Not Branch Node with supplied parameters";
constexpr char kNoItem[] = "Could Not item with supplied parameters";

// What every refused element stands behind: a branch, an item in it, and an item.
std::string const kExisting = "<branch name='net' occurrences='2'/>"
                              "<item name='ip' type='ip_address' parent='net'/>"
                              "<item name='port' type='uint' default='80'/>\n";
constexpr char kExistingShape[] = "net*2{ip:ip_address} port:uint=80";

struct Refusal {
    std::string attributes;
    std::string incidents; // the element starts in line 3 and ends in line 4
};

// Every row's element is refused with exactly these incidents, and changes nothing.
void expectRefusals(std::string const& element, std::vector<Refusal> const& rows) {
    for (Refusal const& row : rows) {
        ImportStore store;
        EXPECT_EQ(store.define(kExisting + '<' + element + ' ' + row.attributes + ">\n</" +
                               element + '>'),
                  row.incidents)
            << row.attributes;
        EXPECT_EQ(store.shape(), kExistingShape) << row.attributes;
    }
}

// Refusals that branch and item have in common; the item's rows go on with a good type.
std::vector<Refusal> commonRefusals(std::string const& rest) {
    return {
        {rest, errorAt(3, 0, kMissing)},
        {"occurrences='0' parent='nope'" + rest, errorAt(3, 0, kMissing)},
        {"name=''" + rest, errorAt(3, 0, kBlank)},
        {"name=' \t ' occurrences='0' parent='nope'" + rest, errorAt(3, 0, kBlank)},
        {"name='&#10;&#13;' parent='nope'" + rest, errorAt(3, 0, kBlank)},
        {"name='n' occurrences='0'" + rest, errorAt(3, 0, kOccurrences)},
        {"name='n' occurrences='x' parent='nope'" + rest, errorAt(3, 0, kOccurrences)},
        {"name='n' parent='nope'" + rest,
         plainError("path (nope) not found") + errorAt(3, 0, std::string(kNoParent) + "nope")},
        {"name='n' parent=''" + rest,
         plainError("xpath must not be empty") + errorAt(3, 0, kNoParent)},
        {"name='n' parent='*'" + rest,
         plainError("path (*) is ambiguous") + errorAt(3, 0, std::string(kNoParent) + "*")},
        {"name='n' parent='net/'" + rest,
         plainError("path (net/) not found") + errorAt(3, 0, std::string(kNoParent) + "net/")},
        {"name='n' parent='NET'" + rest,
         plainError("path (NET) not found") + errorAt(3, 0, std::string(kNoParent) + "NET")},
        {"name='n' parent=' net'" + rest,
         plainError("path ( net) not found") + errorAt(3, 0, std::string(kNoParent) + " net")},
    };
}

} // namespace

TEST(NodeInfo, HoldsAReferenceToNameAndDefault) {
    Text const nameText("n");
    Text const defaultText("5");
    ZorString* const name = nameText;
    ZorString* const value = defaultText;
    {
        NodeInfo info(nullptr, name, 7);
        EXPECT_EQ(info.parent, nullptr);
        EXPECT_EQ(info.name, name);
        EXPECT_EQ(info.occurrences, 7);
        EXPECT_EQ(info.type, nullptr);
        EXPECT_EQ(info.defaultValue, nullptr);
        EXPECT_EQ(name->refCount, 2);
        zor_stringAddRef(value);
        info.defaultValue = value;
    }
    EXPECT_EQ(name->refCount, 1);
    EXPECT_EQ(value->refCount, 1);
}

TEST(DefinitionBranch, GoesUnderTheRootWithOneOccurrence) {
    ImportStore store;
    EXPECT_EQ(store.define("<branch name='net'/>"), "");
    ZorSchemaNode const* const node =
        store.collection.getSchema("s")->getRootNode()->getFirstChildNode();
    EXPECT_TRUE(node->isBranchNode());
    EXPECT_STREQ(node->getName(), "net");
    EXPECT_EQ(node->getOccurrences(), 1);
    EXPECT_EQ(store.shape(), "net{}");
}

TEST(DefinitionBranch, NameIsTrimmed) {
    ImportStore store;
    EXPECT_EQ(store.define("<branch name='  net&#9; '/><branch name='a b'/>"), "");
    EXPECT_EQ(store.shape(), "net{} a b{}");
}

// Names that differ in white space only are one name.
TEST(DefinitionBranch, TrimmedNameMayBeTaken) {
    ImportStore store;
    EXPECT_EQ(store.define("<branch name='net'/>\n<branch name=' net '>\n</branch>"),
              plainError("zor_branchNodeMake(net): node name already exists for given parent") +
                  errorAt(4, 0, kNoBranch));
    EXPECT_EQ(store.shape(), "net{}");
}

TEST(DefinitionBranch, ChecksComeInTheirOrder) { expectRefusals("branch", commonRefusals("")); }

TEST(DefinitionBranch, RefusalBySchemaIsReportedAtTheEnd) {
    expectRefusals(
        "branch",
        {{"name='net'",
          plainError("zor_branchNodeMake(net): node name already exists for given parent") +
              errorAt(4, 0, kNoBranch)},
         {"name='port'",
          plainError("zor_branchNodeMake(port): node name already exists for given parent") +
              errorAt(4, 0, kNoBranch)},
         {"name='n' parent='port'",
          plainError("zor_branchNodeMake(n): parent node is not a branch or schema node") +
              errorAt(4, 0, kNoBranch)},
         {"name='ip' parent='/net'",
          plainError("zor_branchNodeMake(ip): node name already exists for given parent") +
              errorAt(4, 0, kNoBranch)}});
}

TEST(DefinitionBranch, AttributesOfItemsAreNotItsOwn) {
    ImportStore store;
    EXPECT_EQ(store.define("<branch name='net' type='int' default='5'/>"),
              warningAt(2, 0, "attribute not valid in this context (type)") +
                  warningAt(2, 0, "attribute not valid in this context (default)"));
    EXPECT_EQ(store.shape(), "net{}");
}

// The tree is stated flat: nodes do not stand inside each other.
TEST(DefinitionBranch, NothingStandsInsideIt) {
    ImportStore store;
    EXPECT_EQ(store.define("<branch name='net'>\n<item name='i' type='int'/></branch>"
                           "<item name='j' type='int'/>"),
              notRecognisedAt(3, 0, "item", {}, "branch", "schema"));
    EXPECT_EQ(store.shape(), "net{} j:int");
}

TEST(DefinitionItem, ChecksComeInTheirOrder) {
    expectRefusals("item", commonRefusals(" type='nope' default='x'"));
    expectRefusals(
        "item",
        {{"name='n'", errorAt(3, 0, "missing type attribute")},
         {"name='n' default='x'", errorAt(3, 0, "missing type attribute")},
         {"name='n' type=''", errorAt(3, 0, "type () not found")},
         {"name='n' type='nope' default='x'", errorAt(3, 0, "type (nope) not found")},
         {"name='n' type=' int'", errorAt(3, 0, "type ( int) not found")},
         {"name='n' type='Int'", errorAt(3, 0, "type (Int) not found")},
         {"name='n' type='int' default='x'", errorAt(3, 0, "default (x) is not valid")},
         {"name='n' type='int' default=''", errorAt(3, 0, "default () is not valid")},
         {"name='n' type='bool' default=' true'", errorAt(3, 0, "default ( true) is not valid")}});
}

TEST(DefinitionItem, RefusalBySchemaIsReportedAtTheEnd) {
    expectRefusals(
        "item", {{"name=' port' type='int'",
                  plainError("zor_dataNodeMake(port): node name already exists for given parent") +
                      errorAt(4, 0, kNoItem)},
                 {"name='net' type='int'",
                  plainError("zor_dataNodeMake(net): node name already exists for given parent") +
                      errorAt(4, 0, kNoItem)},
                 {"name='n' type='int' parent='port'",
                  plainError("zor_dataNodeMake(n): parent node is not a branch or schema node") +
                      errorAt(4, 0, kNoItem)}});
}

TEST(DefinitionItem, EveryBuiltInTypeCanBeNamed) {
    ImportStore store;
    std::string items;
    std::string shape;
    for (char const* const type : {"string", "int", "uint", "bool", "float", "digit_string",
                                   "ip_address", "ip_mask", "domain_name", "url"}) {
        items += std::string("<item name='n_") + type + "' type='" + type + "'/>";
        shape += std::string(shape.empty() ? "" : " ") + "n_" + type + ':' + type;
    }
    EXPECT_EQ(store.define(items), "");
    EXPECT_EQ(store.shape(), shape);
}

TEST(DefinitionItem, WithoutDefaultAttributeThereIsNoDefault) {
    ImportStore store;
    EXPECT_EQ(store.define("<item name='a' type='int'/><item name='b' type='string'/>"
                           "<item name='c' type='string' default=''/>"),
              "");
    EXPECT_EQ(store.shape(), "a:int b:string c:string=");
    EXPECT_EQ(store.fill(""), "");
    EXPECT_EQ(store.values(), "a=(null) b=(null) c=");
}

TEST(DefinitionItem, DefaultIsKeptAsAValueOfItsType) {
    ImportStore store;
    EXPECT_EQ(store.define("<item name='a' type='int' default='+007'/>"
                           "<item name='b' type='string' default=' a&amp;&lt;&quot;&apos;b '/>"
                           "<item name='c' type='float' default='1.50'/>"
                           "<item name='d' type='ip_address' default='010.0.0.1'/>"
                           "<item name='e' type='digit_string' default='+49 89#'/>"),
              "");
    EXPECT_EQ(store.shape(), "a:int=7 b:string= a&<\"'b  c:float=1.5 d:ip_address=10.0.0.1 "
                             "e:digit_string=+49 89#");
}

TEST(DefinitionItem, DefaultMayBeAsLongAsAString) {
    ImportStore store;
    std::string const longest(65534, 'x');
    store.collection.importXML(("<phone><schema name='s'><item name='a' type='string' default='" +
                                longest + "'/>\n<item name='b' type='string' default='" + longest +
                                "x'/>\n</schema>\n</phone>")
                                   .c_str());
    EXPECT_EQ(store.log.take(),
              errorAt(2, 0, "text is too long in element <item>") + unwoundAt(4, 0, "phone"));
    EXPECT_EQ(store.shape(), "a:string=" + longest);
}

// The schema's own types come first, then its collection's, then the built-in ones.
TEST(DefinitionItem, TypeIsFoundInTheSchemaThenTheCollectionThenTheBuiltIns) {
    ImportStore store;
    store.each([](ZorCollection& collection) {
        for (char const* const name : {"own", "shared", "int"}) {
            ZorDataType* const choice = zor_choiceMake(name);
            zor_choiceAddOption(choice, "collection");
            EXPECT_EQ(collection.addDataType(choice), 1);
        }
    });
    EXPECT_EQ(store.define("<choice name='own'><option>schema</option></choice>"
                           "<item name='a' type='own' default='schema'/>"
                           "<item name='b' type='shared' default='collection'/>"
                           "<item name='c' type='int' default='collection'/>"
                           "<item name='d' type='uint' default='5'/>"),
              "");
    EXPECT_EQ(store.shape(), "a:own=schema b:shared=collection c:int=collection d:uint=5");
}

// Types of one schema are not another's, nor those of the collection around the schema's own.
TEST(DefinitionItem, TypesOfOthersAreNotFound) {
    ImportStore store;
    EXPECT_EQ(store.import("<phone><schema name='s'><choice name='c'/></schema>\n"
                           "<schema name='t'><item name='i' type='c'/></schema></phone>"),
              errorAt(2, 17, "type (c) not found"));
    store.each([](ZorCollection& collection) {
        EXPECT_EQ(collection.addDataType(zor_choiceMake("shared")), 1);
    });
    EXPECT_EQ(store.import("<phone><collection name='c'><schema name='s'>\n"
                           "<item name='i' type='shared'/></schema></collection></phone>"),
              errorAt(2, 0, "type (shared) not found"));
}

TEST(DefinitionItem, TypeMustBeDeclaredBefore) {
    ImportStore store;
    EXPECT_EQ(store.define("<item name='i' type='c' x='1'/>\n"
                           "<choice name='c' x='1'><option>a</option></choice>\n"
                           "<item name='j' type='c'/>"),
              warningAt(2, 0, "attribute not valid in this context (x)") +
                  errorAt(2, 0, "type (c) not found") +
                  warningAt(3, 0, "attribute not valid in this context (x)"));
    EXPECT_EQ(store.shape(), "j:c");
}
