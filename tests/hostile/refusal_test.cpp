// What is refused because a few bytes of it would come to very much, or be lost in silence.

#include <expat.h>
#include <gtest/gtest.h>
#include <time.h>

#include <string>

#include "tests/collection/import_store.h"
#include "tests/collection/objects.h"
#include "tests/hostile/flood.h"
#include "tests/support/allocations.h"
#include "zor/collection.h"

namespace {

constexpr long kMegabyte = 1048576;

class Refusal : public testing::Test {
protected:
    std::string import(std::string const& text) {
        collection.importXML(text.c_str());
        return log.take();
    }

    IncidentLog log;
    ZorCollection collection{"phone"};
};

// Seconds of this thread since it was made.
class Clock {
public:
    Clock() : start(now()) {}
    double seconds() const { return now() - start; }

private:
    static double now() {
        timespec at;
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &at);
        return double(at.tv_sec) + 1e-9 * double(at.tv_nsec);
    }
    double start;
};

} // namespace

// An attribute's default would be added to every element.
TEST_F(Refusal, OfDefaultsOfAttributes) {
    EXPECT_EQ(import("<!DOCTYPE phone [<!ATTLIST item type CDATA 'int'>]><phone><schema name='s'/>"
                     "</phone>"),
              "3 {zor_XMLParse: line 1, column 43 }defaults of attributes are not accepted\n");
    EXPECT_EQ(collection.getSchema("s"), nullptr);
    EXPECT_EQ(import("<!DOCTYPE phone [<!ATTLIST item type CDATA #FIXED 'int'>]><phone/>"),
              "3 {zor_XMLParse: line 1, column 50 }defaults of attributes are not accepted\n");
}

TEST_F(Refusal, NotOfOtherDeclarations) {
    EXPECT_EQ(import("<!DOCTYPE phone [<!ELEMENT phone ANY><!ATTLIST item type CDATA #REQUIRED>"
                     "<!ENTITY e 's'>]><phone><schema name='&e;'/></phone>"),
              "");
    EXPECT_NE(collection.getSchema("s"), nullptr);
}

// A parameter entity may stand for a part of the file that is not read; that is no loss.
TEST_F(Refusal, NotOfParameterEntities) {
    EXPECT_EQ(import("<!DOCTYPE phone [<!ENTITY % part SYSTEM 'none'> %part;]><phone>"
                     "<schema name='s'/></phone>"),
              "");
    EXPECT_NE(collection.getSchema("s"), nullptr);
}

// A host that gives a text to the XML parser itself gets what that makes of it.
TEST_F(Refusal, NotOutsideOfAParse) {
    ZorXmlParser parser(&collection, nullptr);
    std::string const text =
        "<!DOCTYPE phone SYSTEM 'none.dtd' [<!ATTLIST phone a CDATA 'b'>]><phone>"
        "&foo;</phone>";
    EXPECT_EQ(XML_Parse(parser.expatParser, text.data(), static_cast<int>(text.size()), 1),
              XML_STATUS_OK);
    EXPECT_EQ(log.take(), "2 attribute not valid in this context (a)\n");
}

// It may be declared in a part of the file that is not read.
TEST_F(Refusal, OfEntitiesThatWouldBeLeftOut) {
    EXPECT_EQ(import("<!DOCTYPE phone SYSTEM 'none.dtd'><phone><document name='d'>\n"
                     "<itemValue>12&foo;34</itemValue></document></phone>"),
              "3 {zor_XMLParse: line 2, column 18 }undefined entity\n");
    EXPECT_EQ(valuesAt(collection.getDocument("d"), "itemValue"), "");
}

// The names that are allowed are listed as far as somebody may read them.
TEST_F(Refusal, ListsNotAllNames) {
    std::string const items = series(2000, [](long i) {
        return "<item name='item" + std::to_string(1000 + i) + "' type='int'/>";
    });
    std::string const incidents =
        import("<phone><schema name='s'>" + items +
               "</schema><document name='d' schema='s'><x/></document></phone>");
    EXPECT_NE(incidents.find("Possible valid elements are 'item1000' 'item1001' "),
              std::string::npos);
    EXPECT_NE(incidents.find("' ... . outerContext->currentElement->elementName = 'document'"),
              std::string::npos);
    EXPECT_LT(incidents.size(), 8192U + 1024);
}

