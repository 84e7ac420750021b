// The type record: construction, copying and destruction.

#include "zor/types.h"

#include "foundation/string_ref.h"
#include "foundation/text_argument.h"
#include "types/value_holder.h"

using zor_internal::stringOf;
using zor_internal::StringRef;
using zor_internal::textOf;
using zor_internal::ValueHolder;

ZorExtTypeFuncs::ZorExtTypeFuncs()
    : toInternal(nullptr), setInternal(nullptr), getExternal(nullptr), validate(nullptr),
      compare(nullptr) {}

ZorExtTypeFuncs::~ZorExtTypeFuncs() = default;

ZorDataType::ZorDataType(void const* typeName, void const* defaultText, void* data,
                         ZorValidateFn validate, ZorCompareFn compare,
                         ZorFreeUserDataFn freeUserData, ZorFromStringFn fromString,
                         ZorCopyValueFn copyValue, ZorFreeValueFn freeValue,
                         ZorSetFromStringFn setFromString, ZorToStringFn toString,
                         ZorCloneUserDataFn cloneUserData)
    : name(nullptr), defaultValue(), validateFn(validate), compareFn(compare), userData(data),
      freeUserDataFn(freeUserData), fromStringFn(fromString), copyValueFn(copyValue),
      freeValueFn(freeValue), setFromStringFn(setFromString), toStringFn(toString),
      xmlExportFn(nullptr), flags(noDefault), cloneUserDataFn(cloneUserData) {
    StringRef nameHolder(stringOf(typeName));
    if (defaultText) {
        defaultValue = fromStringFn(textOf(defaultText));
        flags = 0;
    }
    name = nameHolder.release();
}

ZorDataType::ZorDataType(ZorDataType* other)
    : name(nullptr), defaultValue(), validateFn(other->validateFn), compareFn(other->compareFn),
      userData(other->userData), freeUserDataFn(other->freeUserDataFn),
      fromStringFn(other->fromStringFn), copyValueFn(other->copyValueFn),
      freeValueFn(other->freeValueFn), setFromStringFn(other->setFromStringFn),
      toStringFn(other->toStringFn), xmlExportFn(other->xmlExportFn), flags(other->flags),
      cloneUserDataFn(other->cloneUserDataFn) {
    StringRef const defaultText(zor_dataTypeDefault(other));
    if (defaultText) defaultValue = fromStringFn(defaultText.text());
    ValueHolder madeDefault(defaultText ? freeValueFn : nullptr, defaultValue);
    for (int i = 0; i < 3; ++i) extFuncs[i] = other->extFuncs[i];
    if (cloneUserDataFn)
        userData = cloneUserDataFn(userData);
    else if (userData && freeUserDataFn)
        flags |= sharedUserData;
    name = stringOf(other->name);
    madeDefault.release();
}

ZorDataType::~ZorDataType() {
    name->removeRef();
    if (!(flags & noDefault)) freeValueFn(defaultValue);
    if (userData && freeUserDataFn && !(flags & sharedUserData)) freeUserDataFn(userData);
}

ZorDataType* zor_derivedTypeMake(void const* name, void const* defaultText, void* userData,
                                 ZorValidateFn validate, ZorCompareFn compare,
                                 ZorFreeUserDataFn freeUserData, ZorDataType* base,
                                 ZorCloneUserDataFn cloneUserData) {
    return new ZorDataType(name, defaultText, userData, validate, compare, freeUserData,
                           base->fromStringFn, base->copyValueFn, base->freeValueFn,
                           base->setFromStringFn, base->toStringFn, cloneUserData);
}
