// What a piece of code takes from the heap. Every allocation of the process is seen, whoever makes
// it: a library in C or C++, this program, or the C library for its files. While no meter lives, an
// allocation costs one more test, for everybody the same.
//
//     HeapMeter const meter;
//     store.importXML(text);
//     long const bytes = meter.bytes();
//
// Bytes are those that the blocks have room for, as malloc_usable_size says: what was asked for and
// the rounding, without the word before each block. (With AddressSanitizer: what was asked for.)
//
// Threads: one meter at a time, and no thread but its own allocates meanwhile.

#pragma once

namespace bench {

class HeapMeter {
public:
    HeapMeter();
    HeapMeter(HeapMeter const&) = delete;
    HeapMeter& operator=(HeapMeter const&) = delete;
    ~HeapMeter();

    // What has come to be used since the meter was made; below 0 when more was freed.
    long bytes() const;
    // What was asked for since then, whether it is free again or not: the same in every state of
    // the heap, which may hand out blocks that are somewhat larger.
    long asked() const;
    // The number of allocations, those included that are free again.
    long allocations() const;
};

} // namespace bench
