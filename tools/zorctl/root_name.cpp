#include "root_name.h"

#include <expat.h>

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

std::string rootElementName(std::string const& xml) {
    Search search{XML_ParserCreate(nullptr), std::string()};
    XML_SetUserData(search.parser, &search);
    XML_SetStartElementHandler(search.parser, onStart);
    XML_Parse(search.parser, xml.data(), static_cast<int>(xml.size()), XML_TRUE);
    XML_ParserFree(search.parser);
    return search.name;
}
