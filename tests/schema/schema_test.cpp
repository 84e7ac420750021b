// Schemas: making nodes, and refusing them.

#include <gtest/gtest.h>

#include <climits>

#include "tests/schema/shape.h"
#include "tests/support/checked_semaphore.h"
#include "tests/support/incidents.h"
#include "zor/document.h"

namespace {

class Schema : public testing::Test {
protected:
    IncidentLog log;
};

// Both ways of making a node behave alike, but for the message's first word.
struct Maker {
    char const* word;
    ZorSchemaNode* (*make)(ZorSchema& schema, ZorSchemaNode* parent, void const* name);
};

Maker const kMakers[] = {
    {"zor_branchNodeMake", [](ZorSchema& schema, ZorSchemaNode* parent,
                              void const* name) { return schema.makeBranchNode(parent, name, 1); }},
    {"zor_dataNodeMake",
     [](ZorSchema& schema, ZorSchemaNode* parent, void const* name) {
         return schema.makeDataNode(parent, name, 1, ZorBuiltIn::getDataType("int"), "1");
     }},
};

int locksSeen = 0;

u_zorItemValue noteLocks(char const*) {
    locksSeen = heldLocks();
    return u_zorItemValue();
}

} // namespace

TEST_F(Schema, ANewSchemaIsANamedRoot) {
    Text const name("a schema of its own");
    ZorString const* const string = name;
    ZorSchema const schema(nullptr, string);
    EXPECT_STREQ(schema.getName(), "a schema of its own");
    EXPECT_EQ(schema.getRootNode(), schema.rootNode);
    EXPECT_TRUE(schema.rootNode->isSchemaRootNode());
    EXPECT_EQ(schema.rootNode->name, string);
    EXPECT_EQ(schema.rootNode->getFirstChildNode(), nullptr);
    EXPECT_EQ(schema.collection, nullptr);
    EXPECT_EQ(schema.documentCount(), 0);
    EXPECT_EQ(schema.getDataTypes(), nullptr);
    EXPECT_STREQ(ZorSchema(nullptr, "plain").getName(), "plain");
    EXPECT_STREQ(ZorSchema(nullptr, nullptr).getName(), "");
}

TEST_F(Schema, ABranchIsMadeWithItsPlaceAndCounts) {
    Shape shape("");
    ZorSchemaNode* const node = shape.schema.makeBranchNode(shape.root(), "line", 4);
    ASSERT_NE(node, nullptr);
    EXPECT_TRUE(node->isBranchNode());
    EXPECT_STREQ(node->getName(), "line");
    EXPECT_EQ(node->getOccurrences(), 4);
    EXPECT_EQ(node->getTotalOccurrences(), 4);
    EXPECT_EQ(node->getParentNode(), shape.root());
    EXPECT_EQ(node->valueIndex, 0);
    EXPECT_EQ(node->flags, 0);
    EXPECT_EQ(node->getDataType(), nullptr);
}

TEST_F(Schema, ADataNodeIsMadeWithTypeAndDefault) {
    Shape shape("line*4{}");
    ZorDataType* const type = shape.schema.getDataType("int");
    ZorSchemaNode* const with = shape.schema.makeDataNode(shape["line"], "with", 3, type, "5");
    ASSERT_NE(with, nullptr);
    EXPECT_TRUE(with->isDataNode());
    EXPECT_EQ(with->getOccurrences(), 3);
    EXPECT_EQ(with->getTotalOccurrences(), 12);
    EXPECT_EQ(with->getParentNode(), shape["line"]);
    EXPECT_EQ(with->getDataType(), type);
    EXPECT_EQ(with->valueIndex, -1);
    EXPECT_EQ(with->flags & ZorSchemaNode::noDefault, 0);
    EXPECT_EQ(taken(with->getDefaultValue()), "5");

    ZorSchemaNode* const without =
        shape.schema.makeDataNode(shape["line"], "without", 1, type, nullptr);
    EXPECT_EQ(without->flags, ZorSchemaNode::noDefault);
    EXPECT_EQ(taken(without->getDefaultValue()), "(null)");
}

TEST_F(Schema, NamesAndDefaultsMayBeStrings) {
    Shape shape("");
    Text const name("a name of its own");
    Text const defaultText("a default of its own");
    ZorString const* const string = name;
    ZorSchemaNode* const node =
        shape.schema.makeDataNode(shape.root(), string, 1, shape.schema.getDataType("string"),
                                  static_cast<ZorString*>(defaultText));
    EXPECT_EQ(node->name, string);
    EXPECT_EQ(string->refCount, 2);
    EXPECT_EQ(taken(node->getDefaultValue()), "a default of its own");
    EXPECT_EQ(shape.schema.getChildNode(shape.root(), string), node);
    EXPECT_EQ(shape.schema.getChildNode(shape.root(), "a name of its own"), node);
}

