// Input of which there is four times as much takes about four times as long.

#include <gtest/gtest.h>

#include <string>

#include "tests/hostile/flood.h"
#include "zor/collection.h"

namespace {

constexpr long kMany = 20000;

std::string numbered(char const* name, long number) { return name + std::to_string(number); }

std::string schemaOf(std::string const& content) {
    return "<schema name='s'>" + content + "</schema>";
}

std::string items(long count) {
    return series(count,
                  [](long i) { return "<item name='" + numbered("i", i) + "' type='int'/>"; });
}

// Expects that the text that `content(count)` makes is imported in silence and linear time.
template <typename Content>
void expectLinearImport(long size, Content const& content) {
    IncidentLog log;
    expectLinearTime(
        size, [&](long count) { return "<phone>" + content(count) + "</phone>"; },
        [](std::string const& text) { ZorCollection("phone").importXML(text.c_str()); });
    EXPECT_EQ(log.take(), "");
}

} // namespace

TEST(LinearTime, Items) {
    expectLinearImport(kMany, [](long count) { return schemaOf(items(count)); });
}

TEST(LinearTime, OptionsOfAChoice) {
    expectLinearImport(kMany, [](long count) {
        auto const option = [](long i) { return "<option>" + numbered("o", i) + "</option>"; };
        return schemaOf("<choice name='c'>" + series(count, option) + "</choice>");
    });
}

// Branches side by side, each named as a parent.
TEST(LinearTime, ParentsSideBySide) {
    expectLinearImport(kMany, [](long count) {
        return schemaOf(series(count, [](long i) {
            std::string const name = numbered("b", i);
            return "<branch name='" + name + "'/><item name='i' type='int' parent='/" + name +
                   "'/>";
        }));
    });
}

// Elements of a document, one for every item of a large schema.
TEST(LinearTime, ElementsOfALargeSchema) {
    expectLinearImport(kMany, [](long count) {
        auto const element = [](long i) {
            std::string const name = numbered("i", i);
            return "<" + name + ">1</" + name + ">";
        };
        return schemaOf(items(count)) + "<document name='d' schema='s'>" + series(count, element) +
               "</document>";
    });
}

// And one item's values, one after the other.
TEST(LinearTime, OccurrencesOfAnItem) {
    expectLinearImport(kMany, [](long count) {
        return schemaOf("<item name='i' type='int' occurrences='32767'/>") +
               "<document name='d' schema='s'>" + Feed::repeated("<i>1</i>", count) + "</document>";
    });
}
