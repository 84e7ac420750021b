// Exports compared with one that looks at every occurrence of every node and plans nothing.

#include <gtest/gtest.h>

#include <climits>
#include <memory>
#include <random>
#include <string>

#include "tests/collection/objects.h"
#include "tests/document/store.h"
#include "tests/support/incidents.h"
#include "tests/types/recording_writer.h"

namespace {

// What stands inside the tag of a data node's occurrence.
std::string dullValue(ZorDocument& document, ZorSchemaNode* node, long flat) {
    ZorString* const value = document.nonBlockingGetStringNodeValue(node, flat);
    if (!value) return "";
    std::string const escaped = taken(escapeCData(value));
    value->removeRef();
    return escaped;
}

// The children of one occurrence of a node. `any` becomes true when there is something changed.
std::string dullExport(ZorDocument& document, ZorSchemaNode* parent, long parentFlat, bool* any) {
    std::string text;
    for (ZorSchemaNode* node = parent->firstChild; node; node = node->next) {
        int next = 0;
        for (int k = 0; k < node->occurrences; ++k) {
            long const flat = parentFlat * node->occurrences + k;
            bool changed = false;
            std::string inside;
            if (node->isBranchNode())
                inside = dullExport(document, node, flat, &changed);
            else if ((changed = document.wasChanged(node, flat)))
                inside = dullValue(document, node, flat);
            if (!changed) continue;
            std::string const number =
                k == next ? "" : " occurrence=\"" + std::to_string(k + 1) + '"';
            text += std::string("<") + node->getName() + number + '>' + inside + "</" +
                    node->getName() + '>';
            next = k + 1;
            *any = true;
        }
    }
    return text;
}

class DocumentExportWalk : public testing::Test {
protected:
    // Sets about one cell of `rarity`, to nothing or to anything that its type takes.
    void fill(Store& store, unsigned rarity) {
        static char const* const texts[] = {
            "1",
            "true",
            "<&>\"'",
            "0.25",
            "",
            nullptr,
            "-7",
            "a <text> that is longer than the buffer inside of a string, and then some more of it"};
        for (ZorSchemaNode* const node : nodesBelow(store.shape.root())) {
            for (int i = 0; node->isDataNode() && i < node->getTotalOccurrences(); ++i) {
                if (dice() % rarity == 0) {
                    store.document.setStringNodeValue(node, i, texts[dice() % 8]);
                }
            }
        }
        log.take(); // what a type does not take
    }

    // Expects nothing to be written, and the answer that tells so.
    static void expectNothing(ZorDocument& document, ZorSchemaNode* node, long occurrence) {
        RecordingWriter writer;
        EXPECT_FALSE(document.exportXML(node, occurrence, &writer)) << occurrence;
        EXPECT_TRUE(writer.writes.empty()) << occurrence;
    }

    static void expectSame(ZorDocument& document, ZorSchemaNode* node, long occurrence) {
        bool any = false;
        std::string const expected = dullExport(document, node, occurrence, &any);
        bool answer = !any;
        EXPECT_EQ(written([&](ZorDataWriter* writer) {
                      answer = document.exportXML(node, occurrence, writer);
                  }),
                  expected);
        EXPECT_EQ(answer, any) << expected;
    }

    IncidentLog log;
    std::mt19937 dice{606};
};

} // namespace

TEST_F(DocumentExportWalk, AgreesOnWholeDocuments) {
    std::size_t longest = 0;
    for (int round = 0; round < 300; ++round) {
        std::string const text = randomShape(dice, 4, {1, 2, 3, 5, 1, 0, -2});
        Store store(text);
        fill(store, 1 + static_cast<unsigned>(round % 20));
        bool any = false;
        std::string const expected = dullExport(store.document, store.shape.root(), 0, &any);
        ASSERT_EQ(written([&](ZorDataWriter* writer) { store.document.exportXML(writer); }),
                  "<document schema=\"phone\" name=\"document\">" + expected + "</document>")
            << text;
        longest = std::max(longest, expected.size());
    }
    EXPECT_GT(longest, 2000U);
}

TEST_F(DocumentExportWalk, AgreesOnEveryOccurrenceOfEveryNode) {
    for (int round = 0; round < 60; ++round) {
        std::string const text = randomShape(dice, 4, {1, 2, 3, 2});
        Store store(text);
        fill(store, 4);
        for (ZorSchemaNode* const node : nodesBelow(store.shape.root())) {
            for (long i = 0; i < node->getTotalOccurrences(); ++i) {
                expectSame(store.document, node, i);
            }
            ASSERT_FALSE(HasFailure()) << pathOf(node) << " in " << text;
        }
        expectSame(store.document, store.shape.root(), 0);
    }
}

// An occurrence that a node does not have writes nothing, however far out it is: also one that
// would come back to a cell if numbers wrapped.
TEST_F(DocumentExportWalk, AnOccurrenceThatIsNoneWritesNothing) {
    Store store("a*4{b*2{c*8:int=1 d{e:string=x}} f*2:int=2} g*0{h:int=3} i*3:int=4");
    for (char const* const path : {"a/b/c", "a/b/d/e", "a/f", "i"}) {
        for (int i = 0; i < store[path]->getTotalOccurrences(); ++i) {
            ASSERT_EQ(store.set(path, i, "7"), 1);
        }
    }
    std::vector<ZorSchemaNode*> nodes = nodesBelow(store.shape.root());
    nodes.push_back(store.shape.root());
    for (ZorSchemaNode* const node : nodes) {
        long const count = node->getTotalOccurrences();
        for (long const none :
             {-1L, -2L, static_cast<long>(INT_MIN), LONG_MIN, LONG_MIN + 1, -(LONG_MAX / 8) - 1,
              count, count + 1, static_cast<long>(INT_MAX), LONG_MAX / 16 + 1, LONG_MAX / 8 + 1,
              LONG_MAX / 2 + 1, LONG_MAX - 1, LONG_MAX}) {
            expectNothing(store.document, node, none);
        }
    }
    expectSame(store.document, store["a/b"], 7);
    expectSame(store.document, store["a"], 3);
}

// Nor does a node of another schema, where it is asked for by itself.
TEST_F(DocumentExportWalk, ANodeOfAnotherSchemaWritesNothing) {
    Store store("a*2{b*2:int=1}");
    Store other("a*2{b*2:int=1}");
    ASSERT_EQ(store.set("a/b", 3, "7"), 1);
    ASSERT_EQ(other.set("a/b", 3, "8"), 1);
    for (long const occurrence : {0L, 1L, 2L, LONG_MAX}) {
        expectNothing(store.document, other["a"], occurrence);
    }
    expectNothing(store.document, other.shape.root(), 0);
    expectSame(store.document, store["a"], 1);
}

// A type of the host's that has no text for a value.
TEST_F(DocumentExportWalk, AValueWithoutTextIsAnEmptyElement) {
    ZorDataType* const type = zor_derivedTypeMake("mute", nullptr, nullptr, nullptr, nullptr,
                                                  nullptr, ZorBuiltIn::getDataType("int"), nullptr);
    type->toStringFn = [](u_zorItemValue) -> ZorString* { return nullptr; };
    Store store("a:mute", {type});
    EXPECT_EQ(store.set("a", 0, "7"), 1);
    bool any = false;
    std::string const expected = dullExport(store.document, store.document.getRootNode(), 0, &any);
    ZorStringWriter writer;
    EXPECT_TRUE(store.document.exportXML(store.document.getRootNode(), 0, &writer));
    EXPECT_EQ(writer.getValue(), expected);
    EXPECT_EQ(expected, "<a></a>");
}
