// A std::string as the ZorString that the store takes for a name, whatever its first byte.

#pragma once

#include <string>

#include "zor/string.h"

class StringHolder {
public:
    explicit StringHolder(std::string const& text) : string(ZorString::create(text.c_str(), -1)) {}
    StringHolder(StringHolder const&) = delete;
    StringHolder& operator=(StringHolder const&) = delete;
    ~StringHolder() { string->removeRef(); }

    ZorString* get() const { return string; }

private:
    ZorString* string;
};
