// ZorStrings as std::string, and back.

#pragma once

#include <string>

#include "zor/string.h"

// The characters of a string that the caller owns a reference to, which is released; "(null)" for
// null.
inline std::string taken(ZorString* string) {
    if (!string) return "(null)";
    std::string text(zor_stringValue(string), zor_stringLength(string));
    string->removeRef();
    return text;
}

// A string for the length of a test.
class Text {
public:
    explicit Text(char const* text) : string(ZorString::create(text, -1)) {}
    explicit Text(std::string const& text)
        : string(ZorString::create(text.data(), static_cast<int>(text.size()))) {}
    Text(Text const&) = delete;
    Text& operator=(Text const&) = delete;
    ~Text() { string->removeRef(); }
    operator ZorString*() const { return string; }

private:
    ZorString* string;
};