// A default that its type would refuse is still made, into whatever the type makes of it.
TEST_F(Schema, ADefaultIsNotValidated) {
    struct {
        char const* type;
        char const* given;
        char const* kept;
    } const cases[] = {
        {"int", "abc", "0"},
        {"int", "12x", "12"},
        {"int", "99999999999", "2147483647"},
        {"bool", "TRUE", "false"},
        {"digit_string", "abc", "abc"},
        {"ip_address", "x", "0.0.0.0"},
    };
    for (auto const& [type, given, kept] : cases) {
        Shape shape("");
        ASSERT_EQ(zor_dataTypeValidate(shape.schema.getDataType(type), given), 0) << given;
        ZorSchemaNode* const node = shape.schema.makeDataNode(
            shape.root(), "item", 1, shape.schema.getDataType(type), given);
        ASSERT_NE(node, nullptr);
        EXPECT_EQ(taken(node->getDefaultValue()), kept) << type << ' ' << given;
    }
}

TEST_F(Schema, TotalOccurrencesMultiplyDownTheBranches) {
    Shape const shape("a*2{b*4{c*3:int} d:int e*0{f*5:int}} g*7:int h*-3{i*2:int}");
    EXPECT_EQ(shape["a/b/c"]->getTotalOccurrences(), 24);
    EXPECT_EQ(shape["a/b"]->getTotalOccurrences(), 8);
    EXPECT_EQ(shape["a/d"]->getTotalOccurrences(), 2);
    EXPECT_EQ(shape["a/e/f"]->getTotalOccurrences(), 0);
    EXPECT_EQ(shape["g"]->getTotalOccurrences(), 7);
    EXPECT_EQ(shape["h/i"]->getTotalOccurrences(), -6);
}

// Occurrences below 1 are taken as they are; what is below such a node never occurs.
TEST_F(Schema, NonPositiveOccurrencesAreNotRefused) {
    for (int const occurrences : {0, -1, -2, -32768}) {
        Shape const shape("a*" + std::to_string(occurrences) + "{b*-2:int c{d*-1{e*3:int}}}");
        EXPECT_EQ(shape["a"]->getOccurrences(), occurrences);
        EXPECT_EQ(shape["a"]->getTotalOccurrences(), occurrences);
        for (char const* const path : {"a", "a/b", "a/c", "a/c/d", "a/c/d/e"}) {
            EXPECT_LT(shape[path]->getTotalOccurrences(), 1) << path;
        }
    }
}

TEST_F(Schema, TotalOccurrencesStopAtTheEndsOf32Bits) {
    struct {
        char const* shape;
        int total;
    } const cases[] = {
        {"x*32767{y*32767{z*2:int}}", 2147352578},  {"x*32767{y*32767{z*3:int}}", INT_MAX},
        {"x*32767{y*32767{z*32767:int}}", INT_MAX}, {"x*-32768{y*32767{z*2:int}}", -2147418112},
        {"x*-32768{y*32767{z*3:int}}", INT_MIN},    {"x*32767{y*32767{z*-32768:int}}", INT_MIN},
        {"x*32767{y*32767{z*0:int}}", 0},
    };
    for (auto const& [text, total] : cases) {
        EXPECT_EQ(Shape(text)["x/y/z"]->getTotalOccurrences(), total) << text;
    }
}

TEST_F(Schema, RefusesANullParent) {
    ZorSchema schema(nullptr, "phone");
    for (auto const& [word, make] : kMakers) {
        EXPECT_EQ(make(schema, nullptr, "volume"), nullptr);
        EXPECT_EQ(log.take(), "3 " + std::string(word) + "(volume): parent node is NULL\n");
        EXPECT_EQ(make(schema, nullptr, nullptr), nullptr);
        EXPECT_EQ(log.take(), "3 " + std::string(word) + "(): parent node is NULL\n");
        EXPECT_EQ(make(schema, nullptr, static_cast<ZorString*>(Text("tone"))), nullptr);
        EXPECT_EQ(log.take(), "3 " + std::string(word) + "(tone): parent node is NULL\n");
    }
}

TEST_F(Schema, RefusesADataNodeAsParent) {
    Shape shape("item:int");
    for (auto const& [word, make] : kMakers) {
        EXPECT_EQ(make(shape.schema, shape["item"], "x"), nullptr);
        EXPECT_EQ(log.take(),
                  "3 " + std::string(word) + "(x): parent node is not a branch or schema node\n");
    }
}

