// The elements inside a document: one rule per schema node, which counts its occurrences.

#include <unistd.h>

#include <cstdio>
#include <memory>

#include "collection/import_callbacks.h"
#include "collection/import_rule_info.h"
#include "document/text_access.h"
#include "foundation/escape.h"
#include "types/number_text.h"
#include "zor/collection.h"

using namespace zor_internal;

ImportRuleInfo::ImportRuleInfo(ZorSchemaNode* node)
    : definitionNode(node), currentParentIndex(0), occurrenceInParent(0), valueIndex(0) {}

ImportRuleInfo::~ImportRuleInfo() = default;

NodeRuleInfo::NodeRuleInfo(ZorSchemaNode* node, DocumentRuleInfo const* document)
    : ImportRuleInfo(node), documentInfo(document),
      countedDocument(document ? document->documents : 0) {}

void NodeRuleInfo::enterDocument() {
    if (!documentInfo || documentInfo->documents == countedDocument) return;
    countedDocument = documentInfo->documents;
    currentParentIndex = 0;
    occurrenceInParent = 0;
    valueIndex = 0;
}

void deleteImportRuleInfo(void* info) { delete static_cast<ImportRuleInfo*>(info); }

namespace {

ImportRuleInfo* infoOf(ZORParseContext const* context) {
    return static_cast<ImportRuleInfo*>(context->parseRules->elementUserData);
}

// Starts counting anew when the enclosing element is another occurrence than last time.
void enterParent(ImportRuleInfo* info, std::uint32_t parentIndex) {
    if (parentIndex == info->currentParentIndex) return;
    info->currentParentIndex = parentIndex;
    info->occurrenceInParent = 0;
    info->valueIndex =
        parentIndex * static_cast<std::uint32_t>(info->definitionNode->getOccurrences());
}

// Goes to the occurrence that the attribute asks for, if there is one. False after reporting that
// it is not a number above 0.
bool moveToAsked(ZORParseContext const* context, ImportRuleInfo* info) {
    ZorString const* const text = zor_XMLContextGetAttribute(context, "occurrence");
    if (!text) return true;
    // Kept: negative numbers are not refused here.
    auto const number = static_cast<std::uint32_t>(intFromText(text->text));
    if (number == 0) {
        raiseImportError(context, incidentInvalidXml,
                         "\"occurrence\" attribute must be a positive integer");
        return false;
    }
    info->valueIndex += number - 1 - info->occurrenceInParent;
    info->occurrenceInParent = number - 1;
    return true;
}

void advance(ImportRuleInfo* info) {
    ++info->occurrenceInParent;
    ++info->valueIndex;
}

void nodeStart(ZORParseContext* context) {
    auto* const document = enclosing<ZorDocument>(context);
    if (!document) return;
    auto* const info = static_cast<NodeRuleInfo*>(infoOf(context));
    ZorSchemaNode const* const node = info->definitionNode;
    if (!node) {
        std::printf("ZorDocument %s elementInfo->definitionNode is null pid = %d\n",
                    document->getName(), static_cast<int>(getpid()));
        return;
    }
    info->enterDocument();
    enterParent(info, infoOf(context->outerContext)->valueIndex);
    if (!moveToAsked(context, info)) return;
    // Kept: equality only. An occurrence beyond the count goes on to whatever cell its number comes
    // to, which below a repeated branch may be another parent's; the document refuses what is none.
    if (info->occurrenceInParent == static_cast<std::uint32_t>(node->getOccurrences())) {
        raiseImportError(context, incidentInvalidArgument, "Too many occurrences of element <",
                         node->getName(), ">");
        return;
    }
    context->userData = document;
}

void nodeDataEnd(ZORParseContext* context) {
    auto* const document = published<ZorDocument>(context);
    if (!document) return;
    ImportRuleInfo* const info = infoOf(context);
    // No cell has an index beyond 31 bits; as a negative number it is refused.
    setText(document, info->definitionNode, static_cast<std::int32_t>(info->valueIndex),
            unescaped(context->characterData));
    advance(info);
}

void nodeBranchEnd(ZORParseContext* context) {
    if (published<ZorDocument>(context)) advance(infoOf(context));
}

std::unique_ptr<ZorElementParseRules> makeNodeRule(ZorSchemaNode* node,
                                                   DocumentRuleInfo const* document) {
    bool const isData = node->isDataNode();
    auto rule = std::make_unique<ZorElementParseRules>(
        node->name, isData ? rawCharacterData : ignoreCharacterData, nodeStart,
        isData ? nodeDataEnd : nodeBranchEnd);
    zor_XMLParseRulesSetElementUserData(rule.get(), new NodeRuleInfo(node, document),
                                        deleteImportRuleInfo);
    zor_XMLParseRulesAddAttribute(rule.get(), "occurrence");
    if (!isData) addNodeRules(rule.get(), node, document);
    return rule;
}

} // namespace

void zor_internal::addNodeRules(ZorElementParseRules* rules, ZorSchemaNode const* node,
                                DocumentRuleInfo const* document) {
    ZorListNode* last = nullptr;
    for (ZorSchemaNode* child = node->getFirstChildNode(); child; child = child->next) {
        // Linked by hand: a new rule closes no cycle, and the end of the list is known.
        std::unique_ptr<ZorElementParseRules> rule = makeNodeRule(child, document);
        last = last ? zor_listAddNode(last, rule.get()) : zor_listMake(rule.get());
        if (!rules->innerRules) rules->innerRules = last;
        ++rule.release()->refCount;
    }
}

void zor_internal::releaseRules(ZorListNode* rules) {
    for (ZorListNode const* node = rules; node; node = node->next) {
        zor_XMLParseRulesRemoveRef(static_cast<ZorElementParseRules*>(node->value));
    }
    zor_listDelete(rules);
}
