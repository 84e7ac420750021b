// Every single allocation of a piece of work fails once: std::bad_alloc reaches the caller or is
// reported as the parser's "out of memory", and what there was can be destroyed. The runner sees to
// leaks and locks.

#include <gtest/gtest.h>

#include <list>
#include <memory>
#include <new>

#include "tests/hostile/fail_each_allocation.h"
#include "tests/support/text.h"
#include "zor/collection.h"

TEST(AllocationFailure, InACollectionThatIsMade) {
    EXPECT_GT(failEach([] { ZorCollection const store("a name that needs a block on the heap"); }),
              20);
}

TEST(AllocationFailure, InAnImport) {
    EXPECT_GT(failEach([] {
                  ZorCollection store("cfg");
                  store.importXML(kDefinition);
                  store.importXML(kDocument);
              }),
              300);
}

TEST(AllocationFailure, InAnImportOfErrors) {
    EXPECT_GT(failEachOnFilled([](ZorCollection& store) { store.importXML(kErrors); }), 50);
}

TEST(AllocationFailure, InAnImportIntoAFilledCollection) {
    EXPECT_GT(failEachOnFilled([](ZorCollection& store) {
                  store.deleteDocument("plain");
                  store.importXML(kDocument);
              }),
              50);
}

// Texts of every size take each other's place in the same cells.
TEST(AllocationFailure, InAnImportOverWhatIsThere) {
    static char const* const texts[] = {"short",
                                        "&lt;a text with entities, longer than a buffer&gt;",
                                        "true", "a text without entities, longer than a buffer"};
    auto const importAll = [](ZorCollection& store) {
        for (int i = 0; i < 4; ++i) {
            std::string xml = "<cfg><document name='a document whose name is longer than "
                              "thirty-two' schema='phone settings with a long name to allocate "
                              "for'><label>";
            xml += texts[i] + std::string("</label>");
            for (int k = 1; k < 4; ++k) {
                xml += std::string("<key><text>") + texts[(i + k) % 4] + "</text><text>" +
                       texts[(i + k + 1) % 4] + "</text></key>";
            }
            store.importXML((xml + "</document></cfg>").c_str());
        }
    };
    EXPECT_GT(failEachOnFilled(importAll), 100);

    IncidentLog log;
    ZorCollection store("cfg");
    store.importXML(kDefinition);
    importAll(store);
    EXPECT_EQ(log.take(), "");
    std::unique_ptr<ZorResultSet> const last(documentIn(store)->select("key[3]/text[2]"));
    EXPECT_EQ(taken(last->getValue()), texts[3]);
}

TEST(AllocationFailure, InAQuery) {
    EXPECT_GT(
        failEachOnFilled([](ZorCollection& store) {
            for (char const* const path :
                 {"key/text", "//text", "*", "key[2]/*", "//inner/deep", "nothing[x]"}) {
                std::unique_ptr<ZorResultSet> const results(documentIn(store)->select(path));
                for (; !results->eof(); results->next()) {
                    std::string text;
                    results->getValue(text);
                    results->getIntValue(nullptr);
                }
            }
            ZorSchemaNode* const root = documentIn(store)->getRootNode();
            for (char const* const path : {"//deep", "key/inner/deep", "//*", "/nothing/of it"}) {
                Text const text(path);
                root->findSubNode(text);
            }
        }),
        100);
}

TEST(AllocationFailure, InAJoinOfResultSets) {
    EXPECT_GT(failEachOnFilled([](ZorCollection& store) {
                  std::unique_ptr<ZorResultSet> const results(documentIn(store)->select("//text"));
                  results->combine(documentIn(store)->select("//gain"));
                  results->getDefinition();
                  results->combine(documentIn(store)->select("label"));
                  results->getDefinition();
              }),
              15);
}

TEST(AllocationFailure, InValuesThatAreSet) {
    EXPECT_GT(failEachOnFilled([](ZorCollection& store) {
                  ZorDocument* const document = documentIn(store);
                  for (char const* const text :
                       {"a text that is longer than the buffer in the object", "true", "7", "1.5",
                        "low", "a refused value, long enough to be a block in the message"}) {
                      std::unique_ptr<ZorResultSet> const all(document->select("//*"));
                      for (; !all->eof(); all->next()) all->setValue(text);
                      all->rewind();
                      for (; !all->eof(); all->next()) all->setIntValue(3);
                      all->rewind();
                      for (; !all->eof(); all->next()) all->restoreDefault();
                      document->restoreDefaults();
                  }
              }),
              200);
}

