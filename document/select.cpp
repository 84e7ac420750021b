// Walking a path over the schema's tree.

#include "zor/document.h"

#include <climits>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "document/flat_occurrence.h"
#include "document/path.h"
#include "document/result_records.h"
#include "document/select_limit.h"
#include "foundation/text_argument.h"
#include "incident/raise.h"
#include "platform/lock_holder.h"
#include "schema/child_index.h"

using zor_internal::appendRecord;
using zor_internal::fillArray;
using zor_internal::findChild;
using zor_internal::flatOccurrence;
using zor_internal::LockHolder;
using zor_internal::ParsedPath;
using zor_internal::raiseError;
using zor_internal::Result;
using zor_internal::SelectLimit;
using zor_internal::textOf;

namespace {

// One step of a path on its way through the tree.
class Step {
public:
    // `last` steps report data nodes, too; the others pass through branches only.
    Step(XPathStep const& parsed, bool last, std::vector<Result>* target, SelectLimit* selectLimit)
        : step(parsed), wildcard(parsed.name->text[0] == '*'), isLast(last), found(target),
          limit(selectLimit) {
        limit->startStep();
    }

    // Adds what the step finds below one occurrence of a node. Whether it found anything.
    bool searchBelow(ZorSchemaNode* node, int flat) {
        std::size_t const before = found->size();
        ZorSchemaNode* const match = wildcard ? nullptr : childOf(node);
        if (!wildcard && !step.descendant) {
            if (match) addOccurrences(match, flat);
            return found->size() != before;
        }
        for (ZorSchemaNode* child = node->getFirstChildNode(); child; child = child->next) {
            if (!limit->visit()) break;
            bool const isBranch = child->type == ZorSchemaNode::BRANCH_NODE;
            bool const matches = wildcard || child == match;
            if (matches && (isLast || isBranch)) addOccurrences(child, flat);
            if (isBranch && step.descendant) searchOccurrences(child, flat);
        }
        return found->size() != before;
    }

private:
    // The child that has the step's name, or null. A step meets the same few nodes under all their
    // occurrences; with a look for the name each time, a select of many takes a third more
    // instructions.
    ZorSchemaNode* childOf(ZorSchemaNode* node) {
        auto const address = reinterpret_cast<std::uintptr_t>(node) / alignof(std::max_align_t);
        Match& match = known[(address ^ address >> 3) % kMatches];
        if (match.parent != node) match = {node, findChild(node, step.name->text)};
        return match.child;
    }

    // Adds the occurrences that the step asks for, under one occurrence of the parent.
    void addOccurrences(ZorSchemaNode* node, int parentFlat) {
        int const count = node->getOccurrences();
        int const first = step.occurrence < 0 ? 0 : step.occurrence;
        int const end = step.occurrence < 0 || step.occurrence >= count ? count : first + 1;
        if (first >= end || !limit->find(end - first)) return;
        int flat = flatOccurrence(parentFlat, node, first);
        for (int i = first; i < end; ++i) {
            found->push_back({node, i, flat});
            if (flat < INT_MAX) ++flat;
        }
    }

    // Applies the same step below every occurrence of a branch.
    void searchOccurrences(ZorSchemaNode* branch, int parentFlat) {
        int const count = branch->getOccurrences();
        for (int i = 0; i < count && limit->visit(); ++i) {
            // Kept: the first occurrence without a match ends the search below this branch.
            if (!searchBelow(branch, flatOccurrence(parentFlat, branch, i))) return;
        }
    }

    struct Match {
        ZorSchemaNode const* parent = nullptr;
        ZorSchemaNode* child = nullptr;
    };

    static constexpr unsigned kMatches = 8;

    Match known[kMatches];
    XPathStep const& step;
    bool wildcard;
    bool isLast;
    std::vector<Result>* found;
    SelectLimit* limit;
};

// What the path reaches, in an array; null when that is too much.
std::unique_ptr<ZorResultSet> evaluate(ZorDocument* document, char const* path) {
    LockHolder const holder(document->lock);
    ParsedPath parsed(path);
    SelectLimit limit(document->rootNode);
    std::vector<Result> context;
    if (parsed.count() > 0) context.push_back({document->rootNode, 0, 0});
    for (int i = 0; i < parsed.count(); ++i) {
        std::vector<Result> found;
        Step step(parsed.first()[i], i == parsed.count() - 1, &found, &limit);
        for (Result const& entry : context) {
            if (!limit.visit()) break;
            step.searchBelow(entry.node, entry.flat);
        }
        if (limit.isExceeded()) return nullptr;
        context.swap(found);
    }
    auto results = std::make_unique<ZorResultSet>(document);
    fillArray(results.get(), context.data(), context.size());
    return results;
}

} // namespace

ZorResultSet* ZorDocument::select(void const* path) {
    if (std::unique_ptr<ZorResultSet> results = evaluate(this, textOf(path))) {
        return results.release();
    }
    raiseError(nullptr, incidentInvalidArgument, "path (", textOf(path),
               ") reaches too many nodes");
    return new ZorResultSet(this);
}

int ZorDocument::findNode(ZorResultSet* result, ZorResultSet* context, int stepIndex,
                          XPathStep* steps, int stepCount) {
    SelectLimit limit(rootNode);
    std::vector<Result> found;
    Step step(steps[stepIndex], stepIndex == stepCount - 1, &found, &limit);
    for (ZorListNode const* at = context->head; at && limit.visit(); at = at->next) {
        auto const* const entry = static_cast<ZorResultPointer const*>(at->value);
        step.searchBelow(entry->node, entry->flat);
    }
    if (limit.isExceeded()) return 0;
    auto results = std::make_unique<ZorResultSet>(this); // nothing of it, when memory runs out
    for (Result const& entry : found) appendRecord(results.get(), entry);
    result->combine(results.release());
    return !found.empty();
}
