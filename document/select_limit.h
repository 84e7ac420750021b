// How far a select may go.
//
// Steps behind "//" may find a node over and over, and branches without cells may repeat a thousand
// million times: what a short path reaches is not bounded by the document. What a select finds in
// one step is, and so is what it looks at: beyond a fixed number, both by the number of cells.

#pragma once

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

    // Counts the cells, which takes a walk over the schema, only when there is much to find.
    void extend() {
        if (extended) return;
        extended = true;
        auto const cells = static_cast<Count>(rootNode->countRequiredValueNodes());
        results = plus(results, kResultsPerCell, cells);
        visits = plus(visits, kVisitsPerCell, cells);
    }

    // base + perCell x cells, or the most that a counter still can pass.
    static Count plus(Count base, Count perCell, Count cells) {
        Count sum;
        bool const beyond = __builtin_mul_overflow(perCell, cells, &sum) ||
                            __builtin_add_overflow(sum, base, &sum) || sum == ULONG_MAX;
        return beyond ? ULONG_MAX - 1 : sum;
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