TEST_F(Schema, RefusesNodesWhileDocumentsExist) {
    Shape shape("a{b:int}");
    for (auto const& [word, make] : kMakers) {
        std::string const frozen =
            "3 " + std::string(word) + "(x): Cannot modify schema while documents exist\n";
        auto* const first = new ZorDocument(&shape.schema, "first");
        auto* const second = new ZorDocument(*first, &shape.schema);
        EXPECT_EQ(shape.schema.documentCount(), 2);
        EXPECT_EQ(make(shape.schema, shape.root(), "x"), nullptr);
        EXPECT_EQ(log.take(), frozen);
        delete first;
        EXPECT_EQ(make(shape.schema, shape["a"], "x"), nullptr);
        EXPECT_EQ(log.take(), frozen);
        delete second;
        EXPECT_EQ(shape.schema.documentCount(), 0);
        EXPECT_NE(make(shape.schema, shape.root(), word), nullptr);
    }
}

TEST_F(Schema, RefusesATakenName) {
    Shape shape("x{a:int} y:int");
    for (auto const& [word, make] : kMakers) {
        for (char const* const name : {"x", "y"}) {
            EXPECT_EQ(make(shape.schema, shape.root(), name), nullptr);
            EXPECT_EQ(log.take(), "3 " + std::string(word) + '(' + name +
                                      "): node name already exists for given parent\n");
        }
        EXPECT_NE(make(shape.schema, shape["x"], word), nullptr);   // new there
        EXPECT_NE(make(shape.schema, shape.root(), word), nullptr); // and here
        EXPECT_EQ(make(shape.schema, shape.root(), word), nullptr);
        EXPECT_EQ(log.take(), "3 " + std::string(word) + '(' + word +
                                  "): node name already exists for given parent\n");
    }
    EXPECT_NE(shape.schema.makeBranchNode(shape.root(), "X", 1), nullptr);
    EXPECT_NE(shape.schema.makeBranchNode(shape["x"], "x", 1), nullptr);
}

TEST_F(Schema, RefusesADataNodeWithoutType) {
    Shape shape("");
    for (char const* const defaultText : {static_cast<char const*>(nullptr), "5"}) {
        EXPECT_EQ(shape.schema.makeDataNode(shape.root(), "x", 1, nullptr, defaultText), nullptr);
        EXPECT_EQ(log.take(), "3 zor_dataNodeMake(x): data type is NULL\n");
    }
}

// One incident, for the first reason in a fixed order.
TEST_F(Schema, ReportsTheFirstReasonOnly) {
    Shape shape("a{} item:int");
    shape.schema.makeDataNode(nullptr, "x", 1, nullptr, "5");
    EXPECT_EQ(log.take(), "3 zor_dataNodeMake(x): parent node is NULL\n");
    shape.schema.makeDataNode(shape["item"], "x", 1, nullptr, "5");
    EXPECT_EQ(log.take(), "3 zor_dataNodeMake(x): parent node is not a branch or schema node\n");
    shape.schema.makeDataNode(shape.root(), "a", 1, nullptr, "5");
    EXPECT_EQ(log.take(), "3 zor_dataNodeMake(a): node name already exists for given parent\n");
    {
        ZorDocument const document(&shape.schema, "document");
        shape.schema.makeDataNode(shape["item"], "x", 1, nullptr, "5");
        EXPECT_EQ(log.take(),
                  "3 zor_dataNodeMake(x): parent node is not a branch or schema node\n");
        shape.schema.makeDataNode(shape.root(), "a", 1, nullptr, "5");
        EXPECT_EQ(log.take(),
                  "3 zor_dataNodeMake(a): Cannot modify schema while documents exist\n");
        shape.schema.makeBranchNode(shape.root(), "a", 1);
        EXPECT_EQ(log.take(),
                  "3 zor_branchNodeMake(a): Cannot modify schema while documents exist\n");
    }
}

// It is the parent's own root that must be without documents.
TEST_F(Schema, AsksTheParentsRootForDocuments) {
    Shape frozen("a{}");
    Shape open("");
    ZorDocument const document(&frozen.schema, "document");
    EXPECT_EQ(open.schema.makeBranchNode(frozen["a"], "x", 1), nullptr);
    EXPECT_EQ(log.take(), "3 zor_branchNodeMake(x): Cannot modify schema while documents exist\n");
}

