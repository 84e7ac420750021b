// The generic operations on types.

#include <gtest/gtest.h>

#include "tests/support/text.h"
#include "tests/types/call_log.h"
#include "tests/types/recording_writer.h"
#include "zor/types.h"

namespace {

char tag[] = "tag";

// A type for the length of a test.
class Probe {
public:
    explicit Probe(ZorValidateFn validate = probe::validate, ZorCompareFn compare = probe::compare)
        : type(makeProbe("probe", nullptr, tag, nullptr)) {
        type->validateFn = validate;
        type->compareFn = compare;
    }
    Probe(Probe const&) = delete;
    Probe& operator=(Probe const&) = delete;
    ~Probe() { delete type; }
    operator ZorDataType*() const { return type; }

private:
    ZorDataType* type;
};

int validateInt(void* userData, u_zorItemValue value) {
    CallLog::note("int " + probe::tagOf(userData) + ' ' + std::to_string(value.intValue));
    return 3;
}

int validateUInt(void* userData, u_zorItemValue value) {
    CallLog::note("uint " + probe::tagOf(userData) + ' ' + std::to_string(value.uintValue));
    return 4;
}

int validateFloat(void* userData, u_zorItemValue value) {
    CallLog::note("float " + probe::tagOf(userData) + ' ' + std::to_string(*value.floatValue));
    *value.floatValue = 99; // the caller's own number stays what it is
    return 5;
}

int compareInt(void* userData, u_zorItemValue a, u_zorItemValue b) {
    CallLog::note("int " + probe::tagOf(userData) + ' ' + std::to_string(a.intValue) + ' ' +
                  std::to_string(b.intValue));
    return -1;
}

int compareUInt(void* userData, u_zorItemValue a, u_zorItemValue b) {
    CallLog::note("uint " + probe::tagOf(userData) + ' ' + std::to_string(a.uintValue) + ' ' +
                  std::to_string(b.uintValue));
    return 1;
}

int compareFloat(void* userData, u_zorItemValue a, u_zorItemValue b) {
    CallLog::note("float " + probe::tagOf(userData) + ' ' + std::to_string(*a.floatValue) + ' ' +
                  std::to_string(*b.floatValue));
    return -1;
}

} // namespace

TEST(TypeOperations, WithoutValidationEveryTextIsValid) {
    Probe const type(nullptr);
    for (char const* const text : {"", " ", "anything", "\xFE"}) {
        EXPECT_EQ(zor_dataTypeValidate(type, text), 1) << text;
    }
    EXPECT_EQ(zor_dataTypeValidate(type, static_cast<ZorString*>(Text("x"))), 1);
}

TEST(TypeOperations, WithoutComparisonEveryPairComparesAsZero) {
    Probe const type(probe::validate, nullptr);
    EXPECT_EQ(zor_dataTypeCompare(type, "a", "b"), 0);
    EXPECT_EQ(zor_dataTypeCompare(type, "b", "a"), 0);
    EXPECT_EQ(zor_dataTypeCompare(type, "", "a"), 0);
}

// The type's own answer is passed on as it is.
TEST(TypeOperations, ValidationGetsUserDataAndText) {
    CallLog calls;
    Probe const type;
    EXPECT_EQ(zor_dataTypeValidate(type, "plain"), 7);
    EXPECT_EQ(zor_dataTypeValidate(type, static_cast<ZorString*>(Text("string"))), 7);
    EXPECT_EQ(calls.take(), "validate tag plain;validate tag string;");
}

TEST(TypeOperations, ComparisonTakesStringsAndPlainTextsInAnyMixture) {
    CallLog calls;
    Probe const type;
    Text const a("a");
    Text const b("b");
    EXPECT_LT(zor_dataTypeCompare(type, "a", "b"), 0);
    EXPECT_LT(zor_dataTypeCompare(type, static_cast<ZorString*>(a), "b"), 0);
    EXPECT_LT(zor_dataTypeCompare(type, "a", static_cast<ZorString*>(b)), 0);
    EXPECT_GT(zor_dataTypeCompare(type, static_cast<ZorString*>(b), static_cast<ZorString*>(a)), 0);
    EXPECT_EQ(calls.take(), "compare tag a b;compare tag a b;compare tag a b;compare tag b a;");
}

