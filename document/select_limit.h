// How far a select may go.
//
// Steps behind "//" may find a node over and over, and branches without cells may repeat a thousand
// million times: what a short path reaches is not bounded by the document. What a select finds in
// one step is, and so is what it looks at: beyond a fixed number, both by the number of cells.

#pragma once

#include <algorithm>
#include <climits>

#include "zor/schema.h"

namespace zor_internal {

class SelectLimit {
public:
    explicit SelectLimit(ZorSchemaNode* root) : rootNode(root) {}

    // Before a step: it may find anew.
    void startStep() { found = 0; }

    // Counts one result, and one node or occurrence that was looked at. False when it is one too
    // many; then all further ones are.
    bool find() {
        if (!visit()) return false;
        if (++found > results) extend();
        return found <= results || giveUp();
    }
    bool visit() {
        if (exceeded) return false;
        if (++visited > visits) extend();
        return visited <= visits || giveUp();
    }

    bool isExceeded() const { return exceeded; }

private:
    // Counters are as wide as a word, because they are in the way of every step of a select.
    using Count = unsigned long;

    static constexpr Count kResults = 65536;
    static constexpr Count kResultsPerCell = 4;
    static constexpr Count kVisits = 4194304;
    static constexpr Count kVisitsPerCell = 64;
    // More do not count: a counter can still pass what they allow.
    static constexpr Count kCells = (ULONG_MAX - 1 - kVisits) / kVisitsPerCell;

    // Counts the cells, which takes a walk over the schema, only when there is much to find.
    void extend() {
        if (extended) return;
        extended = true;
        auto const cells =
            std::min(static_cast<Count>(rootNode->countRequiredValueNodes()), kCells);
        results += kResultsPerCell * cells;
        visits += kVisitsPerCell * cells;
    }

    bool giveUp() {
        exceeded = true;
        return false;
    }

    ZorSchemaNode* rootNode;
    Count found = 0;
    Count visited = 0;
    Count results = kResults;
    Count visits = kVisits;
    bool extended = false;
    bool exceeded = false;
};

} // namespace zor_internal
