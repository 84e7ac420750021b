#pragma once

// The number of locks that are held right now, by any thread.
int heldLocks();
