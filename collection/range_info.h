// A range between the start and the end of its <range> element.

#pragma once

#include "zor/types.h"

class RangeInfo {
public:
    // Adds a reference to each string.
    RangeInfo(ZorString* rangeName, ZorDataType* base, ZorString* min, ZorString* max);
    RangeInfo(RangeInfo const&) = delete;
    RangeInfo& operator=(RangeInfo const&) = delete;
    virtual ~RangeInfo();

    ZorString* name;
    ZorDataType* baseType; // not owned
    ZorString* minimum;
    ZorString* maximum;
};
