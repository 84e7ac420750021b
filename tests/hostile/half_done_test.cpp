// What an operation leaves when one of its allocations fails, whichever it is: nothing half done.
// What was there is still there, and what the caller handed over is still the caller's.

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <functional>
#include <list>
#include <memory>
#include <new>
#include <string>

#include "tests/hostile/fail_each_allocation.h"
#include "tests/support/text.h"

namespace {

constexpr char kPhoneSchema[] = "phone settings with a long name to allocate for";

std::string contentOfFilled() {
    std::string content;
    {
        IncidentLog const log;
        ZorCollection store("cfg");
        store.importXML(kDefinition);
        store.importXML(kDocument);
        content = store.exportAll();
    }
    ZorBuiltIn::deleteBuiltInTypes(); // every run of the work makes them
    return content;
}

// Does the work with every allocation failing once. Whenever one did, the store exports as before.
long failEachUnchanged(std::function<void(ZorCollection&)> const& work) {
    std::string const before = contentOfFilled();
    return failEachOnFilled([&](ZorCollection& store) {
        try {
            work(store);
        } catch (std::bad_alloc const&) {
            EXPECT_EQ(store.exportAll(), before);
            throw;
        }
    });
}

// "|" before each.
std::string optionsOf(ZorDataType* choice) {
    static std::string options;
    zor_choiceEnumerate(choice, [](int, char const* text) { options.append("|").append(text); });
    std::string taken;
    taken.swap(options);
    return taken;
}

// Adds the option with the n-th allocation failing. Whether it did.
bool addOptionFailing(ZorDataType* choice, char const* option, long n) {
    FailingAllocation const failing(n);
    try {
        zor_choiceAddOption(choice, option);
    } catch (std::bad_alloc const&) {
    }
    return failing.happened();
}

} // namespace

// The schema whose place the copy takes goes when the copy is there, and its documents with it.
TEST(HalfDone, IsNoCopyOfASchemaOntoItsOwnName) {
    EXPECT_GT(failEachUnchanged([](ZorCollection& store) {
                  store.copySchema(kPhoneSchema, store.getSchema(kPhoneSchema));
                  EXPECT_EQ(store.getSchema(kPhoneSchema)->documentCount(), 0);
                  EXPECT_EQ(documentIn(store), nullptr);
              }),
              50);
}

TEST(HalfDone, IsNoCopyOfASchemaOntoAnotherName) {
    EXPECT_GT(failEachUnchanged([](ZorCollection& store) {
                  store.copySchema("DefaultSchema", store.getSchema(kPhoneSchema));
                  EXPECT_EQ(store.getDocument("plain"), nullptr);
                  EXPECT_NE(documentIn(store), nullptr);
              }),
              50);
}

TEST(HalfDone, IsNoCopyOfADocument) {
    EXPECT_GT(failEachUnchanged([](ZorCollection& store) {
                  store.copyDocument("plain", documentIn(store));
                  EXPECT_STREQ(store.getDocument("plain")->getRootNode()->getName(), kPhoneSchema);
              }),
              10);
}

// A choice that has an option has a default, the first one; of what failed it knows nothing.
TEST(HalfDone, IsNoOptionOfAChoice) {
    char const* const first = "the first option, which is a long one";
    std::unique_ptr<ZorDataType> choice(zor_choiceMake("choice"));
    long n = 1;
    for (; addOptionFailing(choice.get(), first, n); ++n) {
        EXPECT_EQ(optionsOf(choice.get()), "") << n;
        EXPECT_EQ(taken(zor_dataTypeDefault(choice.get())), "(null)") << n;
        EXPECT_EQ(zor_dataTypeValidate(choice.get(), first), 0) << n;
    }
    EXPECT_GT(n, 3);
    for (n = 1; addOptionFailing(choice.get(), "the second option, as long as that", n); ++n) {
        EXPECT_EQ(optionsOf(choice.get()), "|the first option, which is a long one") << n;
        EXPECT_EQ(taken(zor_dataTypeDefault(choice.get())), first) << n;
    }
    EXPECT_GT(n, 2);
    EXPECT_EQ(optionsOf(choice.get()),
              "|the first option, which is a long one|the second option, as long as that");
    EXPECT_EQ(taken(zor_dataTypeDefault(choice.get())), first);
}

// The object that was not stored is still the caller's, and the one in its place the store's.
TEST(HalfDone, IsNoObjectThatIsStored) {
    EXPECT_GT(failEachUnchanged([](ZorCollection& store) {
                  auto document = std::make_unique<ZorDocument>(store.getSchema(kPhoneSchema),
                                                                "a document of the host's own");
                  ZorDocument* const replaced = documentIn(store);
                  store.setDocument(document.get(), "another document, stored beside the others");
                  (void)document.release();
                  EXPECT_EQ(documentIn(store), replaced);
              }),
              3);
    EXPECT_GT(failEachUnchanged([](ZorCollection& store) {
                  auto schema = std::make_unique<ZorSchema>(&store, "a schema of the host's own");
                  schema->makeBranchNode(schema->getRootNode(), "a branch of a schema", 2);
                  store.setSchema(schema.get(), "a schema of the host's own");
                  EXPECT_EQ(store.getSchema("a schema of the host's own"), schema.release());
              }),
              5);
}

