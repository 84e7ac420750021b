// Schemas as an indented tree.

#pragma once

#include "zor/collection.h"

// Prints every schema of the collection and of those inside it, a node a line, with occurrences,
// type, the type's options or bounds, and default.
void printTree(ZorCollection& collection, int depth = 0);
