// What malloc has handed out in this process, whoever asked for it.
//
// What a block takes is what glibc says it can hold, and one word for its bookkeeping. Other C
// libraries round otherwise; the bytes asked for are the same. One thread.

#pragma once

struct Usage {
    long asked; // bytes
    long taken; // bytes
    long blocks;
};

Usage operator-(Usage a, Usage b);

// What is allocated right now.
Usage liveUsage();
// The most that was allocated at the same time since `restartPeak`, each count by itself.
Usage peakUsage();
void restartPeak();
