// Ranges: an interval, bounds included, of an ordered base type.

#include "types/range_params.h"

#include <memory>

#include "foundation/string_ref.h"
#include "foundation/text_argument.h"
#include "foundation/write_text.h"
#include "incident/raise.h"
#include "types/number_text.h"
#include "types/number_value.h"
#include "types/type_text.h"

using zor_internal::compareText;
using zor_internal::floatFromText;
using zor_internal::intCompareTexts;
using zor_internal::intFromText;
using zor_internal::numberCompareInt;
using zor_internal::numberCompareUInt;
using zor_internal::raiseError;
using zor_internal::stringOf;
using zor_internal::StringRef;
using zor_internal::textOf;
using zor_internal::uintCompareTexts;
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

// The parameters of a range, with the bounds as numbers: when they are read from their texts
// each time, writing a number takes two thirds more instructions.
class KnownBounds : public RangeParams {
public:
    KnownBounds(ZorDataType* base, void const* min, void const* max)
        : RangeParams(base, min, max), intMin(intFromText(minValue->text)),
          intMax(intFromText(maxValue->text)), uintMin(uintFromText(minValue->text)),
          uintMax(uintFromText(maxValue->text)) {}

    std::int32_t intMin, intMax;
    std::uint32_t uintMin, uintMax;
};

RangeParams* paramsIn(void* userData) { return static_cast<RangeParams*>(userData); }

KnownBounds const* boundsIn(void* userData) {
    return static_cast<KnownBounds const*>(paramsIn(userData));
}

void rangeFreeParams(void* userData) { delete paramsIn(userData); }

RangeParams* makeParams(ZorDataType* base, void const* min, void const* max) {
    return new KnownBounds(base, min, max);
}

void* rangeCloneParams(void* userData) {
    RangeParams const* const params = paramsIn(userData);
    return makeParams(params->baseType, params->minValue, params->maxValue);
}

template <typename Number>
bool isBetween(Number min, Number number, Number max) {
    return min <= number && number <= max;
}

int rangeIsValid(void* userData, char const* text) {
    KnownBounds const* const params = boundsIn(userData);
    ZorDataType const* const base = params->baseType;
    if (!validateText(base, text)) return 0;
    if (base->compareFn == intCompareTexts) {
        return isBetween(params->intMin, intFromText(text), params->intMax);
    }
    if (base->compareFn == uintCompareTexts) {
        return isBetween(params->uintMin, uintFromText(text), params->uintMax);
    }
    return compareText(base, text, params->minValue->text) >= 0 &&
           compareText(base, text, params->maxValue->text) <= 0;
}

// The host tests read the bounds as the host kind does, whatever the base; a base that does not
// convert that kind refuses the number. One that compares plain numbers is not called for that.

int rangeAcceptsInt(void* userData, u_zorItemValue external) {
    KnownBounds const* const params = boundsIn(userData);
    long const number = external.intValue;
    if (!zor_dataTypeValidateInt(params->baseType, number)) return 0;
    if (params->baseType->extFuncs[zorExtLong].compare == numberCompareInt) {
        return isBetween<long>(params->intMin, number, params->intMax);
    }
    return zor_dataTypeCompareInt(params->baseType, number, params->intMin) >= 0 &&
           zor_dataTypeCompareInt(params->baseType, number, params->intMax) <= 0;
}

int rangeAcceptsUInt(void* userData, u_zorItemValue external) {
    KnownBounds const* const params = boundsIn(userData);
    unsigned long const number = external.uintValue;
    if (!zor_dataTypeValidateUInt(params->baseType, number)) return 0;
    if (params->baseType->extFuncs[zorExtULong].compare == numberCompareUInt) {
        return isBetween<unsigned long>(params->uintMin, number, params->uintMax);
    }
    return zor_dataTypeCompareUInt(params->baseType, number, params->uintMin) >= 0 &&
           zor_dataTypeCompareUInt(params->baseType, number, params->uintMax) <= 0;
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
    std::unique_ptr<RangeParams> params(makeParams(base, min, max));
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