// Documents that are too much are refused before they are made, however often they are asked for.
TEST_F(Refusal, OfDocumentsCostsNothing) {
    std::string const text =
        "<phone><schema name='s'><branch name='b' occurrences='4096'/>"
        "<item name='i' type='int' default='1' occurrences='4096' parent='b'/></schema>" +
        series(
            2000,
            [](long i) { return "<x/><document name='d" + std::to_string(i) + "' schema='s'/>"; }) +
        "</phone>";
    PeakBytes const peak;
    Clock const clock;
    import(text);
    EXPECT_LT(clock.seconds(), 20) << "one alone takes a tenth of a second";
    EXPECT_LT(peak.count(), 300 * kMegabyte) << "one, which is allowed, takes 256";
    EXPECT_NE(collection.getDocument("d0"), nullptr);
    EXPECT_EQ(collection.getDocument("d1"), nullptr);
}

// Every cell has a default's text of its own.
TEST_F(Refusal, OfTextsOfDefaultsInEveryCell) {
    std::string const text =
        "<phone><schema name='s'><item name='i' type='string' occurrences='32767' "
        "default='" +
        std::string(60000, 'a') + "'/></schema><document name='d' schema='s'/></phone>";
    PeakBytes const peak;
    EXPECT_EQ(import(text),
              "3 documents of one import have too many values\n"
              "3 {zor_XMLParse: line 1, column 60094 }problem resolving document and schema "
              "name\n");
    EXPECT_LT(peak.count(), kMegabyte);
}

// A document that is opened again and again goes on with the rules it had, and counts anew.
TEST_F(Refusal, NotOfADocumentOpenedAgain) {
    std::string const items = series(4000, [](long i) {
        return "<item name='i" + std::to_string(i) + "' type='int' occurrences='2'/>";
    });
    Clock const clock;
    EXPECT_EQ(
        import("<phone><schema name='s'>" + items + "</schema>" +
               Feed::repeated("<document name='d' schema='s'><i0>1</i0><i3999>2</i3999></document>",
                              4000) +
               "<document name='d' schema='s'><i0>3</i0><i0>4</i0></document></phone>"),
        "");
    EXPECT_LT(clock.seconds(), 20) << "the square would be a minute";
    EXPECT_EQ(valuesAt(collection.getDocument("d"), "i0"), "3|4");
    EXPECT_EQ(valuesAt(collection.getDocument("d"), "i3999"), "2|(null)");
}

// Rules that were made for one schema are not used for another, whatever came between.
TEST_F(Refusal, NotOfDocumentsOfSchemasInTurn) {
    EXPECT_EQ(import("<phone><schema name='s'><item name='a' type='int'/></schema>"
                     "<schema name='t'><item name='b' type='int'/></schema>"
                     "<document name='1' schema='s'><a>1</a></document>"
                     "<document name='2' schema='t'><b>2</b></document>"
                     "<document name='3' schema='s'><a>3</a></document>"
                     "<document name='4'><itemValue>4</itemValue></document>"
                     "<document name='5' schema='s'><a>5</a></document></phone>"),
              "");
    EXPECT_EQ(valuesAt(collection.getDocument("4"), "itemValue"), "4");
    // A schema that comes between makes no difference, either.
    EXPECT_EQ(import("<phone><document name='1' schema='s'><a>1</a></document>"
                     "<schema name='u'><item name='c' type='int'/></schema>"
                     "<document name='5' schema='s'><a>5</a></document></phone>"),
              "");
    for (char const* const name : {"1", "3", "5"}) {
        EXPECT_EQ(valuesAt(collection.getDocument(name), "a"), name);
    }
    EXPECT_EQ(valuesAt(collection.getDocument("2"), "b"), "2");
}
