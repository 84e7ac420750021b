// Threads with collections of their own: what they share without knowing is the library's.

#include <gtest/gtest.h>

#include <memory>

#include "tests/stress/threads.h"

namespace {

constexpr int kThreads = 4;
constexpr int kRounds = rounds(200);

// Types of every kind, default values, and errors in the definition and in the document.
constexpr char kDefinition[] =
    "<store><schema name='phone'>"
    "<choice name='colour'><option>green</option><option>red</option></choice>"
    "<range name='level' baseType='int' minValue='0' maxValue='9'/>"
    "<range name='gain' baseType='float' minValue='-1.5' maxValue='1.5'/>"
    "<branch name='key' occurrences='3'/>"
    "<item name='lamp' type='colour' default='red' parent='/key'/>"
    "<item name='ringer' type='level' default='5' parent='/key'/>"
    "<item name='trim' type='gain' default='0.5' parent='/key'/>"
    "<item name='address' type='ip_address' parent='/key'/>"
    "<item name='label' type='string' parent='/key'/>"
    "</schema></store>";

constexpr char kConfig[] = "<store><document schema='phone' name='phone1'><key>"
                           "<lamp>green</lamp><ringer>7</ringer><trim>-1.25</trim>"
                           "<address>192.0.2.7</address><label>a &amp; b</label></key>"
                           "<key occurrence='3'><label>%</label></key></document></store>";

// The text with the number in the place of the percent sign.
std::string withNumber(char const* text, int number) {
    std::string result = text;
    return result.replace(result.find('%'), 1, std::to_string(number));
}

std::unique_ptr<ZorCollection> makeStore() {
    auto store = std::make_unique<ZorCollection>("store");
    store->importXML(kDefinition);
    return store;
}

// Reads and writes everything in the one document, and exports it.
void useStore(ZorCollection& store, int number) {
    store.importXML(withNumber(kConfig, number).c_str());
    ZorDocument* const phone = store.getDocument("phone1");
    EXPECT_EQ(selected(phone, "key/lamp"), "green red red ");
    EXPECT_EQ(selected(phone, "key/ringer"), "7 5 5 ");
    EXPECT_EQ(selected(phone, "key[1]/*"), "green 7 -1.25 192.0.2.7 a & b ");
    EXPECT_EQ(selected(phone, "key[3]/label"), std::to_string(number) + ' ');
    ZorSchemaNode* const ringer = nodeAt(store.getSchema("phone"), "key/ringer");
    EXPECT_EQ(phone->setIntNodeValue(ringer, 1, number % 10), 1);
    phone->restoreDefault(ringer, 1);
    EXPECT_EQ(store.exportDocument("phone1"),
              "<store><document schema=\"phone\" name=\"phone1\"><key><lamp>green</lamp>"
              "<ringer>7</ringer><trim>-1.25</trim><address>192.0.2.7</address>"
              "<label>a &amp; b</label></key><key occurrence=\"3\"><label>" +
                  std::to_string(number) + "</label></key></document></store>");
    store.deleteDocument("phone1");
}

} // namespace

// Collections that have nothing to do with each other are imported into, used, exported and
// destroyed in parallel.
TEST(SeparateStress, CollectionsAreIndependent) {
    inThreads(kThreads, [](int thread) {
        for (int round = 0; round < kRounds; ++round) {
            std::unique_ptr<ZorCollection> const store = makeStore();
            useStore(*store, thread * 10000 + round);
        }
        EXPECT_EQ(takeIncidents(), "");
    });
    EXPECT_EQ(ZorCollection::refCount, 0);
}

// Each thread's imports go wrong in their own way; every incident arrives in the thread that
// raised it, with the position in that thread's text.
TEST(SeparateStress, ImportErrorsStayWithTheirThread) {
    inThreads(kThreads, [](int thread) {
        std::unique_ptr<ZorCollection> const store = makeStore();
        std::string const indent(static_cast<std::size_t>(thread * 10), ' ');
        std::string const column = std::to_string(thread * 10);
        std::string const nameColumn = std::to_string(thread * 10 + 2); // behind "</"
        for (int round = 0; round < kRounds; ++round) {
            std::string const number = std::to_string(thread * 10000 + round + 10);
            store->importXML(("<store><schema name='s'><range name='r" + number +
                              "' baseType='int' minValue='" + number + "' maxValue='1'>\n" +
                              indent + "</range></schema></store>")
                                 .c_str());
            EXPECT_EQ(takeIncidents(),
                      "3 zor_rangeMake(r" + number +
                          "): max value must be greater than or equal to min value\n"
                          "3 {zor_XMLParse: line 2, column " +
                          column + " }Could Not Make Range Type with supplied parameters\n");
            store->importXML(("<store><document schema='phone' name='phone1'><key><ringer>" +
                              number + "</ringer></key></document></store>")
                                 .c_str());
            EXPECT_EQ(takeIncidents(),
                      "3 setStringNodeValue: value (" + number + ") is not valid\n");
            store->importXML(("<store>\n" + indent + "</stove" + number + ">").c_str());
            EXPECT_EQ(takeIncidents(),
                      "3 {zor_XMLParse: line 2, column " + nameColumn + " }mismatched tag\n");
            store->deleteDocument("phone1");
            store->deleteSchema("s");
            useStore(*store, round);
        }
    });
}

