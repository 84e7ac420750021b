// Damaged texts, each followed by the correct one in the same collection.
//
//     WholeSweep sweep;
//     sweep.expectRecoveryFrom(sweep.text().substr(0, 100));
//
// There are two ways for a host to go on after an import that failed:
//
// - Schemas and documents come in one file. A schema that is there is skipped by the next import,
//   however little of it was made, and a document keeps what it has. So the host, which knows the
//   names of what it had before, deletes everything else and imports the correct file. This is what
//   WholeSweep does.
// - The schemas are there, and the file fills documents of them. Nothing needs to be deleted: the
//   correct file sets every value anew. This is what RefillSweep does. (What a damaged name made
//   is deleted, but not before the correct file was imported.)
//
// Either way the collection holds other things, too, which must be the same after every import.

#pragma once

#include <gtest/gtest.h>

#include <list>
#include <map>
#include <memory>
#include <set>
#include <string>

#include "tests/collection/import_store.h"
#include "tests/hostile/small_phone.h"
#include "tests/xml/bare_expat.h"
#include "zor/collection.h"

// The names of everything in a collection.
class Inventory {
public:
    Inventory() = default;
    explicit Inventory(ZorCollection& collection) {
        std::list<ZorSchema*> schemaList;
        collection.getSchemas(schemaList);
        for (ZorSchema const* const schema : schemaList) schemas.insert(schema->getName());
        std::list<ZorDocument*> documentList;
        collection.getDocuments(documentList);
        for (ZorDocument const* const document : documentList) {
            documents.insert(document->getName());
        }
        std::list<ZorCollection*> collectionList;
        collection.getCollections(collectionList);
        for (ZorCollection* const inner : collectionList) {
            collections.emplace(inner->getName(), Inventory(*inner));
        }
    }

    // Deletes what is in the collection but not in here.
    void deleteTheRest(ZorCollection& collection) const {
        Inventory const now(collection);
        for (std::string const& name : now.documents) {
            if (!documents.count(name)) collection.deleteDocument(name.c_str());
        }
        for (std::string const& name : now.schemas) {
            if (!schemas.count(name)) collection.deleteSchema(name.c_str());
        }
        for (auto const& entry : now.collections) {
            char const* const name = entry.first.c_str();
            auto const found = collections.find(entry.first);
            if (found == collections.end())
                collection.deleteCollection(name);
            else
                found->second.deleteTheRest(*collection.getCollection(name));
        }
    }

private:
    std::set<std::string> schemas;
    std::set<std::string> documents;
    std::map<std::string, Inventory> collections;
};

class Sweep {
public:
    virtual ~Sweep() = default;

    // The correct text.
    virtual std::string const& text() const = 0;

    // Imports the damaged text and then the correct one. Nothing of the damage must be left.
    virtual void expectRecoveryFrom(std::string const& damaged) = 0;

protected:
    // What is in the collection all the time.
    Sweep() {
        importCorrect(
            "<desk><schema name='kept'><item name='volume' type='int' default='5'/></schema>"
            "<document name='kept 1' schema='kept'><volume>7</volume></document>"
            "<document name='kept 2'><itemValue>text</itemValue></document>"
            "<collection name='held'><document name='kept 3'/></collection></desk>");
    }

    // Imports a text of any bytes, then expects expat's last word on it. The incidents before that
    // are those of the content, which may be anything.
    void importDamaged(std::string const& damaged) {
        if (damaged.find('\0') == std::string::npos) {
            collection.importXML(damaged.c_str());
        } else {
            // As a file is: a text in memory would end at the NUL.
            ZorIncidentContext incidents("", nullptr, nullptr);
            ZorXmlParser(&collection, &incidents)
                .parse(damaged.data(), static_cast<int>(damaged.size()), 1);
        }
        std::string const incidents = log.take();
        std::string const last = complaintOfExpat({damaged}, true);
        ASSERT_GE(incidents.size(), last.size());
        EXPECT_EQ(incidents.substr(incidents.size() - last.size()), last);
    }

    void importCorrect(std::string const& correct) {
        collection.importXML(correct.c_str());
        EXPECT_EQ(log.take(), "");
    }

    IncidentLog log;
    ZorCollection collection{"desk"};
};

class WholeSweep : public Sweep {
public:
    WholeSweep() : before(collection), contentBefore(contentOf(collection)) {
        importCorrect(whole);
        contentAfter = contentOf(collection);
        before.deleteTheRest(collection);
    }

    std::string const& text() const override { return whole; }

    void expectRecoveryFrom(std::string const& damaged) override {
        importDamaged(damaged);
        before.deleteTheRest(collection);
        EXPECT_EQ(contentOf(collection), contentBefore);
        importCorrect(whole);
        EXPECT_EQ(contentOf(collection), contentAfter);
        before.deleteTheRest(collection);
    }

private:
    std::string const whole =
        small_phone::fileOf(std::string(small_phone::kDefinition) + small_phone::kDocuments);
    Inventory before;
    std::string contentBefore;
    std::string contentAfter;
};

class RefillSweep : public Sweep {
public:
    RefillSweep() {
        importCorrect(small_phone::fileOf(small_phone::kDefinition));
        importCorrect(documents);
        filled = Inventory(collection);
        content = contentOf(collection);
    }

    std::string const& text() const override { return documents; }

    void expectRecoveryFrom(std::string const& damaged) override {
        importDamaged(damaged);
        importCorrect(documents);
        filled.deleteTheRest(collection);
        EXPECT_EQ(contentOf(collection), content);
    }

private:
    std::string const documents = small_phone::fileOf(small_phone::kDocuments);
    Inventory filled;
    std::string content;
};

// Makes the sweep of that name.
inline std::unique_ptr<Sweep> makeSweep(std::string const& name) {
    if (name == "Whole") return std::make_unique<WholeSweep>();
    return std::make_unique<RefillSweep>();
}
