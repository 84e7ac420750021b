// Several threads on one collection: what it holds is found, listed, made, deleted and exported.

#include <gtest/gtest.h>

#include <algorithm>
#include <list>

#include "tests/stress/threads.h"

namespace {

constexpr int kThreads = 4;
constexpr int kRounds = rounds(1000);
constexpr int kKept = 5;

constexpr char kDefinition[] = "<store><schema name='note'>"
                               "<item name='text' type='string'/>"
                               "<item name='read' type='int' default='0'/>"
                               "</schema></store>";

std::string numbered(char const* kind, int number) { return kind + std::to_string(number); }

class CollectionStress : public testing::Test {
protected:
    CollectionStress() : store("store") {
        store.importXML(kDefinition);
        for (int i = 0; i < kKept; ++i) {
            kept.push_back(makeNote(numbered("kept", i)));
            store.makeCollection(numbered("kept", i).c_str());
        }
    }

    ZorDocument* makeNote(std::string const& name) {
        ZorDocument* const made = store.makeDocument("note", name.c_str());
        made->setStringNodeValue(made->rootNode->firstChild, 0, name.c_str());
        return made;
    }

    // The documents that stay for the whole test stand in the list once, whatever else does.
    template <typename Objects>
    bool hasAllKept(Objects const& objects) const {
        return std::all_of(kept.begin(), kept.end(), [&](ZorDocument* document) {
            return std::count(objects.begin(), objects.end(), document) == 1;
        });
    }

    ZorCollection store;
    std::vector<ZorDocument*> kept;
};

std::vector<void*> valuesOf(ZorListNode* list) {
    std::vector<void*> values;
    for (ZorListNode const* node = list; node; node = zor_listNextNode(node)) {
        values.push_back(zor_listGetValue(node));
    }
    zor_listDelete(list);
    return values;
}

} // namespace

// What stays is found and listed while other documents come and go.
TEST_F(CollectionStress, DocumentsAreListedWhileOthersComeAndGo) {
    Flag done;
    inThreads(kThreads, [&](int thread) {
        for (int round = 0; thread < 2 && round < kRounds * 4; ++round) {
            std::string const name = "passing" + std::to_string(thread * 100 + round % 100);
            makeNote(name);
            EXPECT_EQ(selected(store.getDocument(name.c_str()), "text"), name + ' ');
            store.deleteDocument(name.c_str());
            EXPECT_EQ(store.getDocument(name.c_str()), nullptr);
        }
        if (thread < 2) done.set();
        for (int round = 0; thread >= 2 && !done.isSet(); ++round) {
            int const number = round % kKept;
            EXPECT_EQ(store.getDocument(numbered("kept", number).c_str()),
                      kept[static_cast<std::size_t>(number)]);
            EXPECT_TRUE(hasAllKept(valuesOf(store.getDocuments())));
            std::list<ZorDocument*> documents;
            store.getDocuments(documents);
            EXPECT_TRUE(hasAllKept(documents));
        }
        EXPECT_EQ(takeIncidents(), "");
    });
    EXPECT_EQ(valuesOf(store.getDocuments()).size(), static_cast<std::size_t>(kKept));
}

// Of several threads that make a document, a schema of one name, one succeeds; the rest are told.
TEST_F(CollectionStress, ANameIsTakenOnce) {
    std::atomic<int> documents{0};
    std::atomic<int> schemas{0};
    inThreads(kThreads, [&](int) {
        for (int i = 0; i < kRounds; ++i) {
            std::string const name = std::to_string(i);
            if (store.makeDocument("note", name.c_str())) {
                documents.fetch_add(1, std::memory_order_relaxed);
            } else {
                EXPECT_EQ(takeIncidents(), "3 ZorCollection::makeDocument{Document (" + name +
                                               ") already exists}\n");
            }
            if (store.makeSchema(name.c_str())) {
                schemas.fetch_add(1, std::memory_order_relaxed);
            } else {
                EXPECT_EQ(takeIncidents(),
                          "3 ZorCollection::makeSchema{Schema (" + name + ") already exists}\n");
            }
        }
    });
    EXPECT_EQ(documents, kRounds);
    EXPECT_EQ(schemas, kRounds);
    EXPECT_EQ(valuesOf(store.getDocuments()).size(), static_cast<std::size_t>(kRounds + kKept));
}

