// What the callbacks of the import rules share.

#pragma once

#include "incident/raise.h"
#include "zor/xml.h"

namespace zor_internal {

// Raises an error of a definition or document on the parser's incident context.
template <typename... Pieces>
void raiseImportError(ZORParseContext const* context, incidentType type, Pieces... pieces) {
    raiseError(context->parser->incidentContext, type, pieces...);
}

template <typename... Pieces>
void raiseDefinitionError(ZORParseContext const* context, Pieces... pieces) {
    raiseImportError(context, incidentInvalidArgument, pieces...);
}

// The object that the element itself published, or null.
template <typename T>
T* published(ZORParseContext const* context) {
    return static_cast<T*>(context->userData);
}

// The object that the enclosing element published; null when that was rejected.
template <typename T>
T* enclosing(ZORParseContext const* context) {
    return published<T>(context->outerContext);
}

// The attribute; null after reporting `missing` or `blank` when it is absent or empty.
inline ZorString* requiredAttribute(ZORParseContext const* context, char const* name,
                                    char const* missing, char const* blank) {
    ZorString* const value = zor_XMLContextGetAttribute(context, name);
    if (!value) {
        raiseDefinitionError(context, missing);
        return nullptr;
    }
    if (value->length == 0) {
        raiseDefinitionError(context, blank);
        return nullptr;
    }
    return value;
}

inline ZorString* requiredName(ZORParseContext const* context) {
    return requiredAttribute(context, "name", "missing name attribute", "name must not be blank");
}

// Releases the half-built object that a rule owns, if any.
inline void releasePending(ZorElementParseRules* rules) {
    if (rules->elementUserData) rules->freeElementUserData(rules->elementUserData);
    rules->elementUserData = nullptr;
}

// Publishes the half-built object of an element. Its rule owns it until the element ends, so that
// nothing is lost by an input that ends inside the element or an error that keeps the end callback
// from running.
template <typename T>
void publishPending(ZORParseContext* context, T* pending) {
    ZorElementParseRules* const rules = zor_XMLContextGetParseRules(context);
    releasePending(rules);
    zor_XMLParseRulesSetElementUserData(rules, pending,
                                        [](void* data) { delete static_cast<T*>(data); });
    zor_XMLContextSetUserData(context, pending);
}

// Takes back what publishPending published.
inline void withdrawPending(ZORParseContext* context) {
    releasePending(zor_XMLContextGetParseRules(context));
    zor_XMLContextSetUserData(context, nullptr);
}

// The element stands inside one that was rejected: nothing in it is looked at.
inline void skipElement(ZORParseContext* context) { context->parseRules = nullptr; }

} // namespace zor_internal
