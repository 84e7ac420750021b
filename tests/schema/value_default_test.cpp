// Cells of documents that are made, copied and deleted, for every kind of type, compared with what
// the functions of the types say.

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>

#include "tests/document/store.h"
#include "tests/support/incidents.h"
#include "tests/types/call_log.h"
#include "types/number_value.h"

using zor_internal::numberCopy;
using zor_internal::numberFree;

namespace {

class ValueDefault : public testing::Test {
protected:
    IncidentLog log;
};

// A type with functions of the test's own for copying or releasing, or without.
ZorDataType* probeWith(char const* name, ZorCopyValueFn copy, ZorFreeValueFn release) {
    ZorDataType* const type = makeProbe(name, nullptr, nullptr);
    type->copyValueFn = copy;
    type->freeValueFn = release;
    return type;
}

// Every cell without looking at the types twice: its node's default, unchanged.
std::string dullCells(ZorSchemaNode* root) {
    std::string text;
    for (ZorSchemaNode* const node : nodesBelow(root)) {
        if (!node->isDataNode()) continue;
        ZorString* const value = node->getDefaultValue();
        std::string const each = value ? taken(value) : "-";
        text += pathOf(node) + '=';
        for (int i = 0; i < node->getTotalOccurrences(); ++i) text += (i ? "," : "") + each;
        text += ';';
    }
    return text;
}

int countOf(std::string const& calls, std::string const& call) {
    int count = 0;
    for (std::size_t at = calls.find(call); at != std::string::npos; at = calls.find(call, at + 1))
        ++count;
    return count;
}

} // namespace

TEST_F(ValueDefault, EveryCellOfANewDocumentIsTheDefault) {
    std::mt19937 random(11);
    for (int round = 0; round < 200; ++round) {
        std::string const text = randomShape(random, 4, {1, 2, 3, 0, 7});
        Store store(text);
        ASSERT_EQ(store.cells(), dullCells(store.shape.root())) << text;
    }
}

TEST_F(ValueDefault, EveryBuiltInTypeHasItsDefaultInEveryCell) {
    Store store("a*3{s*2:string=x t*2:string=true long:string=" + std::string(50, 'y') +
                " i*2:int=-5 u*2:uint=4294967295 b*2:bool=true f*2:float=0.25 d:digit_string=12 "
                "p:ip_address=10.0.0.1 m:ip_mask=255.0.0.0 n:domain_name=n l:url=u}");
    EXPECT_EQ(store.cells(), dullCells(store.shape.root()));
    EXPECT_NE(store.cells().find("a/u=4294967295,4294967295,"), std::string::npos);
    // No cell shares what another one has.
    ASSERT_EQ(store.set("a/f", 1, "7"), 1);
    ASSERT_EQ(store.set("a/s", 1, "other"), 1);
    ASSERT_EQ(store.set("a/i", 1, "7"), 1);
    EXPECT_EQ(store.text("a/f", 0) + store.text("a/f", 1) + store.text("a/f", 2), "0.2570.25");
    EXPECT_EQ(store.text("a/s", 0) + store.text("a/s", 1) + store.text("a/s", 2), "xotherx");
    EXPECT_EQ(store.text("a/i", 0) + store.text("a/i", 1) + store.text("a/i", 2), "-57-5");
}

// A copy has the same cells, which stay what they are when the original is gone.
TEST_F(ValueDefault, ACopyHasTheCellsOfItsOriginal) {
    std::mt19937 random(12);
    for (int round = 0; round < 100; ++round) {
        Shape shape(randomShape(random, 3, {1, 2, 3}));
        auto original = std::make_unique<ZorDocument>(&shape.schema, "original");
        for (ZorSchemaNode* const node : nodesBelow(shape.root())) {
            for (int i = 0; node->isDataNode() && i < node->getTotalOccurrences(); ++i) {
                char const* const values[] = {nullptr, "1", "true", "a text for a string only"};
                original->setStringNodeValue(node, i, values[random() % 4]);
            }
        }
        log.take();
        std::string const cells = cellsOf(*original);
        ZorDocument copy(*original, &shape.schema);
        original.reset();
        ASSERT_EQ(cellsOf(copy), cells);
    }
}