TEST_F(Schema, ARefusalChangesNothing) {
    Shape shape("a{b:int} item:int");
    std::size_t const entries = ZorSchema::sNodeMap.size();
    for (auto const& [word, make] : kMakers) {
        make(shape.schema, nullptr, "x");
        make(shape.schema, shape["item"], "x");
        make(shape.schema, shape.root(), "a");
        make(shape.schema, shape["a"], "b");
    }
    shape.schema.makeDataNode(shape["a"], "x", 1, nullptr, nullptr);
    log.take();
    EXPECT_EQ(shapeOf(shape.root()), "a{b:int} item:int");
    EXPECT_EQ(shape.root()->getLastChildNode(), shape["item"]);
    EXPECT_EQ(ZorSchema::sNodeMap.size(), entries);
    EXPECT_EQ(shape.schema.getChildNode(shape["a"], "x"), nullptr);
    EXPECT_EQ(shape.schema.getChildNode(shape.root(), "a"), shape["a"]);
}

// Names are not restricted: each of these is found again.
TEST_F(Schema, AnyNameWillDo) {
    Shape shape("");
    for (char const* const name : {"", " ", "a/b", "*", "a[1]", "\xC3\xA4"}) {
        ZorSchemaNode* const node = shape.schema.makeBranchNode(shape.root(), name, 1);
        ASSERT_NE(node, nullptr) << name;
        EXPECT_EQ(shape.schema.getChildNode(shape.root(), name), node);
    }
    EXPECT_NE(shape.schema.getChildNode(shape.root(), nullptr), nullptr); // the empty name
}

TEST_F(Schema, FindsChildrenByExactName) {
    Shape shape("a{b:int} c:int");
    EXPECT_EQ(shape.schema.getChildNode(shape.root(), "a"), shape["a"]);
    EXPECT_EQ(shape.schema.getChildNode(shape["a"], static_cast<ZorString*>(Text("b"))),
              shape["a/b"]);
    for (char const* const name : {"", "A", "b", "a/b", "*"}) {
        EXPECT_EQ(shape.schema.getChildNode(shape.root(), name), nullptr) << name;
    }
    EXPECT_EQ(shape.schema.getChildNode(nullptr, "a"), nullptr);
}

// Looking up a child takes the cache's lock only; below a data node, none.
TEST_F(Schema, LooksUpChildrenWithoutTheSchemasLock) {
    Shape shape("a{} item:int");
    shape.schema.lock.take(-1);
    EXPECT_EQ(shape.schema.getChildNode(shape.root(), "a"), shape["a"]);
    shape.schema.lock.give();
    ZorSchema::sNodeMapSema4.take(-1);
    EXPECT_EQ(shape.schema.getChildNode(shape["item"], "a"), nullptr);
    ZorSchema::sNodeMapSema4.give();
}

TEST_F(Schema, MakesNodesUnderItsLock) {
    Shape shape("");
    ZorDataType* const type = zor_derivedTypeMake("noting", nullptr, nullptr, nullptr, nullptr,
                                                  nullptr, ZorBuiltIn::getDataType("int"), nullptr);
    type->fromStringFn = noteLocks;
    shape.schema.addDataType(type);
    locksSeen = 0;
    shape.schema.makeDataNode(shape.root(), "item", 1, type, "5");
    EXPECT_EQ(locksSeen, 1);
}

TEST_F(Schema, CountsItsDocuments) {
    Shape shape("a:int");
    EXPECT_EQ(shape.schema.documentCount(), 0);
    {
        ZorDocument const first(&shape.schema, "first");
        ZorDocument const second(&shape.schema, "second");
        EXPECT_EQ(shape.schema.documentCount(), 2);
        EXPECT_EQ(shape.root()->documentCount, 2);
    }
    EXPECT_EQ(shape.schema.documentCount(), 0);
}

// Names are compared as they are stored: cut to what a string holds.
TEST_F(Schema, NamesThatAreCutToTheSameAreTheSame) {
    ZorSchema schema(nullptr, "phone");
    std::string const longer(ZorString::maxLength + 10, 'y');
    std::string const stored(ZorString::maxLength, 'y');
    ZorSchemaNode* const node = schema.makeBranchNode(schema.getRootNode(), longer.c_str(), 1);
    ASSERT_NE(node, nullptr);
    EXPECT_EQ(node->getName(), stored);
    EXPECT_EQ(schema.makeBranchNode(schema.getRootNode(), longer.c_str(), 1), nullptr);
    EXPECT_EQ(log.take(),
              "3 zor_branchNodeMake(" + stored + "): node name already exists for given parent\n");
}
