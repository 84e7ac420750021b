// The type record: construction, copying and destruction.

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

template <typename First, typename Second>
bool isBefore(First const& a, Second const& b) {
    return reinterpret_cast<char const*>(&a) < reinterpret_cast<char const*>(&b);
}

} // namespace

TEST(ExtTypeFuncs, StartWithoutFunctions) {
    ZorExtTypeFuncs const functions;
    EXPECT_EQ(functions.toInternal, nullptr);
    EXPECT_EQ(functions.setInternal, nullptr);
    EXPECT_EQ(functions.getExternal, nullptr);
    EXPECT_EQ(functions.validate, nullptr);
    EXPECT_EQ(functions.compare, nullptr);
}

TEST(ExtTypeFuncs, FieldsStandInTheDeclaredOrder) {
    ZorExtTypeFuncs const functions;
    EXPECT_TRUE(isBefore(functions.toInternal, functions.setInternal));
    EXPECT_TRUE(isBefore(functions.setInternal, functions.getExternal));
    EXPECT_TRUE(isBefore(functions.getExternal, functions.validate));
    EXPECT_TRUE(isBefore(functions.validate, functions.compare));
}

TEST(DataType, FieldsStandInTheDeclaredOrder) {
    ZorDataType const& t = *builtIn("int");
    EXPECT_TRUE(isBefore(t.name, t.defaultValue));
    EXPECT_TRUE(isBefore(t.defaultValue, t.validateFn));
    EXPECT_TRUE(isBefore(t.validateFn, t.compareFn));
    EXPECT_TRUE(isBefore(t.compareFn, t.userData));
    EXPECT_TRUE(isBefore(t.userData, t.freeUserDataFn));
    EXPECT_TRUE(isBefore(t.freeUserDataFn, t.fromStringFn));
    EXPECT_TRUE(isBefore(t.fromStringFn, t.copyValueFn));
    EXPECT_TRUE(isBefore(t.copyValueFn, t.freeValueFn));
    EXPECT_TRUE(isBefore(t.freeValueFn, t.setFromStringFn));
    EXPECT_TRUE(isBefore(t.setFromStringFn, t.toStringFn));
    EXPECT_TRUE(isBefore(t.toStringFn, t.xmlExportFn));
    EXPECT_TRUE(isBefore(t.xmlExportFn, t.extFuncs));
    EXPECT_TRUE(isBefore(t.extFuncs, t.flags));
    EXPECT_TRUE(isBefore(t.flags, t.cloneUserDataFn));
}

TEST(DataType, FlagsAreTheThreeLowestBits) {
    EXPECT_EQ(ZorDataType::noDefault, 1);
    EXPECT_EQ(ZorDataType::isRange, 2);
    EXPECT_EQ(ZorDataType::isChoice, 4);
}

TEST(DataType, KeepsTheTwelveArgumentsInTheirFields) {
    ZorDataType* const type = makeProbe("probe", "5", tag);
    EXPECT_STREQ(zor_dataTypeName(type), "probe");
    EXPECT_EQ(type->defaultValue.intValue, 5);
    EXPECT_EQ(type->userData, tag);
    EXPECT_EQ(type->validateFn, probe::validate);
    EXPECT_EQ(type->compareFn, probe::compare);
    EXPECT_EQ(type->freeUserDataFn, probe::freeUserData);
    EXPECT_EQ(type->fromStringFn, probe::fromString);
    EXPECT_EQ(type->copyValueFn, probe::copyValue);
    EXPECT_EQ(type->freeValueFn, probe::freeValue);
    EXPECT_EQ(type->setFromStringFn, probe::setFromString);
    EXPECT_EQ(type->toStringFn, probe::toString);
    EXPECT_EQ(type->cloneUserDataFn, probe::cloneUserData);
    delete type;
}

