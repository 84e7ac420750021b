#include "root_name.h"

#include <expat.h>

#include <fstream>

namespace {

struct Search {
    XML_Parser parser;
    std::string name;
};

void onStart(void* data, char const* name, char const**) {
    auto* const search = static_cast<Search*>(data);
    search->name = name;
    XML_StopParser(search->parser, XML_FALSE);
}

} // namespace

std::string rootElementName(std::string const& path) {
    std::ifstream file(path, std::ios::binary);
    Search search{XML_ParserCreate(nullptr), std::string()};
    XML_SetUserData(search.parser, &search);
    XML_SetStartElementHandler(search.parser, onStart);
    char buffer[4096];
    while (search.name.empty() && file.read(buffer, sizeof buffer).gcount() > 0) {
        auto const count = static_cast<int>(file.gcount());
        if (XML_Parse(search.parser, buffer, count, XML_FALSE) != XML_STATUS_OK) break;
    }
    XML_ParserFree(search.parser);
    return search.name;
}
