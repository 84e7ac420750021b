// What a document's rules count: which occurrence of a node the next element is.

#pragma once

#include <cstdint>

#include "zor/schema.h"
#include "zor/xml.h"

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

// The record of a <document> rule. It keeps the rules of the last document's nodes for the next
// document of the same schema: a few bytes of input may ask for one, and so may the next few.
class DocumentRuleInfo : public ImportRuleInfo {
public:
    DocumentRuleInfo();
    ~DocumentRuleInfo() override;

    std::int64_t bytesMade;      // by the documents of this input
    std::uint32_t documents;     // started with these rules so far
    ZorListNode* keptRules;      // of nodes, while no document is open; one reference each, or null
    ZorSchemaNode const* keptOf; // the root of the tree that the rules, kept or lent, were made for
    unsigned long keptChanges;   // schemaChanges() when they were made
};

// The record of a node's rule.
class NodeRuleInfo : public ImportRuleInfo {
public:
    // `document` is null when the rules serve one document only.
    NodeRuleInfo(ZorSchemaNode* node, DocumentRuleInfo const* document);

    // Begins to count anew, if this is another document than last time.
    void enterDocument();

private:
    DocumentRuleInfo const* documentInfo;
    std::uint32_t countedDocument;
};

namespace zor_internal {

// Adds a rule for every node below `node`, with counters at zero, to `rules`.
// REQUIRES: `rules` has no inner rules yet.
void addNodeRules(ZorElementParseRules* rules, ZorSchemaNode const* node,
                  DocumentRuleInfo const* document = nullptr);

// Releases a list of rules.
void releaseRules(ZorListNode* rules);

// Whether this is a rule made by zor_getDocumentParseRules.
bool isDocumentRule(ZorElementParseRules const* rules);

// Makes a document rule ready for a new input.
void resetDocumentRule(ZorElementParseRules* rules);

} // namespace zor_internal
