// A range for the length of a test.

#pragma once

#include <gtest/gtest.h>

#include "zor/types.h"

class Range {
public:
    Range(ZorDataType* base, void const* name, void const* min, void const* max)
        : type(zor_rangeMake(base, name, min, max)) {
        EXPECT_NE(type, nullptr);
    }
    explicit Range(ZorDataType* copied) : type(copied) {}
    Range(Range const&) = delete;
    Range& operator=(Range const&) = delete;
    ~Range() { delete type; }
    operator ZorDataType*() const { return type; }
    ZorDataType* operator->() const { return type; }
    ZorDataType* get() const { return type; }

    bool accepts(void const* text) const { return zor_dataTypeValidate(type, text) != 0; }
    bool acceptsInt(long number) const { return zor_dataTypeValidateInt(type, number) != 0; }
    bool acceptsUInt(unsigned long number) const {
        return zor_dataTypeValidateUInt(type, number) != 0;
    }
    bool acceptsFloat(double number) const { return zor_dataTypeValidateFloat(type, number) != 0; }

private:
    ZorDataType* type;
};
