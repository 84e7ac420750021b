// What a document's rules count: which occurrence of a node the next element is.

#pragma once

#include <cstdint>

#include "zor/xml.h"

class ZorSchemaNode;

class ImportRuleInfo {
public:
    explicit ImportRuleInfo(ZorSchemaNode* node);
    virtual ~ImportRuleInfo();

    ZorSchemaNode* definitionNode;    // null in the record of the <document> rule
    std::uint32_t currentParentIndex; // the parent occurrence that the counts belong to
    std::uint32_t occurrenceInParent; // of the next element, from 0
    std::uint32_t valueIndex;         // its flat occurrence
};

namespace zor_internal {

// Adds a rule for every node below `node`, with counters at zero, to `rules`.
void addNodeRules(ZorElementParseRules* rules, ZorSchemaNode const* node);

} // namespace zor_internal
