// Several threads on the schemas of one collection: their making, their nodes, their documents.

#include <gtest/gtest.h>

#include "tests/stress/threads.h"

namespace {

constexpr int kThreads = 4;
constexpr int kRounds = rounds(1000);

// Names in an order that the sorted index of children changes.
constexpr char kDefinition[] =
    "<store><schema name='phone'>"
    "<item name='zone' type='string' default='A'/>"
    "<branch name='key' occurrences='3'/>"
    "<item name='label' type='string' default='none' parent='/key'/>"
    "<branch name='lamp' occurrences='2' parent='/key'/>"
    "<item name='colour' type='string' default='off' parent='/key/lamp'/>"
    "<item name='blink' type='bool' default='false' parent='/key/lamp'/>"
    "<item name='alarm' type='int' default='5'/>"
    "</schema></store>";

class SchemaStress : public testing::Test {
protected:
    SchemaStress() : store("store") {
        store.importXML(kDefinition);
        schema = store.getSchema("phone");
    }

    ZorDocument* make(std::string const& name) const {
        return const_cast<ZorCollection&>(store).makeDocument("phone", name.c_str());
    }

    ZorCollection store;
    ZorSchema* schema;
};

// Writes to a document that nobody else knows, and reads back by paths what was written.
void useDocument(ZorDocument* document, std::string const& text) {
    ZorResultSet* const labels = document->select("key[2]/label");
    EXPECT_EQ(labels->setValue(text.c_str()), 1);
    delete labels;
    EXPECT_EQ(selected(document, "key/label"), "none " + text + " none ");
    EXPECT_EQ(selected(document, "key[3]/lamp/colour"), "off off ");
    EXPECT_EQ(selected(document, "//blink"), "false false false false false false ");
    EXPECT_EQ(selected(document, "alarm"), "5 ");
    EXPECT_EQ(selected(document, "*"), "A (null) (null) (null) 5 ");
    EXPECT_EQ(selected(document, "missing"), "");
}

// The index and the cells of every node, which must not change under a document.
std::string layoutOf(ZorSchemaNode const* node) {
    std::string text = node->getName();
    if (node->isDataNode()) return text + '@' + std::to_string(node->valueIndex);
    text += '{';
    for (int i = 0; i < node->childCount; ++i) text += layoutOf(node->sortedChildren[i]) + ' ';
    return text + '}';
}

} // namespace

// While one thread makes and deletes documents of a schema, others use documents of their own.
TEST_F(SchemaStress, DocumentsComeAndGoBesideOthers) {
    std::vector<ZorDocument*> own;
    for (int i = 0; i < kThreads; ++i) own.push_back(make("own" + std::to_string(i)));
    std::string const layout = layoutOf(schema->rootNode);
    ZorSchemaNode* const* const index = schema->rootNode->sortedChildren;
    Flag done;
    inThreads(kThreads + 1, [&](int thread) {
        if (thread < kThreads) {
            for (int round = 0; !done.isSet(); ++round) {
                useDocument(own[static_cast<std::size_t>(thread)], std::to_string(round));
            }
        } else {
            for (int round = 0; round < kRounds * 2; ++round) {
                useDocument(make("passing"), "passing");
                store.deleteDocument("passing");
            }
            done.set();
        }
        EXPECT_EQ(takeIncidents(), "");
    });
    EXPECT_EQ(schema->documentCount(), kThreads);
    EXPECT_EQ(layoutOf(schema->rootNode), layout);
    EXPECT_EQ(schema->rootNode->sortedChildren, index) << "the index was made again";
}

// Every thread makes and deletes documents, so that the first and the last of the schema come and
// go in any thread.
TEST_F(SchemaStress, TheFirstAndTheLastDocumentMayBeAnyones) {
    inThreads(kThreads, [&](int thread) {
        std::string const name = "own" + std::to_string(thread);
        for (int round = 0; round < kRounds; ++round) {
            useDocument(make(name), std::to_string(round));
            store.deleteDocument(name.c_str());
            if (round % 4 == thread) std::this_thread::yield();
        }
        EXPECT_EQ(takeIncidents(), "");
    });
    EXPECT_EQ(schema->documentCount(), 0);
}

