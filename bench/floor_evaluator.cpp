#include "bench/floor_evaluator.h"

#include <cstdlib>
#include <cstring>

namespace bench {
namespace {

constexpr int kMostSteps = 31;

struct Step {
    char const* name;
    std::size_t length;
    int occurrence; // from 0; -1 for all
    bool descendant;
};

// The number of steps; 0 when the path is not understood.
int parse(char const* path, Step* steps) {
    int count = 0;
    while (*path && count < kMostSteps) {
        Step& step = steps[count++];
        std::size_t const slashes = std::strspn(path, "/");
        step.descendant = slashes == 2;
        step.name = path + slashes;
        step.length = std::strcspn(step.name, "/[");
        step.occurrence = -1;
        path = step.name + step.length;
        if (*path == '[') {
            char* end;
            step.occurrence = static_cast<int>(std::strtol(path + 1, &end, 10)) - 1;
            path = end + 1;
        }
        if (step.length == 0 || slashes > 2) return 0;
    }
    return count;
}

bool isCalled(FloorNode const& node, Step const& step) {
    return node.name.size() == step.length &&
           std::memcmp(node.name.data(), step.name, step.length) == 0;
}

void append(FloorResults& results, FloorNode const& node, int parentFlat, int wanted) {
    int const first = wanted < 0 ? 0 : wanted;
    int const end = wanted < 0 || wanted >= node.occurrences ? node.occurrences : first + 1;
    for (int i = first; i < end; ++i) {
        results.push_back({&node, i, parentFlat * node.occurrences + i});
    }
}

// What "//" finds: which nodes match is found out once, before the walk.
class Descent {
public:
    Descent(FloorNode const& top, Step const& searched, FloorResults& found)
        : step(searched), results(found), marks(kMostNodes) {
        mark(top);
    }

    void walk(FloorNode const& node, int flat) {
        for (std::unique_ptr<FloorNode> const& child : node.children) {
            unsigned char const marked = marks[static_cast<std::size_t>(child->order)];
            if (marked & kMatches) append(results, *child, flat, step.occurrence);
            // A branch below which nothing matches is left at its first occurrence.
            if (!(marked & kHolds)) continue;
            int const first = flat * child->occurrences;
            for (int i = 0; i < child->occurrences; ++i) walk(*child, first + i);
        }
    }

private:
    static constexpr unsigned char kMatches = 1;
    static constexpr unsigned char kHolds = 2; // something below it matches
    static constexpr std::size_t kMostNodes = 256;

    bool mark(FloorNode const& node) {
        bool holds = false;
        for (std::unique_ptr<FloorNode> const& child : node.children) {
            bool const matches = isCalled(*child, step);
            bool const below = mark(*child);
            marks.at(static_cast<std::size_t>(child->order)) =
                static_cast<unsigned char>((matches ? kMatches : 0) | (below ? kHolds : 0));
            holds |= matches || below;
        }
        return holds;
    }

    Step const& step;
    FloorResults& results;
    std::vector<unsigned char> marks; // by the nodes' order
};

FloorNode const* childCalled(FloorNode const& node, Step const& step) {
    for (std::unique_ptr<FloorNode> const& child : node.children) {
        if (isCalled(*child, step)) return child.get();
    }
    return nullptr;
}

void apply(Step const& step, FloorResults const& context, FloorResults& results) {
    FloorNode const* last = nullptr; // of the context, whose entries of one node lie together
    FloorNode const* match = nullptr;
    for (FloorResult const& entry : context) {
        if (step.descendant) {
            Descent(*entry.node, step, results).walk(*entry.node, entry.flat);
            continue;
        }
        if (entry.node != last) match = childCalled(*entry.node, step);
        last = entry.node;
        if (match) append(results, *match, entry.flat, step.occurrence);
    }
}

} // namespace

std::unique_ptr<FloorResults> floorSelect(FloorDocument& document, char const* path) {
    FloorLock const held(document.lock);
    Step steps[kMostSteps];
    int const count = parse(path, steps);
    if (count == 0) return nullptr;
    auto results = std::make_unique<FloorResults>();
    FloorResults context;
    context.push_back({&document.tree(), 0, 0});
    for (int i = 0; i < count; ++i) {
        results->clear();
        apply(steps[i], context, *results);
        if (i + 1 < count) std::swap(context, *results);
    }
    return results;
}

} // namespace bench
