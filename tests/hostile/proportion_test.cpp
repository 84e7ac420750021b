// Numbers in definitions, documents and paths cost no memory, and no time.

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <string>

#include "tests/collection/import_store.h"
#include "tests/collection/objects.h"
#include "tests/hostile/flood.h"
#include "tests/support/allocations.h"
#include "zor/collection.h"

namespace {

// More than a collection with a parser and a few nodes ever needs.
constexpr long kLittle = 262144; // bytes: 256 KB

// Branches "b" within each other that repeat 32,767 times each.
std::string repeatingBranches(int depth) {
    std::string text = "<branch name='b' occurrences='32767'/>";
    std::string path;
    for (int i = 1; i < depth; ++i) {
        path += "/b";
        text += "<branch name='b' occurrences='32767' parent='" + path + "'/>";
    }
    return text;
}

// A collection "phone" with a schema "s" and its document "d", measured from its making on.
class Proportion : public testing::Test {
protected:
    void import(std::string const& content) {
        collection.importXML(("<phone>\n" + content + "\n</phone>").c_str());
    }
    void define(std::string const& content) { import("<schema name='s'>" + content + "</schema>"); }
    void fill(std::string const& content) {
        import("<document name='d' schema='s'>\n" + content + "</document>");
    }

    unsigned long answersTo(std::string const& path) {
        ZorDocument* const document = collection.getDocument("d");
        return std::unique_ptr<ZorResultSet>(document->select(path.c_str()))->getResultCount();
    }

    IncidentLog log;
    PeakBytes peak;
    ZorCollection collection{"phone"};
};

} // namespace

// 32,767 x 32,767 x 32,767 values, asked for by less than 1 KB.
TEST_F(Proportion, CountlessValuesAreRefused) {
    define(repeatingBranches(2) +
           "<item name='i' type='int' default='5' occurrences='32767' parent='/b/b'/>");
    EXPECT_EQ(log.take(), "");
    fill("");
    EXPECT_EQ(log.take(),
              plainError("ZorCollection::makeDocument{Schema (s) has too many values}") +
                  errorAt(2, 0, "problem resolving document and schema name"));
    EXPECT_EQ(collection.getDocument("d"), nullptr);

    // The schema is there, and the collection works. The count ends where a long does.
    long const count = sizeof(long) == 4 ? std::numeric_limits<long>::max() : 35181150961663;
    EXPECT_EQ(collection.getSchema("s")->getRootNode()->countRequiredValueNodes(), count);
    ZorCollection again("phone");
    again.copySchema("s", collection.getSchema("s"));
    EXPECT_EQ(again.exportAll(), collection.exportAll());
    import("<document name='note'><itemValue>text</itemValue></document>");
    EXPECT_EQ(log.take(), "");
    EXPECT_EQ(valuesOf(collection.getDocument("note")), "itemValue=text*");
    EXPECT_LT(peak.count(), kLittle);
}

// The product goes far beyond every number.
TEST_F(Proportion, ValuesBeyondEveryNumberAreRefused) {
    define(repeatingBranches(100) + "<item name='i' type='int' parent='/" +
           Feed::repeated("/b", 100).substr(1) + "'/>");
    EXPECT_EQ(log.take(), "");
    fill("");
    EXPECT_EQ(log.take(),
              plainError("ZorCollection::makeDocument{Schema (s) has too many values}") +
                  errorAt(2, 0, "problem resolving document and schema name"));
    EXPECT_EQ(collection.getDocument("d"), nullptr);
    EXPECT_LT(peak.count(), kLittle);
}

// Branches in which there is nothing repeat for nothing: documents of them are made, filled,
// copied and written at once.
TEST_F(Proportion, CountlessBranchesWithoutValuesAreFree) {
    define(repeatingBranches(3) + "<item name='i' type='int' occurrences='3'/>");
    fill("<b occurrence='32767'><b occurrence='32767'><b occurrence='32767'/></b></b><i>7</i>");
    EXPECT_EQ(log.take(), "");
    ZorDocument* const document = collection.getDocument("d");
    EXPECT_EQ(valuesOf(document), "i=7*|(null)|(null)");
    EXPECT_EQ(answersTo("b[32767]/b[1]/b[32767]"), 1U);
    collection.copyDocument("e", document);
    EXPECT_EQ(collection.exportDocument("e"),
              "<phone><document schema=\"s\" name=\"d\"><i>7</i></document></phone>");
    EXPECT_LT(peak.count(), kLittle);
}

