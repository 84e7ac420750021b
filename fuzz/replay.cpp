// A target in ordinary builds: runs every file that is named, and every file of the directories
// that are named. An input that leaves memory allocated, or needs very much of it, ends the
// process.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz/support/check.h"
#include "fuzz/support/target.h"
#include "tests/support/allocations.h"

namespace {

// For one input. None of the committed ones is longer than a few kilobytes.
constexpr long kMostBytes = 64L * 1024 * 1024;

namespace fs = std::filesystem;

std::vector<fs::path> inputsAt(fs::path const& place) {
    std::vector<fs::path> inputs;
    if (!fs::is_directory(place)) return {place};
    for (fs::directory_entry const& entry : fs::directory_iterator(place)) {
        if (entry.is_regular_file()) inputs.push_back(entry.path());
    }
    std::sort(inputs.begin(), inputs.end());
    return inputs;
}

void run(fs::path const& input) {
    std::ifstream file(input, std::ios::binary);
    std::string const bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    if (file.bad() || !file.is_open()) {
        std::fprintf(stderr, "%s cannot be read\n", input.c_str());
        std::exit(1);
    }
    // Named before it runs, for the case that it ends the process.
    std::printf("%s\n", input.c_str());
    std::fflush(stdout);
    long const before = liveBlocks();
    PeakBytes const peak;
    LLVMFuzzerTestOneInput(reinterpret_cast<std::uint8_t const*>(bytes.data()), bytes.size());
    check(liveBlocks() == before, "an input leaves no memory allocated");
    check(peak.count() <= kMostBytes, "an input needs memory in proportion");
}

} // namespace

int main(int argc, char** argv) {
    std::uint8_t const none = 0;
    LLVMFuzzerTestOneInput(&none, 0); // makes what lives as long as the process
    std::size_t count = 0;
    for (int i = 1; i < argc; ++i) {
        std::vector<fs::path> const inputs = inputsAt(argv[i]);
        for (fs::path const& input : inputs) run(input);
        count += inputs.size();
    }
    std::printf("%zu inputs\n", count);
    return count > 0 ? 0 : 1;
}
