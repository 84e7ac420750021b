// The text form of values in XML.

#include "zor/text.h"

#include <cstring>

#include "foundation/escape.h"
#include "foundation/string_ref.h"
#include "foundation/text_argument.h"

using zor_internal::forEachEscapedPiece;
using zor_internal::kEmptyValue;
using zor_internal::StringRef;
using zor_internal::textOf;

namespace {

bool isEmptyValue(ZorString const* text) {
    return text->length == 2 && std::strcmp(text->text, kEmptyValue) == 0;
}

} // namespace

char const* zor_internal::unescaped(ZorString const* text) {
    if (!text || text->length == 0) return nullptr;
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
