// Writing a value from plain characters, whatever their first byte.

#pragma once

#include "zor/document.h"

namespace zor_internal {

// ZorDocument::setStringNodeValue for a text that is not a ZorString; null empties the cell.
int setText(ZorDocument* document, ZorSchemaNode* node, long occurrence, char const* text);

} // namespace zor_internal
