// Every single call of a function of the host throws once: of a type, a writer, the logging
// function, a dictionary, a description of a frame. The exception reaches the caller, the store
// stays usable, and what was begun is given back.

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <functional>
#include <memory>
#include <string>

#include "tests/hostile/failing_host.h"
#include "tests/support/allocations.h"
#include "tests/support/checked_semaphore.h"
#include "tests/support/incidents.h"
#include "tests/support/text.h"
#include "zor/collection.h"

namespace {

class HostDictionary : public ZorDictionary {
public:
    std::string getSchemaName(std::string const&) override {
        FailingHostCall::count();
        return "from the dictionary";
    }
    std::string getSchemaDefinition(std::string const&) override {
        FailingHostCall::count();
        return "<cfg><schema name='from the dictionary'><item name='a' type='string' default='x'/>"
               "<item name='q' type='nothing'/></schema></cfg>";
    }
};

// A schema "s" with values of the host's type and of a range over it, and a document "d" of it.
class FilledStore {
public:
    FilledStore() {
        ZorSchema* const schema = store.makeSchema("s");
        host_type::add(*schema, host_type::make("own", "default"));
        addRange(*schema, "letters", "a", "z");
        ZorSchemaNode* const key = schema->makeBranchNode(schema->getRootNode(), "key", 3);
        schema->makeDataNode(key, "text", 2, schema->getDataType("own"), "first");
        schema->makeDataNode(schema->getRootNode(), "letter", 1, schema->getDataType("letters"),
                             "m");
        store.makeDocument("s", "d");
        store.getDocument("d")->setStringNodeValue(schema->getChildNode(key, "text"), 1, "changed");
    }

    static void addRange(ZorSchema& schema, char const* name, char const* min, char const* max) {
        host_type::add(schema, std::unique_ptr<ZorDataType>(
                                   zor_rangeMake(schema.getDataType("own"), name, min, max)));
    }

    // Imports, exports, reads, writes, and makes a node: all without an incident.
    void expectUsable() {
        IncidentLog log;
        store.importXML("<cfg><document name='after' schema='s'><key><text>1</text></key>"
                        "</document></cfg>");
        EXPECT_EQ(store.exportDocument("after"), "<cfg><document schema=\"s\" name=\"after\"><key>"
                                                 "<text>1</text></key></document></cfg>");
        for (char const* const name : {"d", "after"}) {
            if (ZorDocument* const document = store.getDocument(name)) expectWritable(*document);
        }
        store.deleteAllDocuments();
        ZorSchema* const schema = store.getSchema("s");
        EXPECT_NE(schema->makeBranchNode(schema->getRootNode(), "one more", 1), nullptr);
        EXPECT_EQ(log.take(), "");
    }

    HostDictionary dictionary;
    ZorCollection store{"cfg", &dictionary};

private:
    static void expectWritable(ZorDocument& document) {
        std::unique_ptr<ZorResultSet> const texts(document.select("//text"));
        EXPECT_EQ(texts->getResultCount(), 6U);
        for (; !texts->eof(); texts->next()) {
            EXPECT_EQ(texts->setValue("k"), 1);
            EXPECT_EQ(taken(texts->getValue()), "k");
        }
    }
};

// Does `work` on a filled store with the first call of the host's functions throwing, then with the
// second, until none of those it makes is the one to throw. Returns how many that were.
long failEach(std::function<void(ZorCollection&)> const& work) {
    for (long n = 1;; ++n) {
        long const before = liveBlocks();
        bool happened = false;
        bool reached = false;
        {
            FilledStore filled;
            {
                HostLog const log;
                FailingHostCall const failing(n);
                try {
                    work(filled.store);
                } catch (HostFailure const&) {
                    reached = true;
                }
                happened = failing.happened();
            }
            EXPECT_EQ(reached, happened) << "the failure of call " << n << " is the caller's";
            EXPECT_EQ(heldLocks(), 0) << "after the failure of call " << n;
            filled.expectUsable();
        }
        ZorBuiltIn::deleteBuiltInTypes();
        EXPECT_EQ(liveBlocks(), before) << "left by the failure of call " << n;
        EXPECT_EQ(ZorCollection::refCount, 0) << "after the failure of call " << n;
        if (testing::Test::HasFailure()) return 0;
        if (!happened) return n - 1;
    }
}

// Wrong in many ways, so that the logging function is called in many places.
constexpr char kErrors[] =
    "<cfg><unknown/><schema name='e'><choice name='k'><option>a</option><option> </option></choice>"
    "<unknown/><item name='i' type='k' default='a'/>"
    "<range name='rg' baseType='int' minValue='9' maxValue='1'/><unknown/>"
    "<item name='i' type='int'/></schema><unknown/>"
    "<document name='d'><key><text>5</text><text>6</text><text>7</text><unknown/></key>"
    "<letter>n</letter></document><document name='dd' schema='e'><i>b</i></document><unknown/>"
    "<document name='another'><a>1</a></document>&nothing;</cfg>";

} // namespace

