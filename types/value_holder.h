// A local holder of a value: freed on every return, unless it was handed over.

#pragma once

#include "zor/types.h"

namespace zor_internal {

class ValueHolder {
public:
    // Takes ownership of the value; a null function means that there is none.
    ValueHolder(ZorFreeValueFn freeValue, u_zorItemValue owned) : free(freeValue), value(owned) {}
    ValueHolder(ValueHolder const&) = delete;
    ValueHolder& operator=(ValueHolder const&) = delete;
    ~ValueHolder() {
        if (free) free(value);
    }

    // Hands the value to the caller.
    u_zorItemValue release() {
        free = nullptr;
        return value;
    }

private:
    ZorFreeValueFn free;
    u_zorItemValue value;
};

} // namespace zor_internal
