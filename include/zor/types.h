// Data types: the type record, the built-in types, choices, ranges, and named sets of types.
//
// A type is a record of functions: how a value is made from text, copied, released and turned back
// into text, how a text is checked and compared, and the same for host numbers. Values travel in a
// one-word union whose live member only the type knows.
//
//     ZorDataType* volume = zor_rangeMake(ZorBuiltIn::getDataType("int"), "volume", "0", "10");
//     zor_dataTypeValidate(volume, "11");        // 0
//     zor_dataTypeValidateInt(volume, 7);        // 1
//     ZorString* d = zor_dataTypeDefault(volume); // "0", the lower bound
//     d->removeRef();
//     schema->addDataType(volume);               // the schema owns it from now on
//
// Numbers are 32 bits wide on every host, and are read and written the same in every locale.
//
// Names, defaults and value texts given as `void const*` are a ZorString or plain text; a null name
// or value text counts as the empty one.
//
// Threads: a type is made by one thread and then only read. The sets of types have locks of their
// own.

#pragma once

#include "zor/containers.h"
#include "zor/export.h"
#include "zor/platform.h"
#include "zor/string.h"
#include "zor/text.h"

// One value. Only its type knows which member is live.
union u_zorItemValue {
    long intValue;           // "int"; "bool" as 0 or 1
    unsigned long uintValue; // "uint", "ip_address", "ip_mask"
    double* floatValue;      // "float": a double of its own; in a host value: the caller's double
    ZorString* stringValue;  // "string", "digit_string", "domain_name", "url", choices
};

// The kinds of host numbers that a type may convert.
enum ZorExternalDataType : int {
    zorExtLong = 0,
    zorExtULong = 1,
    zorExtDouble = 2, // travels as a pointer to the caller's double
};

using ZorValidateFn = int (*)(void* userData, char const* text);
using ZorCompareFn = int (*)(void* userData, char const* a, char const* b);
using ZorFreeUserDataFn = void (*)(void* userData);
using ZorCloneUserDataFn = void* (*)(void* userData);
using ZorFromStringFn = u_zorItemValue (*)(char const* text);
using ZorCopyValueFn = u_zorItemValue (*)(u_zorItemValue value);
using ZorFreeValueFn = void (*)(u_zorItemValue value);
using ZorSetFromStringFn = void (*)(u_zorItemValue* value, char const* text);
using ZorToStringFn = ZorString* (*)(u_zorItemValue value);
using ZorXmlExportFn = void (*)(ZorDataWriter* writer, ZorString* name, void* userData);
using ZorToInternalFn = u_zorItemValue (*)(u_zorItemValue external);
using ZorSetInternalFn = void (*)(u_zorItemValue* internal, u_zorItemValue external);
using ZorGetExternalFn = void (*)(u_zorItemValue internal, u_zorItemValue* external);
using ZorExtValidateFn = int (*)(void* userData, u_zorItemValue external);
using ZorExtCompareFn = int (*)(void* userData, u_zorItemValue a, u_zorItemValue b);

// How one kind of host number gets in and out of a type. A kind is supported when both toInternal
// and setInternal are set.
class ZOR_API ZorExtTypeFuncs {
public:
    ZorExtTypeFuncs();
    virtual ~ZorExtTypeFuncs();

    ZorToInternalFn toInternal;   // makes a new internal value
    ZorSetInternalFn setInternal; // overwrites an internal value in place
    ZorGetExternalFn getExternal; // copies an internal value out
    ZorExtValidateFn validate;    // non-zero when the host number is acceptable
    ZorExtCompareFn compare;      // 1, 0 or -1
};

// A type. Always made on the heap; owned by the set it is added to.
class ZOR_API ZorDataType {
public:
    // Bits of `flags`.
    static constexpr unsigned char noDefault = 1;
    static constexpr unsigned char isRange = 2;
    static constexpr unsigned char isChoice = 4;
    static constexpr unsigned char sharedUserData = 8; // a copy's, and not its own to release

    // A type of these functions. A null `defaultText` means no default; otherwise the default is
    // made from it with `fromString`, and is not validated. Adds a reference to a ZorString name.
    // REQUIRES: `fromString`, `copyValue`, `freeValue`, `setFromString` and `toString` are set.
    ZorDataType(void const* name, void const* defaultText, void* userData, ZorValidateFn validate,
                ZorCompareFn compare, ZorFreeUserDataFn freeUserData, ZorFromStringFn fromString,
                ZorCopyValueFn copyValue, ZorFreeValueFn freeValue,
                ZorSetFromStringFn setFromString, ZorToStringFn toString,
                ZorCloneUserDataFn cloneUserData);

