// Collections as XML.

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/collection/objects.h"
#include "tests/support/checked_semaphore.h"
#include "tests/support/incidents.h"
#include "zor/collection.h"

namespace {

using Names = std::vector<std::string>;

constexpr char kPhone[] =
    "<schema name=\"phone\"><item name=\"volume\" type=\"int\"></item></schema>";
constexpr char kPhone1[] =
    "<document schema=\"phone\" name=\"phone1\"><volume>7</volume></document>";
constexpr char kPhone2[] = "<document schema=\"phone\" name=\"phone2\"></document>";
constexpr char kNote[] = "<document name=\"note\"><itemValue>a&lt;b</itemValue></document>";
constexpr char kSite[] = "<collection name=\"site\">"
                         "<schema name=\"hall\"></schema>"
                         "<document schema=\"hall\" name=\"hall1\"></document>"
                         "<collection name=\"inner\"></collection></collection>";

std::string wrapped(std::string const& body) { return "<cfg>" + body + "</cfg>"; }

// A fresh collection "cfg".
class CollectionExport : public testing::Test {
protected:
    IncidentLog log;
    ZorCollection store{"cfg"};
};

// The same with a schema, three documents and a sub-collection that holds another.
class FilledExport : public CollectionExport {
protected:
    FilledExport() {
        ZorSchema* const phone = store.makeSchema("phone");
        phone->makeDataNode(phone->getRootNode(), "volume", 1, phone->getDataType("int"), nullptr);
        setAt(store.makeDocument("phone", "phone1"), "volume", "7");
        store.makeDocument("phone", "phone2");
        setAt(store.makeDocument("DefaultSchema", "note"), "itemValue", "a<b");
        ZorCollection* const site = store.makeCollection("site");
        site->makeSchema("hall");
        site->makeDocument("hall", "hall1");
        site->makeCollection("inner");
    }

    // The documents in the order in which listings have them.
    std::string documents() {
        std::string text;
        ZorListNode* const list = store.getDocuments();
        for (ZorListNode const* node = list; node; node = node->next) {
            std::string const name = static_cast<ZorDocument const*>(node->value)->getName();
            text += name == "phone1" ? kPhone1 : name == "phone2" ? kPhone2 : kNote;
        }
        zor_listDelete(list);
        return text;
    }

    std::string writtenBy(void (ZorCollection::*exportTo)(ZorDataWriter*)) {
        return written([&](ZorDataWriter* writer) { (store.*exportTo)(writer); });
    }
};

// Notes the locks held at each write, and uses the collection meanwhile.
class BusyWriter : public ZorDataWriter {
public:
    explicit BusyWriter(ZorCollection& store) : collection(store) {}
    void writeData(char const* data, int) override {
        text += data;
        locks.push_back(heldLocks());
        EXPECT_EQ(collection.getSchema("nothing"), nullptr); // takes the collection's lock
    }

    std::string text;
    std::vector<int> locks;

private:
    ZorCollection& collection;
};

} // namespace

// The default schema is never exported.
TEST_F(CollectionExport, OfAFreshCollectionIsTheWrapperAroundNothing) {
    EXPECT_EQ(store.exportAll(), "<cfg></cfg>");
    EXPECT_EQ(store.exportAllDocuments(), "<cfg></cfg>");
    EXPECT_EQ(store.exportAllDocumentsAndSchemas(), "<cfg></cfg>");
    EXPECT_EQ(store.exportSubset({}), "<cfg></cfg>");
    EXPECT_EQ(written([this](ZorDataWriter* writer) { store.exportAll(writer); }), "");
}

TEST_F(CollectionExport, OfUnknownNamesIsEmpty) {
    EXPECT_EQ(store.exportSchema("nothing"), "");
    EXPECT_EQ(store.exportDocument("nothing"), "");
    EXPECT_EQ(store.exportCollection("nothing"), "");
}

// Unlike the exports of all schemas.
TEST_F(CollectionExport, OfTheDefaultSchemaByNameWritesIt) {
    EXPECT_EQ(store.exportSchema("DefaultSchema"),
              "<cfg><schema name=\"DefaultSchema\">"
              "<item name=\"itemValue\" type=\"string\" default=\"\"></item></schema></cfg>");
}

TEST_F(CollectionExport, OfADefaultSchemaDocumentNamesNoSchema) {
    setAt(store.makeDocument("DefaultSchema", "note"), "itemValue", "a<b");
    EXPECT_EQ(store.exportDocument("note"),
              "<cfg><document name=\"note\"><itemValue>a&lt;b</itemValue></document></cfg>");
}

