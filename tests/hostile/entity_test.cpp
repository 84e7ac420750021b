// Entities that expand to far more than the file that declares them. The parser refuses them, from
// its release 2.4.0 on; these tests fail where that protection is off.

#include <gtest/gtest.h>

#include <string>

#include "tests/collection/import_store.h"
#include "tests/hostile/flood.h"
#include "tests/support/allocations.h"
#include "tests/xml/bare_expat.h"
#include "zor/collection.h"

namespace {

// The parser bears with expansions of up to 8 MiB, which it may have to hold.
constexpr long kBound = 16777216; // 16 MB

constexpr char kBreached[] = "limit on input amplification factor (from DTD and entities) breached";

// Ten entities, each ten times the one before: 10,000,000,000 times `innermost`.
std::string laughs(std::string const& innermost) {
    std::string text = "<!DOCTYPE phone [\n<!ENTITY e0 \"" + innermost + "\">\n";
    for (int i = 1; i <= 10; ++i) {
        text += "<!ENTITY e" + std::to_string(i) + " \"" +
                Feed::repeated("&e" + std::to_string(i - 1) + ";", 10) + "\">\n";
    }
    return text + "]>\n";
}

class Entities : public testing::Test {
protected:
    // The incidents of the import, all but the last one, which must be that the limit was breached.
    std::string importBreaching(std::string const& text) {
        std::string const last = complaintOfExpat({text}, true);
        EXPECT_EQ(last.substr(last.find('}') + 1), std::string(kBreached) + '\n');
        PeakBytes const peak;
        collection.importXML(text.c_str());
        std::string incidents = log.take();
        EXPECT_LT(peak.count(), kBound);
        EXPECT_GE(incidents.size(), last.size());
        std::size_t const before = incidents.size() - last.size();
        EXPECT_EQ(incidents.substr(before), last);
        return incidents.substr(0, before);
    }

    IncidentLog log;
    ZorCollection collection{"phone"};
};

} // namespace

// Ten thousand million words in one value.
TEST_F(Entities, BillionLaughsInAValueAreRefused) {
    std::string const incidents = importBreaching(
        laughs("ha") +
        "<phone><document name='d'>\n<itemValue>&e10;</itemValue></document></phone>");
    EXPECT_EQ(incidents, errorAt(15, 11, "text is too long in element <itemValue>"));
    EXPECT_EQ(valuesOf(collection.getDocument("d")), "itemValue=");
}

TEST_F(Entities, BillionLaughsInAnAttributeAreRefused) {
    EXPECT_EQ(importBreaching(laughs("ha") + "<phone>\n<schema name='&e10;'/></phone>"), "");
    EXPECT_EQ(collection.getSchema("&e10;"), nullptr);
}

TEST_F(Entities, BillionLaughsWhereNoTextIsLookedAtAreRefused) {
    EXPECT_EQ(importBreaching(laughs("ha") + "<phone>\n&e10;</phone>"), "");
}

// As parameter entities, the document type itself grows.
TEST_F(Entities, BillionLaughsInTheDocumentTypeAreRefused) {
    std::string text = "<!DOCTYPE phone [\n<!ENTITY % p0 \"ha\">\n";
    for (int i = 1; i <= 10; ++i) {
        std::string const inner = "&#37;p" + std::to_string(i - 1) + ";";
        text += "<!ENTITY % q" + std::to_string(i) + " \"<!ENTITY &#37; p" + std::to_string(i) +
                " '" + Feed::repeated(inner, 10) + "'>\">\n%q" + std::to_string(i) + ";\n";
    }
    text += "<!ENTITY e \"%p10;\">\n]>\n<phone>&e;</phone>";
    PeakBytes const peak;
    collection.importXML(text.c_str());
    EXPECT_EQ(log.take(), errorAt(25, 10, "undefined entity")) << "parameter entities are not read";
    EXPECT_LT(peak.count(), kBound);
}

// One large entity, and many references to it: the square of the file's size.
TEST_F(Entities, QuadraticGrowthIsRefused) {
    std::string const large(50000, 'x');
    std::string const incidents = importBreaching(
        "<!DOCTYPE phone [<!ENTITY e '" + large + "'>]>\n<phone><document name='d'>\n<itemValue>" +
        Feed::repeated("&e;", 50000) + "</itemValue></document></phone>");
    EXPECT_EQ(incidents, errorAt(3, 14, "text is too long in element <itemValue>"));
}

// Elements count like text.
TEST_F(Entities, ElementsInEntitiesAreRefusedLikeText) {
    std::string const incidents =
        importBreaching(laughs("<x></x>") + "<phone>\n<x>&e10;</x></phone>");
    EXPECT_EQ(incidents, notRecognisedAt(15, 0, "x", {"collection", "schema", "document"}, "phone",
                                         "root-node"));
}

// What stays within the limits is expanded: every value may have its entities.
TEST_F(Entities, ModestGrowthIsImported) {
    std::string const text = "<!DOCTYPE phone [<!ENTITY e '" + std::string(6000, 'x') +
                             "'>]>\n<phone><document name='d'><itemValue>" +
                             Feed::repeated("&e;", 10) + "</itemValue></document></phone>";
    collection.importXML(text.c_str());
    EXPECT_EQ(log.take(), "");
    EXPECT_EQ(valuesOf(collection.getDocument("d")), "itemValue=" + std::string(60000, 'x') + '*');
}

// An entity within itself, and one that is in another file: nothing is opened.
TEST_F(Entities, RecursiveAndExternalEntitiesAreNotFollowed) {
    struct {
        char const* declaration;
        std::string incidents;
    } const rows[] = {
        {"<!ENTITY e '&e;'>", errorAt(2, 14, "recursive entity reference")},
        {"<!ENTITY e '&f;'><!ENTITY f '&e;'>", errorAt(2, 14, "recursive entity reference")},
        {"<!ENTITY e SYSTEM 'file:///etc/passwd'>", ""},
        {"<!ENTITY e PUBLIC 'e' 'http://127.0.0.1/'>", ""},
        {"<!ENTITY % p SYSTEM 'file:///etc/passwd'>%p;", errorAt(2, 17, "undefined entity")},
    };
    for (auto const& row : rows) {
        collection.importXML((std::string("<!DOCTYPE phone [") + row.declaration +
                              "]>\n<phone><x>text&e;</x></phone>")
                                 .c_str());
        std::string const incidents = log.take();
        std::string const warnings =
            notRecognisedAt(2, 7, "x", {"collection", "schema", "document"}, "phone", "root-node");
        EXPECT_EQ(incidents, warnings + row.incidents) << row.declaration;
    }
}
