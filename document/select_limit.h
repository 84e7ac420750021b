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

    // Counts results, at most 32767 at a time, and nodes or occurrences that were looked at. False
    // when they are too many; then all further ones are.
    bool find(int number) {
        found += static_cast<Count>(number);
        visited += static_cast<Count>(number);
        return mayGoOn();
    }
    bool visit() {
        ++visited;
        return mayGoOn();
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
    static constexpr Count kCells = (ULONG_MAX - SHRT_MAX - kVisits) / kVisitsPerCell;

    bool isWithin() const { return visited <= visits && found <= results; }

    bool mayGoOn() { return isWithin() || mayGoFurther(); }

    // Counts the cells, which takes a walk over the schema, only when there is much to find.
    bool mayGoFurther() {
        if (!extended) extend();
        if (isWithin()) return true;
        exceeded = true;
        visits = 0; // nothing more
        return false;
    }

    void extend() {
        extended = true;
        auto const cells =
            std::min(static_cast<Count>(rootNode->countRequiredValueNodes()), kCells);
        results += kResultsPerCell * cells;
        visits += kVisitsPerCell * cells;
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
