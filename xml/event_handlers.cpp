// From expat's events to contexts and callbacks.
//
// While the last incident is an error, start tags open no context, and texts and end callbacks are
// passed over. End tags still close contexts, and a later warning lets the work go on.

#include "xml/event_handlers.h"

#include <memory>
#include <utility>

#include "incident/raise.h"
#include "xml/parse_context.h"
#include "xml/parse_run.h"
#include "zor/xml.h"

using zor_internal::disregard;
using zor_internal::ParseRun;
using zor_internal::raise;
using zor_internal::raiseTooLong;

namespace {

ZORParseContext*& slotAt(void* userData) { return *static_cast<ZORParseContext**>(userData); }

bool hasFailed(ZORParseContext const* context) {
    ZorIncidentContext const* const incidents = context->parser->incidentContext;
    return incidents && incidents->maxIncidentSeverity >= severityError;
}

// Makes the collected text what the end callback is promised.
void finishText(ZORParseContext* context) {
    if (!context->characterData) {
        context->characterData = ZorString::create(nullptr, 0);
    } else if (context->parseRules->characterData == trimmedCharacterData) {
        context->characterData = context->characterData->trim();
    }
}

void startElement(ParseRun* run, ZORParseContext*& current, char const* name,
                  char const** attributes) {
    // Kept: the messages of the new context come before the test, so a warning among them lifts an
    // earlier error.
    std::unique_ptr<ZORParseContext> opened =
        run ? run->open(current, name, attributes)
            : std::make_unique<ZORParseContext>(current, name, attributes);
    if (hasFailed(opened.get())) return;
    current = opened.release();
    ZorElementParseRules const* const rules = current->parseRules;
    if (rules && rules->startElement) rules->startElement(current);
}

bool collectsText(ZORParseContext const* context) {
    return context->parseRules && context->parseRules->characterData != ignoreCharacterData;
}

void collectText(ParseRun* run, ZORParseContext* current, char const* text, int length) {
    if (hasFailed(current)) return;
    int const collected = current->characterData ? current->characterData->length : 0;
    if (length > ZorString::maxLength - collected) {
        raiseTooLong(current, current->parseRules->elementName->text);
        disregard(current);
        return;
    }
    if (current->characterData)
        current->characterData = current->characterData->append(1, text, length);
    else
        current->characterData =
            run ? run->makeText(text, length) : ZorString::create(text, length);
}

void endElement(ParseRun* run, ZORParseContext*& current, char const* name) {
    ZorElementParseRules const* const rules = current->parseRules;
    if (!hasFailed(current) && rules) {
        finishText(current);
        if (rules->endElement) rules->endElement(current);
    }
    if (!current->outerContext) {
        raise(current->parser->incidentContext, severityWarning, incidentXmlStructure,
              "mainEndElementHandler name='", name,
              "' outerContext is NULL meaning this is the top level ZorXmlParser owned context "
              "which we should _not_ be deleting!");
        return;
    }
    // Kept: also after an error, although no start tag opened a context then.
    std::unique_ptr<ZORParseContext> closed(current);
    current = closed->outerContext;
    if (run) run->close(std::move(closed));
}

// Lets no exception out into the parser that called.
template <typename Handle>
void guarded(void* userData, Handle handle) {
    ZORParseContext*& current = slotAt(userData);
    ParseRun* const run = ParseRun::of(current->parser);
    if (run)
        run->guard([&] { handle(run, current); });
    else
        handle(run, current);
}

} // namespace

void zor_internal::onStartElement(void* userData, char const* name, char const** attributes) {
    guarded(userData, [=](ParseRun* run, ZORParseContext*& current) {
        startElement(run, current, name, attributes);
    });
}

void zor_internal::onCharacterData(void* userData, char const* text, int length) {
    if (!collectsText(slotAt(userData))) return; // most texts: white space between elements
    guarded(userData, [=](ParseRun* run, ZORParseContext* current) {
        collectText(run, current, text, length);
    });
}

void zor_internal::onEndElement(void* userData, char const* name) {
    guarded(userData,
            [=](ParseRun* run, ZORParseContext*& current) { endElement(run, current, name); });
}

// An attribute's default is added to every element, and the limit on what entities expand to does
// not know of it: kilobytes would come to gigabytes.
void zor_internal::onAttributeDeclaration(void* userData, char const*, char const*, char const*,
                                          char const* defaultValue, int) {
    ParseRun* const run = ParseRun::of(slotAt(userData)->parser);
    if (defaultValue && run) run->refuse("defaults of attributes are not accepted");
}

// An entity that may be declared in a part that is not read: a text would lose it in silence.
void zor_internal::onSkippedEntity(void* userData, char const*, int isParameterEntity) {
    ParseRun* const run = ParseRun::of(slotAt(userData)->parser);
    if (!isParameterEntity && run) run->refuse("undefined entity");
}
