// Walking a path over the schema's tree.

#include "zor/document.h"

#include <memory>

#include "document/path.h"
#include "foundation/text_argument.h"
#include "platform/lock_holder.h"
#include "schema/child_index.h"

using zor_internal::findChild;
using zor_internal::LockHolder;
using zor_internal::ParsedPath;
using zor_internal::textOf;

namespace {

// Adds the occurrences of `node` under one occurrence of its parent that the step asks for.
void addMatches(ZorResultSet* found, int parentFlat, ZorSchemaNode* node, int occurrence) {
    int const count = node->getOccurrences();
    if (occurrence >= 0) {
        if (occurrence < count) found->addResult(parentFlat, node, occurrence);
        return;
    }
    for (int i = 0; i < count; ++i) found->addResult(parentFlat, node, i);
}

// Applies the same step below every occurrence of a branch.
void searchBelow(ZorDocument* document, ZorResultSet* found, int parentFlat, ZorSchemaNode* branch,
                 int stepIndex, XPathStep* steps, int stepCount) {
    for (int i = 0; i < branch->getOccurrences(); ++i) {
        ZorResultSet below(document);
        below.addResult(parentFlat, branch, i);
        // Kept: the first occurrence without a match ends the search below this branch.
        if (!document->findNode(found, &below, stepIndex, steps, stepCount)) return;
    }
}

} // namespace

ZorResultSet* ZorDocument::select(void const* path) {
    LockHolder const holder(lock);
    ParsedPath parsed(textOf(path));
    auto context = std::make_unique<ZorResultSet>(this);
    if (parsed.count() > 0) context->addResult(0, rootNode, 0);
    for (int i = 0; i < parsed.count() && !context->eof(); ++i) {
        auto result = std::make_unique<ZorResultSet>(this);
        findNode(result.get(), context.get(), i, parsed.first(), parsed.count());
        context = std::move(result);
    }
    context->finalize();
    return context.release();
}

int ZorDocument::findNode(ZorResultSet* result, ZorResultSet* context, int stepIndex,
                          XPathStep* steps, int stepCount) {
    XPathStep const& step = steps[stepIndex];
    bool const wildcard = step.name->text[0] == '*';
    bool const last = stepIndex == stepCount - 1;
    auto found = std::make_unique<ZorResultSet>(this);

    for (ZorListNode const* at = context->head; at; at = at->next) {
        auto const* const entry = static_cast<ZorResultPointer const*>(at->value);
        ZorSchemaNode* const match = wildcard ? nullptr : findChild(entry->node, step.name->text);
        if (!wildcard && !step.descendant) {
            if (match) addMatches(found.get(), entry->flat, match, step.occurrence);
            continue;
        }
        for (ZorSchemaNode* child = entry->node->getFirstChildNode(); child; child = child->next) {
            // Only the last step reports data nodes; the others pass through branches.
            if ((wildcard || child == match) && (last || child->isBranchNode())) {
                addMatches(found.get(), entry->flat, child, step.occurrence);
            }
            if (step.descendant && child->isBranchNode()) {
                searchBelow(this, found.get(), entry->flat, child, stepIndex, steps, stepCount);
            }
        }
    }

    bool const any = !found->eof();
    result->combine(found.release());
    return any;
}
