// All counts are relaxed: they order no two threads, so that they hide no race from
// ThreadSanitizer.

#include "tests/support/allocations.h"

#include <expat.h>
#include <malloc.h>

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

constexpr std::memory_order kRelaxed = std::memory_order_relaxed;

std::atomic<long> live{0};
std::atomic<long> total{0};
std::atomic<long> bytes{0};
std::atomic<long> peak{0};
std::atomic<long> untilFailure{0}; // 0 or less: none is due

bool mustFail() {
    return untilFailure.load(kRelaxed) > 0 && untilFailure.fetch_sub(1, kRelaxed) == 1;
}

void countBytes(long change) {
    long const now = bytes.fetch_add(change, kRelaxed) + change;
    long highest = peak.load(kRelaxed);
    while (now > highest && !peak.compare_exchange_weak(highest, now, kRelaxed)) {
    }
}

void* obtain(std::size_t size) {
    if (mustFail()) return nullptr;
    void* const block = std::malloc(size ? size : 1);
    if (!block) return nullptr;
    live.fetch_add(1, kRelaxed);
    total.fetch_add(1, kRelaxed);
    countBytes(static_cast<long>(malloc_usable_size(block)));
    return block;
}

void release(void* block) {
    if (!block) return;
    live.fetch_sub(1, kRelaxed);
    countBytes(-static_cast<long>(malloc_usable_size(block)));
    std::free(block);
}

void* resize(void* block, std::size_t size) {
    if (!block) return obtain(size);
    if (mustFail()) return nullptr;
    long const before = static_cast<long>(malloc_usable_size(block));
    void* const moved = std::realloc(block, size);
    if (!moved) return nullptr;
    countBytes(static_cast<long>(malloc_usable_size(moved)) - before);
    return moved;
}

constexpr XML_Memory_Handling_Suite kParserMemory = {obtain, resize, release};

} // namespace

// The linker puts this in the place of XML_ParserCreate, so that the parser's memory counts, too.
extern "C" XML_Parser __wrap_XML_ParserCreate(XML_Char const* encoding);
extern "C" XML_Parser __wrap_XML_ParserCreate(XML_Char const* encoding) {
    return XML_ParserCreate_MM(encoding, &kParserMemory, nullptr);
}

long liveBlocks() { return live.load(kRelaxed); }

long allocatedBlocks() { return total.load(kRelaxed); }

long liveBytes() { return bytes.load(kRelaxed); }

PeakBytes::PeakBytes() : before(bytes.load(kRelaxed)) { peak.store(before, kRelaxed); }

long PeakBytes::count() const { return peak.load(kRelaxed) - before; }

FailingAllocation::FailingAllocation(long n) { untilFailure.store(n, kRelaxed); }

FailingAllocation::~FailingAllocation() { untilFailure.store(0, kRelaxed); }

bool FailingAllocation::happened() const { return untilFailure.load(kRelaxed) <= 0; }

void* operator new(std::size_t size) {
    void* const block = obtain(size);
    if (!block) throw std::bad_alloc();
    return block;
}

void* operator new[](std::size_t size) { return operator new(size); }

void* operator new(std::size_t size, std::nothrow_t const&) noexcept { return obtain(size); }

void* operator new[](std::size_t size, std::nothrow_t const&) noexcept { return obtain(size); }

void operator delete(void* block) noexcept { release(block); }
void operator delete[](void* block) noexcept { release(block); }
void operator delete(void* block, std::size_t) noexcept { release(block); }
void operator delete[](void* block, std::size_t) noexcept { release(block); }
void operator delete(void* block, std::nothrow_t const&) noexcept { release(block); }
void operator delete[](void* block, std::nothrow_t const&) noexcept { release(block); }
