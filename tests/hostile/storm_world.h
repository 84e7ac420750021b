// Two stores with everything that a host may have beside them: dictionaries that meddle, and a text
// that comes in pieces. What is done with them is in storm_operations.h.

#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <iterator>
#include <list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tests/hostile/failing_host.h"
#include "tests/hostile/storm_text.h"
#include "tests/support/text.h"
#include "zor/collection.h"

// Gives definitions that are as random as all the rest; before that, it imports into its store and
// deletes what is there.
class StormDictionary : public ZorDictionary {
public:
    StormDictionary(Dice& source, std::function<void()> meddlesomeAct)
        : dice(source), act(std::move(meddlesomeAct)) {}

    std::string getSchemaName(std::string const&) override {
        FailingHostCall::count();
        return dice.oneIn(3) ? "" : text.name();
    }

    std::string getSchemaDefinition(std::string const& schemaName) override {
        FailingHostCall::count();
        if (dice.oneIn(3)) act();
        if (dice.oneIn(3)) return "";
        if (depth < 40 && dice.oneIn(3)) {
            Level const level(&depth);
            store->importXML(text.file().c_str());
        }
        std::string definition = "<c>" + text.content(1);
        definition += "<schema name='" + schemaName + "'>" + text.declarations();
        return definition + "</schema></c>";
    }

    ZorCollection* store = nullptr;

private:
    struct Level {
        explicit Level(int* count) : depth(count) { ++*depth; }
        Level(Level const&) = delete;
        Level& operator=(Level const&) = delete;
        ~Level() { --*depth; }
        int* depth;
    };

    Dice& dice;
    StormText text{dice};
    std::function<void()> act;
    int depth = 0;
};

// A text that comes in pieces, into a parser of the host's own.
class StormPieces {
public:
    StormPieces(ZorCollection* store, std::string wholeText)
        : text(std::move(wholeText)), parser(store, &incidents) {}

    bool isMidway() const { return at > 0 && at < text.size(); }
    bool isOver() const { return at == text.size(); }

    // What is parsed counts as given, whatever happens meanwhile.
    void parse(std::size_t length) {
        std::size_t const begin = at;
        at += std::min(length, text.size() - begin);
        parser.parse(text.data() + begin, int(at - begin), isOver());
    }

    void restart(std::string const& wholeText) {
        text = wholeText;
        at = 0;
        parser.reset(nullptr);
    }

private:
    std::string text;
    std::size_t at = 0;
    ZorIncidentContext incidents{"pieces", nullptr, nullptr};
    ZorXmlParser parser;
};

class StormWorld {
public:
    using Operation = std::function<void()>;

    explicit StormWorld(Dice& source) : dice(source) {
        for (int i : {0, 1}) openStore(i);
    }

    // A random operation, with all that it takes from outside, so that running it allocates little
    // but what the stores ask for.
    Operation draw();

    // Reads all that the stores hold.
    void readAll() {
        for (auto const& store : stores) {
            HostWriter writer;
            store->exportXML(&writer);
            EXPECT_GT(writer.written, 0U);
            for (ZorDocument* const document : documentsOf(*store)) {
                EXPECT_GT(document->rootNode->documentCount, 0);
                std::unique_ptr<ZorResultSet> const all(document->select("//*"));
                for (; !all->eof(); all->next()) {
                    taken(all->getValue());
                    all->wasChanged();
                }
            }
            for (ZorSchema* const schema : schemasOf(*store)) {
                std::vector<ZorSchemaNode*> const nodes = nodesBelow(schema->rootNode);
                for (std::size_t i = 1; i < nodes.size(); ++i) {
                    EXPECT_EQ(schema->getChildNode(nodes[i]->parent, nodes[i]->getName()),
                              nodes[i]);
                }
            }
        }
    }

    // Whether an import is said to run.
    bool isImporting() const { return stores[0]->parseDepth != 0 || stores[1]->parseDepth != 0; }

private:
    void openStore(int i) {
        auto made = std::make_unique<ZorCollection>("c", &dictionaries[i]);
        if (i == 0) pieces.reset();
        stores[i] = std::move(made);
        dictionaries[i].store = stores[i].get();
    }

    // While a text is half parsed, nothing that it may refer to is deleted.
    int indexOfAny() { return int(dice.below(2)); }
    int indexOfChangeable() { return pieces && pieces->isMidway() ? 1 : indexOfAny(); }
    ZorCollection& anyStore() { return *stores[indexOfAny()]; }
    ZorCollection& changeableStore() { return *stores[indexOfChangeable()]; }
    ZorCollection& anyCollection() {
        ZorCollection& store = anyStore();
        std::list<ZorCollection*> inside;
        if (dice.oneIn(4)) store.getCollections(inside);
        return inside.empty() ? store : *inside.front();
    }

    static std::list<ZorDocument*> documentsOf(ZorCollection& store) {
        std::list<ZorDocument*> documents;
        store.getDocuments(documents);
        return documents;
    }
    static std::list<ZorSchema*> schemasOf(ZorCollection& store) {
        std::list<ZorSchema*> schemas;
        store.getSchemas(schemas);
        return schemas;
    }
    static std::vector<ZorSchemaNode*> nodesBelow(ZorSchemaNode* top) {
        std::vector<ZorSchemaNode*> nodes{top};
        for (std::size_t i = 0; i < nodes.size(); ++i) {
            for (ZorSchemaNode* n = nodes[i]->getFirstChildNode(); n; n = n->getNextNode()) {
                nodes.push_back(n);
            }
        }
        return nodes;
    }
    // Null when there is none.
    template <typename T>
    T* anyOf(std::list<T*> const& objects) {
        if (objects.empty()) return nullptr;
        return *std::next(objects.begin(), dice.below(unsigned(objects.size())));
    }
    ZorSchemaNode* anyNodeOf(ZorSchemaNode* root) {
        std::vector<ZorSchemaNode*> const nodes = nodesBelow(root);
        return nodes[dice.below(unsigned(nodes.size()))];
    }

    // What the dictionaries do in the middle of an import. The first one's store is the one with
    // the pieces.
    void deleteSomethingFrom(int i) {
        if (dice.oneIn(2)) {
            stores[i]->deleteDocument(text.name().c_str());
        } else if (dice.oneIn(2)) {
            stores[i]->deleteAllDocuments();
        } else if (i == 0 || dice.oneIn(2)) {
            stores[i]->deleteSchema(text.name().c_str());
        } else if (dice.oneIn(3)) {
            stores[i]->deleteAllSchemas();
        } else {
            stores[i]->makeSchema(text.name().c_str());
        }
    }

    Operation drawMaking();
    Operation drawNode();
    Operation drawType();
    Operation drawImport();
    Operation drawPiece();
    Operation drawCopy();
    Operation drawDeletion();
    Operation drawReplacement();
    Operation drawExport();
    Operation drawValue();
    Operation drawSelect();
    void useResults(ZorResultSet& results, std::string const& path, std::string const& value);

    Dice& dice;
    StormText text{dice};
    StormDictionary dictionaries[2] = {{dice, [this] { deleteSomethingFrom(0); }},
                                       {dice, [this] { deleteSomethingFrom(1); }}};
    std::unique_ptr<ZorCollection> stores[2];
    std::unique_ptr<StormPieces> pieces; // for the first store
};
