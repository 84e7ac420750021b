// The operations of a storm: each draws what it does and what it takes from outside, and returns
// the work itself.

#pragma once

#include <memory>
#include <string>

#include "tests/hostile/storm_world.h"

inline StormWorld::Operation StormWorld::draw() {
    switch (dice.below(24)) {
    case 0:
    case 1:
        return drawMaking();
    case 2:
    case 3:
        return drawNode();
    case 4:
        return drawType();
    case 5:
    case 6:
    case 7:
    case 8:
        return drawImport();
    case 9:
    case 10:
    case 11:
        return drawPiece();
    case 12:
    case 13:
        return drawCopy();
    case 14:
    case 15:
    case 16:
        return drawDeletion();
    case 17:
        return drawReplacement();
    case 18:
    case 19:
        return drawExport();
    case 20:
    case 21:
        return drawValue();
    default:
        return drawSelect();
    }
}

inline StormWorld::Operation StormWorld::drawMaking() {
    ZorCollection* const into = &anyCollection();
    std::string const name = text.name();
    std::string const schema = text.name();
    switch (dice.below(3)) {
    case 0:
        return [=] { into->makeSchema(name.c_str()); };
    case 1:
        return [=] { into->makeDocument(schema.c_str(), name.c_str()); };
    default:
        return [=] { // one that is replaced would be the host's
            if (!into->getCollection(name.c_str())) into->makeCollection(name.c_str());
        };
    }
}

inline StormWorld::Operation StormWorld::drawNode() {
    ZorSchema* const schema = anyOf(schemasOf(anyCollection()));
    if (!schema) return [] {};
    ZorSchemaNode* const parent = anyNodeOf(schema->rootNode);
    std::string const name = text.name();
    std::string const type = text.type();
    std::string const value = text.value();
    auto const occurrences = short(dice.oneIn(20) ? dice.anyInt() : int(dice.below(4)));
    if (dice.oneIn(2)) {
        return [=] { schema->makeBranchNode(parent, name.c_str(), occurrences); };
    }
    bool const hasDefault = dice.oneIn(2);
    return [=] {
        schema->makeDataNode(parent, name.c_str(), occurrences, schema->getDataType(type.c_str()),
                             hasDefault ? value.c_str() : nullptr);
    };
}

inline StormWorld::Operation StormWorld::drawType() {
    ZorCollection* const collection = &anyCollection();
    ZorSchema* const schema = anyOf(schemasOf(*collection));
    ZorDataTypeCollection* const types =
        schema && !dice.oneIn(8) ? static_cast<ZorDataTypeCollection*>(schema) : collection;
    bool const hasDefault = dice.oneIn(2);
    return [=] { host_type::add(*types, host_type::make("own", hasDefault ? "d" : nullptr)); };
}

inline StormWorld::Operation StormWorld::drawImport() {
    ZorCollection* const store = &changeableStore();
    std::string const file = text.file();
    return [=] { store->importXML(file.c_str()); };
}

inline StormWorld::Operation StormWorld::drawPiece() {
    std::string const file = text.file();
    if (!pieces) {
        return [=] { pieces = std::make_unique<StormPieces>(stores[0].get(), file); };
    }
    if (dice.oneIn(30)) return [=] { pieces.reset(); };
    if (pieces->isOver() || dice.oneIn(9)) return [=] { pieces->restart(file); };
    std::size_t const length = 1 + dice.below(40);
    return [=] { pieces->parse(length); };
}

inline StormWorld::Operation StormWorld::drawCopy() {
    ZorCollection& source = anyStore();
    ZorCollection* const into = &changeableStore();
    std::string const name = text.name();
    if (dice.oneIn(2)) {
        ZorSchema* const schema = anyOf(schemasOf(source));
        if (!schema) return [] {};
        return [=] { into->copySchema(name.c_str(), schema); };
    }
    ZorDocument* const document = anyOf(documentsOf(source));
    if (!document) return [] {};
    return [=] { into->copyDocument(name.c_str(), document); };
}

