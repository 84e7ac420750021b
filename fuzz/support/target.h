// What every target defines: one input, of any bytes. Returns 0. A property that does not hold ends
// the process.

#pragma once

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size);