// The same for documents that are in no collection: only the schema knows of them.
TEST_F(SchemaStress, DocumentsMayBeTheHostsOwn) {
    inThreads(kThreads, [&](int thread) {
        for (int round = 0; round < kRounds; ++round) {
            schema->lock.take(-1);
            auto* const own = new ZorDocument(schema, "own");
            schema->lock.give();
            useDocument(own, std::to_string(round));
            delete own;
            if (round % 4 == thread) std::this_thread::yield();
        }
        EXPECT_EQ(takeIncidents(), "");
    });
    EXPECT_EQ(schema->documentCount(), 0);
}

// The nodes of a schema with documents are found by every way at the same time.
TEST_F(SchemaStress, NodesAreFoundWhileDocumentsComeAndGo) {
    ZorDocument* const shared = make("shared");
    ZorSchemaNode* const lamp = nodeAt(schema, "key/lamp");
    ZorSchemaNode* const colour = nodeAt(schema, "key/lamp/colour");
    inThreads(kThreads, [&](int thread) {
        std::string const name = "own" + std::to_string(thread);
        for (int round = 0; round < kRounds; ++round) {
            EXPECT_EQ(nodeAt(schema, "key/lamp/colour"), colour);
            EXPECT_EQ(nodeAt(schema, "//lamp"), lamp);
            EXPECT_EQ(schema->getChildNode(lamp, "colour"), colour);
            EXPECT_EQ(schema->getChildNode(lamp, "missing"), nullptr);
            EXPECT_EQ(selected(shared, "key[1]/lamp[2]/colour"), "off ");
            EXPECT_NE(schema->getDataType("int"), nullptr);
            make(name);
            store.deleteDocument(name.c_str());
        }
        EXPECT_EQ(takeIncidents(), "");
    });
}

// A document that is asked for another schema's node says no, even while that one gets its first
// document.
TEST_F(SchemaStress, NodesOfOtherSchemasAreRefusedAtAnyTime) {
    ZorSchemaNode* const alarm = nodeAt(schema, "alarm");
    ZorDocument* const other = store.makeDocument("DefaultSchema", "other");
    inThreads(2, [&](int thread) {
        for (int round = 0; round < kRounds; ++round) {
            if (thread == 0) {
                EXPECT_EQ(textAt(other, alarm, 0), "(null)");
                EXPECT_EQ(other->setIntNodeValue(alarm, 0, 1), 0);
                EXPECT_EQ(takeIncidents(), "3 setIntNodeValue: occurrence is out of range\n");
                continue;
            }
            EXPECT_EQ(textAt(make("first"), alarm, 0), "5");
            store.deleteDocument("first");
        }
    });
}

// A schema with documents refuses nodes, whoever asks; the refusal harms nobody.
TEST_F(SchemaStress, ASchemaInUseRefusesNodes) {
    make("keeper");
    inThreads(kThreads, [&](int thread) {
        std::string const name = "own" + std::to_string(thread);
        for (int round = 0; round < kRounds; ++round) {
            if (thread == 0) {
                EXPECT_EQ(schema->makeBranchNode(schema->rootNode, "more", 2), nullptr);
                EXPECT_EQ(takeIncidents(), "3 zor_branchNodeMake(more): Cannot modify schema while "
                                           "documents exist\n");
                continue;
            }
            useDocument(make(name), std::to_string(round));
            store.deleteDocument(name.c_str());
        }
        EXPECT_EQ(takeIncidents(), "");
    });
}

// While documents are made, copied in and deleted, nodes are made between them or not at all.
TEST_F(SchemaStress, NodesAreMadeBetweenDocuments) {
    ZorCollection elsewhere("store");
    elsewhere.importXML(kDefinition);
    ZorDocument* const source = elsewhere.makeDocument("phone", "source");
    Flag done;
    inThreads(3, [&](int thread) {
        for (int round = 0; thread == 0 && round < kRounds * 4; ++round) {
            std::string const name = std::to_string(round % 1000);
            if (schema->makeBranchNode(schema->rootNode, name.c_str(), 1)) continue;
            std::string const begin = "3 zor_branchNodeMake(" + name + "): ";
            std::string const incident = takeIncidents();
            EXPECT_TRUE(incident == begin + "Cannot modify schema while documents exist\n" ||
                        incident == begin + "node name already exists for given parent\n");
        }
        if (thread == 0) done.set();
        while (!done.isSet()) {
            if (thread == 1) {
                EXPECT_EQ(selected(make("made"), "zone"), "A ");
                store.deleteDocument("made");
                continue;
            }
            store.copyDocument("copied", source);
            std::string const incident = takeIncidents();
            EXPECT_TRUE(incident.empty() || incident == "3 ZorCollection::copyDocument{Schema "
                                                        "(phone) does not match}\n");
            store.deleteDocument("copied");
        }
    });
}

