// The parser driver: one expat parser bound to the rules of one collection.

#include <expat.h>

#include <cstring>
#include <memory>

#include "collection/leftovers.h"
#include "foundation/out_of_memory.h"
#include "incident/raise.h"
#include "xml/event_handlers.h"
#include "xml/parse_run.h"
#include "xml/release_input.h"
#include "zor/collection.h"
#include "zor/xml.h"

using zor_internal::ParseRun;
using zor_internal::raiseError;
using zor_internal::reportOutOfMemory;

namespace {

XML_Parser makeExpat(ZORParseContext** currentContext) {
    XML_Parser const expat = XML_ParserCreate(nullptr);
    if (!expat) reportOutOfMemory();
    XML_SetUserData(expat, currentContext);
    XML_SetElementHandler(expat, zor_internal::onStartElement, zor_internal::onEndElement);
    XML_SetCharacterDataHandler(expat, zor_internal::onCharacterData);
    XML_SetAttlistDeclHandler(expat, zor_internal::onAttributeDeclaration);
    XML_SetSkippedEntityHandler(expat, zor_internal::onSkippedEntity);
    return expat;
}

// The most that the XML parser is given at a time: it copies what it is given.
constexpr std::size_t kLargestPiece = 131072;

// Gives the text to the XML parser; false when that refuses it.
bool feed(XML_Parser expat, char const* text, std::size_t length, int isFinal) {
    for (; length > kLargestPiece; text += kLargestPiece, length -= kLargestPiece) {
        if (XML_Parse(expat, text, kLargestPiece, 0) != XML_STATUS_OK) return false;
    }
    return XML_Parse(expat, text, static_cast<int>(length), isFinal) == XML_STATUS_OK;
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
    if (length < -1) length = 0;
    std::size_t const size = length >= 0 ? static_cast<std::size_t>(length)
                             : text      ? std::strlen(text)
                                         : 0;
    ParseRun const run(this);
    if (feed(expatParser, text, size, isFinal)) return;
    run.rethrow();
    char const* const reason = run.reason();
    raiseError(incidentContext, incidentInvalidXml,
               reason ? reason : XML_ErrorString(XML_GetErrorCode(expatParser)));
}

void zor_internal::releaseInput(ZorXmlParser* parser) {
    XML_ParserFree(parser->expatParser);
    parser->expatParser = nullptr;
    closeContexts(parser, parser->rootContext);
    releaseLeftovers(definitionRulesOf(parser->rootContext));
}

// Kept: the argument is not used; a parser serves the collection it was made for.
void ZorXmlParser::reset(ZorCollection*) {
    zor_internal::releaseInput(this);
    if (incidentContext) incidentContext->setMaxIncidentSeverity(severityNone);
    expatParser = makeExpat(&currentContext);
}
