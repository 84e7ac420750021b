// The user data of a range.

#pragma once

#include "zor/types.h"

class RangeParams {
public:
    // Adds a reference to bounds that are ZorStrings.
    RangeParams(ZorDataType* base, void const* min, void const* max);
    RangeParams(RangeParams const&) = delete;
    RangeParams& operator=(RangeParams const&) = delete;
    virtual ~RangeParams();

    ZorDataType* baseType; // not owned
    ZorString* minValue;   // one reference
    ZorString* maxValue;   // one reference
};