// Sub-collections and schemas likewise, each with what is in it, while one thread lists them.
TEST_F(CollectionStress, SchemasAndSubCollectionsComeAndGo) {
    ZorSchema* const note = store.getSchema("note");
    Flag done;
    inThreads(kThreads + 1, [&](int thread) {
        while (thread == kThreads && !done.isSet()) {
            EXPECT_GE(valuesOf(store.getSchemas()).size(), 2U);
            EXPECT_GE(valuesOf(store.getCollections()).size(), 0U + kKept);
        }
        std::string const own = numbered("own", thread);
        std::string const other = numbered("own", (thread + 1) % kThreads);
        for (int round = 0; thread < kThreads && round < kRounds / 4; ++round) {
            ZorCollection* const sub = store.makeCollection(own.c_str());
            sub->copySchema("note", note);
            sub->makeDocument("note", "first");
            EXPECT_EQ(store.getCollection(own.c_str()), sub);
            EXPECT_NE(store.getCollection(other.c_str()), sub); // or null
            store.deleteCollection(own.c_str());
            if (round % 3 == 0) store.copySchema(own.c_str(), note);
            if (round % 3 == 1) store.makeSchema(own.c_str());
            if (round % 3 == 2) store.setSchema(new ZorSchema(&store, own.c_str()), own.c_str());
            ZorSchema* const schema = store.getSchema(own.c_str());
            EXPECT_NE(store.getSchema(other.c_str()), schema);
            store.setDocument(new ZorDocument(schema, own.c_str()), own.c_str());
            store.deleteSchema(own.c_str());
            EXPECT_EQ(store.getDocument(own.c_str()), nullptr);
        }
        if (thread == 0) done.set();
        EXPECT_EQ(takeIncidents(), "");
    });
    EXPECT_EQ(valuesOf(store.getSchemas()).size(), 2U);
    EXPECT_EQ(valuesOf(store.getCollections()).size(), static_cast<std::size_t>(kKept));
    EXPECT_EQ(ZorCollection::refCount, 1 + kKept);
}

// Copies that one thread stores are deleted by another as soon as they are found, which may be
// before the copying has returned.
TEST_F(CollectionStress, CopiesAreDeletedAsSoonAsTheyAreFound) {
    ZorSchema* const note = store.getSchema("note");
    std::atomic<int> deleted{0};
    inThreads(2, [&](int thread) {
        for (int round = 0; round < kRounds / 4; ++round) {
            std::string const name = numbered("copy", round);
            char const* const copy = name.c_str();
            if (thread == 0) {
                store.copySchema(copy, note);
                store.copyDocument(copy, kept[0]);
                while (deleted.load(std::memory_order_relaxed) <= round) std::this_thread::yield();
                continue;
            }
            while (!store.getSchema(copy)) std::this_thread::yield();
            store.deleteSchema(copy);
            while (!store.getDocument(copy)) std::this_thread::yield();
            store.deleteDocument(copy);
            deleted.fetch_add(1, std::memory_order_relaxed);
        }
        EXPECT_EQ(takeIncidents(), "");
    });
    EXPECT_TRUE(hasAllKept(valuesOf(store.getDocuments())));
    EXPECT_EQ(valuesOf(store.getSchemas()).size(), 2U);
}

// Threads that export the same collection all write the same.
TEST_F(CollectionStress, ExportsAtTheSameTimeAreEqual) {
    std::string const expected = store.exportAll();
    std::string const subset = store.exportSubset({"kept1", "kept3"});
    inThreads(kThreads, [&](int) {
        for (int round = 0; round < kRounds / 4; ++round) {
            EXPECT_EQ(store.exportAll(), expected);
            EXPECT_EQ(store.exportSubset({"kept1", "kept3"}), subset);
            EXPECT_EQ(store.exportSchema("note").size(), store.exportSchema("note").size());
        }
    });
}

// An export beside writers can be imported, and every value in it is one that somebody wrote.
TEST_F(CollectionStress, ExportsBesideWritersCanBeImported) {
    Flag done;
    inThreads(kThreads, [&](int thread) {
        ZorSchemaNode* const read = kept[0]->rootNode->lastChild;
        for (int round = 1; thread < 2 && round <= kRounds * 10; ++round) {
            kept[static_cast<std::size_t>(round % kKept)]->setIntNodeValue(read, 0, round % 7);
            if (round % 50 == 0) makeNote(numbered("more", thread * 10000000 + round));
        }
        if (thread < 2) done.set();
        for (bool last = false; thread >= 2 && !last;) {
            last = done.isSet();
            ZorCollection reader("store");
            reader.importXML(kDefinition);
            reader.importXML(store.exportAllDocuments().c_str());
            EXPECT_EQ(takeIncidents(), "");
            for (void* const value : valuesOf(reader.getDocuments())) {
                auto* const document = static_cast<ZorDocument*>(value);
                std::string const text = selected(document, "text");
                // A document that was made but not written yet has none.
                if (text != "(null) ") {
                    EXPECT_EQ(text, document->getName() + std::string(" "));
                }
                EXPECT_LT(document->getIntNodeValue(document->rootNode->lastChild, 0, nullptr), 7);
            }
        }
    });
}

// One thread imports documents while others look up, list and use what is there.
TEST_F(CollectionStress, OneThreadImportsBesideReaders) {
    Flag done;
    inThreads(kThreads, [&](int thread) {
        for (int round = 0; thread == 0 && round < kRounds * 2; ++round) {
            std::string const name = numbered("imported", round % 20);
            store.importXML(("<store><document schema='note' name='" + name + "'><text>" + name +
                             "</text></document></store>")
                                .c_str());
            if (round % 20 == 19) {
                for (int i = 0; i < 20; ++i) store.deleteDocument(numbered("imported", i).c_str());
            }
        }
        if (thread == 0) done.set();
        while (!done.isSet()) {
            EXPECT_TRUE(hasAllKept(valuesOf(store.getDocuments())));
            std::string const name = numbered("own", thread);
            EXPECT_EQ(selected(makeNote(name), "*"), name + " 0 ");
            store.deleteDocument(name.c_str());
        }
        EXPECT_EQ(takeIncidents(), "");
    });
}
