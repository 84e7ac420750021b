// The layout of a document's cells: how many, where, and what is done with them.

#include <gtest/gtest.h>

#include <climits>
#include <functional>

#include "tests/schema/shape.h"
#include "tests/support/incidents.h"
#include "tests/types/call_log.h"
#include "zor/document.h"

namespace {

class ValueLayout : public testing::Test {
protected:
    IncidentLog log;
};

constexpr unsigned char kNoValue = ZorValueNode::noValue;
constexpr unsigned char kChanged = ZorValueNode::changed;

long cellsOf(char const* text) { return Shape(text).root()->countRequiredValueNodes(); }

// Calls `visit` with every combination of digits below the bounds, the last digit moving fastest.
void forEachCombination(std::vector<int> const& bounds, std::vector<int>& digits,
                        std::function<void()> const& visit) {
    if (digits.size() == bounds.size()) return visit();
    for (int digit = 0; digit < bounds[digits.size()]; ++digit) {
        digits.push_back(digit);
        forEachCombination(bounds, digits, visit);
        digits.pop_back();
    }
}

// Finds out by counting where every cell lies, and compares it with what the document says.
class Recount {
public:
    explicit Recount(ZorDocument& recounted) : document(recounted), cells(0) {
        walk(document.rootNode);
    }

    long count() const { return cells; }

private:
    void walk(ZorSchemaNode* node) {
        for (ZorSchemaNode* child = node->firstChild; child; child = child->next) {
            bounds.push_back(child->occurrences);
            if (child->isDataNode())
                compareBlock(child);
            else
                walk(child);
            bounds.pop_back();
        }
    }

    void compareBlock(ZorSchemaNode* node) {
        long flatsSeen = 0;
        std::vector<int> digits;
        EXPECT_EQ(node->valueIndex, cells) << pathOf(node);
        forEachCombination(bounds, digits, [&] {
            long flat = 0;
            for (std::size_t i = 0; i < digits.size(); ++i) flat = flat * bounds[i] + digits[i];
            EXPECT_EQ(document.getDataItem(node, flat, 0), &document.values[cells])
                << pathOf(node) << " at " << flat;
            ++cells;
            ++flatsSeen;
        });
        EXPECT_EQ(node->getTotalOccurrences() > 0 ? node->getTotalOccurrences() : 0, flatsSeen)
            << pathOf(node);
        for (long const outside : {-1L, flatsSeen, flatsSeen + 1, LONG_MAX, LONG_MIN}) {
            EXPECT_EQ(document.getDataItem(node, outside, 0), nullptr)
                << pathOf(node) << " at " << outside;
        }
    }

    ZorDocument& document;
    std::vector<int> bounds; // occurrences from the root's child down
    long cells;
};

} // namespace

TEST_F(ValueLayout, CountsOneCellPerOccurrenceOfEveryDataNode) {
    struct {
        char const* shape;
        long cells;
    } const cases[] = {
        {"", 0},
        {"a{}", 0},
        {"a*5{}", 0},
        {"a*5{b*7{}}", 0},
        {"a:int", 1},
        {"a*3:int", 3},
        {"a:int b:int", 2},
        {"a*2{b*3:int}", 6},
        {"a*2{b*3:int c:int} d*4:int e*9{}", 12},
        {"a*4{b*2{c*3:int}}", 24},
        {"a*0:int", 0},
        {"a*-1:int", 0},
        {"a*-32768:int", 0},
        {"a*0{b*3:int}", 0},
        {"a*-2{b*3:int}", 0},
        {"a*3{b*-2:int}", 0},
        {"a*-2{b*-3:int}", 0},
        {"a*-1{b*-1:int} c*2:int", 2},
        {"a*-1{b*5{c*-1:int}} c*2:int", 2},
        {"a*32767:int", 32767},
        {"a*32767{b*2:int}", 65534},
    };
    for (auto const& [shape, cells] : cases) EXPECT_EQ(cellsOf(shape), cells) << shape;
}

TEST_F(ValueLayout, ANodeCountsFromItselfDown) {
    Shape const shape("a*2{b*3:int c*4{d*5:int}} e*0{f*6:int}");
    EXPECT_EQ(shape["a"]->countRequiredValueNodes(), 2 * (3 + 4 * 5));
    EXPECT_EQ(shape["a/b"]->countRequiredValueNodes(), 3);
    EXPECT_EQ(shape["a/c"]->countRequiredValueNodes(), 20);
    EXPECT_EQ(shape["e"]->countRequiredValueNodes(), 0);
    EXPECT_EQ(shape["e/f"]->countRequiredValueNodes(), 6);
}

