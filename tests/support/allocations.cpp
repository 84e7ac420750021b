#include "tests/support/allocations.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<long> live{0};
std::atomic<long> total{0};

} // namespace

long liveBlocks() { return live; }

long allocatedBlocks() { return total; }

void* operator new(std::size_t size) {
    void* const block = std::malloc(size ? size : 1);
    if (!block) throw std::bad_alloc();
    ++live;
    ++total;
    return block;
}

void* operator new[](std::size_t size) { return operator new(size); }

void* operator new(std::size_t size, std::nothrow_t const&) noexcept {
    void* const block = std::malloc(size ? size : 1);
    if (!block) return nullptr;
    ++live;
    ++total;
    return block;
}

void* operator new[](std::size_t size, std::nothrow_t const& tag) noexcept {
    return operator new(size, tag);
}

void operator delete(void* block) noexcept {
    if (!block) return;
    --live;
    std::free(block);
}

void operator delete[](void* block) noexcept { operator delete(block); }
void operator delete(void* block, std::size_t) noexcept { operator delete(block); }
void operator delete[](void* block, std::size_t) noexcept { operator delete(block); }
void operator delete(void* block, std::nothrow_t const&) noexcept { operator delete(block); }
void operator delete[](void* block, std::nothrow_t const&) noexcept { operator delete(block); }
