// What an error in a definition costs: nothing behind it is handled until a warning lifts it, while
// end tags go on closing what is open.

#include <gtest/gtest.h>

#include <string>

#include "tests/collection/import_store.h"

namespace {

constexpr char kMissing[] = "missing name attribute";

// The warnings about an item where only containers may stand.
std::string itemOutsideSchema(int line) {
    return notRecognisedAt(line, 0, "item", {"collection", "schema", "document"}, "phone",
                           "root-node");
}

} // namespace

// The element behind the error is not opened, but its end tag closes the schema; the one behind
// that is found outside of it.
TEST(DefinitionRecovery, ElementsBehindAnErrorFallOutOfTheirSchema) {
    ImportStore store;
    EXPECT_EQ(store.import("<phone><schema name='s'>\n"
                           "<item name='a' type='int'/>\n"
                           "<item/>\n"
                           "<item name='b' type='int'/>\n"
                           "<item name='c' type='int'/>\n"
                           "<item name='d' type='int'/>\n"
                           "</schema>\n"
                           "</phone>"),
              errorAt(3, 0, kMissing) + itemOutsideSchema(5) + itemOutsideSchema(6) +
                  unwoundAt(8, 0, "phone"));
    EXPECT_EQ(store.shape(), "a:int");
}

// A schema behind an error is lost with all its content; what stands behind that is at the root.
TEST(DefinitionRecovery, SchemaBehindAnErrorIsLost) {
    ImportStore store;
    EXPECT_EQ(store.import("<phone>\n"
                           "<schema name=''></schema>\n"
                           "<schema name='t'></schema>\n"
                           "<schema name='u'>\n"
                           "</schema>\n"
                           "</phone>"),
              "3 {zor_XMLParse: line 2, column 0 }name must not be blank\n"
              "2 {zor_XMLParse: line 4, column 0 }element not recognised in this context "
              "<schema>\n"
              "2 {zor_XMLParse: line 4, column 0 }Element is 'schema'. Possible valid elements are "
              "'phone' . outerContext->currentElement->elementName = 'root-node'\n"
              "2 {zor_XMLParse: line 6, column 0 }mainEndElementHandler name='phone' outerContext "
              "is NULL meaning this is the top level ZorXmlParser owned context which we should "
              "_not_ be deleting!\n");
    EXPECT_EQ(store.shape("t"), "no schema");
    EXPECT_EQ(store.shape("u"), "no schema");
}

// An attribute that is not accepted is a warning, and its own element is handled already.
TEST(DefinitionRecovery, WarningBringsTheImportBack) {
    ImportStore store;
    EXPECT_EQ(
        store.import("<phone><schema name='s'>\n"
                     "<item/>\n"
                     "<item name='a' type='int' size='3'/>\n"
                     "<item name='b' type='int'/>\n"
                     "<branch name='c' occurrences='x'/>\n"
                     "<foo/>\n"
                     "<item name='d' type='int'/>\n"
                     "</schema>\n"
                     "</phone>"),
        errorAt(2, 0, kMissing) + warningAt(3, 0, "attribute not valid in this context (size)") +
            errorAt(5, 0, "value of occurrences must be an integer greater than 0") +
            notRecognisedAt(6, 0, "foo", {"branch", "item", "range", "choice"}, "schema", "phone"));
    EXPECT_EQ(store.shape(), "a:int b:int d:int");
}

// The warning about a schema that exists already is one, too, but it comes too late: the element
// it is about was not opened.
TEST(DefinitionRecovery, ErrorHidesTheWarningOfASchema) {
    ImportStore store;
    EXPECT_EQ(store.define(""), "");
    EXPECT_EQ(store.import("<phone><schema/>\n<schema name='s'/>\n</phone>"),
              errorAt(1, 7, kMissing) + unwoundAt(3, 0, "phone"));
}

// Incidents without the parser's context are none of its errors.
TEST(DefinitionRecovery, IncidentOfAnotherContextStopsNothing) {
    ImportStore store;
    EXPECT_EQ(store.import("<phone>\n"
                           "<document name='d' x='1'><itemValue occurrence='2'>5</itemValue>"
                           "<itemValue>6</itemValue></document>\n"
                           "</phone>"),
              warningAt(2, 0, "attribute not valid in this context (x)") +
                  errorAt(2, 25, "Too many occurrences of element <itemValue>") +
                  unwoundAt(3, 0, "phone"));
    EXPECT_EQ(store.import("<phone>\n"
                           "<document name='e'><itemValue occurrence='3'>5</itemValue>"
                           "<itemValue occurrence='1'>6</itemValue></document>\n"
                           "</phone>"),
              plainError("setStringNodeValue: occurrence is out of range"));
    EXPECT_EQ(store.values("e"), "itemValue=6*");
}

// Every error counts for one import only.
TEST(DefinitionRecovery, NextImportStartsAfresh) {
    ImportStore store;
    EXPECT_EQ(store.import("<phone><schema/></phone>"), errorAt(1, 7, kMissing));
    EXPECT_EQ(store.define("<item name='a' type='int'/>"), "");
    EXPECT_EQ(store.shape(), "a:int");
}

// Half-built nodes and ranges of an element whose end is not handled are dropped.
TEST(DefinitionRecovery, PendingNodeOfAnErrorInsideItIsDropped) {
    for (char const* const element :
         {"<branch name='n'>", "<item name='n' type='int' default='5'>",
          "<range name='n' baseType='int' minValue='1' maxValue='2'>"}) {
        std::string const name = std::string(element).substr(1, std::string(element).find(' ') - 1);
        ImportStore store;
        // Expat's own error ends the input inside the element.
        EXPECT_EQ(store.import(std::string("<phone><schema name='s'>\n") + element + "\n</oops>"),
                  errorAt(3, 2, "mismatched tag"))
            << element;
        EXPECT_EQ(store.shape(), "") << element;
        EXPECT_EQ(store.types(), "") << element;
        // Nothing of it turns up in the next element of its kind.
        EXPECT_EQ(store.import("<phone><schema name='t'><" + name + " x='1'>\n</" + name +
                               "></schema></phone>"),
                  warningAt(1, 24, "attribute not valid in this context (x)") +
                      errorAt(1, 24, kMissing))
            << element;
        EXPECT_EQ(store.shape("t"), "") << element;
        EXPECT_EQ(store.types("t"), "") << element;
    }
}

// All text between elements is ignored, in whatever form.
TEST(DefinitionRecovery, TextBetweenElementsIsIgnored) {
    ImportStore store;
    EXPECT_EQ(store.import("<?xml version='1.0'?><!-- a -->\n<phone> a <schema name='s'> b "
                           "<![CDATA[<item/>]]><item name='a' type='int'> c &amp; </item>"
                           "<?pi <item/>?><!-- <item/> --></schema></phone>\n<!-- z -->"),
              "");
    EXPECT_EQ(store.shape(), "a:int");
}
