// How far a select may go.
//
// Steps behind "//" may find a node over and over, and branches without cells may repeat a thousand
// million times: what a short path reaches is not bounded by the document. What a select finds in
// one step is, and so is what it looks at: beyond a fixed number, both by the number of cells.

#pragma once

#include <cstdint>

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
    static constexpr std::int64_t kResults = 65536;
    static constexpr std::int64_t kResultsPerCell = 4;
    static constexpr std::int64_t kVisits = 4194304;
    static constexpr std::int64_t kVisitsPerCell = 64;

    // Counts the cells, which takes a walk over the schema, only when there is much to find.
    void extend() {
        if (extended) return;
        extended = true;
        std::int64_t const cells = rootNode->countRequiredValueNodes();
        results += kResultsPerCell * cells;
        visits += kVisitsPerCell * cells;
    }

    bool giveUp() {
        exceeded = true;
        return false;
    }

    ZorSchemaNode* rootNode;
    std::int64_t found = 0;
    std::int64_t visited = 0;
    std::int64_t results = kResults;
    std::int64_t visits = kVisits;
    bool extended = false;
    bool exceeded = false;
};

} // namespace zor_internal
