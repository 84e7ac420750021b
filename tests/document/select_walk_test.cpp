// Select compared with slower ways of finding the same.

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "tests/document/dull_select.h"
#include "tests/document/store.h"
#include "tests/support/incidents.h"

namespace {

class SelectWalk : public testing::Test {
protected:
    IncidentLog log;
};

std::string dullSelect(ZorSchemaNode* root, std::string const& path) {
    std::string text;
    for (Hit const& hit : dullHits(root, path)) {
        text += pathOf(hit.node) + '[' + std::to_string(hit.occurrence + 1) + "]@" +
                std::to_string(hit.flat) + ' ';
    }
    return text;
}

class Chance {
public:
    explicit Chance(unsigned seed) : random(seed) {}
    std::size_t below(std::size_t limit) {
        return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random);
    }
    template <std::size_t count>
    char const* of(char const* const (&choices)[count]) {
        return choices[below(count)];
    }

    std::mt19937 random;
};

// A path that mostly makes sense.
std::string likelyPath(Chance& chance) {
    static char const* const names[] = {"a", "b", "c", "d", "*", "*", "*x", "", "ab"};
    static char const* const separators[] = {"/", "/", "/", "/", "//", "//", "///"};
    static char const* const predicates[] = {"[1]", "[2]", "[ 2 ]", "[3 x]", "[1]", "[2]",
                                             "[0]", "[]",  "[x]",   "[2",    "[9]", "[1]b"};
    std::string path;
    std::size_t const steps = 1 + chance.below(4);
    for (std::size_t i = 0; i < steps; ++i) {
        if (i > 0 || chance.below(2)) path += separators[chance.below(i > 0 ? 6 : 7)];
        path += names[chance.below(chance.below(3) ? 6 : 9)];
        if (chance.below(4) == 0) path += predicates[chance.below(chance.below(3) ? 6 : 12)];
    }
    return path;
}

// A path of any characters that mean something.
std::string wildPath(Chance& chance) {
    static char const characters[] = "ab*/[]12 ";
    std::string path;
    for (std::size_t i = chance.below(10); i > 0; --i) {
        path += characters[chance.below(sizeof characters - 1)];
    }
    return path;
}

// Every occurrence of every node, its parents' occurrences in front of it.
struct Instance {
    ZorSchemaNode* node;
    std::vector<int> occurrences; // from the root's child down, from 1

    long flat() const {
        long flat = 0;
        ZorSchemaNode const* at = node;
        long weight = 1;
        for (std::size_t i = occurrences.size(); i-- > 0; at = at->parent) {
            flat += weight * (occurrences[i] - 1);
            weight *= at->occurrences;
        }
        return flat;
    }

    // The path that selects exactly this.
    std::string path() const {
        std::string text;
        ZorSchemaNode const* at = node;
        for (std::size_t i = occurrences.size(); i-- > 0; at = at->parent) {
            text = '/' + (at->getName() + ('[' + std::to_string(occurrences[i]) + ']')) + text;
        }
        return text;
    }
};

void enumerate(ZorSchemaNode* node, std::vector<int>& occurrences, std::vector<Instance>& out) {
    for (ZorSchemaNode* child = node->firstChild; child; child = child->next) {
        for (int own = 1; own <= child->occurrences; ++own) {
            occurrences.push_back(own);
            out.push_back({child, occurrences});
            enumerate(child, occurrences, out);
            occurrences.pop_back();
        }
    }
}

std::vector<Instance> instancesOf(ZorSchemaNode* root) {
    std::vector<Instance> instances;
    std::vector<int> occurrences;
    enumerate(root, occurrences, instances);
    return instances;
}

} // namespace

TEST_F(SelectWalk, TheDullWalkKnowsTheRules) {
    Shape const shape("a*2{b*2:int} b{a{c:int}}");
    EXPECT_EQ(dullSelect(shape.root(), "a/b[2]"), "a/b[2]@1 a/b[2]@3 ");
    EXPECT_EQ(dullSelect(shape.root(), "//a/c"), "b/a/c[1]@0 ");
    EXPECT_EQ(dullSelect(shape.root(), "a[ 2 ]"), "a[2]@1 ");
    EXPECT_EQ(dullSelect(shape.root(), "a[2"), "");
}

TEST_F(SelectWalk, AgreesOnLikelyPaths) {
    Chance chance(3);
    int withResults = 0;
    for (int round = 0; round < 150; ++round) {
        std::string const text = randomShape(chance.random, 4, {1, 2, 3, 2, 1, 0, -2});
        Store store(text);
        for (int i = 0; i < 60; ++i) {
            std::string const path = likelyPath(chance);
            std::string const expected = dullSelect(store.shape.root(), path);
            ASSERT_EQ(store.select(path.c_str()), expected) << path << " in " << text;
            withResults += !expected.empty();
        }
    }
    EXPECT_GT(withResults, 1500);
}

TEST_F(SelectWalk, AgreesOnWildPaths) {
    Chance chance(4);
    int withResults = 0;
    for (int round = 0; round < 50; ++round) {
        std::string const text = randomShape(chance.random, 3, {1, 2, 3});
        Store store(text);
        for (int i = 0; i < 300; ++i) {
            std::string const path = wildPath(chance);
            std::string const expected = dullSelect(store.shape.root(), path);
            ASSERT_EQ(store.select(path.c_str()), expected) << path << " in " << text;
            withResults += !expected.empty();
        }
    }
    EXPECT_GT(withResults, 300);
}

