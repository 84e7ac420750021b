// What the event handlers and the parse contexts share.

#pragma once

#include "zor/xml.h"

namespace zor_internal {

// Reports a text of the element that no string can hold.
void raiseTooLong(ZORParseContext const* context, char const* elementName);

// Releases the values and entries of a map of attributes, so that it can take others.
void clearAttributes(ZorMapEntry** attributes);

// Makes the context that of an element that is not looked at: no rule, no text.
void disregard(ZORParseContext* context);

} // namespace zor_internal
