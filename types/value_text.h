// The text of a value where only its characters are needed.

#pragma once

#include "types/number_text.h"
#include "zor/types.h"

namespace zor_internal {

// The characters of strings are read in place, decimal numbers are written here; the text of any
// other value is made by its type. With a new string for every value an export takes 40 % more
// instructions.
class ValueText {
public:
    ValueText(ZorDataType const* type, u_zorItemValue value);
    ValueText(ValueText const&) = delete;
    ValueText& operator=(ValueText const&) = delete;
    ~ValueText() {
        if (made) made->removeRef();
    }

    // NUL-terminated; null when the type has no text for the value. Borrowed as long as this and
    // the value live.
    char const* get() const { return chars; }

private:
    void setDecimal(std::uint32_t magnitude, bool negative);

    char const* chars;
    ZorString* made;
    char buffer[kLongestDecimal + 1];
};

} // namespace zor_internal
