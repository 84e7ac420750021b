// Select, the dull way: every rule spelled out, nothing indexed.

#pragma once

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "zor/schema.h"

struct Step {
    bool descendant;
    std::string name;
    int occurrence;
};

struct Hit {
    ZorSchemaNode* node;
    int occurrence;
    long flat;
};

inline bool isBlank(char c) { return std::strchr(" \t\n\v\f\r", c) != nullptr; }

// The number in a predicate, from 1; 0 when it is malformed.
inline long numberIn(std::string inside) {
    while (!inside.empty() && isBlank(inside[0])) inside.erase(0, 1);
    long number = 0;
    std::size_t digits = 0;
    for (; digits < inside.size() && !isBlank(inside[digits]); ++digits) {
        if (inside[digits] < '0' || inside[digits] > '9') return 0;
        number = number * 10 + (inside[digits] - '0');
        if (number > 1000000) return 1000001; // no test has that many occurrences
    }
    return number;
}

// The steps of the path; none when it is malformed.
inline std::vector<Step> dullParse(std::string rest) {
    std::vector<Step> steps;
    while (!rest.empty()) {
        std::size_t const slashes = std::min(rest.find_first_not_of('/'), rest.size());
        if (slashes >= 3) return {};
        rest.erase(0, slashes);
        Step step{slashes == 2, rest.substr(0, rest.find_first_of("[/")), -1};
        rest.erase(0, step.name.size());
        if (!rest.empty() && rest[0] == '[') {
            std::size_t const close = rest.find(']');
            if (close == std::string::npos) return {};
            long const number = numberIn(rest.substr(1, close - 1));
            if (number == 0) return {};
            step.occurrence = static_cast<int>(number - 1);
            rest.erase(0, close + 1);
        }
        steps.push_back(step);
    }
    if (steps.size() > 31) steps.clear();
    return steps;
}

inline void addMatch(std::vector<Hit>& found, long parentFlat, ZorSchemaNode* node, int wanted) {
    for (int own = 0; own < node->occurrences; ++own) {
        if (wanted == -1 || wanted == own) {
            found.push_back({node, own, parentFlat * node->occurrences + own});
        }
    }
}

inline std::vector<Hit> dullStep(std::vector<Hit> const& context, Step const& step, bool last) {
    bool const wildcard = !step.name.empty() && step.name[0] == '*';
    std::vector<Hit> found;
    for (Hit const& entry : context) {
        ZorSchemaNode* const first = entry.node->isDataNode() ? nullptr : entry.node->firstChild;
        for (ZorSchemaNode* child = first; child; child = child->next) {
            bool const matches = wildcard || step.name == child->getName();
            if (!wildcard && !step.descendant) {
                if (matches) addMatch(found, entry.flat, child, step.occurrence);
                continue;
            }
            if (matches && (child->isBranchNode() || last)) {
                addMatch(found, entry.flat, child, step.occurrence);
            }
            if (!step.descendant || !child->isBranchNode()) continue;
            for (int own = 0; own < child->occurrences; ++own) {
                long const flat = entry.flat * child->occurrences + own;
                std::vector<Hit> const below = dullStep({{child, own, flat}}, step, last);
                if (below.empty()) break;
                found.insert(found.end(), below.begin(), below.end());
            }
        }
    }
    return found;
}

// What the path reaches, in order.
inline std::vector<Hit> dullHits(ZorSchemaNode* root, std::string const& path) {
    std::vector<Step> const steps = dullParse(path);
    if (steps.empty()) return {};
    std::vector<Hit> hits{{root, 0, 0}};
    for (std::size_t i = 0; i < steps.size(); ++i) {
        hits = dullStep(hits, steps[i], i + 1 == steps.size());
    }
    return hits;
}