TEST(AllocationFailure, InAnExport) {
    EXPECT_GT(failEachOnFilled([](ZorCollection& store) {
                  store.exportAll();
                  store.exportSchema("phone settings with a long name to allocate for");
                  store.exportDocument("plain");
                  store.exportSubset({"plain", "nothing"});
              }),
              50);
}

TEST(AllocationFailure, InCopies) {
    EXPECT_GT(failEachOnFilled([](ZorCollection& store) {
                  ZorSchema* const schema =
                      store.getSchema("phone settings with a long name to allocate for");
                  store.copySchema("a copy of the schema, under another name", schema);
                  store.copyDocument("a copy of the document, under another name",
                                     documentIn(store));
                  store.copyDocument("plain", documentIn(store));
              }),
              100);
}

TEST(AllocationFailure, InListings) {
    EXPECT_GT(failEachOnFilled([](ZorCollection& store) {
                  std::list<ZorSchema*> schemas;
                  std::list<ZorDocument*> documents;
                  std::list<ZorCollection*> collections;
                  store.getSchemas(schemas);
                  store.getDocuments(documents);
                  store.getCollections(collections);
                  zor_listDelete(store.getSchemas());
                  zor_listDelete(store.getDataTypes());
              }),
              10);
}

TEST(AllocationFailure, InDeletions) {
    EXPECT_GT(failEachOnFilled([](ZorCollection& store) {
                  store.setDocument(store.makeDocument("DefaultSchema", "second"), "an alias");
                  store.deleteSchema("DefaultSchema");
                  store.deleteDocument("a document whose name is longer than thirty-two");
                  store.deleteAllDocuments();
                  store.deleteAllSchemas();
                  store.deleteAllCollections();
                  ZorSchema* const made = store.makeSchema("DefaultSchema");
                  made->makeDataNode(made->getRootNode(), "itemValue", 1,
                                     made->getDataType("string"), "");
              }),
              10);
}

TEST(AllocationFailure, InTypesThatAreMade) {
    EXPECT_GT(failEach([] {
                  ZorDataTypeCollection set;
                  auto add = [&set](ZorDataType* type) {
                      std::unique_ptr<ZorDataType> made(type);
                      if (set.addDataType(made.get())) (void)made.release();
                  };
                  std::unique_ptr<ZorDataType> choice(
                      zor_choiceMake("a choice whose name is longer than a buffer"));
                  for (char const* const option : {"the first option, which is a long one", "b"}) {
                      zor_choiceAddOption(choice.get(), option);
                  }
                  add(choice.release());
                  add(zor_rangeMake(ZorBuiltIn::getDataType("float"),
                                    "a range whose name is longer than a buffer",
                                    "0.50000000000000000000000000000000", "1"));
                  ZorDataTypeCollection const copy(set.getDataTypes());
              }),
              50);
}

// What a mutator was called on is still the caller's, and a text of its own.
TEST(AllocationFailure, InStringsThatChange) {
    auto const change = [](ZorString* held, ZorString* (*mutate)(ZorString*)) {
        try {
            mutate(held)->removeRef();
        } catch (std::bad_alloc const&) {
            held->removeRef();
            throw;
        }
    };
    ZorString* (*const mutators[])(ZorString*) = {
        [](ZorString* s) { return s->append(2, s->text, -1, " and more than that", -1); },
        [](ZorString* s) { return s->set(1, "a text that is longer than the local buffer", -1); },
        [](ZorString* s) { return s->set(2, "true", -1, s->text, -1); },
        [](ZorString* s) {
            return s->set(3, "id", -1, "", 0, "a text of more than 32 bytes....", -1);
        },
        [](ZorString* s) { return s->trim(); },
    };
    for (char const* const text :
         {"short", "   a text, with blanks around, that is a long one   "}) {
        for (auto* const mutate : mutators) {
            failEach([&] { change(ZorString::create(text, -1), mutate); });
            failEach([&] {
                ZorString* const shared = ZorString::create(text, -1);
                zor_stringAddRef(shared);
                try {
                    change(shared, mutate);
                } catch (std::bad_alloc const&) {
                    EXPECT_STREQ(shared->text, text);
                    EXPECT_EQ(shared->refCount, 1);
                    shared->removeRef();
                    throw;
                }
                EXPECT_STREQ(shared->text, text);
                shared->removeRef();
            });
        }
    }
}
