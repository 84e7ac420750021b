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
    bool find() { return visit() && (++found <= results || extendFor(found, results)); }
    bool visit() { return !exceeded && (++visited <= visits || extendFor(visited, visits)); }

    bool isExceeded() const { return exceeded; }

private:
    static constexpr std::int64_t kResults = 65536;
    static constexpr std::int64_t kResultsPerCell = 4;
    static constexpr std::int64_t kVisits = 4194304;
    static constexpr std::int64_t kVisitsPerCell = 64;

    bool extendFor(std::int64_t count, std::int64_t const& limit) {
        if (!extended) {
            extended = true;
            std::int64_t const cells = rootNode->countRequiredValueNodes();
            results += kResultsPerCell * cells;
            visits += kVisitsPerCell * cells;
        }
        if (count > limit) exceeded = true;
        return !exceeded;
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
