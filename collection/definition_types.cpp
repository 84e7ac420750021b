// <range>, <choice> and <option>.

#include "collection/range_info.h"

#include "collection/definition_callbacks.h"
#include "collection/import_callbacks.h"
#include "zor/schema.h"

using namespace zor_internal;

namespace {

// Hands the type to the schema. False when its name is taken: the type is destroyed then.
bool addOrDestroy(ZorSchema* schema, ZorDataType* type) {
    if (schema->addDataType(type)) return true;
    delete type;
    return false;
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
    auto* const schema = enclosing<ZorSchema>(context);
    if (info && schema) {
        ZorDataType* const range =
            zor_rangeMake(info->baseType, info->name, info->minimum, info->maximum);
        if (!range) {
            raiseDefinitionError(context, "Could Not Make Range Type with supplied parameters");
        }
        addOrDestroy(schema, range); // null is refused, and harmless
    }
    withdrawPending(context);
}

void zor_internal::choiceStart(ZORParseContext* context) {
    auto* const schema = enclosing<ZorSchema>(context);
    if (!schema) return;
    ZorString const* const name = requiredName(context);
    if (!name) return;
    ZorDataType* const choice = zor_choiceMake(name);
    if (addOrDestroy(schema, choice)) zor_XMLContextSetUserData(context, choice);
}

void zor_internal::optionEnd(ZORParseContext* context) {
    auto* const choice = enclosing<ZorDataType>(context);
    if (!choice) return;
    ZorString const* const text = zor_XMLContextGetCharacterData(context);
    if (text->length == 0) {
        raiseDefinitionError(context, "option must not be blank");
        return;
    }
    zor_choiceAddOption(choice, text);
}