TEST(TypeOperations, LeaveTheReferencesOfTheirArgumentsAlone) {
    Probe const type;
    Text const text("some text");
    ZorString* const string = text;
    zor_dataTypeValidate(type, string);
    zor_dataTypeCompare(type, string, string);
    EXPECT_EQ(string->refCount, 1);
}

TEST(TypeOperations, NullCountsAsTheEmptyText) {
    CallLog calls;
    Probe const type;
    zor_dataTypeValidate(type, nullptr);
    EXPECT_LT(zor_dataTypeCompare(type, nullptr, "a"), 0);
    EXPECT_GT(zor_dataTypeCompare(type, "a", nullptr), 0);
    EXPECT_EQ(calls.take(), "validate tag ;compare tag  a;compare tag a ;");
}

// A string object may hold a text that begins with the marker byte.
TEST(TypeOperations, PassOnATextThatBeginsWithTheMarkerByte) {
    CallLog calls;
    Probe const type;
    Text const text("\xFFx");
    zor_dataTypeValidate(type, static_cast<ZorString*>(text));
    zor_dataTypeCompare(type, static_cast<ZorString*>(text), static_cast<ZorString*>(text));
    EXPECT_EQ(calls.take(), "validate tag \xFFx;compare tag \xFFx \xFFx;");
}

TEST(TypeOperations, HostNumbersAreInvalidAndEqualWithoutFunctions) {
    Probe const type;
    EXPECT_EQ(zor_dataTypeValidateInt(type, 0), 0);
    EXPECT_EQ(zor_dataTypeValidateUInt(type, 0), 0);
    EXPECT_EQ(zor_dataTypeValidateFloat(type, 0), 0);
    EXPECT_EQ(zor_dataTypeCompareInt(type, 1, 2), 0);
    EXPECT_EQ(zor_dataTypeCompareUInt(type, 1, 2), 0);
    EXPECT_EQ(zor_dataTypeCompareFloat(type, 1, 2), 0);
}

TEST(TypeOperations, HostNumbersReachTheFunctionsOfTheirKind) {
    CallLog calls;
    Probe const type;
    zor_dataTypeSetConversionFuncs(type, zorExtLong, nullptr, nullptr, nullptr, validateInt,
                                   compareInt);
    zor_dataTypeSetConversionFuncs(type, zorExtULong, nullptr, nullptr, nullptr, validateUInt,
                                   compareUInt);
    zor_dataTypeSetConversionFuncs(type, zorExtDouble, nullptr, nullptr, nullptr, validateFloat,
                                   compareFloat);
    EXPECT_EQ(zor_dataTypeValidateInt(type, -5), 3);
    EXPECT_EQ(zor_dataTypeValidateUInt(type, 4294967295UL), 4);
    double const number = 1.5;
    EXPECT_EQ(zor_dataTypeValidateFloat(type, number), 5);
    EXPECT_EQ(number, 1.5);
    EXPECT_EQ(calls.take(), "int tag -5;uint tag 4294967295;float tag 1.500000;");

    EXPECT_EQ(zor_dataTypeCompareInt(type, -1, 2), -1);
    EXPECT_EQ(zor_dataTypeCompareUInt(type, 3, 4), 1);
    EXPECT_EQ(zor_dataTypeCompareFloat(type, 0.5, 2.5), -1);
    EXPECT_EQ(calls.take(), "int tag -1 2;uint tag 3 4;float tag 0.500000 2.500000;");
}

