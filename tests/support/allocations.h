// Counts of what operator new handed out and delete took back.

#pragma once

#include <cstddef>

// Blocks that are allocated right now.
long liveBlocks();
// Blocks allocated since the process started.
long allocatedBlocks();
