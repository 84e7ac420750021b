// The generic operations, through which everything else uses a type.

#include "zor/types.h"

#include "foundation/text_argument.h"
#include "types/number_value.h"
#include "types/type_text.h"

using zor_internal::compareText;
using zor_internal::intValueOf;
using zor_internal::textOf;
using zor_internal::uintValueOf;
using zor_internal::validateText;

namespace {

int validate(ZorDataType* type, ZorExternalDataType ext, u_zorItemValue value) {
    ZorExtValidateFn const function = type->extFuncs[ext].validate;
    return function ? function(type->userData, value) : 0;
}

int compare(ZorDataType* type, ZorExternalDataType ext, u_zorItemValue a, u_zorItemValue b) {
    ZorExtCompareFn const function = type->extFuncs[ext].compare;
    return function ? function(type->userData, a, b) : 0;
}

u_zorItemValue floatValueAt(double* number) {
    u_zorItemValue value;
    value.floatValue = number;
    return value;
}

} // namespace

int zor_dataTypeValidate(ZorDataType* type, void const* value) {
    return validateText(type, textOf(value));
}

int zor_dataTypeCompare(ZorDataType* type, void const* a, void const* b) {
    return compareText(type, textOf(a), textOf(b));
}

int zor_dataTypeValidateInt(ZorDataType* type, long value) {
    return validate(type, zorExtLong, intValueOf(value));
}

int zor_dataTypeValidateUInt(ZorDataType* type, unsigned long value) {
    return validate(type, zorExtULong, uintValueOf(value));
}

int zor_dataTypeValidateFloat(ZorDataType* type, double value) {
    return validate(type, zorExtDouble, floatValueAt(&value));
}

int zor_dataTypeCompareInt(ZorDataType* type, long a, long b) {
    return compare(type, zorExtLong, intValueOf(a), intValueOf(b));
}

int zor_dataTypeCompareUInt(ZorDataType* type, unsigned long a, unsigned long b) {
    return compare(type, zorExtULong, uintValueOf(a), uintValueOf(b));
}

int zor_dataTypeCompareFloat(ZorDataType* type, double a, double b) {
    return compare(type, zorExtDouble, floatValueAt(&a), floatValueAt(&b));
}

ZorString* zor_dataTypeDefault(ZorDataType* type) {
    return type->flags & ZorDataType::noDefault ? nullptr : type->toStringFn(type->defaultValue);
}

char const* zor_dataTypeName(ZorDataType* type) { return zor_stringValue(type->name); }

void zor_dataTypeSetConversionFuncs(ZorDataType* type, ZorExternalDataType ext,
                                    ZorToInternalFn toInternal, ZorSetInternalFn setInternal,
                                    ZorGetExternalFn getExternal, ZorExtValidateFn validateExternal,
                                    ZorExtCompareFn compareExternal) {
    if (ext < zorExtLong || ext > zorExtDouble) return;
    ZorExtTypeFuncs& functions = type->extFuncs[ext];
    functions.toInternal = toInternal;
    functions.setInternal = setInternal;
    functions.getExternal = getExternal;
    functions.validate = validateExternal;
    functions.compare = compareExternal;
}

int zor_datatypeIsRange(ZorDataType* type) { return type->flags & ZorDataType::isRange; }

int zor_datatypeIsChoice(ZorDataType* type) { return type->flags & ZorDataType::isChoice; }

void zor_dataTypeSetXmlExportFn(ZorDataType* type, ZorXmlExportFn exportFn) {
    type->xmlExportFn = exportFn;
}

void zor_dataTypeExportXML(ZorDataWriter* writer, ZorDataType* type) {
    if (type->xmlExportFn) type->xmlExportFn(writer, type->name, type->userData);
}