TEST_F(ValueLayout, CountsUpToTheLargestLong) {
    std::string shape = "x*32767:int";
    long expected = 32767;
    bool saturated = false;
    for (int depth = 1; depth < 8; ++depth) {
        EXPECT_EQ(cellsOf(shape.c_str()), expected) << shape;
        shape = "x*32767{" + shape + "}";
        saturated = saturated || expected > LONG_MAX / 32767;
        expected = saturated ? LONG_MAX : expected * 32767;
    }
    EXPECT_TRUE(saturated);
    EXPECT_EQ(cellsOf(("y{" + shape + "} z{" + shape + "} a:int").c_str()), LONG_MAX);
    EXPECT_EQ(cellsOf(("y*0{" + shape + "} a:int").c_str()), 1);
    EXPECT_EQ(cellsOf(("y*-1{" + shape + "}").c_str()), 0);
}

TEST_F(ValueLayout, TheLastCellOfARepeatedItemInARepeatedBranch) {
    Shape shape("first:int branch*2{leaf*3:int}");
    ZorDocument document(&shape.schema, "document");
    ZorSchemaNode* const leaf = shape["branch/leaf"];
    EXPECT_EQ(leaf->getTotalOccurrences(), 6);
    EXPECT_EQ(leaf->valueIndex, 1);
    EXPECT_EQ(document.getDataItem(leaf, 1 * 3 + 2, 0), document.values + leaf->valueIndex + 5);
}

// Blocks lie in depth-first order; within one, the outermost occurrence counts most.
TEST_F(ValueLayout, AgreesWithARecount) {
    std::mt19937 random(5);
    long cells = 0;
    for (int round = 0; round < 300; ++round) {
        std::string const text = randomShape(random, 4, {1, 1, 2, 3, 2, 1, 4, 0, -1, -2});
        Shape shape(text);
        long const required = shape.root()->countRequiredValueNodes();
        ZorDocument document(&shape.schema, "document");
        Recount const recount(document);
        ASSERT_EQ(recount.count(), required) << text;
        ASSERT_EQ(document.rootNode->countRequiredValueNodes(), required) << text;
        cells += required;
        ASSERT_FALSE(HasFailure()) << text;
    }
    EXPECT_GT(cells, 3000); // the shapes were not all small ones
}

TEST_F(ValueLayout, IsTheSameForEveryDocumentAndCopy) {
    Shape shape("a*2{b*3:int c:string} d:int");
    ZorDocument first(&shape.schema, "first");
    ZorDocument second(&shape.schema, "second");
    ZorDocument third(first, &shape.schema);
    for (ZorDocument* const document : {&first, &second, &third}) {
        EXPECT_EQ(Recount(*document).count(), 9);
    }
}

TEST_F(ValueLayout, FollowsNodesAddedBetweenDocuments) {
    Shape shape("a{b:int} c:int");
    EXPECT_EQ(shape["c"]->valueIndex, -1);
    delete new ZorDocument(&shape.schema, "first");
    EXPECT_EQ(shape["c"]->valueIndex, 1);

    shape.schema.makeDataNode(shape["a"], "late", 5, shape.schema.getDataType("int"), nullptr);
    EXPECT_EQ(shape["a/late"]->valueIndex, -1);
    ZorDocument second(&shape.schema, "second");
    EXPECT_EQ(shape["c"]->valueIndex, 6);
    EXPECT_EQ(Recount(second).count(), 7);
}

TEST_F(ValueLayout, NewCellsHoldCopiesOfTheDefault) {
    CallLog calls;
    Shape const shape("a*2:probe=5 b:probe", {makeProbe("probe", nullptr, nullptr)});
    calls.take();
    ZorValueNode cells[3] = {};
    EXPECT_EQ(shape.root()->makeValueNodes(cells, 0, 1), 3);
    EXPECT_EQ(calls.take(), "copyValue 5;copyValue 5;");
    EXPECT_EQ(cells[0].value.intValue, 5);
    EXPECT_EQ(cells[0].flags, 0);
    EXPECT_EQ(cells[1].value.intValue, 5);
    EXPECT_EQ(cells[1].flags, 0);
    EXPECT_EQ(cells[2].flags, kNoValue);
}

TEST_F(ValueLayout, FillingLeavesTheChangedBitAsItIs) {
    Shape const shape("a*2:int=5 b*2:int");
    ZorValueNode cells[4] = {};
    cells[0].flags = kNoValue | kChanged;
    cells[2].flags = kChanged;
    shape.root()->makeValueNodes(cells, 0, 1);
    EXPECT_EQ(cells[0].flags, kChanged);
    EXPECT_EQ(cells[1].flags, 0);
    EXPECT_EQ(cells[2].flags, kNoValue | kChanged);
    EXPECT_EQ(cells[3].flags, kNoValue);
}

