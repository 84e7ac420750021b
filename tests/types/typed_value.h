// A value of a type for the length of a test, with the type's functions as verbs.
//
//     TypedValue value(ZorBuiltIn::getDataType("int"), "5");
//     value.set("-3");
//     EXPECT_EQ(value.text(), "-3");
//     EXPECT_EQ(value.asLong(), -3);

#pragma once

#include <string>

#include "tests/support/text.h"
#include "zor/types.h"

// Host numbers on their way into a type.
inline u_zorItemValue host(long number) {
    u_zorItemValue value;
    value.intValue = number;
    return value;
}

inline u_zorItemValue host(unsigned long number) {
    u_zorItemValue value;
    value.uintValue = number;
    return value;
}

inline u_zorItemValue host(double* number) {
    u_zorItemValue value;
    value.floatValue = number;
    return value;
}

class TypedValue {
public:
    TypedValue(ZorDataType* valueType, char const* text)
        : type(valueType), value(valueType->fromStringFn(text)) {}
    // Made from a host number, as the type converts it.
    TypedValue(ZorDataType* valueType, long number)
        : type(valueType), value(type->extFuncs[zorExtLong].toInternal(host(number))) {}
    TypedValue(ZorDataType* valueType, unsigned long number)
        : type(valueType), value(type->extFuncs[zorExtULong].toInternal(host(number))) {}
    TypedValue(ZorDataType* valueType, double number)
        : type(valueType), value(type->extFuncs[zorExtDouble].toInternal(host(&number))) {}
    // A copy, made by the type.
    TypedValue(TypedValue const& other)
        : type(other.type), value(other.type->copyValueFn(other.value)) {}
    TypedValue& operator=(TypedValue const&) = delete;
    ~TypedValue() { type->freeValueFn(value); }

    std::string text() const { return taken(type->toStringFn(value)); }

    void set(char const* text) { type->setFromStringFn(&value, text); }
    void set(long number) { type->extFuncs[zorExtLong].setInternal(&value, host(number)); }
    void set(unsigned long number) {
        type->extFuncs[zorExtULong].setInternal(&value, host(number));
    }
    void set(double number) { type->extFuncs[zorExtDouble].setInternal(&value, host(&number)); }

    long asLong() const {
        u_zorItemValue out = host(1234567L);
        type->extFuncs[zorExtLong].getExternal(value, &out);
        return out.intValue;
    }
    unsigned long asULong() const {
        u_zorItemValue out = host(1234567UL);
        type->extFuncs[zorExtULong].getExternal(value, &out);
        return out.uintValue;
    }
    double asDouble() const {
        double number = 1234567;
        u_zorItemValue out = host(&number);
        type->extFuncs[zorExtDouble].getExternal(value, &out);
        return number;
    }

    ZorDataType* const type;
    u_zorItemValue value;
};

// What a new value made from the text says.
inline std::string readBack(char const* typeName, char const* text) {
    return TypedValue(ZorBuiltIn::getDataType(typeName), text).text();
}
