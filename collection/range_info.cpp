#include "collection/range_info.h"

RangeInfo::RangeInfo(ZorString* rangeName, ZorDataType* base, ZorString* min, ZorString* max)
    : name(rangeName), baseType(base), minimum(min), maximum(max) {
    zor_stringAddRef(name);
    zor_stringAddRef(minimum);
    zor_stringAddRef(maximum);
}

RangeInfo::~RangeInfo() {
    name->removeRef();
    minimum->removeRef();
    maximum->removeRef();
}