// More occurrences than there are digits to say: sixteen bits of the number count, and what comes
// to less than 1 has no values.
TEST_F(Proportion, OccurrencesMayHaveAnyNumberOfDigits) {
    define("<item name='a' type='int' occurrences='32768'/>"
           "<item name='b' type='int' occurrences='2147483648'/>"
           "<item name='c' type='int' occurrences='18446744073709551617'/>"
           "<item name='d' type='int' occurrences='" +
           std::string(60000, '9') +
           "'/>"
           "<item name='e' type='int' occurrences='" +
           std::string(60000, '0') + "2'/>");
    EXPECT_EQ(log.take(), "");
    fill("<e>1</e><e>2</e>");
    EXPECT_EQ(log.take(), "");
    EXPECT_EQ(valuesOf(collection.getDocument("d")), "a= b= c= d= e=1*|2*");
    EXPECT_LT(peak.count(), 8 * kLittle);
}

// An occurrence that is not there is refused, however far away.
TEST_F(Proportion, OccurrenceOfAnElementMayBeAnyNumber) {
    define("<branch name='b' occurrences='3'/><item name='i' type='int' parent='b'/>");
    std::string const outOfRange = plainError("setStringNodeValue: occurrence is out of range");
    struct {
        std::string number;
        std::string incidents;
    } const rows[] = {
        {"4", errorAt(3, 0, "Too many occurrences of element <b>") + unwoundAt(4, 0, "phone")},
        {"5", outOfRange},
        {"2147483647", outOfRange},
        {"2147483648", outOfRange},
        {"4294967295", outOfRange},
        {"4294967297", outOfRange},
        {"18446744073709551617", outOfRange},
        {std::string(60000, '9'), outOfRange},
    };
    for (auto const& row : rows) {
        fill("<b occurrence='" + row.number + "'><i>7</i></b>");
        EXPECT_EQ(log.take(), row.incidents) << row.number;
        EXPECT_EQ(valuesOf(collection.getDocument("d")), "b/i=(null)|(null)|(null)") << row.number;
    }
    fill("<b occurrence='" + std::string(60000, '0') + "2'><i>7</i></b>");
    EXPECT_EQ(log.take(), "");
    EXPECT_EQ(valuesOf(collection.getDocument("d")), "b/i=(null)|7*|(null)");
    EXPECT_LT(peak.count(), 4 * kLittle);
}

// A number in a path selects the occurrence that it names, or nothing.
TEST_F(Proportion, NumberInAPathMayBeAny) {
    define("<branch name='b' occurrences='3'/>"
           "<item name='i' type='int' occurrences='2' parent='b'/>");
    fill("");
    std::string const zeros(1000000, '0');
    std::string const nines(1000000, '9');
    std::string const blanks(1000000, ' ');
    struct {
        std::string path;
        unsigned long answers;
    } const rows[] = {
        {"b[3]/i", 2},
        {"b[4]/i", 0},
        {"b[2147483647]/i", 0},
        {"b[2147483648]/i", 0},
        {"b[4294967297]/i", 0},
        {"b[18446744073709551617]/i", 0},
        {"//i[2147483647]", 0},
        {"b[" + nines + "]", 0},
        {"b[" + zeros + "]", 0},
        {"b[" + zeros + "3]/i[" + blanks + "2" + blanks + "]", 1},
        {"b[" + blanks + "]", 0},
        {"b[" + zeros, 0},
        {"*[" + zeros + "1]/*[" + zeros + "1]", 1},
    };
    for (auto const& row : rows) {
        EXPECT_EQ(answersTo(row.path), row.answers) << row.path.substr(0, 30);
    }
    EXPECT_EQ(log.take(), "");
}

// Nor does the bound of a range: what the base type takes is a bound, what it does not is reported.
TEST_F(Proportion, BoundMayHaveAnyNumberOfDigits) {
    std::string const nines(60000, '9');
    define("\n<range name='r' baseType='int' minValue='0' maxValue='" + nines + "'/>");
    EXPECT_EQ(log.take(),
              plainError("zor_rangeMake(r): max value (" + nines + ") is not valid") +
                  errorAt(3, 60057, "Could Not Make Range Type with supplied parameters"));
    EXPECT_LT(peak.count(), 12 * kLittle); // the incident among it
}