inline StormWorld::Operation StormWorld::drawDeletion() {
    int const i = indexOfChangeable();
    ZorCollection* const store = stores[i].get();
    std::string const name = text.name();
    switch (dice.below(40)) {
    case 0:
        return [=] { store->deleteAllSchemas(); };
    case 1:
        return [=] { store->deleteAllCollections(); };
    case 2:
    case 3:
        return [=] { store->deleteAllDocuments(); };
    case 4:
        return [=] { openStore(i); };
    default:
        break;
    }
    switch (dice.below(3)) {
    case 0:
        return [=] { store->deleteSchema(name.c_str()); };
    case 1:
        return [=] { store->deleteDocument(name.c_str()); };
    default:
        return [=] { store->deleteCollection(name.c_str()); };
    }
}

// A document that the host has made itself; the one that it replaces is the host's then.
inline StormWorld::Operation StormWorld::drawReplacement() {
    ZorCollection* const store = &changeableStore();
    ZorSchema* const schema = anyOf(schemasOf(*store));
    if (!schema || schema->rootNode->countRequiredValueNodes() > 100000) return [] {};
    std::string const name = text.name();
    return [=] {
        auto made = std::make_unique<ZorDocument>(schema, name.c_str());
        ZorDocument* const replaced = store->getDocument(name.c_str());
        store->setDocument(made.get(), name.c_str());
        (void)made.release();
        delete replaced;
    };
}

inline StormWorld::Operation StormWorld::drawExport() {
    ZorCollection* const store = &anyStore();
    ZorCollection* const into = &changeableStore();
    std::string const name = text.name();
    std::string const another = text.name();
    switch (dice.below(3)) {
    case 0:
        return [=] { into->importXML(store->exportAll().c_str()); };
    case 1:
        return [=] {
            HostWriter writer;
            store->exportXML(&writer);
        };
    default:
        return [=] {
            store->exportSubset({name, another});
            store->exportSchema(name.c_str());
            store->exportDocument(name.c_str());
            store->exportCollection(name.c_str());
        };
    }
}

inline StormWorld::Operation StormWorld::drawValue() {
    ZorDocument* const document = anyOf(documentsOf(anyCollection()));
    if (!document) return [] {};
    ZorSchemaNode* const node = anyNodeOf(document->rootNode);
    long const occurrence = long(dice.below(5)) - 1;
    std::string const value = text.value();
    long const number = dice.anyInt();
    switch (dice.below(8)) {
    case 0:
        return [=] { document->setStringNodeValue(node, occurrence, value.c_str()); };
    case 1:
        return [=] { document->setStringNodeValue(node, occurrence, nullptr); };
    case 2:
        return [=] { document->setIntNodeValue(node, occurrence, number); };
    case 3:
        return [=] { document->setUIntNodeValue(node, occurrence, 7); };
    case 4:
        return [=] { document->setFloatNodeValue(node, occurrence, 1e300); };
    case 5:
        return [=] { document->restoreDefault(node, occurrence); };
    case 6:
        return [=] { document->restoreDefaults(); };
    default:
        return [=] { taken(document->getStringNodeValue(node, occurrence)); };
    }
}

inline StormWorld::Operation StormWorld::drawSelect() {
    ZorDocument* const document = anyOf(documentsOf(anyCollection()));
    if (!document) return [] {};
    std::string const path = text.path();
    std::string const another = text.path();
    std::string const value = text.value();
    return [=] {
        std::unique_ptr<ZorResultSet> const results(document->select(path.c_str()));
        useResults(*results, another, value);
    };
}

inline void StormWorld::useResults(ZorResultSet& results, std::string const& path,
                                   std::string const& value) {
    for (int i = 0; i < 3 && !results.eof(); ++i) {
        results.seek(dice.below(unsigned(results.getResultCount()) + 1));
        int isNull = 0;
        switch (dice.below(10)) {
        case 0:
            taken(results.getValue());
            break;
        case 1:
            results.setValue(value.c_str());
            break;
        case 2:
            results.getIntValue(&isNull);
            break;
        case 3:
            results.setIntValue(dice.anyInt());
            break;
        case 4:
            results.getFloatValue(&isNull);
            break;
        case 5:
            results.setFloatValue(0.25);
            break;
        case 6:
            results.setUIntValue(7);
            break;
        case 7:
            results.restoreDefault();
            break;
        case 8: {
            std::string read;
            results.getValue(read);
            break;
        }
        default: {
            results.combine(results.document->select(path.c_str()));
            results.addResult(long(dice.below(5)), anyNodeOf(results.document->rootNode),
                              long(dice.below(5)));
        }
        }
    }
}