// Branches by the dozen, each with children of its own: what a step remembers of one must not be
// taken for what another has.
TEST_F(SelectWalk, AgreesAmongManyBranches) {
    static char const* const paths[] = {
        "*/a",     "*/b",  "*/c",  "*/d",   "*/*/a",  "*/a/b",  "*[2]/a",   "*/a[2]/b",
        "*/*/*/c", "//a",  "//b",  "//c/d", "//*",    "//a//b", "*//a",     "*//b//c",
        "*/b//d",  "n7/a", "n7/*", "*/b/a", "//n7/a", "*/*",    "//a[2]/b", "//d[1]"};
    Chance chance(7);
    std::size_t results = 0;
    for (int round = 0; round < 20; ++round) {
        std::string text;
        for (int i = 0; i < 40; ++i) {
            text += " n" + std::to_string(i) + '*' + std::to_string(1 + chance.below(3)) + '{' +
                    randomShape(chance.random, 3, {1, 2, 1}) + '}';
        }
        Store store(text);
        for (char const* const path : paths) {
            std::string const expected = dullSelect(store.shape.root(), path);
            ASSERT_EQ(store.select(path), expected) << path << " in " << text;
            results += static_cast<std::size_t>(std::count(expected.begin(), expected.end(), '@'));
        }
    }
    EXPECT_GT(results, 20000U);
}

// Every cell is given its own full path as value; the path then selects that cell alone.
TEST_F(SelectWalk, AFullPathReachesExactlyItsCell) {
    Chance chance(5);
    std::size_t cells = 0;
    for (int round = 0; round < 60; ++round) {
        std::string const text = randomShape(chance.random, 4, {1, 2, 3, 0});
        Shape shape(text);
        for (ZorSchemaNode* const node : nodesBelow(shape.root())) {
            if (!node->isDataNode() || node->flags & ZorSchemaNode::noDefault) continue;
            node->dataType->freeValueFn(node->defaultValue);
            node->flags |= ZorSchemaNode::noDefault;
        }
        for (ZorSchemaNode* const node : nodesBelow(shape.root())) {
            if (node->isDataNode()) node->dataType = ZorBuiltIn::getDataType("string");
        }
        ZorDocument document(&shape.schema, "document");
        std::vector<Instance> const instances = instancesOf(shape.root());
        for (Instance const& instance : instances) {
            if (!instance.node->isDataNode()) continue;
            ASSERT_EQ(document.setStringNodeValue(instance.node, instance.flat(),
                                                  instance.path().c_str()),
                      1);
            ++cells;
        }
        for (Instance const& instance : instances) {
            std::unique_ptr<ZorResultSet> const results(document.select(instance.path().c_str()));
            ASSERT_EQ(results->getResultCount(), 1U) << instance.path() << " in " << text;
            ASSERT_EQ(results->getDefinition(), instance.node);
            ASSERT_EQ(results->results[0]->flat, instance.flat()) << instance.path();
            ASSERT_EQ(results->getOccurrence(), instance.occurrences.back());
            if (!instance.node->isDataNode()) continue;
            ASSERT_EQ(taken(results->getValue()), instance.path()) << text;
        }
    }
    EXPECT_GT(cells, 1000U);
}

// Without "//", a path selects exactly the instances whose steps match, each once.
TEST_F(SelectWalk, APathWithoutDescendantsIsAFilter) {
    Chance chance(6);
    static char const* const names[] = {"a", "b", "c", "d", "*"};
    static char const* const predicates[] = {"", "", "[1]", "[2]"};
    int withResults = 0;
    for (int round = 0; round < 100; ++round) {
        std::string const text = randomShape(chance.random, 4, {1, 2, 3});
        Store store(text);
        std::vector<Instance> const instances = instancesOf(store.shape.root());
        for (int i = 0; i < 30; ++i) {
            std::vector<Step> steps(1 + chance.below(3));
            std::string path;
            for (Step& step : steps) {
                std::string const predicate = chance.of(predicates);
                step = {false, chance.of(names), predicate.empty() ? 0 : predicate[1] - '0'};
                path += '/' + step.name + predicate;
            }
            std::multiset<std::string> expected;
            for (Instance const& instance : instances) {
                if (instance.occurrences.size() != steps.size()) continue;
                bool matches = true;
                ZorSchemaNode const* at = instance.node;
                for (std::size_t s = steps.size(); s-- > 0; at = at->parent) {
                    if (steps[s].name != "*" && steps[s].name != at->getName()) matches = false;
                    int const wanted = steps[s].occurrence;
                    if (wanted && wanted != instance.occurrences[s]) matches = false;
                }
                if (matches) expected.insert(instance.path());
            }
            std::multiset<std::string> selected;
            std::unique_ptr<ZorResultSet> const results(store.document.select(path.c_str()));
            for (; !results->eof(); results->next()) {
                ZorResultPointer const& result = *results->results[results->cursor];
                auto const same = std::find_if(
                    instances.begin(), instances.end(), [&result](Instance const& instance) {
                        return instance.node == result.node && instance.flat() == result.flat;
                    });
                ASSERT_NE(same, instances.end()) << path << " in " << text;
                selected.insert(same->path());
            }
            ASSERT_EQ(selected, expected) << path << " in " << text;
            withResults += !expected.empty();
        }
    }
    EXPECT_GT(withResults, 500);
}