// A new type has no export, no conversions, and is neither range nor choice.
TEST(DataType, StartsPlain) {
    ZorDataType* const type = makeProbe("probe", "5", tag);
    EXPECT_EQ(type->flags, 0);
    EXPECT_EQ(type->xmlExportFn, nullptr);
    for (ZorExtTypeFuncs const& functions : type->extFuncs) {
        EXPECT_EQ(functions.toInternal, nullptr);
        EXPECT_EQ(functions.setInternal, nullptr);
        EXPECT_EQ(functions.getExternal, nullptr);
        EXPECT_EQ(functions.validate, nullptr);
        EXPECT_EQ(functions.compare, nullptr);
    }
    delete type;
}

// A type without a default answers null for it and has no default value to release.
TEST(DataType, WithoutDefaultTextHasNoDefault) {
    CallLog calls;
    ZorDataType* const type = makeProbe("probe", nullptr, nullptr);
    EXPECT_EQ(type->flags, ZorDataType::noDefault);
    EXPECT_EQ(zor_dataTypeDefault(type), nullptr);
    delete type;
    EXPECT_EQ(calls.take(), "");
}

TEST(DataType, MakesItsDefaultFromTheText) {
    CallLog calls;
    ZorDataType* const type = makeProbe("probe", "5", nullptr);
    EXPECT_EQ(calls.take(), "fromString 5;");
    EXPECT_EQ(defaultOf(type), "5");
    EXPECT_EQ(calls.take(), "toString 5;");
    delete type;
    EXPECT_EQ(calls.take(), "freeValue 5;");
}

// The empty text is a default like any other.
TEST(DataType, EmptyDefaultTextIsADefault) {
    CallLog calls;
    ZorDataType* const type = makeProbe("probe", "", nullptr);
    EXPECT_EQ(type->flags, 0);
    EXPECT_EQ(defaultOf(type), "0");
    delete type;
    EXPECT_EQ(calls.take(), "fromString ;toString 0;freeValue 0;");
}

TEST(DataType, ReadsADefaultGivenAsString) {
    Text const text("37");
    ZorDataType* const type = makeProbe("probe", static_cast<ZorString*>(text), nullptr);
    EXPECT_EQ(defaultOf(type), "37");
    delete type;
}

// A default that the type would refuse is taken in silence.
TEST(DataType, DoesNotValidateItsDefault) {
    ZorDataType* const base = builtIn("int");
    ZorDataType* const type = new ZorDataType(
        "odd", "abc", nullptr, base->validateFn, base->compareFn, nullptr, base->fromStringFn,
        base->copyValueFn, base->freeValueFn, base->setFromStringFn, base->toStringFn, nullptr);
    EXPECT_EQ(zor_dataTypeValidate(type, "abc"), 0);
    EXPECT_EQ(defaultOf(type), "0");
    delete type;
}

// A default text whose first byte is 0xFF is text, not a string object.
TEST(DataType, DefaultMayBeginWithTheMarkerByte) {
    Text const text("\xFF\xFE!");
    ZorDataType* const type =
        zor_derivedTypeMake("odd", static_cast<ZorString*>(text), nullptr, nullptr, nullptr,
                            nullptr, builtIn("string"), nullptr);
    EXPECT_EQ(defaultOf(type), "\xFF\xFE!");
    ZorDataType* const copy = new ZorDataType(type);
    EXPECT_EQ(defaultOf(copy), "\xFF\xFE!");
    delete copy;
    delete type;
}

TEST(DataType, SharesANameGivenAsString) {
    Text const name("shared name");
    ZorString* const string = name;
    ZorDataType* const type = makeProbe(string, nullptr, nullptr);
    EXPECT_EQ(type->name, string);
    EXPECT_EQ(string->refCount, 2);
    delete type;
    EXPECT_EQ(string->refCount, 1);
}

TEST(DataType, MakesAStringOfANameGivenAsText) {
    char name[] = "own name";
    ZorDataType* const type = makeProbe(name, nullptr, nullptr);
    name[0] = 'X';
    EXPECT_STREQ(zor_dataTypeName(type), "own name");
    EXPECT_EQ(type->name->refCount, 1);
    delete type;
}