    // An independent copy, except that it shares the name string; its default is read again from
    // its text. Without cloneUserDataFn the copy also shares the user data, which stays `other`'s
    // to release. REQUIRES: `other` outlives a copy that shares user data which has a
    // freeUserDataFn.
    explicit ZorDataType(ZorDataType* other);
    ZorDataType(ZorDataType const&) = delete;
    ZorDataType& operator=(ZorDataType const&) = delete;
    virtual ~ZorDataType();

    ZorString* name;
    u_zorItemValue defaultValue; // meaningful while noDefault is clear
    ZorValidateFn validateFn;    // null: every text is valid
    ZorCompareFn compareFn;      // null: no order
    void* userData;              // owned when freeUserDataFn is set
    ZorFreeUserDataFn freeUserDataFn;
    ZorFromStringFn fromStringFn;
    ZorCopyValueFn copyValueFn;
    ZorFreeValueFn freeValueFn; // never null
    ZorSetFromStringFn setFromStringFn;
    ZorToStringFn toStringFn;
    ZorXmlExportFn xmlExportFn;  // null: the type has no definition to write
    ZorExtTypeFuncs extFuncs[3]; // by ZorExternalDataType
    unsigned char flags;
    ZorCloneUserDataFn cloneUserDataFn; // null: a copy shares userData
};

// A type with the value functions of `base` and nothing else of it: no validation, comparison,
// host conversions or export. Takes ownership of the user data when `freeUserData` is set; adds a
// reference to a ZorString name. New reference.
// REQUIRES: `base` is not null.
ZOR_API ZorDataType* zor_derivedTypeMake(void const* name, void const* defaultText, void* userData,
                                         ZorValidateFn validate, ZorCompareFn compare,
                                         ZorFreeUserDataFn freeUserData, ZorDataType* base,
                                         ZorCloneUserDataFn cloneUserData);

// For all of the following: REQUIRES: the type is not null.

// Non-zero when the text is valid for the type; 1 when the type has no validation.
ZOR_API int zor_dataTypeValidate(ZorDataType* type, void const* value);
// Positive when `a` is greater, negative when it is smaller, 0 when both are equal or the type has
// no comparison.
ZOR_API int zor_dataTypeCompare(ZorDataType* type, void const* a, void const* b);

// The same for host numbers. 0 (not valid, equal) when the type does not convert that kind. A
// number beyond 32 bits, possible where long is wider, is not valid for any built-in type.
ZOR_API int zor_dataTypeValidateInt(ZorDataType* type, long value);
ZOR_API int zor_dataTypeValidateUInt(ZorDataType* type, unsigned long value);
ZOR_API int zor_dataTypeValidateFloat(ZorDataType* type, double value);
ZOR_API int zor_dataTypeCompareInt(ZorDataType* type, long a, long b);
ZOR_API int zor_dataTypeCompareUInt(ZorDataType* type, unsigned long a, unsigned long b);
ZOR_API int zor_dataTypeCompareFloat(ZorDataType* type, double a, double b);

// The text of the default, or null when there is none. New reference.
ZOR_API ZorString* zor_dataTypeDefault(ZorDataType* type);
// The type's name. Borrowed as long as the type lives.
ZOR_API char const* zor_dataTypeName(ZorDataType* type);
// Sets the conversions of one host kind. A kind outside 0 to 2 is ignored.
ZOR_API void zor_dataTypeSetConversionFuncs(ZorDataType* type, ZorExternalDataType ext,
                                            ZorToInternalFn toInternal,
                                            ZorSetInternalFn setInternal,
                                            ZorGetExternalFn getExternal, ZorExtValidateFn validate,
                                            ZorExtCompareFn compare);
// Non-zero for a range, and for a choice.
ZOR_API int zor_datatypeIsRange(ZorDataType* type);
ZOR_API int zor_datatypeIsChoice(ZorDataType* type);
// Sets the function that zor_dataTypeExportXML calls; null for none.
ZOR_API void zor_dataTypeSetXmlExportFn(ZorDataType* type, ZorXmlExportFn exportFn);
// Writes the type's definition; nothing for built-in and plain derived types.
ZOR_API void zor_dataTypeExportXML(ZorDataWriter* writer, ZorDataType* type);