// Schemas of one collection are built, used and deleted in parallel; they share the collection's
// types, the built-in ones and the cache of names.
TEST_F(SchemaStress, SchemasAreBuiltSideBySide) {
    ASSERT_EQ(store.addDataType(zor_rangeMake(ZorBuiltIn::getDataType("int"), "level", "0", "9")),
              1);
    inThreads(kThreads, [&](int thread) {
        std::string const name = "schema" + std::to_string(thread);
        for (int round = 0; round < kRounds; ++round) {
            ZorSchema* const built = store.makeSchema(name.c_str());
            ZorSchemaNode* const branch = built->makeBranchNode(built->rootNode, "key", 2);
            for (char const* type : {"int", "level", "string"}) {
                built->makeDataNode(branch, type, 2, built->getDataType(type), "3");
            }
            ZorDataType* const choice = zor_choiceMake("colour");
            zor_choiceAddOption(choice, "red");
            EXPECT_EQ(built->addDataType(choice), 1);
            built->makeDataNode(built->rootNode, "lamp", 1, built->getDataType("colour"), "red");
            ZorDocument* const document = store.makeDocument(name.c_str(), name.c_str());
            EXPECT_EQ(selected(document, "key[2]/*"), "3 3 3 3 3 3 ");
            EXPECT_EQ(selected(document, "lamp"), "red ");
            store.deleteSchema(name.c_str());
            EXPECT_EQ(store.getDocument(name.c_str()), nullptr);
        }
        EXPECT_EQ(takeIncidents(), "");
    });
}

// Several threads make the nodes of one schema: each name once, each node in its place. Meanwhile
// one thread exports it, with the nodes of one moment.
TEST_F(SchemaStress, OneSchemaIsBuiltByMany) {
    for (int round = 0; round < 5; ++round) {
        ZorSchema* const built = store.makeSchema("built");
        std::atomic<int> made{0};
        Flag done;
        inThreads(kThreads + 1, [&](int thread) {
            while (thread == kThreads && !done.isSet()) {
                ZorCollection reader("store");
                reader.importXML(store.exportSchema("built").c_str());
                EXPECT_EQ(takeIncidents(), "");
                EXPECT_NE(reader.getSchema("built"), nullptr);
            }
            if (thread == kThreads) return;
            Random random(thread);
            int own = 0;
            for (int i = 0; i < kRounds; ++i) {
                std::string const name = std::to_string(random.below(kRounds));
                bool const branch = i % 2;
                ZorSchemaNode* const root = built->rootNode;
                ZorDataType* const type = built->getDataType("int");
                if (branch ? built->makeBranchNode(root, name.c_str(), 1)
                           : built->makeDataNode(root, name.c_str(), 1, type, "1")) {
                    ++own;
                    continue;
                }
                EXPECT_EQ(takeIncidents(), std::string("3 zor_") + (branch ? "branch" : "data") +
                                               "NodeMake(" + name +
                                               "): node name already exists for given parent\n");
            }
            made.fetch_add(own, std::memory_order_relaxed);
            done.set();
        });
        EXPECT_GT(built->rootNode->countRequiredValueNodes(), 0);
        EXPECT_EQ(built->rootNode->childCount, made);
        store.deleteSchema("built");
    }
}

// A type that one thread adds to the collection is found by the others, complete, or not yet.
TEST_F(SchemaStress, TypesAreAddedWhileOthersLookThemUp) {
    inThreads(kThreads, [&](int thread) {
        Random random(thread);
        for (int round = 0; round < kRounds; ++round) {
            std::string const added = std::to_string(round);
            if (thread == 0) {
                ZorDataType* const base = ZorBuiltIn::getDataType("uint");
                EXPECT_EQ(store.addDataType(zor_rangeMake(base, added.c_str(), "0", added.c_str())),
                          1);
                continue;
            }
            std::string const name = std::to_string(random.below(round + 1));
            ZorDataType* const found = schema->getDataType(name.c_str());
            if (!found) continue;
            EXPECT_EQ(zor_rangeMax(found), name);
            EXPECT_EQ(zor_dataTypeValidate(found, std::to_string(kRounds + 1).c_str()), 0);
        }
    });
}