// Kept: names are written as they are.
TEST_F(CollectionExport, DoesNotEscapeNames) {
    ZorCollection odd("a&\"b\"");
    odd.makeCollection("<c>");
    EXPECT_EQ(odd.exportAll(), "<a&\"b\"><collection name=\"<c>\"></collection></a&\"b\">");
}

TEST_F(CollectionExport, WrapsLongNamesWhole) {
    std::string const name(40000, 'n');
    ZorCollection named(name.c_str());
    EXPECT_EQ(named.exportAll(), "<" + name + "></" + name + ">");
}

TEST_F(CollectionExport, OfNamelessCollections) {
    ZorCollection nameless(nullptr);
    nameless.makeCollection(nullptr);
    EXPECT_EQ(nameless.exportAll(), "<><collection name=\"\"></collection></>");
}

TEST_F(FilledExport, WritesOneObject) {
    EXPECT_EQ(store.exportSchema("phone"), wrapped(kPhone));
    EXPECT_EQ(store.exportDocument("phone1"), wrapped(kPhone1));
    EXPECT_EQ(store.exportDocument("phone2"), wrapped(kPhone2));
    EXPECT_EQ(store.exportCollection("site"), wrapped(kSite));
    EXPECT_EQ(store.getCollection("site")->exportCollection("inner"),
              "<site><collection name=\"inner\"></collection></site>");
}

TEST_F(FilledExport, WritesAllOfAKind) {
    EXPECT_EQ(store.exportAllDocuments(), wrapped(documents()));
    EXPECT_EQ(store.exportAllDocumentsAndSchemas(), wrapped(kPhone + documents()));
    EXPECT_EQ(store.exportAll(), wrapped(kPhone + documents() + kSite));
}

// The members that take a writer write no wrapper, but exportXML a collection element.
TEST_F(FilledExport, WritesToAWriter) {
    EXPECT_EQ(writtenBy(&ZorCollection::exportAllSchemas), kPhone);
    EXPECT_EQ(writtenBy(&ZorCollection::exportAllDocuments), documents());
    EXPECT_EQ(writtenBy(&ZorCollection::exportAllCollections), kSite);
    EXPECT_EQ(writtenBy(&ZorCollection::exportAll), kPhone + documents() + kSite);
    EXPECT_EQ(writtenBy(&ZorCollection::exportXML),
              "<collection name=\"cfg\">" + (kPhone + documents() + kSite) + "</collection>");
}

TEST_F(FilledExport, AppendsToTheWriter) {
    ZorStringWriter writer;
    writer.writeData("before ", -1);
    store.exportAllSchemas(&writer);
    store.exportAllSchemas(&writer);
    EXPECT_EQ(writer.getValue(), std::string("before ") + kPhone + kPhone);
}

// Each iteration is in the order of the listings.
TEST_F(CollectionExport, FollowsTheOrderOfTheListings) {
    for (int i = 0; i < 60; ++i) {
        std::string const number = std::to_string(i);
        store.makeSchema(("s" + number).c_str());
        store.makeDocument("DefaultSchema", ("d" + number).c_str());
        store.makeCollection(("c" + number).c_str());
    }
    std::list<ZorSchema*> schemas;
    std::list<ZorDocument*> documents;
    std::list<ZorCollection*> collections;
    store.getSchemas(schemas);
    store.getDocuments(documents);
    store.getCollections(collections);
    std::string schemaText;
    std::string documentText;
    std::string collectionText;
    for (ZorSchema const* const schema : schemas) {
        if (schema == store.getSchema("DefaultSchema")) continue;
        schemaText += std::string("<schema name=\"") + schema->getName() + "\"></schema>";
    }
    for (ZorDocument const* const document : documents) {
        documentText += std::string("<document name=\"") + document->getName() + "\"></document>";
    }
    for (ZorCollection const* const collection : collections) {
        collectionText +=
            std::string("<collection name=\"") + collection->getName() + "\"></collection>";
    }
    EXPECT_EQ(store.exportAll(), wrapped(schemaText + documentText + collectionText));
    EXPECT_EQ(store.exportAllDocumentsAndSchemas(), wrapped(schemaText + documentText));
}

