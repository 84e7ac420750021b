// The text form of values in XML.

#include "zor/text.h"

#include <cstring>

#include "foundation/escape.h"
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

// Calls `take(characters, length)` for every piece of the escaped form of the text.
template <typename Take>
void forEachEscapedPiece(char const* at, Take take) {
    if (!*at) take(kEmptyValue, sizeof kEmptyValue - 1);
    while (*at) {
        std::size_t const run = std::strcspn(at, "<>&'\"");
        if (run > 0) take(at, run);
        at += run;
        if (!*at) return;
        char const* const entity = entityFor(*at++);
        take(entity, std::strlen(entity));
    }
}

bool isEmptyValue(ZorString const* text) {
    return text->length == 2 && std::strcmp(text->text, kEmptyValue) == 0;
}

} // namespace

std::string zor_internal::escaped(char const* text) {
    std::string result;
    forEachEscapedPiece(
        text, [&result](char const* chars, std::size_t length) { result.append(chars, length); });
    return result;
}

char const* zor_internal::unescaped(ZorString const* text) {
    if (text->length == 0) return nullptr;
    return isEmptyValue(text) ? "" : text->text;
}

ZorString* escapeCData(void const* text) {
    StringRef result(ZorString::create(nullptr, 0));
    if (!text) return result.release();
    forEachEscapedPiece(textOf(text), [&result](char const* chars, std::size_t length) {
        result.replace(result.get()->append(1, chars, static_cast<int>(length)));
    });
    return result.release();
}

ZorString* unescapeCData(void const* text) {
    char const* const chars = textOf(text);
    int const length = zor_isString(text) ? static_cast<ZorString const*>(text)->length : -1;
    if (length == 0 || (length == -1 && !*chars)) return nullptr;
    StringRef copy(ZorString::create(chars, length));
    return isEmptyValue(copy.get()) ? ZorString::create(nullptr, 0) : copy.release();
}
