// Memory that ran out elsewhere than in operator new.

#pragma once

namespace zor_internal {

// Reports it to the caller as operator new would: by std::bad_alloc.
[[noreturn]] void reportOutOfMemory();

} // namespace zor_internal
