// What a document's rules count: which occurrence of a node the next element is.

#pragma once

#include <cstdint>

#include "zor/xml.h"

class ZorSchemaNode;

class ImportRuleInfo {
public:
    explicit ImportRuleInfo(ZorSchemaNode* node);
    ImportRuleInfo(ImportRuleInfo const&) = delete;
    ImportRuleInfo& operator=(ImportRuleInfo const&) = delete;
    virtual ~ImportRuleInfo();

    ZorSchemaNode* definitionNode;    // null in the record of the <document> rule
    std::uint32_t currentParentIndex; // the parent occurrence that the counts belong to
    std::uint32_t occurrenceInParent; // of the next element, from 0
    std::uint32_t valueIndex;         // its flat occurrence
};

// What the rule of a <document> element counts beside: how many cells the documents have that the
// input made. A few bytes of input may ask for a document, and so may the next few.
class DocumentRuleInfo : public ImportRuleInfo {
public:
    DocumentRuleInfo();

    std::int64_t cellsMade;
};

namespace zor_internal {

// Adds a rule for every node below `node`, with counters at zero, to `rules`.
// REQUIRES: `rules` has no inner rules yet.
void addNodeRules(ZorElementParseRules* rules, ZorSchemaNode const* node);

// Releases the rules that addNodeRules added.
void removeNodeRules(ZorElementParseRules* rules);

// Whether this is a rule made by zor_getDocumentParseRules.
bool isDocumentRule(ZorElementParseRules const* rules);

// Makes a document rule ready for a new input.
void resetDocumentRule(ZorElementParseRules* rules);

} // namespace zor_internal