TEST(HostFailure, InATypeThatIsMade) {
    EXPECT_GE(failEach([](ZorCollection& store) {
                  host_type::add(*store.getSchema("s"), host_type::make("another", "default"));
              }),
              1);
}

TEST(HostFailure, InARangeOverIt) {
    EXPECT_GE(failEach([](ZorCollection& store) {
                  FilledStore::addRange(*store.getSchema("s"), "b to y", "b", "y");
                  FilledStore::addRange(*store.getSchema("s"), "none", "y", "b");
              }),
              5);
}

TEST(HostFailure, InNodesThatAreMade) {
    EXPECT_GE(failEach([](ZorCollection& store) {
                  ZorSchema* const schema = store.getSchema("s");
                  store.deleteAllDocuments();
                  schema->makeDataNode(schema->getRootNode(), "made", 1, schema->getDataType("own"),
                                       "x");
                  schema->makeDataNode(nullptr, "refused", 1, nullptr, nullptr);
                  schema->makeBranchNode(schema->getRootNode(), "key", 1);
              }),
              3);
}

TEST(HostFailure, InDocumentsThatAreMade) {
    EXPECT_GE(failEach([](ZorCollection& store) {
                  store.makeDocument("s", "made");
                  store.makeDocument("s", "made");
                  store.makeDocument("nothing", "refused");
              }),
              9);
}

TEST(HostFailure, InCopies) {
    EXPECT_GE(failEach([](ZorCollection& store) {
                  store.copyDocument("copy", store.getDocument("d"));
                  store.copyDocument("d", store.getDocument("copy"));
                  store.copySchema("copy", store.getSchema("s"));
                  store.copySchema("s", store.getSchema("s"));
              }),
              20);
}

TEST(HostFailure, InValuesThatAreSetAndRead) {
    EXPECT_GE(failEach([](ZorCollection& store) {
                  ZorDocument* const document = store.getDocument("d");
                  std::unique_ptr<ZorResultSet> const all(document->select("//*"));
                  for (; !all->eof(); all->next()) {
                      for (char const* const text : {"y", static_cast<char const*>(nullptr), "z"}) {
                          all->setValue(text);
                      }
                      all->setIntValue(3);
                      all->getIntValue(nullptr);
                      std::string read;
                      all->getValue(read);
                      all->restoreDefault();
                  }
                  all->setValue("past the end");
                  document->restoreDefaults();
              }),
              60);
}

TEST(HostFailure, InAnExport) {
    EXPECT_GE(failEach([](ZorCollection& store) {
                  HostWriter writer;
                  store.exportAll(&writer);
                  store.exportXML(&writer);
                  store.getDocument("d")->exportXML(&writer);
                  store.getSchema("s")->exportXML(&writer);
                  store.exportAll();
                  store.exportSchema("s");
                  store.exportSubset({"d", "nothing"});
              }),
              50);
}

TEST(HostFailure, InAnImport) {
    EXPECT_GE(failEach([](ZorCollection& store) { store.importXML(kErrors); }), 20);
}

TEST(HostFailure, InAnImportInPieces) {
    EXPECT_GE(failEach([](ZorCollection& store) {
                  ZorIncidentContext context(
                      "pieces ",
                      [](std::string& out, void*) {
                          FailingHostCall::count();
                          out += "described ";
                      },
                      nullptr);
                  ZorXmlParser parser(&store, &context);
                  for (char const* at = kErrors; *at; ++at) parser.parse(at, 1, 0);
                  parser.parse("", 0, 1);
              }),
              40);
}

TEST(HostFailure, InAnImportOfAFile) {
    std::string const path = testing::TempDir() + "zor-host-failure.xml";
    std::ofstream(path) << kErrors;
    EXPECT_GE(failEach([&path](ZorCollection& store) {
                  store.importFromFile((path + " that is not there").c_str());
                  store.importFromFile(path.c_str());
              }),
              21);
    std::remove(path.c_str());
}

TEST(HostFailure, InThePathOfANode) {
    EXPECT_EQ(failEach([](ZorCollection& store) {
                  for (char const* const path : {"//nothing", "", "//*"}) {
                      store.getSchema("s")->getRootNode()->findSubNode(Text(path));
                  }
              }),
              3);
}

// What a parser was in the middle of when the host failed is over; after a reset it parses again.
TEST(HostFailure, LeavesAParserThatCanBeReset) {
    EXPECT_GE(failEach([](ZorCollection& store) {
                  ZorIncidentContext context("", nullptr, nullptr);
                  ZorXmlParser parser(&store, &context);
                  try {
                      parser.parse(kErrors, -1, 1);
                  } catch (HostFailure const&) {
                      parser.reset(nullptr);
                      parser.parse("<cfg><schema name='reset'/></cfg>", -1, 1);
                      EXPECT_NE(store.getSchema("reset"), nullptr);
                      EXPECT_EQ(context.getMaxIncidentSeverity(), severityNone);
                      throw;
                  }
              }),
              20);
}