// Collections with a schema copied from one source are used in different threads.
TEST(SeparateStress, CopiesOfASchemaAreUsedInDifferentThreads) {
    std::unique_ptr<ZorCollection> const source = makeStore();
    std::vector<std::unique_ptr<ZorCollection>> copies;
    for (int i = 0; i < kThreads; ++i) {
        copies.push_back(std::make_unique<ZorCollection>("store"));
        copies.back()->copySchema("phone", source->getSchema("phone"));
    }
    std::string const definition = source->exportSchema("phone");
    inThreads(kThreads + 1, [&](int thread) {
        ZorCollection& store =
            thread < kThreads ? *copies[static_cast<std::size_t>(thread)] : *source;
        for (int round = 0; round < kRounds; ++round) {
            EXPECT_EQ(store.exportSchema("phone"), definition);
            useStore(store, round);
            EXPECT_NE(store.getSchema("phone")->getDataType("level"), nullptr);
        }
        EXPECT_EQ(takeIncidents(), "");
    });
}

// Copies of one schema are made, used and destroyed in several threads, beside the source.
TEST(SeparateStress, CopiesOfASchemaComeAndGo) {
    std::unique_ptr<ZorCollection> const source = makeStore();
    inThreads(kThreads, [&](int thread) {
        for (int round = 0; round < kRounds; ++round) {
            if (thread == 0) {
                useStore(*source, round);
                continue;
            }
            ZorCollection store("store");
            store.copySchema("phone", source->getSchema("phone"));
            useStore(store, round);
        }
        EXPECT_EQ(takeIncidents(), "");
    });
}

// A copy that is made while the source gets nodes has the nodes that were there at one moment.
TEST(SeparateStress, ACopyHasTheNodesOfOneMoment) {
    ZorCollection source("store");
    ZorSchema* const growing = source.makeSchema("growing");
    Flag done;
    inThreads(kThreads, [&](int thread) {
        for (int i = 0; thread == 0 && i < kRounds; ++i) {
            growing->makeBranchNode(growing->rootNode, std::to_string(i).c_str(), 1);
        }
        if (thread == 0) done.set();
        while (!done.isSet()) {
            ZorCollection store("store");
            store.copySchema("copy", growing);
            int count = 0;
            ZorSchemaNode const* node = store.getSchema("copy")->rootNode->firstChild;
            for (; node; node = node->next) EXPECT_EQ(node->getName(), std::to_string(count++));
        }
    });
}

// What an import that broke off had open is nobody's: one thread may delete it while another one
// imports again.
TEST(SeparateStress, ABrokenImportHoldsNothing) {
    for (int round = 0; round < kRounds; ++round) {
        std::unique_ptr<ZorCollection> const store = makeStore();
        store->importXML("<store><document schema='phone' name='phone1'><key><label>a");
        EXPECT_EQ(takeIncidents(), "3 {zor_XMLParse: line 1, column 59 }no element found\n");
        inThreads(2, [&](int thread) {
            if (thread == 0)
                store->deleteSchema("phone");
            else
                store->importXML("<store><document name='note'><itemValue>b</itemValue></document>"
                                 "</store>");
            EXPECT_EQ(takeIncidents(), "");
        });
        EXPECT_EQ(selected(store->getDocument("note"), "*"), "b ");
    }
}

// Documents are copied from one thread's collection to another's while both are used.
TEST(SeparateStress, DocumentsAreCopiedBetweenCollections) {
    std::vector<std::unique_ptr<ZorCollection>> stores;
    for (int i = 0; i < kThreads; ++i) {
        stores.push_back(makeStore());
        stores.back()->makeDocument("phone", "own");
    }
    inThreads(kThreads, [&](int thread) {
        auto const at = [&](int i) { return stores[static_cast<std::size_t>(i % kThreads)].get(); };
        ZorDocument* const own = at(thread)->getDocument("own");
        ZorSchemaNode* const label = nodeAt(at(thread)->getSchema("phone"), "key/label");
        for (int round = 0; round < kRounds; ++round) {
            own->setStringNodeValue(label, 0, std::to_string(thread).c_str());
            at(thread)->copyDocument("theirs", at(thread + 1)->getDocument("own"));
            ZorDocument* const theirs = at(thread)->getDocument("theirs");
            std::string const text = textAt(theirs, label, 0);
            EXPECT_TRUE(text == "(null)" || text == std::to_string((thread + 1) % kThreads));
            EXPECT_EQ(theirs->setStringNodeValue(label, 0, "mine"), 1);
        }
        EXPECT_EQ(takeIncidents(), "");
    });
}

// Full collections that several threads made are destroyed by several others.
TEST(SeparateStress, CollectionsAreDestroyedInParallel) {
    for (int round = 0; round < kRounds / 5; ++round) {
        std::vector<std::unique_ptr<ZorCollection>> stores(16);
        auto const each = [&stores](int thread, auto apply) {
            for (std::size_t i = static_cast<std::size_t>(thread); i < stores.size(); i += kThreads)
                apply(stores[i]);
        };
        inThreads(kThreads, [&](int thread) {
            each(thread, [thread](std::unique_ptr<ZorCollection>& store) {
                store = makeStore();
                for (int i = 0; i < 5; ++i) {
                    store->makeDocument("phone", std::to_string(i).c_str());
                    store->makeCollection(std::to_string(i).c_str());
                }
                store->importXML(withNumber(kConfig, thread).c_str());
            });
        });
        EXPECT_EQ(ZorCollection::refCount, 16 * 6);
        inThreads(kThreads, [&](int thread) {
            each(thread + 1 < kThreads ? thread + 1 : 0,
                 [](std::unique_ptr<ZorCollection>& store) { store.reset(); });
        });
        EXPECT_EQ(ZorCollection::refCount, 0);
    }
}
