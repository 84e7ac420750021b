// Character classes that do not depend on the host's locale.

#pragma once

namespace zor_internal {

inline bool isSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

inline bool isDigit(char c) { return c >= '0' && c <= '9'; }

} // namespace zor_internal
