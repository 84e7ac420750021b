// Generated stores, exported, imported into an empty collection and exported again.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <list>
#include <random>
#include <string>
#include <vector>

#include "tests/collection/objects.h"
#include "tests/support/incidents.h"
#include "zor/collection.h"

namespace {

// Fills a collection with whatever comes to its mind, the same for the same seed.
class StoreMaker {
public:
    explicit StoreMaker(unsigned seed) : random(seed) {}

    void fill(ZorCollection& store, int depth) {
        for (int i = below(4); i > 0; --i) addSchema(store);
        std::vector<std::string> schemas{"DefaultSchema"};
        std::list<ZorSchema*> made;
        store.getSchemas(made);
        for (ZorSchema const* const schema : made) schemas.push_back(schema->getName());
        for (int i = below(6); i > 0; --i) addDocument(store, pick(schemas));
        for (int i = depth > 0 ? below(3) : 0; i > 0; --i) {
            fill(*store.makeCollection(freshName().c_str()), depth - 1);
        }
    }

private:
    // A number from 0 to limit - 1.
    int below(int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); }

    template <typename T>
    T const& pick(std::vector<T> const& from) {
        return from[static_cast<std::size_t>(below(static_cast<int>(from.size())))];
    }

    // Never the same twice, so that nothing is refused.
    std::string freshName() { return pick(stems) + std::to_string(++names); }

    std::string textFrom(std::vector<std::string> const& characters, int longest) {
        std::string text;
        for (int i = below(longest + 1); i > 0; --i) text += pick(characters);
        return text;
    }

    void addSchema(ZorCollection& store) {
        ZorSchema* const schema = store.makeSchema(freshName().c_str());
        std::vector<std::string> types{"string",       "int",       "uint",    "bool",
                                       "float",        "url",       "ip_mask", "domain_name",
                                       "digit_string", "ip_address"};
        for (int i = below(4); i > 0; --i) {
            std::string const name = freshName();
            if (below(2)) {
                ZorDataType* const choice = zor_choiceMake(name.c_str());
                for (int n = 1 + below(4); n > 0; --n) {
                    zor_choiceAddOption(choice, freshName().c_str());
                }
                schema->addDataType(choice);
            } else {
                schema->addDataType(zor_rangeMake(ZorBuiltIn::getDataType("int"), name.c_str(),
                                                  "-20", std::to_string(below(50)).c_str()));
            }
            types.push_back(name);
        }
        addNodes(schema, schema->getRootNode(), types, 3);
    }

    void addNodes(ZorSchema* schema, ZorSchemaNode* parent, std::vector<std::string> const& types,
                  int depth) {
        for (int i = below(6); i > 0; --i) {
            std::string const name = freshName();
            auto const occurrences = static_cast<short>(1 + (below(2) ? below(4) : 0));
            if (depth > 0 && below(3) == 0) {
                addNodes(schema, schema->makeBranchNode(parent, name.c_str(), occurrences), types,
                         depth - 1);
                continue;
            }
            ZorDataType* const type = schema->getDataType(pick(types).c_str());
            std::string const text = valueOf(type, plainCharacters);
            schema->makeDataNode(parent, name.c_str(), occurrences, type,
                                 below(2) ? text.c_str() : nullptr);
        }
    }

    // A text that is valid for the type. Defaults are written unescaped, and so are made of plain
    // characters.
    std::string valueOf(ZorDataType* type, std::vector<std::string> const& characters) {
        if (zor_datatypeIsChoice(type)) return pick(optionsOf(type));
        std::string const name = zor_dataTypeName(type);
        if (zor_datatypeIsRange(type)) return pick<std::string>({"-20", "-7", zor_rangeMax(type)});
        if (name == "int") return std::to_string(static_cast<std::int32_t>(random()));
        if (name == "uint") return std::to_string(random());
        if (name == "bool") return below(2) ? "true" : "false";
        if (name == "float") return pick<std::string>({"0", "-0.1", "1e+20", "2.5e-7", "12345.75"});
        if (name == "ip_address") return "10." + std::to_string(below(256)) + ".0.255";
        if (name == "ip_mask") return pick<std::string>({"0.0.0.0", "255.255.240.0", "128.0.0.0"});
        if (name == "digit_string") return textFrom({"0", "7", "#", "*"}, 9);
        std::string const text = textFrom(characters, 40);
        return text == "\"\"" ? "\"" : text; // which would read back as the empty text
    }