// What a host's type brings for copying and for releasing is called once for every value.
TEST_F(ValueDefault, FunctionsOfAHostsTypeAreCalledForEveryValue) {
    struct {
        char const* type;
        int copies; // noted for each value
        int releases;
    } const cases[] = {{"both", 1, 1}, {"copying", 1, 0}, {"freeing", 0, 1}, {"neither", 0, 0}};
    for (auto const& [type, copies, releases] : cases) {
        CallLog calls;
        Shape shape(std::string("a*3{b*2:") + type + "=5 c*4:" + type + "}",
                    {probeWith("both", probe::copyValue, probe::freeValue),
                     probeWith("copying", probe::copyValue, numberFree),
                     probeWith("freeing", numberCopy, probe::freeValue),
                     probeWith("neither", numberCopy, numberFree)});
        calls.take();
        auto document = std::make_unique<ZorDocument>(&shape.schema, "document");
        std::string noted = calls.take();
        EXPECT_EQ(countOf(noted, "copyValue 5"), 6 * copies) << type;
        EXPECT_EQ(countOf(noted, "freeValue"), 0) << type;
        EXPECT_EQ(cellsOf(*document), "a/b=5,5,5,5,5,5;a/c=-,-,-,-,-,-,-,-,-,-,-,-;") << type;

        document->setStringNodeValue(shape["a/c"], 11, "9");
        document->setStringNodeValue(shape["a/b"], 0, nullptr);
        calls.take();
        auto copy = std::make_unique<ZorDocument>(*document, &shape.schema);
        noted = calls.take();
        EXPECT_EQ(countOf(noted, "copyValue"), 6 * copies) << type;
        EXPECT_EQ(countOf(noted, "copyValue 9"), copies) << type;
        EXPECT_EQ(cellsOf(*copy), cellsOf(*document)) << type;

        for (auto* const each : {&document, &copy}) {
            calls.take();
            each->reset();
            noted = calls.take();
            EXPECT_EQ(countOf(noted, "freeValue"), 6 * releases) << type;
            EXPECT_EQ(countOf(noted, "freeValue 9"), releases) << type;
        }
    }
}

// A type that a host derives from a built-in one has its values, and their life, from that.
TEST_F(ValueDefault, DerivedTypesHaveTheCellsOfTheirBase) {
    std::vector<ZorDataType*> types;
    for (char const* const base : {"int", "string", "float"}) {
        types.push_back(zor_derivedTypeMake((std::string("my") + base).c_str(), nullptr, nullptr,
                                            nullptr, nullptr, nullptr,
                                            ZorBuiltIn::getDataType(base), nullptr));
    }
    Store store("a*3:myint=7 b*3:mystring=x c*3:myfloat=1.5", types);
    EXPECT_EQ(store.cells(), "a=7,7,7;b=x,x,x;c=1.5,1.5,1.5;");
    EXPECT_EQ(store.set("b", 1, "y"), 1);
    EXPECT_EQ(store.set("c", 1, "2"), 1);
    EXPECT_EQ(store.set("a", 1, "8"), 1);
    ZorDocument const copy(store.document, &store.shape.schema);
    EXPECT_EQ(store.cells(), "a=7,8*,7;b=x,y*,x;c=1.5,2*,1.5;");
}

// A type that makes values as strings do, but overwrites them by a function of its own.
TEST_F(ValueDefault, ASetterOfTheHostsIsCalled) {
    ZorDataType* const type =
        zor_derivedTypeMake("loud", nullptr, nullptr, nullptr, nullptr, nullptr,
                            ZorBuiltIn::getDataType("string"), nullptr);
    type->setFromStringFn = [](u_zorItemValue* value, char const* text) {
        value->stringValue = value->stringValue->set(2, text, -1, "!", -1);
    };
    Store store("a:loud", {type});
    for (char const* const text : {"first", "second"}) EXPECT_EQ(store.set("a", 0, text), 1);
    EXPECT_EQ(store.text("a"), "second!");
}

// Nothing was made for a node without type, so nothing is released.
TEST_F(ValueDefault, CellsWithoutTypeAreLeftAlone) {
    ZorSchemaNode node(ZorSchemaNode::DATA_NODE, "typeless");
    node.occurrences = 2;
    ZorValueNode cells[2] = {{{}, ZorValueNode::noValue}, {{}, ZorValueNode::noValue}};
    EXPECT_EQ(node.freeValueNodes(cells, 1), 2);
}
