// A store built, used and written without XML to start from, and stores in several threads.

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "tests/collection/objects.h"
#include "tests/support/incidents.h"
#include "zor/zor.h"

namespace {

// A schema with a type of its own, one of its collection's and built-in ones.
ZorSchema* addPhone(ZorCollection& store) {
    ZorDataType* const mode = zor_choiceMake("mode");
    zor_choiceAddOption(mode, "line");
    zor_choiceAddOption(mode, "speed dial");
    store.addDataType(mode);
    ZorSchema* const schema = store.makeSchema("phone");
    schema->addDataType(zor_rangeMake(ZorBuiltIn::getDataType("int"), "volume", "0", "15"));
    ZorSchemaNode* const root = schema->getRootNode();
    ZorSchemaNode* const key = schema->makeBranchNode(root, "key", 3);
    schema->makeDataNode(root, "volume", 1, schema->getDataType("volume"), "8");
    schema->makeDataNode(key, "mode", 1, schema->getDataType("mode"), nullptr);
    schema->makeDataNode(key, "label", 2, schema->getDataType("string"), "");
    return schema;
}

// Everything a host does with a store, and the text at the end.
std::string useStore(std::string const& label) {
    ZorCollection store("cfg");
    addPhone(store);
    ZorDocument* const phone = store.makeDocument("phone", "phone1");
    setAt(phone, "key[2]/mode", "speed dial");
    setAt(phone, "key[2]/label[1]", label.c_str());
    std::unique_ptr<ZorResultSet> const volume(phone->select("volume"));
    volume->setIntValue(11);
    store.copyDocument("copy", phone);
    store.deleteDocument("copy");
    store.copySchema("copy", store.getSchema("DefaultSchema"));
    store.deleteSchema("copy");
    ZorCollection again("cfg");
    again.importXML("<cfg><schema name=\"phone\"><range name=\"volume\" baseType=\"int\" "
                    "minValue=\"0\" maxValue=\"15\"/><choice name=\"mode\"><option>line</option>"
                    "<option>speed dial</option></choice><branch name=\"key\" occurrences=\"3\"/>"
                    "<item name=\"volume\" type=\"volume\" default=\"8\"/>"
                    "<item name=\"mode\" type=\"mode\" parent=\"/key\"/>"
                    "<item name=\"label\" type=\"string\" default=\"\" occurrences=\"2\" "
                    "parent=\"/key\"/></schema></cfg>");
    again.importXML(store.exportAllDocuments().c_str());
    return again.exportAllDocuments();
}

std::string documentWith(std::string const& label) {
    return "<cfg><document schema=\"phone\" name=\"phone1\"><key occurrence=\"2\">"
           "<mode>speed dial</mode><label>" +
           label + "</label></key><volume>11</volume></document></cfg>";
}

} // namespace

// Types are found through the schema, then the collection, then the built-in table.
TEST(Store, IsBuiltInMemory) {
    IncidentLog log;
    ZorCollection store("cfg");
    ZorSchema* const schema = addPhone(store);
    EXPECT_EQ(nodeAt(schema, "volume")->getDataType()->name, schema->getDataType("volume")->name);
    EXPECT_EQ(nodeAt(schema, "key/mode")->getDataType(), store.getDataType("mode"));
    EXPECT_EQ(nodeAt(schema, "key/label")->getDataType(), ZorBuiltIn::getDataType("string"));

    // One cell for each occurrence of each data node.
    ZorDocument* const phone = store.makeDocument("phone", "phone1");
    EXPECT_EQ(schema->getRootNode()->countRequiredValueNodes(), 10);
    EXPECT_EQ(valuesAt(phone, "volume"), "8");
    EXPECT_EQ(valuesAt(phone, "key/mode"), "(null)|(null)|(null)");
    EXPECT_EQ(valuesAt(phone, "key/label"), "|||||");

    // Every write is checked, stored and marked.
    ZorSchemaNode* const label = nodeAt(schema, "key/label");
    EXPECT_EQ(phone->setStringNodeValue(label, 5, "last"), 1);
    EXPECT_TRUE(phone->wasChanged(label, 5));
    EXPECT_EQ(valuesAt(phone, "key[3]/label[2]"), "last");
    EXPECT_EQ(setAt(phone, "volume", "16"), 0);
    EXPECT_EQ(log.take(), "3 setStringNodeValue: value (16) is not valid\n");
    EXPECT_EQ(setAt(phone, "key[1]/mode", "line"), 1);

    // A schema that borrows a type of its collection names it; the type itself is not written.
    EXPECT_EQ(store.exportAll(),
              "<cfg><schema name=\"phone\">"
              "<range name=\"volume\" baseType=\"int\" minValue=\"0\" maxValue=\"15\"/>"
              "<branch name=\"key\" occurrences=\"3\"></branch>"
              "<item name=\"mode\" type=\"mode\" parent=\"/key\"></item>"
              "<item name=\"label\" type=\"string\" default=\"\" occurrences=\"2\" "
              "parent=\"/key\"></item>"
              "<item name=\"volume\" type=\"volume\" default=\"8\"></item></schema>"
              "<document schema=\"phone\" name=\"phone1\"><key><mode>line</mode></key>"
              "<key occurrence=\"3\"><label occurrence=\"2\">last</label></key></document></cfg>");
}

// Strings handed out are the caller's, and outlive the store.
TEST(Store, HandsOutReferencesOfTheCallersOwn) {
    IncidentLog const log;
    ZorString* label = nullptr;
    ZorString* defaultText = nullptr;
    {
        ZorCollection store("cfg");
        ZorSchema* const schema = addPhone(store);
        ZorDocument* const phone = store.makeDocument("phone", "phone1");
        setAt(phone, "key[1]/label[1]", "Reception");
        label = phone->getStringNodeValue(nodeAt(schema, "key/label"), 0);
        defaultText = nodeAt(schema, "volume")->getDefaultValue();
    }
    EXPECT_EQ(taken(label), "Reception");
    EXPECT_EQ(taken(defaultText), "8");
}

// Stores share the built-in types and the cache of node names, and nothing else.
TEST(Store, IsIndependentOfStoresInOtherThreads) {
    IncidentLog const log;
    constexpr int kThreads = 4;
    std::atomic<int> ready{0};
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([&ready, i] {
            for (++ready; ready < kThreads;) std::this_thread::yield();
            for (int round = 0; round < 60; ++round) {
                std::string const label = std::to_string(i) + '-' + std::to_string(round);
                EXPECT_EQ(useStore(label), documentWith(label));
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
}