TEST(HalfDone, IsNoObjectThatTakesThePlaceOfAnother) {
    EXPECT_GT(failEachUnchanged([](ZorCollection& store) {
                  std::unique_ptr<ZorDocument> replaced(store.getDocument("plain"));
                  try {
                      auto document =
                          std::make_unique<ZorDocument>(store.getSchema(kPhoneSchema), "plain");
                      store.setDocument(document.get(), "plain");
                      (void)document.release();
                  } catch (std::bad_alloc const&) {
                      (void)replaced.release();
                      throw;
                  }
                  EXPECT_NE(store.getDocument("plain"), replaced.get());
              }),
              3);
}

// What the caller had in its list is still in front.
TEST(HalfDone, LeavesTheCallersListReadable) {
    EXPECT_GE(failEachOnFilled([](ZorCollection& store) {
                  ZorSchema* const first = store.getSchema("DefaultSchema");
                  std::list<ZorSchema*> schemas{first};
                  std::list<ZorDocument*> documents;
                  std::list<ZorCollection*> collections;
                  try {
                      store.getSchemas(schemas);
                      store.getDocuments(documents);
                      store.getCollections(collections);
                  } catch (std::bad_alloc const&) {
                      EXPECT_EQ(schemas.front(), first);
                      for (ZorSchema* const schema : schemas) {
                          EXPECT_EQ(store.getSchema(schema->getName()), schema);
                      }
                      for (ZorDocument* const document : documents) {
                          EXPECT_EQ(store.getDocument(document->getName()), document);
                      }
                      throw;
                  }
                  EXPECT_EQ(schemas.size(), 3U);
                  EXPECT_EQ(documents.size(), 2U);
                  EXPECT_EQ(collections.size(), 1U);
              }),
              6);
}

// A writer whose buffer does not grow keeps what it has, and takes what fits.
TEST(HalfDone, LeavesAWriterWithWhatItHas) {
    std::string const piece(700, 'p');
    EXPECT_GE(failEach([&piece] {
                  ZorStringWriter writer;
                  std::string written;
                  written.reserve(10 * piece.size());
                  for (int i = 0; i < 10; ++i) {
                      try {
                          writer.writeData(piece.data(), int(piece.size()));
                      } catch (std::bad_alloc const&) {
                          EXPECT_EQ(writer.getValue(), written);
                          writer.writeData(piece.data(), int(piece.size()));
                      }
                      written += piece;
                  }
                  EXPECT_EQ(writer.getValue(), written);
              }),
              4);
}

// A frame that is not made is not on the stack.
TEST(HalfDone, IsNoFrameThatIsPushed) {
    EXPECT_GE(failEach([] {
                  ZorIncidentContext context("root", nullptr, nullptr);
                  context.push("inner", nullptr, nullptr);
                  auto const described = [&context] {
                      std::string text;
                      context.getContextString(text);
                      return text;
                  };
                  std::string const label = "a frame with a label that needs a block of its own";
                  std::string const before = described();
                  try {
                      context.push(label, nullptr, nullptr);
                  } catch (std::bad_alloc const&) {
                      EXPECT_EQ(described(), before);
                      context.push(label, nullptr, nullptr);
                  }
                  context.pop();
                  EXPECT_EQ(described(), before);
                  context.pop();
                  context.pop();
                  EXPECT_EQ(described(), "root");
              }),
              4);
}

// A parser that ran out of memory, which it throws or reports, is ready again when it is reset.
TEST(HalfDone, IsNoParserOfTheHosts) {
    EXPECT_GT(failEachOnFilled([](ZorCollection& store) {
                  char const* const text = "<cfg><schema name='made'/></cfg>";
                  ZorIncidentContext context("a parser of the host's own, ", nullptr, nullptr);
                  ZorXmlParser parser(&store, &context);
                  parser.parse("<cfg><schema name='open'><branch name='b'><unkn", -1, 0);
                  parser.reset(nullptr);
                  bool isComplete = false;
                  try {
                      parser.parse(text, -1, 1);
                      isComplete = context.getMaxIncidentSeverity() == severityNone;
                  } catch (std::bad_alloc const&) {
                  }
                  if (!isComplete) {
                      store.deleteSchema("made");
                      parser.reset(nullptr);
                      parser.parse(text, -1, 1);
                  }
                  EXPECT_EQ(context.getMaxIncidentSeverity(), severityNone);
                  EXPECT_NE(store.getSchema("made"), nullptr);
              }),
              100);
}

// What was found until then is in the list, which is the caller's to free.
TEST(HalfDone, LeavesTheListOfNodesThatWereFound) {
    EXPECT_GT(failEachOnFilled([](ZorCollection& store) {
                  ZorSchemaNode* const root = store.getSchema(kPhoneSchema)->getRootNode();
                  for (char const* const path : {"//*", "key/inner/deep", "*/*", "key//deep"}) {
                      ZorListNode* found = nullptr;
                      try {
                          root->findSubNodes(&found, path, -1);
                      } catch (std::bad_alloc const&) {
                          for (ZorListNode* n = found; n; n = n->next) {
                              EXPECT_NE(static_cast<ZorSchemaNode*>(n->value)->parent, nullptr);
                          }
                          zor_listDelete(found);
                          throw;
                      }
                      EXPECT_NE(found, nullptr) << path;
                      zor_listDelete(found);
                  }
              }),
              10);
}

TEST(HalfDone, IsNoImportOfAFile) {
    std::string const path = testing::TempDir() + "zor-half-done.xml";
    std::ofstream(path) << kDocument;
    EXPECT_GT(failEachOnFilled([&path](ZorCollection& store) {
                  store.deleteAllDocuments();
                  store.importFromFile((path + " that is not there").c_str());
                  store.importFromFile(path.c_str());
              }),
              50);
    std::remove(path.c_str());
}
