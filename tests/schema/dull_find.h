// Paths on the schema tree, the dull way.

#pragma once

#include <string>
#include <vector>

#include "zor/schema.h"

using Nodes = std::vector<ZorSchemaNode*>;

// The rules as they are written, step by step and slowly.
inline Nodes dullFind(ZorSchemaNode* from, std::string const& path) {
    if (path.empty()) return {};
    Nodes current{from};
    std::size_t at = 0;
    while (at < path.size()) {
        std::size_t run = 0;
        for (; at < path.size() && path[at] == '/'; ++at) ++run;
        if (run > 2) return {};
        std::string segment;
        for (; at < path.size() && path[at] != '/'; ++at) segment += path[at];
        Nodes next;
        for (ZorSchemaNode* const node : current) {
            if (node->isDataNode()) continue;
            for (ZorSchemaNode* child = node->firstChild; child; child = child->next) {
                if (segment == "*" || (!segment.empty() && segment == child->getName())) {
                    next.push_back(child);
                }
                if (run < 2) continue;
                for (ZorSchemaNode* const deeper : dullFind(child, segment)) {
                    next.push_back(deeper);
                }
            }
        }
        if (next.empty()) return {};
        current = next;
    }
    return current;
}
