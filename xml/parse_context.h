// What the event handlers and the parse contexts share.

#pragma once

#include "zor/xml.h"

namespace zor_internal {

// Reports a text of the element that no string can hold.
void raiseTooLong(ZORParseContext const* context, char const* elementName);

// Makes the context that of an element that is not looked at: no rule, no text.
void disregard(ZORParseContext* context);

} // namespace zor_internal
