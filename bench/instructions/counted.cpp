// In a file of its own, so that no compiler makes a copy of it under another name.

#include "bench/instructions/counted.h"

#include <stdlib.h> // NOLINT(modernize-deprecated-headers): declares arc4random_buf

#include <cstddef>
#include <cstring>

void zor_counted(std::function<void()> const& work) {
    work();
    asm volatile("" ::: "memory"); // so that the call above is no jump
}

// Instead of the C library's: expat salts its hash tables by it, and they would collide otherwise
// in every run.
extern "C" void arc4random_buf(void* buffer, std::size_t size) noexcept {
    std::memset(buffer, 0x5A, size);
}
