#include "tests/support/allocations.h"

#include <expat.h>
#include <malloc.h>

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<long> live{0};
std::atomic<long> total{0};
std::atomic<long> bytes{0};
std::atomic<long> peak{0};
std::atomic<long> untilFailure{0}; // 0 or less: none is due

bool mustFail() { return untilFailure.load() > 0 && untilFailure.fetch_sub(1) == 1; }

void countBytes(long change) {
    long const now = bytes += change;
    long highest = peak;
    while (now > highest && !peak.compare_exchange_weak(highest, now)) {
    }
}

void* obtain(std::size_t size) {
    if (mustFail()) return nullptr;
    void* const block = std::malloc(size ? size : 1);
    if (!block) return nullptr;
    ++live;
    ++total;
    countBytes(static_cast<long>(malloc_usable_size(block)));
    return block;
}

void release(void* block) {
    if (!block) return;
    --live;
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

long liveBlocks() { return live; }

long allocatedBlocks() { return total; }

long liveBytes() { return bytes; }

PeakBytes::PeakBytes() : before(bytes) { peak = before; }

long PeakBytes::count() const { return peak - before; }

FailingAllocation::FailingAllocation(long n) { untilFailure = n; }

FailingAllocation::~FailingAllocation() { untilFailure = 0; }

bool FailingAllocation::happened() const { return untilFailure <= 0; }

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
