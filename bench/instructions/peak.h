// The memory of a process that starts and stops.

#pragma once

#include <sys/resource.h>

#include <cstdio>
#include <cstring>

// Prints how many KiB of memory this process has had at most, if its last argument asks for it.
inline void printPeakIfAsked(int argc, char** argv) {
    if (argc < 2 || std::strcmp(argv[argc - 1], "--peak") != 0) return;
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    std::printf("%ld\n", usage.ru_maxrss);
}
