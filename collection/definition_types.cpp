// <range>, <choice> and <option>.

#include "collection/range_info.h"

#include <memory>

#include "collection/definition_callbacks.h"
#include "collection/import_callbacks.h"
#include "types/choice_options.h"
#include "zor/schema.h"

using namespace zor_internal;

namespace {

// Hands the type to the schema. Null when its name is taken, or the type null: it is destroyed
// then.
ZorDataType* addOrDestroy(ZorSchema* schema, ZorDataType* made) {
    std::unique_ptr<ZorDataType> type(made);
    return schema->addDataType(type.get()) ? type.release() : nullptr;
}

// The list node of the last option that the open <choice> was given, or null: its rule notes it.
void*& lastOptionOf(ZORParseContext const* choiceContext) {
    return zor_XMLContextGetParseRules(choiceContext)->elementUserData;
}

} // namespace

void zor_internal::rangeStart(ZORParseContext* context) {
    if (!enclosing<ZorSchema>(context)) return;
    ZorString* const name = requiredName(context);
    if (!name) return;
    ZorString const* const baseName = requiredAttribute(
        context, "baseType", "missing baseType attribute", "baseType must not be blank");
    if (!baseName) return;
    ZorString* const minimum = requiredAttribute(context, "minValue", "missing minValue attribute",
                                                 "minValue must not be blank");
    if (!minimum) return;
    ZorString* const maximum = requiredAttribute(context, "maxValue", "missing maxValue attribute",
                                                 "maxValue must not be blank");
    if (!maximum) return;
    // Kept: only built-in types can be a base here, not those of the schema.
    ZorDataType* const base = ZorBuiltIn::getDataType(baseName);
    if (!base) {
        raiseDefinitionError(context, "baseType (", baseName->text, ") not found");
        return;
    }
    publishPending(context, new RangeInfo(name, base, minimum, maximum));
}

void zor_internal::rangeEnd(ZORParseContext* context) {
    auto const* const info = published<RangeInfo>(context);
    if (info) { // so there is a schema
        ZorDataType* const range =
            zor_rangeMake(info->baseType, info->name, info->minimum, info->maximum);
        if (!range) {
            raiseDefinitionError(context, "Could Not Make Range Type with supplied parameters");
        }
        addOrDestroy(enclosing<ZorSchema>(context), range);
    }
    withdrawPending(context);
}

void zor_internal::choiceStart(ZORParseContext* context) {
    auto* const schema = enclosing<ZorSchema>(context);
    if (!schema) return;
    ZorString const* const name = requiredName(context);
    if (!name) return;
    lastOptionOf(context) = nullptr;
    zor_XMLContextSetUserData(context, addOrDestroy(schema, zor_choiceMake(name)));
}

void zor_internal::optionEnd(ZORParseContext* context) {
    auto* const choice = enclosing<ZorDataType>(context);
    if (!choice) return;
    ZorString const* const text = zor_XMLContextGetCharacterData(context);
    if (text->length == 0) {
        raiseDefinitionError(context, "option must not be blank");
        return;
    }
    void*& last = lastOptionOf(zor_XMLContextGetOuterContext(context));
    last = appendOption(choice, static_cast<ZorListNode*>(last), text);
}
