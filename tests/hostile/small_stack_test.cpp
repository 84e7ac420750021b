// The deepest trees there are, in a thread with little stack.

#include <gtest/gtest.h>
#include <pthread.h>

#include <functional>
#include <memory>
#include <string>

#include "tests/collection/import_store.h"
#include "tests/hostile/flood.h"
#include "zor/collection.h"

namespace {

constexpr int kDeepest = 256; // of collections and of branches

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define ZOR_LARGE_FRAMES
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define ZOR_LARGE_FRAMES
#endif
#endif

// What a thread of a small device may have. A sanitizer puts space around every variable, and so
// gets more.
#ifdef ZOR_LARGE_FRAMES
constexpr std::size_t kStack = 1048576; // 1 MB
#else
constexpr std::size_t kStack = 262144; // 256 KB
#endif

void* callFunction(void* function) {
    (*static_cast<std::function<void()>*>(function))();
    return nullptr;
}

// Does the work in a thread of its own with that little stack. What overflows ends the process.
void onSmallStack(std::function<void()> work) {
    pthread_attr_t attributes;
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, kStack), 0);
    pthread_t thread;
    ASSERT_EQ(pthread_create(&thread, &attributes, callFunction, &work), 0);
    ASSERT_EQ(pthread_join(thread, nullptr), 0);
    ASSERT_EQ(pthread_attr_destroy(&attributes), 0);
}

std::string pathOfDepth(int depth) { return Feed::repeated("/b", depth); }

// Branches "b" within each other, an item "i" in the innermost but one, and a document that sets
// it.
std::string deepestSchema() {
    std::string text = "<schema name=\"s\"><branch name=\"b\"></branch>";
    for (int depth = 1; depth < kDeepest; ++depth) {
        text += "<branch name=\"b\" parent=\"" + pathOfDepth(depth) + "\"></branch>";
    }
    return text + "<item name=\"i\" type=\"int\" default=\"5\" parent=\"" +
           pathOfDepth(kDeepest - 1) + "\"></item></schema>";
}

std::string deepestDocument() {
    return "<document schema=\"s\" name=\"d\">" + Feed::repeated("<b>", kDeepest - 1) + "<i>7</i>" +
           Feed::repeated("</b>", kDeepest - 1) + "</document>";
}

// Collections "c" within each other, and a schema and a document in the innermost.
std::string deepestCollections() {
    return Feed::repeated("<collection name=\"c\">", kDeepest) +
           "<schema name=\"t\"><item name=\"i\" type=\"int\"></item></schema>"
           "<document schema=\"t\" name=\"d\"><i>7</i></document>" +
           Feed::repeated("</collection>", kDeepest);
}

std::string const kBranches = "<phone>" + deepestSchema() + deepestDocument() + "</phone>";
std::string const kCollections = "<phone>" + deepestCollections() + "</phone>";

} // namespace

TEST(SmallStack, BranchesAreImportedExportedAndDestroyed) {
    onSmallStack([] {
        IncidentLog log;
        ZorCollection collection("phone");
        collection.importXML(kBranches.c_str());
        EXPECT_EQ(log.take(), "");
        EXPECT_EQ(collection.exportDocument("d"), "<phone>" + deepestDocument() + "</phone>");
        EXPECT_EQ(collection.exportSchema("s"), "<phone>" + deepestSchema() + "</phone>");
        ZorCollection again("phone");
        again.importXML(collection.exportAll().c_str());
        EXPECT_EQ(log.take(), "");
        EXPECT_EQ(again.exportAll(), collection.exportAll());
    });
}

TEST(SmallStack, BranchesAreCopied) {
    onSmallStack([] {
        IncidentLog log;
        ZorCollection collection("phone");
        collection.importXML(kBranches.c_str());
        ZorCollection copy("phone");
        copy.copySchema("s", collection.getSchema("s"));
        copy.copyDocument("d", collection.getDocument("d"));
        EXPECT_EQ(log.take(), "");
        EXPECT_EQ(copy.exportAll(), collection.exportAll());
        // Deleting the schema takes the document along.
        collection.deleteSchema("s");
        EXPECT_EQ(collection.getDocument("d"), nullptr);
    });
}

