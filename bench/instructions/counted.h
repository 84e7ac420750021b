// Where the counting of instructions starts and stops.

#pragma once

#include <functional>

// Does the work. callgrind counts what runs in here, when it is told --toggle-collect=zor_counted.
extern "C" void zor_counted(std::function<void()> const& work);
