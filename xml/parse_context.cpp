// Parse contexts: one per open element.

#include "xml/parse_context.h"

#include <cstring>
#include <string>

#include "foundation/map_entries.h"
#include "foundation/string_ref.h"
#include "foundation/unfinished.h"
#include "incident/raise.h"
#include "xml/parse_run.h"
#include "zor/string.h"

using zor_internal::clearAttributes;
using zor_internal::disregard;
using zor_internal::findRule;
using zor_internal::ParseRun;
using zor_internal::raise;
using zor_internal::raiseTooLong;
using zor_internal::StringRef;
using zor_internal::Unfinished;

namespace {

ZorElementParseRules* ruleAt(ZorListNode const* node) {
    return static_cast<ZorElementParseRules*>(node->value);
}

ZorElementParseRules* findInnerRule(ZORParseContext const* outer, char const* name) {
    if (ParseRun* const run = ParseRun::of(outer->parser)) {
        return run->ruleSearches().find(outer->parseRules, name);
    }
    return findRule(outer->parseRules, name);
}

int stringDiffers(void const* string, void const* text) {
    return std::strcmp(static_cast<ZorString const*>(string)->text, static_cast<char const*>(text));
}

template <typename... Pieces>
void warn(ZORParseContext const* context, Pieces... pieces) {
    raise(context->parser->incidentContext, severityWarning, incidentXmlStructure, pieces...);
}

// Thousands of names, for each of thousands of elements, are of no use to anybody.
constexpr std::size_t kLongList = 8192;

// Kept: two incidents, and a third where there is an outer rule to name.
void warnNotRecognised(ZORParseContext const* context, char const* name) {
    ZORParseContext const* const outer = context->outerContext;
    warn(context, "element not recognised in this context <", name, ">");

    std::string text;
    text.append("Element is '").append(name).append("'. Possible valid elements are ");
    std::size_t const longest = text.size() + kLongList;
    for (ZorListNode const* node = outer->parseRules->innerRules; node; node = node->next) {
        if (text.size() > longest) {
            text += "... ";
            break;
        }
        text.append("'").append(ruleAt(node)->elementName->text).append("' ");
    }
    text.append(". outerContext->currentElement->elementName = '");
    text.append(outer->parseRules->elementName->text).append("'");
    warn(context, text.c_str());

    ZORParseContext const* const outerOuter = outer->outerContext;
    if (outerOuter && outerOuter->parseRules) {
        warn(context, ". outerOuterContextElementName = '",
             outerOuter->parseRules->elementName->text, "'");
    }
}

ZorMapEntry** makeAttributes(ZORParseContext const* context) {
    ParseRun* const run = ParseRun::of(context->parser);
    return run ? run->makeAttributes() : zor_mapMake();
}

// Stores the attributes that the rule accepts. Returns whether all of them fit into a string.
bool storeAttributes(ZORParseContext* context, char const* elementName, char const** attributes) {
    for (; *attributes; attributes += 2) {
        char const* const name = attributes[0];
        char const* const value = attributes[1];
        ZorListNode const* const accepted =
            zor_listFindNode(context->parseRules->attributes, name, stringDiffers);
        if (!accepted) {
            warn(context, "attribute not valid in this context (", name, ")");
            continue;
        }
        if (strnlen(value, ZorString::maxLength + 1) > ZorString::maxLength) {
            raiseTooLong(context, elementName);
            return false;
        }
        StringRef text(ZorString::create(value, -1));
        if (!context->attributes) context->attributes = makeAttributes(context);
        auto* const earlier =
            static_cast<ZorString*>(zor_mapGet(context->attributes, accepted->value));
        zor_mapSet(context->attributes, accepted->value, text.get());
        (void)text.release();
        if (earlier) earlier->removeRef();
    }
    return true;
}

void releaseAttributes(ZORParseContext* context) {
    if (!context->attributes) return;
    clearAttributes(context->attributes);
    zor_mapDelete(context->attributes);
    context->attributes = nullptr;
}

void releaseText(ZORParseContext* context) {
    if (context->characterData) context->characterData->removeRef();
    context->characterData = nullptr;
}

} // namespace

void zor_internal::clearAttributes(ZorMapEntry** attributes) {
    clearMap(attributes, [](void* value) { static_cast<ZorString*>(value)->removeRef(); });
}

void zor_internal::raiseTooLong(ZORParseContext const* context, char const* elementName) {
    raiseError(context->parser->incidentContext, incidentInvalidXml,
               "text is too long in element <", elementName, ">");
}

void zor_internal::disregard(ZORParseContext* context) {
    releaseText(context);
    context->parseRules = nullptr;
}

ZORParseContext::ZORParseContext(ZorXmlParser* owner)
    : outerContext(nullptr),
      parseRules(new ZorElementParseRules("root-node", ignoreCharacterData, nullptr, nullptr)),
      attributes(nullptr), characterData(nullptr), parser(owner), userData(nullptr) {
    parseRules->refCount = 1;
}

ZORParseContext::ZORParseContext(ZORParseContext* outer, char const* name,
                                 char const** elementAttributes)
    : outerContext(outer), parseRules(nullptr), attributes(nullptr), characterData(nullptr),
      parser(outer->parser), userData(nullptr) {
    if (!outer->parseRules) return; // inside an element that is not looked at
    parseRules = findInnerRule(outer, name);
    if (!parseRules) {
        warnNotRecognised(this, name);
        return;
    }
    Unfinished<ZORParseContext> stored(this, releaseAttributes);
    if (storeAttributes(this, name, elementAttributes))
        stored.finish();
    else
        disregard(this);
}

ZORParseContext::~ZORParseContext() {
    releaseAttributes(this);
    releaseText(this);
    if (!outerContext) zor_XMLParseRulesRemoveRef(parseRules);
}

ZorString* zor_XMLContextGetAttribute(ZORParseContext const* context, void const* name) {
    if (!context->attributes) return nullptr;
    return static_cast<ZorString*>(zor_mapGet(context->attributes, name));
}

ZorString* zor_XMLContextGetCharacterData(ZORParseContext const* context) {
    return context->characterData;
}

void zor_XMLContextSetUserData(ZORParseContext* context, void* data) { context->userData = data; }

void* zor_XMLContextGetUserData(ZORParseContext const* context) { return context->userData; }

ZorElementParseRules* zor_XMLContextGetParseRules(ZORParseContext const* context) {
    return context->parseRules;
}

ZORParseContext* zor_XMLContextGetOuterContext(ZORParseContext const* context) {
    return context->outerContext;
}
