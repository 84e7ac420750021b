// Walking a path over the schema's tree.

#include "zor/document.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "document/flat_occurrence.h"
#include "document/path.h"
#include "document/select_limit.h"
#include "foundation/text_argument.h"
#include "incident/raise.h"
#include "platform/lock_holder.h"
#include "schema/child_index.h"

using zor_internal::findChild;
using zor_internal::flatOccurrence;
using zor_internal::LockHolder;
using zor_internal::ParsedPath;
using zor_internal::raiseError;
using zor_internal::SelectLimit;
using zor_internal::textOf;

namespace {

// One occurrence of a node, on the way to the results: what a step needs of the one before.
struct Place {
    ZorSchemaNode* node;
    int flat;
};

// Where a step puts what it finds: in a result set, or, with half the memory, in a list of places.
struct Found {
    ZorResultSet* results;
    std::vector<Place>* places; // or null
    unsigned long count = 0;

    void add(int parentFlat, ZorSchemaNode* node, int occurrence) {
        ++count;
        if (places)
            places->push_back({node, flatOccurrence(parentFlat, node, occurrence)});
        else
            results->addResult(parentFlat, node, occurrence);
    }
};

// One step of a path on its way through the tree.
class Step {
public:
    // `last` steps report data nodes, too; the others pass through branches only.
    Step(XPathStep const& parsed, bool last, Found* target, SelectLimit* selectLimit)
        : step(parsed), wildcard(parsed.name->text[0] == '*'), isLast(last), found(target),
          limit(selectLimit) {
        limit->startStep();
    }

    // Adds what the step finds below one occurrence of a node. Whether it found anything.
    bool searchBelow(ZorSchemaNode* node, int flat) {
        unsigned long const before = found->count;
        ZorSchemaNode* const match = wildcard ? nullptr : childOf(node);
        if (!wildcard && !step.descendant) {
            if (match) addOccurrences(match, flat);
            return found->count != before;
        }
        for (ZorSchemaNode* child = node->getFirstChildNode(); child; child = child->next) {
            if (!limit->visit()) break;
            bool const isBranch = child->type == ZorSchemaNode::BRANCH_NODE;
            bool const matches = wildcard || child == match;
            if (matches && (isLast || isBranch)) addOccurrences(child, flat);
            if (isBranch && step.descendant) searchOccurrences(child, flat);
        }
        return found->count != before;
    }

private:
    // The child that has the step's name, or null. A step meets the same few nodes under all their
    // occurrences; to look for the name each time took half of the time of a select.
    ZorSchemaNode* childOf(ZorSchemaNode* node) {
        auto const address = reinterpret_cast<std::uintptr_t>(node) / alignof(std::max_align_t);
        Match& match = known[address % kMatches];
        if (match.parent != node) match = {node, findChild(node, step.name->text)};
        return match.child;
    }

    // Adds the occurrences that the step asks for, under one occurrence of the parent.
    void addOccurrences(ZorSchemaNode* node, int parentFlat) {
        int const count = node->getOccurrences();
        int const first = step.occurrence < 0 ? 0 : step.occurrence;
        int const end = step.occurrence < 0 || step.occurrence >= count ? count : first + 1;
        for (int i = first; i < end && limit->find(); ++i) found->add(parentFlat, node, i);
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
    Found* found;
    SelectLimit* limit;
};

// What the path reaches, in an array; null when that is too much.
std::unique_ptr<ZorResultSet> evaluate(ZorDocument* document, char const* path) {
    LockHolder const holder(document->lock);
    ParsedPath parsed(path);
    SelectLimit limit(document->rootNode);
    auto results = std::make_unique<ZorResultSet>(document);
    std::vector<Place> context;
    if (parsed.count() > 0) context.push_back({document->rootNode, 0});
    for (int i = 0; i < parsed.count(); ++i) {
        bool const last = i == parsed.count() - 1;
        std::vector<Place> next;
        Found found{results.get(), last ? nullptr : &next};
        Step step(parsed.first()[i], last, &found, &limit);
        for (Place const& place : context) {
            if (!limit.visit()) return nullptr;
            step.searchBelow(place.node, place.flat);
        }
        context.swap(next);
    }
    if (limit.isExceeded()) return nullptr;
    results->finalize();
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
    auto results = std::make_unique<ZorResultSet>(this);
    Found found{results.get(), nullptr};
    Step step(steps[stepIndex], stepIndex == stepCount - 1, &found, &limit);
    for (ZorListNode const* at = context->head; at && limit.visit(); at = at->next) {
        auto const* const entry = static_cast<ZorResultPointer const*>(at->value);
        step.searchBelow(entry->node, entry->flat);
    }
    bool const any = found.count > 0 && !limit.isExceeded();
    if (any) result->combine(results.release());
    return any;
}
