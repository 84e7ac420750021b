#include "root_name.h"

#include <expat.h>

#include <exception>

namespace {

struct Search {
    XML_Parser parser;
    std::string name;
    std::exception_ptr failure;
};

void onStart(void* data, char const* name, char const**) {
    auto* const search = static_cast<Search*>(data);
    try {
        search->name = name;
    } catch (...) {
        search->failure = std::current_exception(); // not through the parser's own frames
    }
    XML_StopParser(search->parser, XML_FALSE);
}

} // namespace

std::string rootElementName(std::string const& xml) {
    Search search{XML_ParserCreate(nullptr), std::string(), nullptr};
    XML_SetUserData(search.parser, &search);
    XML_SetStartElementHandler(search.parser, onStart);
    XML_Parse(search.parser, xml.data(), static_cast<int>(xml.size()), XML_TRUE);
    XML_ParserFree(search.parser);
    if (search.failure) std::rethrow_exception(search.failure);
    return search.name;
}
