#include "bench/heap_meter.h"

#include <malloc.h>

#include <atomic>
#include <cerrno>
#include <cstdlib>

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ZOR_BENCH_ASAN 1
#endif
#endif
#if defined(__SANITIZE_ADDRESS__)
#define ZOR_BENCH_ASAN 1
#endif

namespace {

std::atomic<bool> metering{false};
long liveBytes = 0;
long askedBytes = 0;
long made = 0;

void count(long bytes, std::size_t asked) {
    liveBytes += bytes;
    askedBytes += static_cast<long>(asked);
    ++made;
}

} // namespace

namespace bench {

HeapMeter::HeapMeter() {
    liveBytes = 0;
    askedBytes = 0;
    made = 0;
    metering = true;
}

HeapMeter::~HeapMeter() { metering = false; }

long HeapMeter::bytes() const { return liveBytes; }

long HeapMeter::asked() const { return askedBytes; }

long HeapMeter::allocations() const { return made; }

} // namespace bench

#ifdef ZOR_BENCH_ASAN

// As in sanitizer/allocator_interface.h, which g++ does not install.
extern "C" {
std::size_t __sanitizer_get_allocated_size(void const volatile* block);
int __sanitizer_install_malloc_and_free_hooks(void (*onMalloc)(void const volatile*, std::size_t),
                                              void (*onFree)(void const volatile*));
}

namespace {

void onMalloc(void const volatile*, std::size_t size) {
    if (metering.load(std::memory_order_relaxed)) count(static_cast<long>(size), size);
}

void onFree(void const volatile* block) {
    if (!block || !metering.load(std::memory_order_relaxed)) return;
    liveBytes -= static_cast<long>(__sanitizer_get_allocated_size(block));
}

[[maybe_unused]] int const installed = __sanitizer_install_malloc_and_free_hooks(onMalloc, onFree);

} // namespace

#else

// The C library's own, under the names it has for those who replace the others.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t number, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* block);
}

namespace {

long usable(void* block) { return static_cast<long>(malloc_usable_size(block)); }

void* counted(void* block, std::size_t asked) {
    if (metering.load(std::memory_order_relaxed) && block) count(usable(block), asked);
    return block;
}

void discount(void* block) {
    if (metering.load(std::memory_order_relaxed) && block) liveBytes -= usable(block);
}

} // namespace

extern "C" void* malloc(std::size_t size) { return counted(__libc_malloc(size), size); }

extern "C" void* calloc(std::size_t number, std::size_t size) {
    return counted(__libc_calloc(number, size), number * size);
}

extern "C" void* realloc(void* block, std::size_t size) {
    discount(block);
    return counted(__libc_realloc(block, size), size);
}

extern "C" void* memalign(std::size_t alignment, std::size_t size) {
    return counted(__libc_memalign(alignment, size), size);
}

extern "C" void* aligned_alloc(std::size_t alignment, std::size_t size) {
    return counted(__libc_memalign(alignment, size), size);
}

extern "C" int posix_memalign(void** block, std::size_t alignment, std::size_t size) {
    *block = counted(__libc_memalign(alignment, size), size);
    return *block ? 0 : ENOMEM;
}

extern "C" void free(void* block) {
    discount(block);
    __libc_free(block);
}

#endif
