// The text form of values in XML.

#include "zor/text.h"

#include <cstring>

#include "foundation/string_ref.h"
#include "foundation/text_argument.h"

using zor_internal::StringRef;
using zor_internal::textOf;

namespace {

// What an empty value looks like, so that it can be told from no value.
constexpr char kEmptyValue[] = "\"\"";

char const* entityFor(char special) {
    switch (special) {
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '&':
        return "&amp;";
    case '\'':
        return "&apos;";
    default:
        return "&quot;";
    }
}

} // namespace

ZorString* escapeCData(void const* text) {
    StringRef result(ZorString::create(nullptr, 0));
    if (!text) return result.release();
    char const* at = textOf(text);
    if (!*at) return ZorString::create(kEmptyValue, -1);
    while (*at) {
        std::size_t const run = std::strcspn(at, "<>&'\"");
        if (run > 0) result.replace(result.get()->append(1, at, static_cast<int>(run)));
        at += run;
        if (*at) result.replace(result.get()->append(1, entityFor(*at++), -1));
    }
    return result.release();
}

ZorString* unescapeCData(void const* text) {
    char const* const chars = textOf(text);
    if (!*chars) return nullptr;
    if (std::strcmp(chars, kEmptyValue) == 0) return ZorString::create(nullptr, 0);
    return ZorString::create(chars, -1);
}
