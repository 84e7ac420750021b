#include "foundation/out_of_memory.h"

#include <cstdint>
#include <cstdlib>
#include <memory>

void zor_internal::reportOutOfMemory() {
    // The standard library refuses what no block can hold, so that nothing is thrown here.
    (void)std::allocator<char>().allocate(SIZE_MAX);
    std::abort();
}