// The start index is where the subtree's first cell lies; the multiplier stands for all branches
// above.
TEST_F(ValueLayout, StartIndexAndMultiplierPlaceASubtree) {
    Shape const shape("a*2{b*3:int=1 c:int=2}");
    ZorValueNode cells[16] = {};
    EXPECT_EQ(shape["a"]->makeValueNodes(cells, 100, 2), 2 * 2 * 3 + 2 * 2);
    EXPECT_EQ(shape["a/b"]->valueIndex, 100);
    EXPECT_EQ(shape["a/c"]->valueIndex, 112);
    EXPECT_EQ(cells[11].value.intValue, 1);
    EXPECT_EQ(cells[12].value.intValue, 2);
    EXPECT_EQ(shape["a/b"]->makeValueNodes(cells, 7, 0), 0);
    EXPECT_EQ(shape["a/b"]->valueIndex, 7);
    EXPECT_EQ(shape["a"]->freeValueNodes(cells, 2), 16);
}

TEST_F(ValueLayout, CopyingTakesTheFlagsWholeAndCopiesValues) {
    CallLog calls;
    Shape const shape("a*4:probe=9", {makeProbe("probe", nullptr, nullptr)});
    calls.take();
    ZorValueNode from[4] = {};
    for (long i = 0; i < 4; ++i) from[i].value.intValue = i + 1;
    from[1].flags = kChanged;
    from[2].flags = kNoValue;
    from[3].flags = kNoValue | kChanged;
    ZorValueNode to[4] = {};
    EXPECT_EQ(shape.root()->copyValueNodes(from, to, 20, 1), 4);
    EXPECT_EQ(calls.take(), "copyValue 1;copyValue 2;");
    for (int i = 0; i < 4; ++i) EXPECT_EQ(to[i].flags, from[i].flags) << i;
    EXPECT_EQ(to[0].value.intValue, 1);
    EXPECT_EQ(to[1].value.intValue, 2);
    EXPECT_EQ(shape["a"]->valueIndex, 20);
}

TEST_F(ValueLayout, FreeingReleasesValuesAndLeavesFlags) {
    CallLog calls;
    Shape const shape("a*2{b:probe c:probe}", {makeProbe("probe", nullptr, nullptr)});
    ZorValueNode cells[4] = {};
    for (long i = 0; i < 4; ++i) cells[i].value.intValue = i;
    cells[1].flags = kNoValue | kChanged;
    cells[2].flags = kChanged;
    EXPECT_EQ(shape.root()->freeValueNodes(cells, 1), 4);
    EXPECT_EQ(calls.take(), "freeValue 0;freeValue 2;freeValue 3;");
    EXPECT_EQ(cells[0].flags, 0);
    EXPECT_EQ(cells[1].flags, kNoValue | kChanged);
    EXPECT_EQ(cells[2].flags, kChanged);
}

TEST_F(ValueLayout, NodesBelowNonPositiveOccurrencesTouchNoCell) {
    CallLog calls;
    Shape const shape("a*-2{b*-3:probe=1} c*0{d:probe=2} e*2{f*-1:probe=3} g:probe=4",
                      {makeProbe("probe", nullptr, nullptr)});
    calls.take();
    ZorValueNode cell = {};
    ZorValueNode copy = {};
    EXPECT_EQ(shape.root()->makeValueNodes(&cell, 0, 1), 1);
    EXPECT_EQ(shape.root()->copyValueNodes(&cell, &copy, 0, 1), 1);
    EXPECT_EQ(shape.root()->freeValueNodes(&cell, 1), 1);
    EXPECT_EQ(calls.take(), "copyValue 4;copyValue 4;freeValue 4;");
    EXPECT_EQ(shape["g"]->valueIndex, 0);
}

// Nodes that hang on no schema are counted and filled all the same; one without a type has no
// default.
TEST_F(ValueLayout, LooseNodesHaveCellsToo) {
    ZorSchemaNode item(ZorSchemaNode::DATA_NODE, "item");
    item.occurrences = 2;
    item.valueIndex = -1;
    EXPECT_EQ(item.countRequiredValueNodes(), 2);
    ZorValueNode cells[2] = {};
    EXPECT_EQ(item.makeValueNodes(cells, 7, 1), 2);
    EXPECT_EQ(item.valueIndex, 7);
    EXPECT_EQ(cells[0].flags, kNoValue);
    EXPECT_EQ(cells[1].flags, kNoValue);
}

TEST_F(ValueLayout, ATreeWithoutDataNodesTouchesNoCell) {
    Shape const shape("a*3{} b{c{}}");
    EXPECT_EQ(shape.root()->makeValueNodes(nullptr, 0, 1), 0);
    EXPECT_EQ(shape.root()->copyValueNodes(nullptr, nullptr, 0, 1), 0);
    EXPECT_EQ(shape.root()->freeValueNodes(nullptr, 1), 0);
}
