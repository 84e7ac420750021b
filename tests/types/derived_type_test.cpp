// Derived types: what they take of their base and what not.

#include <gtest/gtest.h>

#include <string>

#include "tests/support/text.h"
#include "tests/types/call_log.h"
#include "zor/types.h"

namespace {

char tag[] = "tag";

std::string defaultOf(ZorDataType* type) { return taken(zor_dataTypeDefault(type)); }

ZorDataType* builtIn(char const* name) { return ZorBuiltIn::getDataType(name); }

int acceptAll(void*, u_zorItemValue) { return 1; }
u_zorItemValue sameValue(u_zorItemValue value) { return value; }
void storeValue(u_zorItemValue* internal, u_zorItemValue external) { *internal = external; }
void fetchValue(u_zorItemValue internal, u_zorItemValue* external) { *external = internal; }
int allEqual(void*, u_zorItemValue, u_zorItemValue) { return 0; }

} // namespace

TEST(DerivedType, TakesTheFiveValueFunctionsOfItsBase) {
    ZorDataType* const base = makeProbe("base", "1", nullptr);
    ZorDataType* const type =
        zor_derivedTypeMake("derived", nullptr, nullptr, nullptr, nullptr, nullptr, base, nullptr);
    EXPECT_EQ(type->fromStringFn, probe::fromString);
    EXPECT_EQ(type->copyValueFn, probe::copyValue);
    EXPECT_EQ(type->freeValueFn, probe::freeValue);
    EXPECT_EQ(type->setFromStringFn, probe::setFromString);
    EXPECT_EQ(type->toStringFn, probe::toString);
    delete type;
    delete base;
}

// Neither validation, comparison, user data, default, flags, conversions nor export.
TEST(DerivedType, TakesNothingElseOfItsBase) {
    ZorDataType* const base = makeProbe("base", "1", tag);
    zor_dataTypeSetXmlExportFn(base, probe::exportXml);
    base->flags = ZorDataType::isRange | ZorDataType::isChoice;
    for (ZorExternalDataType const ext : {zorExtLong, zorExtULong, zorExtDouble}) {
        zor_dataTypeSetConversionFuncs(base, ext, sameValue, storeValue, fetchValue, acceptAll,
                                       allEqual);
    }
    ZorDataType* const type =
        zor_derivedTypeMake("derived", nullptr, nullptr, nullptr, nullptr, nullptr, base, nullptr);
    EXPECT_EQ(type->flags, ZorDataType::noDefault);
    EXPECT_EQ(type->validateFn, nullptr);
    EXPECT_EQ(type->compareFn, nullptr);
    EXPECT_EQ(type->userData, nullptr);
    EXPECT_EQ(type->freeUserDataFn, nullptr);
    EXPECT_EQ(type->cloneUserDataFn, nullptr);
    EXPECT_EQ(type->xmlExportFn, nullptr);
    for (ZorExtTypeFuncs const& functions : type->extFuncs) {
        EXPECT_EQ(functions.toInternal, nullptr);
        EXPECT_EQ(functions.setInternal, nullptr);
        EXPECT_EQ(functions.getExternal, nullptr);
        EXPECT_EQ(functions.validate, nullptr);
        EXPECT_EQ(functions.compare, nullptr);
    }
    delete type;
    delete base;
}

TEST(DerivedType, HasWhatItIsGiven) {
    CallLog calls;
    ZorDataType* const type =
        zor_derivedTypeMake("derived", "12x", tag, probe::validate, probe::compare,
                            probe::freeUserData, builtIn("int"), probe::cloneUserData);
    EXPECT_STREQ(zor_dataTypeName(type), "derived");
    EXPECT_EQ(defaultOf(type), "12"); // read by the base's function
    EXPECT_EQ(zor_dataTypeValidate(type, "any"), 7);
    EXPECT_EQ(zor_dataTypeCompare(type, "b", "a"), 1);
    delete new ZorDataType(type);
    delete type;
    EXPECT_EQ(calls.take(), "validate tag any;compare tag b a;cloneUserData tag;"
                            "freeUserData clone;freeUserData tag;");
}

// A derived type converts no host numbers, even over a base that does.
TEST(DerivedType, RefusesHostNumbers) {
    for (char const* const base : {"int", "uint", "bool", "float", "ip_address"}) {
        ZorDataType* const type = zor_derivedTypeMake("derived", nullptr, nullptr, nullptr, nullptr,
                                                      nullptr, builtIn(base), nullptr);
        EXPECT_EQ(zor_dataTypeValidateInt(type, 1), 0) << base;
        EXPECT_EQ(zor_dataTypeValidateUInt(type, 1), 0) << base;
        EXPECT_EQ(zor_dataTypeValidateFloat(type, 1), 0) << base;
        EXPECT_EQ(zor_dataTypeCompareInt(type, 2, 1), 0) << base;
        EXPECT_EQ(zor_dataTypeCompareUInt(type, 2, 1), 0) << base;
        EXPECT_EQ(zor_dataTypeCompareFloat(type, 2, 1), 0) << base;
        delete type;
    }
}

// A derived type keeps nothing of the table that its base stood in.
TEST(DerivedType, OutlivesTheBuiltInTable) {
    ZorDataType* const type = zor_derivedTypeMake("derived", "4", nullptr, nullptr, nullptr,
                                                  nullptr, builtIn("float"), nullptr);
    ZorBuiltIn::deleteBuiltInTypes();
    ZorDataType* const copy = new ZorDataType(type);
    EXPECT_EQ(defaultOf(copy), "4");
    delete copy;
    delete type;
}
