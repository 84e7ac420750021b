// expat alone, with handlers that do nothing: what every import on it costs at least.

#pragma once

#include <expat.h>

#include <string>

namespace bench {

// One parser for all passes, as zor has one for each collection.
class ExpatPass {
public:
    ExpatPass() : parser(XML_ParserCreate(nullptr)) {}
    ExpatPass(ExpatPass const&) = delete;
    ExpatPass& operator=(ExpatPass const&) = delete;
    ~ExpatPass() { XML_ParserFree(parser); }

    // Whether expat accepted the whole text.
    bool parse(std::string const& text) {
        XML_ParserReset(parser, nullptr); // takes the handlers away
        XML_SetElementHandler(
            parser, [](void*, char const*, char const**) {}, [](void*, char const*) {});
        XML_SetCharacterDataHandler(parser, [](void*, char const*, int) {});
        return XML_Parse(parser, text.data(), static_cast<int>(text.size()), 1) == XML_STATUS_OK;
    }

    char const* error() const { return XML_ErrorString(XML_GetErrorCode(parser)); }

private:
    XML_Parser parser;
};

} // namespace bench
