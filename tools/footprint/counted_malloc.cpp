// Blocks are counted where every allocation ends up, whoever makes it: the library, expat, the C++
// library under it or the C library for its files.

#include "tools/footprint/counted_malloc.h"

#include <dlfcn.h>
#include <malloc.h>

#include <array>
#include <cstdint>
#include <cstdlib>

namespace {

Usage live;
Usage peak; // of each count by itself

// The live blocks and what was asked for them: a hash table that probes linearly. It has no block
// of its own, and is never full.
class AskedBytes {
public:
    void add(void const* block, std::size_t asked) {
        if (++used > entries.size() / 2) std::abort();
        std::size_t at = home(block);
        while (entries[at].block) at = after(at);
        entries[at] = {block, asked};
    }

    // What was asked for the block, which is forgotten; false for one that is not known.
    bool take(void const* block, std::size_t& asked) {
        std::size_t hole = home(block);
        while (entries[hole].block && entries[hole].block != block) hole = after(hole);
        if (!entries[hole].block) return false;
        asked = entries[hole].asked;
        --used;
        // What lies behind moves up, unless it would come before its home.
        for (std::size_t at = after(hole); entries[at].block; at = after(at)) {
            if (distance(home(entries[at].block), at) < distance(hole, at)) continue;
            entries[hole] = entries[at];
            hole = at;
        }
        entries[hole] = {};
        return true;
    }

private:
    struct Entry {
        void const* block;
        std::size_t asked;
    };
    static constexpr std::size_t kSize = 1U << 17;

    static std::size_t home(void const* block) {
        auto const address = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(block));
        return ((address >> 4) * 2654435769U) >> 15; // its 17 upper bits
    }
    static std::size_t after(std::size_t at) { return (at + 1) % kSize; }
    static std::size_t distance(std::size_t from, std::size_t to) { return (to - from) % kSize; }

    std::array<Entry, kSize> entries;
    std::size_t used;
};

AskedBytes askedBytes; // zero from the start: malloc is called before any initialiser has run

long takenBy(void* block) { return static_cast<long>(malloc_usable_size(block) + sizeof(void*)); }

void raise(long& highest, long now) {
    if (now > highest) highest = now;
}

void count(void* block, std::size_t asked) {
    if (!block) return;
    askedBytes.add(block, asked);
    live.asked += static_cast<long>(asked);
    live.taken += takenBy(block);
    ++live.blocks;
    raise(peak.asked, live.asked);
    raise(peak.taken, live.taken);
    raise(peak.blocks, live.blocks);
}

void discount(void* block) {
    std::size_t asked;
    if (!block || !askedBytes.take(block, asked)) return; // null, or made before we were asked
    live.asked -= static_cast<long>(asked);
    live.taken -= takenBy(block);
    --live.blocks;
}

// The C library's own function of that name.
template <typename Function>
Function* original(char const* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

} // namespace

Usage operator-(Usage a, Usage b) {
    return {a.asked - b.asked, a.taken - b.taken, a.blocks - b.blocks};
}

Usage liveUsage() { return live; }

Usage peakUsage() { return peak; }

void restartPeak() { peak = live; }

extern "C" void* malloc(std::size_t size) {
    static auto* const next = original<void*(std::size_t)>("malloc");
    void* const block = next(size);
    count(block, size);
    return block;
}

extern "C" void* calloc(std::size_t number, std::size_t size) {
    static auto* const next = original<void*(std::size_t, std::size_t)>("calloc");
    void* const block = next(number, size);
    count(block, number * size);
    return block;
}

extern "C" void* realloc(void* old, std::size_t size) {
    static auto* const next = original<void*(void*, std::size_t)>("realloc");
    discount(old);
    void* const block = next(old, size);
    count(block, size);
    return block;
}

extern "C" void free(void* block) {
    static auto* const next = original<void(void*)>("free");
    discount(block);
    next(block);
}
