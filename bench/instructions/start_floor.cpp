// A program that starts and stops, and the measure for those that do more: it is linked once with
// what every program has, and once with the libraries that zor needs.

#include "bench/instructions/peak.h"

int main(int argc, char** argv) {
    printPeakIfAsked(argc, argv);
    return 0;
}
