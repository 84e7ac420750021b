// A program whose static objects use the store before main begins and after it has ended: the
// library's own statics must be there for both, whatever the order of initialisation.

#include <zor/zor.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

void require(bool condition, char const* what) {
    if (condition) return;
    std::fprintf(stderr, "failed: %s\n", what);
    std::_Exit(1);
}

// Touches the process-wide objects themselves, before any function of the library has run.
struct UsesLocks {
    UsesLocks() {
        ZorBuiltIn::builtInTypesSem.take(-1);
        ZorBuiltIn::builtInTypesSem.give();
        ZorSchema::sNodeMapSema4.take(-1);
        require(ZorSchema::sNodeMap.begin() == ZorSchema::sNodeMap.end(), "the cache is there");
        ZorSchema::sNodeMapSema4.give();
    }
};

class UsesEverything {
public:
    UsesEverything() : store("early") {
        ZorString* const text = ZorString::create("true", -1);
        require(text == &ZorString::stdZorStrings[13], "permanent strings are there");
        ZorSchema* const schema = store.makeSchema("s");
        require(schema->makeDataNode(schema->getRootNode(), "a", 2, schema->getDataType("int"),
                                     "7") != nullptr,
                "types and the name cache are there");
        zor_setLoggingFunction(nullptr);
        require(store.makeSchema("s") == nullptr, "incidents can be raised");
        store.makeDocument("s", "d");
    }

    ~UsesEverything() {
        store.importXML("<early><document name=\"d\" schema=\"s\"><a>9</a></document></early>");
        std::string const xml = store.exportAllDocuments();
        require(xml == "<early><document schema=\"s\" name=\"d\"><a>9</a></document></early>",
                "the store works after main");
        require(std::strcmp(zor_dataTypeName(ZorBuiltIn::getDataType("url")), "url") == 0,
                "types are still there");
        std::puts("used before and after main");
    }

private:
    ZorCollection store;
};

UsesLocks locks;
UsesEverything early;

} // namespace

int main() { return 0; }
