// Ranges: an interval, bounds included, of an ordered base type.

#include "types/range_params.h"

#include <memory>

#include "foundation/string_ref.h"
#include "foundation/text_argument.h"
#include "foundation/write_text.h"
#include "incident/raise.h"
#include "types/number_text.h"
#include "types/type_text.h"

using zor_internal::compareText;
using zor_internal::floatFromText;
using zor_internal::intFromText;
using zor_internal::raiseError;
using zor_internal::stringOf;
using zor_internal::StringRef;
using zor_internal::textOf;
using zor_internal::uintFromText;
using zor_internal::validateText;
using zor_internal::writeJoined;

RangeParams::RangeParams(ZorDataType* base, void const* min, void const* max)
    : baseType(base), minValue(nullptr), maxValue(nullptr) {
    StringRef minHolder(stringOf(min));
    maxValue = stringOf(max);
    minValue = minHolder.release();
}

RangeParams::~RangeParams() {
    if (minValue) minValue->removeRef();
    if (maxValue) maxValue->removeRef();
}

namespace {

RangeParams* paramsIn(void* userData) { return static_cast<RangeParams*>(userData); }

void rangeFreeParams(void* userData) { delete paramsIn(userData); }

void* rangeCloneParams(void* userData) {
    RangeParams const* const params = paramsIn(userData);
    return new RangeParams(params->baseType, params->minValue, params->maxValue);
}

int rangeIsValid(void* userData, char const* text) {
    RangeParams const* const params = paramsIn(userData);
    return validateText(params->baseType, text) &&
           compareText(params->baseType, text, params->minValue->text) >= 0 &&
           compareText(params->baseType, text, params->maxValue->text) <= 0;
}

// The host tests read the bounds as the host kind does, whatever the base; a base that does not
// convert that kind refuses the number.

int rangeAcceptsInt(void* userData, u_zorItemValue external) {
    RangeParams const* const params = paramsIn(userData);
    long const number = external.intValue;
    long const min = intFromText(params->minValue->text);
    long const max = intFromText(params->maxValue->text);
    return zor_dataTypeValidateInt(params->baseType, number) &&
           zor_dataTypeCompareInt(params->baseType, number, min) >= 0 &&
           zor_dataTypeCompareInt(params->baseType, number, max) <= 0;
}

int rangeAcceptsUInt(void* userData, u_zorItemValue external) {
    RangeParams const* const params = paramsIn(userData);
    unsigned long const number = external.uintValue;
    unsigned long const min = uintFromText(params->minValue->text);
    unsigned long const max = uintFromText(params->maxValue->text);
    return zor_dataTypeValidateUInt(params->baseType, number) &&
           zor_dataTypeCompareUInt(params->baseType, number, min) >= 0 &&
           zor_dataTypeCompareUInt(params->baseType, number, max) <= 0;
}

int rangeAcceptsFloat(void* userData, u_zorItemValue external) {
    RangeParams const* const params = paramsIn(userData);
    double const number = *external.floatValue;
    double min = 0;
    double max = 0;
    floatFromText(params->minValue->text, &min);
    floatFromText(params->maxValue->text, &max);
    return zor_dataTypeValidateFloat(params->baseType, number) &&
           zor_dataTypeCompareFloat(params->baseType, number, min) >= 0 &&
           zor_dataTypeCompareFloat(params->baseType, number, max) <= 0;
}

// Kept: name and bounds are written as they are, unescaped.
void rangeExport(ZorDataWriter* writer, ZorString* name, void* userData) {
    RangeParams const* const params = paramsIn(userData);
    writeJoined(writer, {"<range name=\"", name->text, "\" baseType=\"",
                         zor_dataTypeName(params->baseType), "\" minValue=\"",
                         params->minValue->text, "\" maxValue=\"", params->maxValue->text, "\"/>"});
}

// Whether the range can be made; reports why not. The bounds are compared before they are
// validated: so "-1" to "5" over "uint" is reported as bounds in the wrong order.
bool isPossible(ZorDataType* base, char const* name, char const* min, char const* max) {
    if (!base->compareFn) {
        raiseError(nullptr, incidentInvalidArgument, "zor_rangeMake(", name, "): baseType (",
                   zor_dataTypeName(base), ") is not suitable for a range");
        return false;
    }
    // Kept: compare first.
    if (compareText(base, min, max) > 0) {
        raiseError(nullptr, incidentInvalidArgument, "zor_rangeMake(", name,
                   "): max value must be greater than or equal to min value");
        return false;
    }
    if (!validateText(base, min)) {
        raiseError(nullptr, incidentInvalidArgument, "zor_rangeMake(", name, "): min value (", min,
                   ") is not valid");
        return false;
    }
    if (!validateText(base, max)) {
        raiseError(nullptr, incidentInvalidArgument, "zor_rangeMake(", name, "): max value (", max,
                   ") is not valid");
        return false;
    }
    return true;
}

} // namespace

ZorDataType* zor_rangeMake(ZorDataType* base, void const* name, void const* min, void const* max) {
    if (!isPossible(base, textOf(name), textOf(min), textOf(max))) return nullptr;
    auto params = std::make_unique<RangeParams>(base, min, max);
    ZorDataType* const range =
        zor_derivedTypeMake(name, params->minValue, params.get(), rangeIsValid, base->compareFn,
                            rangeFreeParams, base, rangeCloneParams);
    (void)params.release();
    for (int i = 0; i < 3; ++i) range->extFuncs[i] = base->extFuncs[i];
    range->extFuncs[zorExtLong].validate = rangeAcceptsInt;
    range->extFuncs[zorExtULong].validate = rangeAcceptsUInt;
    range->extFuncs[zorExtDouble].validate = rangeAcceptsFloat;
    range->flags |= ZorDataType::isRange;
    zor_dataTypeSetXmlExportFn(range, rangeExport);
    return range;
}

char const* zor_rangeMin(ZorDataType* type) {
    return zor_datatypeIsRange(type) ? paramsIn(type->userData)->minValue->text : nullptr;
}

char const* zor_rangeMax(ZorDataType* type) {
    return zor_datatypeIsRange(type) ? paramsIn(type->userData)->maxValue->text : nullptr;
}

ZorDataType* zor_rangeBaseType(ZorDataType* type) {
    return zor_datatypeIsRange(type) ? paramsIn(type->userData)->baseType : nullptr;
}