// A permanent name is neither counted nor freed.
TEST(DataType, MayHaveAPermanentName) {
    ZorString* const name = ZorString::create("schema", -1);
    ASSERT_EQ(name->refCount, ZorString::permanentCount);
    ZorDataType* const byString = makeProbe(name, nullptr, nullptr);
    ZorDataType* const byText = makeProbe("schema", nullptr, nullptr);
    EXPECT_EQ(byString->name, name);
    EXPECT_EQ(byText->name, name);
    delete byString;
    delete byText;
    EXPECT_EQ(name->refCount, ZorString::permanentCount);
    EXPECT_STREQ(zor_stringValue(name), "schema");
}

TEST(DataType, NullNameIsTheEmptyOne) {
    ZorDataType* const type = makeProbe(nullptr, nullptr, nullptr);
    EXPECT_STREQ(zor_dataTypeName(type), "");
    delete type;
}

// The default goes before the user data.
TEST(DataType, DestructionReleasesDefaultThenUserData) {
    CallLog calls;
    ZorDataType* const type = makeProbe("probe", "5", tag);
    calls.take();
    delete type;
    EXPECT_EQ(calls.take(), "freeValue 5;freeUserData tag;");
}

TEST(DataType, DestructionReleasesNoNullUserData) {
    CallLog calls;
    delete makeProbe("probe", nullptr, nullptr);
    EXPECT_EQ(calls.take(), "");
}

TEST(DataType, DestructionLeavesUserDataThatItHasNoFunctionFor) {
    CallLog calls;
    delete makeProbe("probe", nullptr, tag, nullptr);
    EXPECT_EQ(calls.take(), "");
}

TEST(DataTypeCopy, HasTheSameNameAndFunctions) {
    ZorDataType* const type = makeProbe("probe", "5", tag);
    type->flags = ZorDataType::isRange | ZorDataType::isChoice;
    zor_dataTypeSetXmlExportFn(type, probe::exportXml);
    ZorDataType* const copy = new ZorDataType(type);
    EXPECT_EQ(copy->name, type->name);
    EXPECT_EQ(type->name->refCount, 2);
    EXPECT_EQ(copy->flags, ZorDataType::isRange | ZorDataType::isChoice);
    EXPECT_EQ(copy->validateFn, probe::validate);
    EXPECT_EQ(copy->compareFn, probe::compare);
    EXPECT_EQ(copy->freeUserDataFn, probe::freeUserData);
    EXPECT_EQ(copy->fromStringFn, probe::fromString);
    EXPECT_EQ(copy->copyValueFn, probe::copyValue);
    EXPECT_EQ(copy->freeValueFn, probe::freeValue);
    EXPECT_EQ(copy->setFromStringFn, probe::setFromString);
    EXPECT_EQ(copy->toStringFn, probe::toString);
    EXPECT_EQ(copy->xmlExportFn, probe::exportXml);
    EXPECT_EQ(copy->cloneUserDataFn, probe::cloneUserData);
    delete type;
    EXPECT_STREQ(zor_dataTypeName(copy), "probe");
    delete copy;
}

TEST(DataTypeCopy, HasTheSameConversions) {
    ZorDataType* const type = makeProbe("probe", "5", tag);
    zor_dataTypeSetConversionFuncs(type, zorExtULong, sameValue, storeValue, fetchValue, acceptAll,
                                   allEqual);
    ZorDataType* const copy = new ZorDataType(type);
    EXPECT_EQ(copy->extFuncs[zorExtULong].toInternal, sameValue);
    EXPECT_EQ(copy->extFuncs[zorExtULong].setInternal, storeValue);
    EXPECT_EQ(copy->extFuncs[zorExtULong].getExternal, fetchValue);
    EXPECT_EQ(copy->extFuncs[zorExtULong].validate, acceptAll);
    EXPECT_EQ(copy->extFuncs[zorExtULong].compare, allEqual);
    for (ZorExternalDataType const other : {zorExtLong, zorExtDouble}) {
        EXPECT_EQ(copy->extFuncs[other].toInternal, nullptr);
        EXPECT_EQ(copy->extFuncs[other].validate, nullptr);
    }
    delete copy;
    delete type;
}

