// Writing a value from plain characters, whatever their first byte.

#pragma once

#include "zor/document.h"

namespace zor_internal {

// ZorDocument::setStringNodeValue for a text that is not a ZorString; null empties the cell.
int setText(ZorDocument* document, ZorSchemaNode* node, long occurrence, char const* text);

// The same for a reference that the caller does not need any more. Where values are strings, a text
// of its own goes into the cell as it is, and the caller gets what was there, or null: that saves
// an import a block of memory and three looks at every text.
int giveText(ZorDocument* document, ZorSchemaNode* node, long occurrence, ZorString** text);

} // namespace zor_internal