// The process-wide table of the built-in types "string", "int", "uint", "bool", "float",
// "digit_string", "ip_address", "ip_mask", "domain_name" and "url".
class ZOR_API ZorBuiltIn {
public:
    // The built-in type of exactly that name, or null. The first call makes the table. Borrowed
    // until `deleteBuiltInTypes`.
    static ZorDataType* getDataType(void const* name);

    // Fills the table: `getDataType`'s own helper.
    // REQUIRES: the caller holds builtInTypesSem, and builtInTypes is null.
    static void makeBuiltInTypes();

    // Destroys the table, if there is one; for a host that shuts down. Every type handed out
    // before is invalid from then on, and so is every range over one; choices and derived types
    // stay usable. The next lookup makes a new table.
    // REQUIRES: no collection lives: each has a node of type "string".
    static void deleteBuiltInTypes();

    static ZorMapEntry** builtInTypes; // name to ZorDataType*, owned; null while there is no table
    // Guards builtInTypes. Usable from any static initialiser, and never destroyed: it outlives
    // every static object that may still look up a type.
    static Semaphore& builtInTypesSem;
};

// A choice without options, which accepts no text. New reference.
ZOR_API ZorDataType* zor_choiceMake(void const* name);
// Appends an option (duplicates are kept, null is the empty text); the first one becomes the
// default, for good. Adds a reference to a ZorString option.
// REQUIRES: `choice` was made by zor_choiceMake.
ZOR_API void zor_choiceAddOption(ZorDataType* choice, void const* option);
// Calls `callback` with every option in order, index from 0. The number of options; 0 when the
// type is not a choice.
// REQUIRES: `callback` is not null.
ZOR_API int zor_choiceEnumerate(ZorDataType* type, void (*callback)(int index, char const* text));

// The range of `base` values from `min` to `max`, both included; its default is `min`. Null with
// one incident (no context, severity 3, type 2), checked in this order:
// - "zor_rangeMake(NAME): baseType (BASE) is not suitable for a range": the base has no order;
// - "zor_rangeMake(NAME): max value must be greater than or equal to min value";
// - "zor_rangeMake(NAME): min value (MIN) is not valid" for the base, then the same for max.
// Adds a reference to a name and bounds that are ZorStrings. A float that is not a number compares
// as equal to every bound, and so lies within every range. New reference.
// REQUIRES: `base` is not null and outlives the range and its copies.
ZOR_API ZorDataType* zor_rangeMake(ZorDataType* base, void const* name, void const* min,
                                   void const* max);
// The texts of the bounds and the base; null when the type is not a range. Borrowed as long as the
// type lives.
ZOR_API char const* zor_rangeMin(ZorDataType* type);
ZOR_API char const* zor_rangeMax(ZorDataType* type);
ZOR_API ZorDataType* zor_rangeBaseType(ZorDataType* type);

// A named set of types with a lock of its own, and the base of schemas and collections. Types are
// only ever added; they die with the set.
class ZOR_API ZorDataTypeCollection {
public:
    ZorDataTypeCollection();
    // A set of copies of the types in the list, with strings of their own; of two with one name,
    // the first. The copy of a range over a type in the list is a range over that type's copy.
    // Takes ownership of the list, not of its types.
    explicit ZorDataTypeCollection(ZorListNode* list);
    ZorDataTypeCollection(ZorDataTypeCollection const&) = delete;
    ZorDataTypeCollection& operator=(ZorDataTypeCollection const&) = delete;
    virtual ~ZorDataTypeCollection();

    // 1 when added: the set owns the type from now on. 0 when the name is taken or `type` is null:
    // the type remains the caller's.
    virtual int addDataType(ZorDataType* type);

    // The type of exactly that name in this set, or null. Built-in types are not looked up here.
    // Borrowed as long as the set lives.
    virtual ZorDataType* getDataType(void const* name);

    // All types, in the order of the map; null when there are none. New reference: the caller frees
    // the list with zor_listDelete, never the types. Must not run while types are added.
    ZorListNode* getDataTypes() const;

    Semaphore typesSem;  // guards types
    ZorMapEntry** types; // name to ZorDataType*, owned
};
