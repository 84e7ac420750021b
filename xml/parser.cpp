// The parser driver: one expat parser bound to the rules of one collection.

#include <expat.h>

#include <cstring>
#include <memory>
#include <new>

#include "collection/leftovers.h"
#include "incident/raise.h"
#include "xml/event_handlers.h"
#include "xml/parse_run.h"
#include "zor/collection.h"
#include "zor/xml.h"

using zor_internal::ParseRun;
using zor_internal::raiseError;

namespace {

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
    std::unique_ptr<ZorElementParseRules> rules(zor_getZORParseRules(collection));
    zor_XMLParseRulesAddInnerRules(root->parseRules, rules.get());
    (void)rules.release();
}

// The rules of the definition language, which the constructor put first.
ZorElementParseRules* definitionRulesOf(ZORParseContext const* root) {
    return static_cast<ZorElementParseRules*>(root->parseRules->innerRules->value);
}

} // namespace

ZorXmlParser::ZorXmlParser(ZorCollection* collection, ZorIncidentContext* incidents)
    : expatParser(nullptr), currentContext(nullptr), rootContext(nullptr),
      incidentContext(incidents) {
    auto root = std::make_unique<ZORParseContext>(this);
    addDefinitionRules(root.get(), collection);
    expatParser = makeExpat(&currentContext);
    rootContext = root.release();
    currentContext = rootContext;
}

ZorXmlParser::~ZorXmlParser() {
    XML_ParserFree(expatParser);
    closeContexts(this, nullptr);
}

void ZorXmlParser::parse(char const* text, int length, int isFinal) {
    if (length == -1) length = text ? static_cast<int>(std::strlen(text)) : 0;
    ParseRun const run(this);
    if (XML_Parse(expatParser, text, length, isFinal) == XML_STATUS_OK) return;
    run.rethrow();
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
