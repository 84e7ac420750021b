// The parser driver: one expat parser bound to the rules of one collection.

#include <expat.h>

#include <cstdio>
#include <cstring>
#include <new>
#include <string>

#include "collection/leftovers.h"
#include "incident/raise.h"
#include "xml/event_handlers.h"
#include "zor/collection.h"
#include "zor/xml.h"

using zor_internal::raiseError;

namespace {

constexpr char kFrameLabel[] = "zor_XMLParse: ";

void renderPosition(std::string& out, void* data) {
    XML_Parser const expat = static_cast<ZorXmlParser*>(data)->expatParser;
    char position[64];
    std::snprintf(position, sizeof position, "line %ld, column %ld ",
                  static_cast<long>(XML_GetCurrentLineNumber(expat)),
                  static_cast<long>(XML_GetCurrentColumnNumber(expat)));
    out += position;
}

// The frame that gives every incident of one `parse` its position. A parser without an incident
// context has one for as long as the frame stands.
class PositionFrame {
public:
    explicit PositionFrame(ZorXmlParser* framed)
        : parser(framed), temporary(!framed->incidentContext) {
        if (temporary) {
            parser->incidentContext = new ZorIncidentContext(kFrameLabel, renderPosition, parser);
        } else {
            parser->incidentContext->push(kFrameLabel, renderPosition, parser);
        }
    }
    PositionFrame(PositionFrame const&) = delete;
    PositionFrame& operator=(PositionFrame const&) = delete;
    ~PositionFrame() {
        if (temporary) {
            delete parser->incidentContext;
            parser->incidentContext = nullptr;
        } else {
            parser->incidentContext->pop();
        }
    }

private:
    ZorXmlParser* parser;
    bool temporary;
};

XML_Parser makeExpat(ZORParseContext** currentContext) {
    XML_Parser const expat = XML_ParserCreate(nullptr);
    if (!expat) throw std::bad_alloc();
    XML_SetUserData(expat, currentContext);
    XML_SetElementHandler(expat, zor_internal::onStartElement, zor_internal::onEndElement);
    XML_SetCharacterDataHandler(expat, zor_internal::onCharacterData);
    return expat;
}

// Destroys the open contexts, the innermost first, and makes `last` the current one.
void closeContexts(ZorXmlParser* parser, ZORParseContext const* last) {
    while (parser->currentContext != last) {
        ZORParseContext* const closed = parser->currentContext;
        parser->currentContext = closed->outerContext;
        delete closed;
    }
}

void addDefinitionRules(ZORParseContext* root, ZorCollection* collection) {
    zor_XMLParseRulesAddInnerRules(root->parseRules, zor_getZORParseRules(collection));
}

// The rules of the definition language, which the constructor put first.
ZorElementParseRules* definitionRulesOf(ZORParseContext const* root) {
    return static_cast<ZorElementParseRules*>(root->parseRules->innerRules->value);
}

} // namespace

ZorXmlParser::ZorXmlParser(ZorCollection* collection, ZorIncidentContext* incidents)
    : expatParser(nullptr), currentContext(new ZORParseContext(this)), rootContext(currentContext),
      incidentContext(incidents) {
    addDefinitionRules(rootContext, collection);
    expatParser = makeExpat(&currentContext);
}

ZorXmlParser::~ZorXmlParser() {
    XML_ParserFree(expatParser);
    closeContexts(this, nullptr);
}

void ZorXmlParser::parse(char const* text, int length, int isFinal) {
    if (length == -1) length = text ? static_cast<int>(std::strlen(text)) : 0;
    PositionFrame const frame(this);
    if (XML_Parse(expatParser, text, length, isFinal) == XML_STATUS_OK) return;
    raiseError(incidentContext, incidentInvalidXml, XML_ErrorString(XML_GetErrorCode(expatParser)));
}

// Kept: the argument is not used; a parser serves the collection it was made for.
void ZorXmlParser::reset(ZorCollection*) {
    XML_ParserFree(expatParser);
    expatParser = nullptr;
    closeContexts(this, rootContext);
    zor_internal::releaseLeftovers(definitionRulesOf(rootContext));
    if (incidentContext) incidentContext->setMaxIncidentSeverity(severityNone);
    expatParser = makeExpat(&currentContext);
}