// The default is copied through its text form, not with copyValueFn.
TEST(DataTypeCopy, ReadsTheDefaultAgainFromItsText) {
    CallLog calls;
    ZorDataType* const type = makeProbe("probe", "5", nullptr, nullptr, nullptr);
    calls.take();
    ZorDataType* const copy = new ZorDataType(type);
    EXPECT_EQ(calls.take(), "toString 5;fromString 5;");
    delete type;
    EXPECT_EQ(calls.take(), "freeValue 5;");
    EXPECT_EQ(defaultOf(copy), "5");
    delete copy;
    EXPECT_EQ(calls.take(), "toString 5;freeValue 5;");
}

TEST(DataTypeCopy, OfATypeWithoutDefaultHasNone) {
    CallLog calls;
    ZorDataType* const type = makeProbe("probe", nullptr, nullptr, nullptr, nullptr);
    ZorDataType* const copy = new ZorDataType(type);
    EXPECT_EQ(zor_dataTypeDefault(copy), nullptr);
    delete copy;
    delete type;
    EXPECT_EQ(calls.take(), "");
}

TEST(DataTypeCopy, ClonesTheUserDataWithTheFunctionForIt) {
    CallLog calls;
    ZorDataType* const type = makeProbe("probe", nullptr, tag);
    ZorDataType* const copy = new ZorDataType(type);
    EXPECT_EQ(calls.take(), "cloneUserData tag;");
    EXPECT_STREQ(static_cast<char*>(copy->userData), "clone");
    EXPECT_EQ(type->userData, tag);
    delete copy;
    EXPECT_EQ(calls.take(), "freeUserData clone;");
    delete type;
    EXPECT_EQ(calls.take(), "freeUserData tag;");
}

// The clone function is asked for no user data, too.
TEST(DataTypeCopy, ClonesNullUserData) {
    CallLog calls;
    ZorDataType* const type = makeProbe("probe", nullptr, nullptr);
    ZorDataType* const copy = new ZorDataType(type);
    EXPECT_EQ(calls.take(), "cloneUserData null;");
    EXPECT_STREQ(static_cast<char*>(copy->userData), "clone");
    delete copy;
    delete type;
}

// Without a clone function both types point at the same user data.
TEST(DataTypeCopy, SharesUserDataThatItCannotClone) {
    CallLog calls;
    ZorDataType* const type = makeProbe("probe", nullptr, tag, nullptr, nullptr);
    ZorDataType* const copy = new ZorDataType(type);
    EXPECT_EQ(copy->userData, tag);
    EXPECT_EQ(type->userData, tag);
    delete copy;
    delete type;
    EXPECT_EQ(calls.take(), "");
}

// The function that releases user data is copied like every other one; shared data is the first
// type's to release, and is released once.
TEST(DataTypeCopy, ReleasesSharedUserDataOnce) {
    CallLog calls;
    ZorDataType* const type = makeProbe("probe", nullptr, tag, probe::freeUserData, nullptr);
    ZorDataType* const copy = new ZorDataType(type);
    ZorDataType* const second = new ZorDataType(copy);
    EXPECT_EQ(copy->userData, tag);
    EXPECT_EQ(second->userData, tag);
    EXPECT_EQ(copy->freeUserDataFn, probe::freeUserData);
    delete copy;
    delete second;
    EXPECT_EQ(calls.take(), "");
    delete type;
    EXPECT_EQ(calls.take(), "freeUserData tag;");
}

TEST(DataTypeCopy, HasTheThreeFlagsOfItsSource) {
    for (int const flags : {1, 2, 3, 4, 5, 6, 7}) {
        ZorDataType* const type = makeProbe("probe", nullptr, nullptr, nullptr, nullptr);
        type->flags = static_cast<unsigned char>(flags | ZorDataType::noDefault);
        ZorDataType* const copy = new ZorDataType(type);
        EXPECT_EQ(copy->flags & 7, type->flags);
        delete copy;
        delete type;
    }
}