    static std::vector<std::string> optionsOf(ZorDataType* choice) {
        static std::vector<std::string>* collected;
        std::vector<std::string> options;
        collected = &options;
        zor_choiceEnumerate(choice, [](int, char const* text) { collected->push_back(text); });
        collected = nullptr;
        return options;
    }

    void addDocument(ZorCollection& store, std::string const& schemaName) {
        ZorDocument* const document = store.makeDocument(schemaName.c_str(), freshName().c_str());
        setBelow(document, document->getRootNode());
    }

    void setBelow(ZorDocument* document, ZorSchemaNode* node) {
        for (ZorSchemaNode* child = node->getFirstChildNode(); child; child = child->next) {
            if (!child->isDataNode()) setBelow(document, child);
            for (int i = 0; child->isDataNode() && i < child->getTotalOccurrences(); ++i) {
                if (below(2)) continue;
                std::string const text = valueOf(child->getDataType(), allCharacters);
                EXPECT_EQ(document->setStringNodeValue(child, i, below(8) ? text.c_str() : nullptr),
                          1)
                    << text;
            }
        }
    }

    std::mt19937 random;
    int names = 0;
    std::vector<std::string> const stems{"a", "key", "lineKey", "Id", "x-", "volume_", "n."};
    std::vector<std::string> const plainCharacters{"a", "Z", "0", " ", "/", "[", ";", "Zo\xC3\xAB"};
    std::vector<std::string> const allCharacters{"a", "<", ">",  "&",  "'",  "\"",      "&amp;",
                                                 " ", "]", "\n", "\t", "\"", "\xC3\xAB"};
};

// Every value below the node with its mark, one line each.
void describe(std::string& out, ZorDocument* document, ZorSchemaNode* node) {
    for (ZorSchemaNode* child = node->getFirstChildNode(); child; child = child->next) {
        describe(out, document, child);
        for (int i = 0; child->isDataNode() && i < child->getTotalOccurrences(); ++i) {
            out += std::string(child->getName()) + '[' + std::to_string(i) + "] " +
                   taken(document->getStringNodeValue(child, i)) +
                   (document->wasChanged(child, i) ? " changed\n" : "\n");
        }
    }
}

// Every document of the collection and those below it.
std::string describe(ZorCollection& store) {
    std::string out;
    std::list<ZorDocument*> documents;
    store.getDocuments(documents);
    for (ZorDocument* const document : documents) {
        out +=
            std::string(document->getName()) + " of " + document->getRootNode()->getName() + '\n';
        describe(out, document, document->getRootNode());
    }
    std::list<ZorCollection*> collections;
    store.getCollections(collections);
    for (ZorCollection* const collection : collections) {
        out += std::string(collection->getName()) + " {\n" + describe(*collection) + "}\n";
    }
    return out;
}

} // namespace

TEST(CollectionRoundTrip, GivesTheSameTextAndTheSameValues) {
    IncidentLog const log;
    std::size_t longest = 0;
    for (unsigned seed = 1; seed <= 60; ++seed) {
        ZorCollection store("cfg");
        StoreMaker(seed).fill(store, 2);
        std::string const text = store.exportAll();
        ZorCollection again("cfg");
        again.importXML(text.c_str());
        EXPECT_EQ(again.exportAll(), text) << "seed " << seed;
        EXPECT_EQ(describe(again), describe(store)) << "seed " << seed;
        longest = std::max(longest, text.size());
    }
    EXPECT_GT(longest, 10000U) << "the stores are too small to tell";
}

// What is exported leaves the store as it was.
TEST(CollectionRoundTrip, ExportingChangesNothing) {
    IncidentLog const log;
    ZorCollection store("cfg");
    StoreMaker(7).fill(store, 2);
    std::string const before = describe(store);
    std::string const text = store.exportAll();
    EXPECT_EQ(describe(store), before);
    EXPECT_EQ(store.exportAll(), text);
}

// A store that already holds everything takes the same values again; only its schemas are there.
TEST(CollectionRoundTrip, ImportingTwiceGivesTheSameText) {
    IncidentLog log;
    ZorCollection store("cfg");
    StoreMaker(11).fill(store, 0);
    std::string const text = store.exportAll();
    ZorCollection again("cfg");
    again.importXML(text.c_str());
    again.importXML(store.exportAllDocuments().c_str());
    EXPECT_EQ(log.take(), "");
    EXPECT_EQ(again.exportAll(), text);
}
