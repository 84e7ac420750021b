// What operator new and the parser's allocator handed out and took back, and failures of both on
// request.
//
// Every block counts, whichever thread asks for it.

#pragma once

#include <cstddef>

// Blocks that are allocated right now.
long liveBlocks();
// Blocks allocated since the process started.
long allocatedBlocks();

// Bytes that are allocated right now.
long liveBytes();

// The most bytes that were allocated at the same time since this was made, beyond those that were
// allocated then.
class PeakBytes {
public:
    PeakBytes();
    PeakBytes(PeakBytes const&) = delete;
    PeakBytes& operator=(PeakBytes const&) = delete;
    long count() const;

private:
    long before;
};

// Lets one allocation of this process fail: the n-th from now on, counted from 1. Operator new
// throws std::bad_alloc then, the parser gets no block. One lives at a time.
class FailingAllocation {
public:
    explicit FailingAllocation(long n);
    FailingAllocation(FailingAllocation const&) = delete;
    FailingAllocation& operator=(FailingAllocation const&) = delete;
    ~FailingAllocation();

    // Whether so many allocations took place that one failed.
    bool happened() const;
};
