// Two texts after each other into one collection, with deletions and copies in between.
//
// Input: the first text, a line "==", the commands, a line "==", the second text. Every character
// of the commands is one of those in `apply`, or does nothing. An import never takes anything
// away and leaves existing schemas as they are; the round trip holds afterwards, correct input
// still imports, and deleting everything leaves an empty collection.

#include <list>

#include "fuzz/support/check.h"
#include "fuzz/support/incident_log.h"
#include "fuzz/support/leftovers.h"
#include "fuzz/support/parts.h"
#include "fuzz/support/proportion.h"
#include "fuzz/support/round_trip.h"
#include "fuzz/support/target.h"
#include "tests/support/text.h"

namespace {

constexpr std::size_t kMostCommands = 32;

// The objects of each kind, in the collection's order.
struct Content {
    explicit Content(ZorCollection& collection) {
        collection.getSchemas(schemas);
        collection.getDocuments(documents);
        collection.getCollections(collections);
    }

    std::list<ZorSchema*> schemas;
    std::list<ZorDocument*> documents;
    std::list<ZorCollection*> collections;
};

// Deletes by a copy of the name, since the object's own goes with it.
template <typename T>
void deleteOne(ZorCollection& collection, void (ZorCollection::*deleteByName)(char const*),
               T const* object) {
    std::string const name = object->getName();
    (collection.*deleteByName)(name.c_str());
}

void apply(char command, ZorCollection& collection) {
    Content const content(collection);
    bool const hasSchema = !content.schemas.empty();
    bool const hasDocument = !content.documents.empty();
    bool const hasCollection = !content.collections.empty();
    switch (command) {
    case 'D':
        return collection.deleteAllDocuments();
    case 'S':
        return collection.deleteAllSchemas();
    case 'C':
        return collection.deleteAllCollections();
    case 'd':
        if (hasDocument)
            deleteOne(collection, &ZorCollection::deleteDocument, content.documents.front());
        return;
    case 's':
        if (hasSchema) deleteOne(collection, &ZorCollection::deleteSchema, content.schemas.front());
        return;
    case 'c':
        if (hasCollection)
            deleteOne(collection, &ZorCollection::deleteCollection, content.collections.front());
        return;
    case 'k': // a schema over itself: its documents go
        if (hasSchema)
            collection.copySchema(std::string(content.schemas.front()->getName()).c_str(),
                                  content.schemas.front());
        return;
    case 'y': // a document over itself
        if (hasDocument)
            collection.copyDocument(std::string(content.documents.front()->getName()).c_str(),
                                    content.documents.front());
        return;
    case 'r':
        if (hasDocument) content.documents.front()->restoreDefaults();
        return;
    default:
        return;
    }
}

std::string textOf(ZorSchema* schema) {
    ZorStringWriter writer;
    schema->exportXML(&writer);
    return writer.getValue();
}

// The schemas, documents and collections before an import, to be found again after it.
class Existing {
public:
    explicit Existing(ZorCollection& holder) : collection(holder), content(holder) {
        for (ZorSchema* const schema : content.schemas) schemaTexts.push_back(textOf(schema));
        for (ZorCollection* const inner : content.collections) below.emplace_back(*inner);
    }

    void checkIsThere() {
        auto text = schemaTexts.begin();
        for (ZorSchema* const schema : content.schemas) {
            check(collection.getSchema(schema->rootNode->name) == schema, "a schema stays");
            checkSame(textOf(schema), *text++, "a schema stays as it was");
        }
        for (ZorDocument* const document : content.documents) {
            check(collection.getDocument(document->name) == document, "a document stays");
        }
        for (ZorCollection* const inner : content.collections) {
            check(collection.getCollection(inner->name) == inner, "a collection stays");
        }
        for (Existing& inner : below) inner.checkIsThere();
    }

private:
    ZorCollection& collection;
    Content content;
    std::list<std::string> schemaTexts;
    std::list<Existing> below;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    std::vector<std::string> const parts = partsOf(data, size, 3);
    if (asksForVeryMuch(parts[0] + parts[2])) return 0;
    NoLeftovers const nothing;
    IncidentLog log;
    ZorCollection collection(kStoreName);
    collection.importXML(parts[0].c_str());
    for (char const command : parts[1].substr(0, kMostCommands)) apply(command, collection);
    {
        Existing before(collection);
        collection.importXML(parts[2].c_str());
        before.checkIsThere();
    }
    log.take();
    checkRoundTrip(collection, log);
    checkStillImports(collection, log);

    collection.deleteAllDocuments();
    collection.deleteAllSchemas();
    collection.deleteAllCollections();
    checkSame(collection.exportAll(), "<phone></phone>", "what is deleted is gone");
    check(Content(collection).schemas.empty(), "no schema is left");
    checkSame(log.take(), "", "deleting is silent");
    return 0;
}