// The document first and its schema after it, in the order of the names.
TEST_F(FilledExport, SubsetWritesEachDocumentAndItsSchema) {
    EXPECT_EQ(store.exportSubset(Names{"phone1"}), wrapped(std::string(kPhone1) + kPhone));
    EXPECT_EQ(store.exportSubset(Names{"note"}), wrapped(kNote));
    EXPECT_EQ(store.exportSubset(Names{"phone2", "note", "phone1"}),
              wrapped(std::string(kPhone2) + kPhone + kNote + kPhone1 + kPhone));
    EXPECT_EQ(store.exportSubset(Names{"phone1", "phone1"}),
              wrapped(std::string(kPhone1) + kPhone + kPhone1 + kPhone));
}

TEST_F(FilledExport, SubsetReportsMissingNamesAndGoesOn) {
    EXPECT_EQ(store.exportSubset(Names{"a", "phone1", "", "phone", "note"}),
              wrapped(std::string(kPhone1) + kPhone + kNote));
    EXPECT_EQ(log.take(), "3 ZorCollection::exportSubset{Document (a) does not exist}\n"
                          "3 ZorCollection::exportSubset{Document () does not exist}\n"
                          "3 ZorCollection::exportSubset{Document (phone) does not exist}\n");
    EXPECT_EQ(store.exportSubset(Names{"a"}), "<cfg></cfg>");
    EXPECT_EQ(log.take(), "3 ZorCollection::exportSubset{Document (a) does not exist}\n");
}

// The names are keys, the elements bear the documents' own names.
TEST_F(FilledExport, SubsetFindsDocumentsByKey) {
    store.copyDocument("copy", store.getDocument("phone1"));
    EXPECT_EQ(store.exportSubset(Names{"copy"}), wrapped(std::string(kPhone1) + kPhone));
    EXPECT_EQ(store.exportDocument("copy"), wrapped(kPhone1));
}

// The schema is the one that the document was made from, not another of the same name.
TEST_F(FilledExport, SubsetWritesTheSchemaOfTheDocument) {
    store.copySchema("copy", store.getSchema("phone"));
    ZorSchema* const copy = store.getSchema("copy");
    copy->makeBranchNode(copy->getRootNode(), "extra", 1);
    store.makeDocument("copy", "phone3");
    EXPECT_EQ(store.exportSubset(Names{"phone3"}),
              "<cfg><document schema=\"phone\" name=\"phone3\"></document>"
              "<schema name=\"phone\"><item name=\"volume\" type=\"int\"></item>"
              "<branch name=\"extra\"></branch></schema></cfg>");
}

// A document of a schema that another collection holds is written alone.
TEST_F(FilledExport, SubsetLeavesOutAForeignSchema) {
    ZorCollection* const site = store.getCollection("site");
    store.setDocument(new ZorDocument(site->getSchema("hall"), "guest"), "guest");
    EXPECT_EQ(store.exportSubset(Names{"guest"}),
              wrapped("<document schema=\"hall\" name=\"guest\"></document>"));
    store.deleteDocument("guest");
}

// The collection's lock is held only while the lists are taken; what writes an element holds the
// element's lock alone, and the wrapper none.
TEST_F(FilledExport, DoesNotHoldTheLockWhileItWrites) {
    BusyWriter writer(store);
    store.exportXML(&writer);
    EXPECT_EQ(writer.text,
              "<collection name=\"cfg\">" + (kPhone + documents() + kSite) + "</collection>");
    EXPECT_EQ(writer.locks.front(), 0);
    EXPECT_EQ(writer.locks.back(), 0);
    for (int const held : writer.locks) EXPECT_LE(held, 1);
    EXPECT_NE(std::count(writer.locks.begin(), writer.locks.end(), 1), 0);
}

// The wrapper is the root element that a collection of the same name imports.
TEST_F(FilledExport, IsReadBackByACollectionOfTheSameName) {
    ZorCollection again("cfg");
    again.importXML(store.exportAll().c_str());
    EXPECT_EQ(again.exportAll(), store.exportAll());
    EXPECT_EQ(valuesAt(again.getDocument("note"), "itemValue"), "a<b");
    EXPECT_EQ(schemaNames(*again.getCollection("site")), schemaNames(*store.getCollection("site")));
}

TEST_F(FilledExport, OneObjectIsReadBack) {
    ZorCollection again("cfg");
    again.importXML(store.exportSchema("phone").c_str());
    again.importXML(store.exportDocument("phone1").c_str());
    again.importXML(store.exportCollection("site").c_str());
    EXPECT_EQ(again.exportAll(), wrapped(std::string(kPhone) + kPhone1 + kSite));
}