TEST(SmallStack, BranchesAreSearched) {
    onSmallStack([] {
        IncidentLog log;
        ZorCollection collection("phone");
        collection.importXML(kBranches.c_str());
        ZorDocument* const document = collection.getDocument("d");
        auto const answersTo = [document](std::string const& path) {
            return std::unique_ptr<ZorResultSet>(document->select(path.c_str()))->getResultCount();
        };
        EXPECT_EQ(answersTo("//i"), 1U);
        EXPECT_EQ(answersTo("//x"), 0U);
        EXPECT_EQ(answersTo("//b[1]"), unsigned(kDeepest));
        EXPECT_EQ(answersTo("//*"), unsigned(kDeepest) + 1);
        EXPECT_EQ(answersTo(pathOfDepth(31)), 1U);

        ZorSchemaNode* const root = collection.getSchema("s")->getRootNode();
        Text const toItem(pathOfDepth(kDeepest - 1) + "/i");
        ZorSchemaNode* const item = root->findSubNode(toItem);
        ASSERT_NE(item, nullptr);
        EXPECT_TRUE(item->isDataNode());
        EXPECT_EQ(taken(document->getStringNodeValue(item, 0)), "7");
        Text const tooDeep(pathOfDepth(kDeepest + 1));
        EXPECT_EQ(root->findSubNode(tooDeep), nullptr);
        EXPECT_EQ(log.take(), plainError("path (" + pathOfDepth(kDeepest + 1) + ") not found"));
        EXPECT_EQ(root->countRequiredValueNodes(), 1);
    });
}

TEST(SmallStack, DocumentsOfDeepBranchesAreMadeAndRestored) {
    onSmallStack([] {
        IncidentLog log;
        ZorCollection collection("phone");
        collection.importXML(("<phone>" + deepestSchema() + "</phone>").c_str());
        ZorDocument* const document = collection.makeDocument("s", "d");
        ASSERT_NE(document, nullptr);
        std::unique_ptr<ZorResultSet> const found(document->select("//i"));
        EXPECT_EQ(found->setValue("7"), 1);
        EXPECT_EQ(collection.exportDocument("d"), "<phone>" + deepestDocument() + "</phone>");
        found->restoreDefault();
        EXPECT_EQ(taken(found->getValue()), "5");
        document->restoreDefaults();
        collection.deleteDocument("d");
        EXPECT_EQ(log.take(), "");
    });
}

// An input that ends in the innermost element is let go by the next one.
TEST(SmallStack, UnfinishedBranchesAreLetGo) {
    onSmallStack([] {
        IncidentLog log;
        ZorCollection collection("phone");
        collection.importXML(kBranches.substr(0, kBranches.find('7')).c_str());
        EXPECT_NE(log.take(), "");
        collection.deleteSchema("s");
        collection.importXML(kBranches.c_str());
        EXPECT_EQ(log.take(), "");
    });
}

TEST(SmallStack, CollectionsAreImportedExportedAndDestroyed) {
    onSmallStack([] {
        IncidentLog log;
        ZorCollection collection("phone");
        collection.importXML(kCollections.c_str());
        EXPECT_EQ(log.take(), "");
        EXPECT_EQ(collection.exportAll(), kCollections);
        ZorCollection again("phone");
        again.importXML(collection.exportAll().c_str());
        EXPECT_EQ(log.take(), "");
        EXPECT_EQ(again.exportAll(), kCollections);
        again.deleteCollection("c");
        EXPECT_EQ(again.exportAll(), "<phone></phone>");
    });
}

// Elements that no rule knows may be any number.
TEST(SmallStack, UnknownElementsAreLetGo) {
    onSmallStack([] {
        IncidentLog log;
        {
            ZorCollection collection("phone");
            collection.importXML(("<phone>" + Feed::repeated("<x>", 100000)).c_str());
            EXPECT_NE(log.take(), "");
            collection.importXML("<phone/>");
            EXPECT_EQ(log.take(), "");
            collection.importXML(("<phone>" + Feed::repeated("<x>", 100000)).c_str());
        }
        EXPECT_NE(log.take(), "");
    });
}

// Sixteen imports within each other, each by the dictionary that the one before asks.
TEST(SmallStack, ImportsWithinImportsAreRefusedInTime) {
    onSmallStack([] {
        IncidentLog log;
        TestDictionary dictionary;
        dictionary.definitions["s"] = "<phone><document name='d' schema='s'/></phone>";
        ZorCollection collection("phone", &dictionary);
        collection.importXML("<phone><document name='d' schema='s'/></phone>");
        std::string const incidents = log.take();
        EXPECT_EQ(incidents.substr(0, incidents.find('\n') + 1),
                  plainError("schema definitions are nested too deeply"));
        EXPECT_EQ(collection.parsers.size(), 16U);
    });
}