TEST(TypeOperations, SettingConversionsStoresAllFivePointersOfOneKind) {
    ZorDataType const* const source = ZorBuiltIn::getDataType("bool");
    ZorExtTypeFuncs const& given = source->extFuncs[zorExtULong];
    for (ZorExternalDataType const ext : {zorExtLong, zorExtULong, zorExtDouble}) {
        Probe const type;
        ZorDataType* const record = type;
        zor_dataTypeSetConversionFuncs(type, ext, given.toInternal, given.setInternal,
                                       given.getExternal, given.validate, given.compare);
        for (int i = 0; i < 3; ++i) {
            ZorExtTypeFuncs const& stored = record->extFuncs[i];
            bool const isSet = i == ext;
            EXPECT_EQ(stored.toInternal, isSet ? given.toInternal : nullptr) << ext;
            EXPECT_EQ(stored.setInternal, isSet ? given.setInternal : nullptr) << ext;
            EXPECT_EQ(stored.getExternal, isSet ? given.getExternal : nullptr) << ext;
            EXPECT_EQ(stored.validate, isSet ? given.validate : nullptr) << ext;
            EXPECT_EQ(stored.compare, isSet ? given.compare : nullptr) << ext;
        }
        zor_dataTypeSetConversionFuncs(type, ext, nullptr, nullptr, nullptr, nullptr, nullptr);
        EXPECT_EQ(record->extFuncs[ext].toInternal, nullptr);
        EXPECT_EQ(record->extFuncs[ext].compare, nullptr);
    }
}

TEST(TypeOperations, SettingConversionsOfAnUnknownKindDoesNothing) {
    Probe const type;
    ZorDataType* const record = type;
    for (int const kind : {-1, 3, 1000}) {
        zor_dataTypeSetConversionFuncs(type, static_cast<ZorExternalDataType>(kind), nullptr,
                                       nullptr, nullptr, validateInt, compareInt);
    }
    for (ZorExtTypeFuncs const& functions : record->extFuncs) {
        EXPECT_EQ(functions.validate, nullptr);
        EXPECT_EQ(functions.compare, nullptr);
    }
    EXPECT_EQ(record->flags, ZorDataType::noDefault);
    EXPECT_EQ(record->cloneUserDataFn, probe::cloneUserData);
}

// Every call gives a reference of its own.
TEST(TypeOperations, DefaultIsANewReference) {
    ZorDataType* const type =
        zor_derivedTypeMake("derived", "the default", nullptr, nullptr, nullptr, nullptr,
                            ZorBuiltIn::getDataType("string"), nullptr);
    ZorString* first = zor_dataTypeDefault(type);
    first = first->append(1, ", changed", -1);
    EXPECT_EQ(taken(first), "the default, changed");
    EXPECT_EQ(taken(zor_dataTypeDefault(type)), "the default");
    delete type;
}

TEST(TypeOperations, RangeAndChoiceAreToldByTheirFlags) {
    Probe const type;
    ZorDataType* const record = type;
    for (int const flags : {0, 1, 2, 3, 4, 5, 6, 7}) {
        record->flags = static_cast<unsigned char>(flags | ZorDataType::noDefault);
        EXPECT_EQ(zor_datatypeIsRange(type) != 0, (flags & 2) != 0) << flags;
        EXPECT_EQ(zor_datatypeIsChoice(type) != 0, (flags & 4) != 0) << flags;
    }
}

TEST(TypeOperations, ExportCallsTheFunctionWithNameAndUserData) {
    Probe const type;
    zor_dataTypeSetXmlExportFn(type, probe::exportXml);
    RecordingWriter writer;
    zor_dataTypeExportXML(&writer, type);
    EXPECT_EQ(writer.writes, std::vector<std::string>{"probe/tag"});
    zor_dataTypeSetXmlExportFn(type, nullptr);
    zor_dataTypeExportXML(&writer, type);
    EXPECT_EQ(writer.writes.size(), 1U);
}

TEST(TypeOperations, BuiltInAndPlainDerivedTypesExportNothing) {
    RecordingWriter writer;
    for (char const* const name : {"string", "int", "uint", "bool", "float", "digit_string",
                                   "ip_address", "ip_mask", "domain_name", "url"}) {
        ZorDataType* const base = ZorBuiltIn::getDataType(name);
        zor_dataTypeExportXML(&writer, base);
        ZorDataType* const derived = zor_derivedTypeMake("derived", nullptr, nullptr, nullptr,
                                                         nullptr, nullptr, base, nullptr);
        zor_dataTypeExportXML(&writer, derived);
        delete derived;
    }
    EXPECT_TRUE(writer.writes.empty());
}
