// Documents as XML: their changed values.

#include <gtest/gtest.h>

#include <vector>

#include "tests/collection/objects.h"
#include "tests/support/checked_semaphore.h"
#include "tests/support/incidents.h"
#include "zor/collection.h"

namespace {

class DocumentExport : public testing::Test {
protected:
    ZorSchemaNode* item(ZorSchemaNode* parent, char const* name, short occurrences,
                        char const* type = "string", char const* defaultText = nullptr) {
        return schema->makeDataNode(parent, name, occurrences, schema->getDataType(type),
                                    defaultText);
    }

    ZorSchemaNode* branch(ZorSchemaNode* parent, char const* name, short occurrences) {
        return schema->makeBranchNode(parent, name, occurrences);
    }

    ZorDocument* makeDocument() { return store.makeDocument("s", "d"); }

    static std::string textOf(ZorDocument* document) {
        return written([document](ZorDataWriter* writer) { document->exportXML(writer); });
    }

    // What stands between the tags of a document of the schema.
    static std::string body(ZorDocument* document) {
        std::string whole = textOf(document);
        std::string const start = "<document schema=\"s\" name=\"d\">";
        std::string const end = "</document>";
        if (whole.size() < start.size() + end.size()) return whole;
        EXPECT_EQ(whole.substr(0, start.size()), start);
        EXPECT_EQ(whole.substr(whole.size() - end.size()), end);
        return whole.substr(start.size(), whole.size() - start.size() - end.size());
    }

    // The document in the XML, imported into a store with the same schema.
    std::string importedAgain(ZorDocument* document) {
        ZorCollection again("cfg");
        again.importXML(store.exportSchema("s").c_str());
        again.importXML(("<cfg>" + textOf(document) + "</cfg>").c_str());
        return textOf(again.getDocument("d"));
    }

    IncidentLog log;
    ZorCollection store{"cfg"};
    ZorSchema* const schema = store.makeSchema("s");
    ZorSchemaNode* const root = schema->getRootNode();
};

// Fails the test when something is written while the lock is not held.
class LockWitness : public ZorDataWriter {
public:
    explicit LockWitness(Semaphore& expected) : lock(expected) {}
    void writeData(char const*, int) override {
        ++writes;
        EXPECT_EQ(heldLocks(), 1);
        lock.give(); // fails when it is another one that is held
        lock.take(-1);
    }

    int writes = 0;

private:
    Semaphore& lock;
};

} // namespace

TEST_F(DocumentExport, WithoutChangesIsStartAndEndTag) {
    item(root, "a", 3, "int", "5");
    item(branch(root, "b", 2), "c", 2);
    EXPECT_EQ(textOf(makeDocument()), "<document schema=\"s\" name=\"d\"></document>");
    EXPECT_EQ(textOf(store.makeDocument("DefaultSchema", "note")),
              "<document name=\"note\"></document>");
}

TEST_F(DocumentExport, OfTheDefaultSchemaNamesNoSchema) {
    ZorDocument* const note = store.makeDocument("DefaultSchema", "note");
    setAt(note, "itemValue", "a<b");
    EXPECT_EQ(textOf(note), "<document name=\"note\"><itemValue>a&lt;b</itemValue></document>");
}

// An occurrence attribute stands where an occurrence before was left out, and only there.
TEST_F(DocumentExport, NumbersOccurrencesBehindGaps) {
    item(root, "a", 4, "int");
    struct {
        char const* set; // the occurrences set, from 1
        char const* expected;
    } const cases[] = {
        {"", ""},
        {"1", "<a>1</a>"},
        {"2", "<a occurrence=\"2\">2</a>"},
        {"3", "<a occurrence=\"3\">3</a>"},
        {"4", "<a occurrence=\"4\">4</a>"},
        {"12", "<a>1</a><a>2</a>"},
        {"13", "<a>1</a><a occurrence=\"3\">3</a>"},
        {"14", "<a>1</a><a occurrence=\"4\">4</a>"},
        {"23", "<a occurrence=\"2\">2</a><a>3</a>"},
        {"24", "<a occurrence=\"2\">2</a><a occurrence=\"4\">4</a>"},
        {"34", "<a occurrence=\"3\">3</a><a>4</a>"},
        {"123", "<a>1</a><a>2</a><a>3</a>"},
        {"124", "<a>1</a><a>2</a><a occurrence=\"4\">4</a>"},
        {"134", "<a>1</a><a occurrence=\"3\">3</a><a>4</a>"},
        {"234", "<a occurrence=\"2\">2</a><a>3</a><a>4</a>"},
        {"1234", "<a>1</a><a>2</a><a>3</a><a>4</a>"},
    };
    for (auto const& gaps : cases) {
        ZorDocument* const document = makeDocument();
        for (char const* digit = gaps.set; *digit; ++digit) {
            std::string const number(1, *digit);
            setAt(document, ("a[" + number + "]").c_str(), number.c_str());
        }
        EXPECT_EQ(body(document), gaps.expected) << "set " << gaps.set;
        EXPECT_EQ(importedAgain(document), textOf(document)) << "set " << gaps.set;
        store.deleteDocument("d");
    }
}

// The same for branches, whose occurrences count as written when anything in them was.
TEST_F(DocumentExport, NumbersBranchesBehindGaps) {
    ZorSchemaNode* const line = branch(root, "line", 3);
    item(branch(line, "lamp", 2), "colour", 2);
    ZorDocument* const document = makeDocument();
    setAt(document, "line[2]/lamp[2]/colour[2]", "red");
    setAt(document, "line[3]/lamp[1]/colour[1]", "green");
    EXPECT_EQ(body(document), "<line occurrence=\"2\"><lamp occurrence=\"2\">"
                              "<colour occurrence=\"2\">red</colour></lamp></line>"
                              "<line><lamp><colour>green</colour></lamp></line>");
    EXPECT_EQ(importedAgain(document), textOf(document));
}

// Counting starts at 0 for each child and for each occurrence of its parent.
TEST_F(DocumentExport, CountsAnewInEveryParent) {
    ZorSchemaNode* const line = branch(root, "line", 2);
    item(line, "a", 2, "int");
    item(line, "b", 2, "int");
    item(root, "a", 2, "int");
    ZorDocument* const document = makeDocument();
    setAt(document, "line[1]/a[1]", "1");
    setAt(document, "line[1]/b[2]", "2");
    setAt(document, "line[2]/a[2]", "3");
    setAt(document, "line[2]/b", "4");
    setAt(document, "a[2]", "5");
    EXPECT_EQ(body(document),
              "<line><a>1</a><b occurrence=\"2\">2</b></line>"
              "<line><a occurrence=\"2\">3</a><b>4</b><b>4</b></line><a occurrence=\"2\">5</a>");
    EXPECT_EQ(importedAgain(document), textOf(document));
}

TEST_F(DocumentExport, LeavesOutBranchesWithoutChanges) {
    ZorSchemaNode* const used = branch(root, "used", 1);
    item(branch(used, "empty", 2), "a", 1, "int", "1");
    item(used, "b", 1, "int", "2");
    item(branch(root, "unused", 2), "c", 1, "int", "3");
    branch(root, "bare", 2);
    ZorDocument* const document = makeDocument();
    setAt(document, "used/b", "9");
    EXPECT_EQ(body(document), "<used><b>9</b></used>");
}

// In the order in which the nodes were made, not by name.
TEST_F(DocumentExport, WritesChildrenInOrderOfMaking) {
    item(root, "z", 1, "int");
    item(branch(root, "m", 1), "n", 1, "int");
    item(root, "a", 1, "int");
    ZorDocument* const document = makeDocument();
    for (char const* const path : {"a", "m/n", "z"}) setAt(document, path, "1");
    EXPECT_EQ(body(document), "<z>1</z><m><n>1</n></m><a>1</a>");
}

// Only changed values: a default that was set counts as one, a restored default does not.
TEST_F(DocumentExport, WritesWhatWasSet) {
    item(root, "a", 1, "int", "5");
    item(root, "b", 1, "int", "5");
    item(root, "c", 1, "int", "5");
    ZorDocument* const document = makeDocument();
    setAt(document, "a", "5");
    setAt(document, "b", "6");
    document->restoreDefault(nodeAt(schema, "b"), 0);
    EXPECT_EQ(body(document), "<a>5</a>");
    document->restoreDefaults(); // these count as set
    EXPECT_EQ(body(document), "<a>5</a><b>5</b><c>5</c>");
}

TEST_F(DocumentExport, LeavesOutWhatASetterWithoutMarkWrote) {
    item(root, "a", 1, "int", "5");
    ZorDocument* const document = makeDocument();
    document->nonBlockingSetStringNodeValue(nodeAt(schema, "a"), 0, "6");
    EXPECT_EQ(valuesAt(document, "a"), "6");
    EXPECT_EQ(body(document), "");
}

// An emptied value is written without content, an empty text as two double quotes.
TEST_F(DocumentExport, TellsNoValueFromAnEmptyText) {
    item(root, "a", 2, "string", "x");
    ZorDocument* const document = makeDocument();
    setAt(document, "a[1]", nullptr);
    setAt(document, "a[2]", "");
    EXPECT_EQ(body(document), "<a></a><a>\"\"</a>");
    EXPECT_EQ(importedAgain(document), textOf(document));
    store.importXML("<cfg><document schema=\"s\" name=\"e\"><a></a><a>\"\"</a></document></cfg>");
    EXPECT_EQ(valuesAt(store.getDocument("e"), "a"), "(null)|");
}

TEST_F(DocumentExport, EscapesValues) {
    item(root, "a", 1);
    ZorDocument* const document = makeDocument();
    struct {
        char const* value;
        char const* content;
    } const cases[] = {
        {"a<b & 'c'", "a&lt;b &amp; &apos;c&apos;"},
        {"<>&'\"", "&lt;&gt;&amp;&apos;&quot;"},
        {"&amp;", "&amp;amp;"},
        {"]]>", "]]&gt;"},
        {" kept\tas\nis ", " kept\tas\nis "},
        {"Zo\xC3\xAB", "Zo\xC3\xAB"},
        {"\"", "&quot;"},
        {"\"\"\"", "&quot;&quot;&quot;"},
    };
    for (auto const& escaped : cases) {
        setAt(document, "a", escaped.value);
        EXPECT_EQ(body(document), std::string("<a>") + escaped.content + "</a>");
        EXPECT_EQ(importedAgain(document), textOf(document)) << escaped.value;
    }
}

// Kept: two double quotes are how an empty text is written, and read back as one.
TEST_F(DocumentExport, TwoQuotesReadBackAsTheEmptyText) {
    item(root, "a", 1);
    ZorDocument* const document = makeDocument();
    setAt(document, "a", "\"\"");
    EXPECT_EQ(body(document), "<a>&quot;&quot;</a>");
    EXPECT_EQ(importedAgain(document), "<document schema=\"s\" name=\"d\"><a>\"\"</a></document>");
}

TEST_F(DocumentExport, WritesValuesInTheFormOfTheirTypes) {
    item(root, "i", 1, "int");
    item(root, "u", 1, "uint");
    item(root, "b", 1, "bool");
    item(root, "f", 1, "float");
    item(root, "d", 1, "digit_string");
    item(root, "p", 1, "ip_address");
    item(root, "m", 1, "ip_mask");
    ZorDocument* const document = makeDocument();
    setAt(document, "i", "-007");
    document->setUIntNodeValue(nodeAt(schema, "u"), 0, 4294967295UL);
    document->setIntNodeValue(nodeAt(schema, "b"), 0, 1);
    document->setFloatNodeValue(nodeAt(schema, "f"), 0, 0.1);
    setAt(document, "d", "+1 #*");
    document->setUIntNodeValue(nodeAt(schema, "p"), 0, 0xC0A80001UL);
    setAt(document, "m", "255.255.255.0");
    EXPECT_EQ(body(document), "<i>-7</i><u>4294967295</u><b>true</b><f>0.1</f><d>+1 #*</d>"
                              "<p>192.168.0.1</p><m>255.255.255.0</m>");
}

// A text as long as a value can be, and one that is longer once its characters are escaped.
TEST_F(DocumentExport, WritesTheLongestValuesWhole) {
    item(root, "a", 1);
    ZorDocument* const document = makeDocument();
    std::string const plain(65534, 'x');
    setAt(document, "a", plain.c_str());
    EXPECT_EQ(body(document), "<a>" + plain + "</a>");
    EXPECT_EQ(importedAgain(document), textOf(document));

    std::string const special(65534, '&');
    setAt(document, "a", special.c_str());
    std::string escaped;
    for (std::size_t i = 0; i < special.size(); ++i) escaped += "&amp;";
    EXPECT_TRUE(body(document) == "<a>" + escaped + "</a>");
    EXPECT_TRUE(importedAgain(document) == textOf(document));
}

// Kept: names are written as they are.
TEST_F(DocumentExport, DoesNotEscapeNames) {
    ZorSchema* const odd = store.makeSchema("<s&\">");
    odd->makeDataNode(odd->getRootNode(), "i<", 1, odd->getDataType("int"), nullptr);
    ZorDocument* const document = store.makeDocument("<s&\">", "'d<&");
    setAt(document, "i<", "1");
    EXPECT_EQ(textOf(document), "<document schema=\"<s&\">\" name=\"'d<&\"><i<>1</i<></document>");
}

// The children of one node for one occurrence of it, and whether there was anything to write.
TEST_F(DocumentExport, WritesTheChildrenOfOneOccurrence) {
    ZorSchemaNode* const line = branch(root, "line", 2);
    ZorSchemaNode* const lamp = branch(line, "lamp", 2);
    ZorSchemaNode* const colour = item(lamp, "colour", 2);
    ZorDocument* const document = makeDocument();
    setAt(document, "line[2]/lamp[1]/colour[2]", "red"); // flat occurrence of the lamp: 2
    ZorStringWriter writer;
    document->lock.take(-1);
    EXPECT_FALSE(document->exportXML(lamp, 0, &writer));
    EXPECT_FALSE(document->exportXML(lamp, 1, &writer));
    EXPECT_FALSE(document->exportXML(lamp, 3, &writer));
    EXPECT_FALSE(document->exportXML(lamp, 4, &writer)); // there is none
    EXPECT_FALSE(document->exportXML(lamp, -1, &writer));
    EXPECT_FALSE(document->exportXML(line, 0, &writer));
    EXPECT_FALSE(document->exportXML(colour, 0, &writer));
    EXPECT_EQ(writer.getValue(), "");
    EXPECT_TRUE(document->exportXML(lamp, 2, &writer));
    EXPECT_EQ(writer.getValue(), "<colour occurrence=\"2\">red</colour>");
    EXPECT_TRUE(document->exportXML(line, 1, &writer));
    EXPECT_TRUE(document->exportXML(root, 0, &writer));
    document->lock.give();
    std::string const lampText = "<lamp><colour occurrence=\"2\">red</colour></lamp>";
    EXPECT_EQ(writer.getValue(), "<colour occurrence=\"2\">red</colour>" + lampText +
                                     "<line occurrence=\"2\">" + lampText + "</line>");
}

TEST_F(DocumentExport, AppendsToTheWriter) {
    item(root, "a", 1);
    ZorDocument* const document = makeDocument();
    setAt(document, "a", "1");
    ZorStringWriter writer;
    writer.writeData("before ", -1);
    document->exportXML(&writer);
    EXPECT_EQ(writer.getValue(), "before <document schema=\"s\" name=\"d\"><a>1</a></document>");
}

// The document's lock is held from the first piece to the last, and no other.
TEST_F(DocumentExport, HoldsTheDocumentsLock) {
    item(branch(root, "b", 2), "a", 2);
    ZorDocument* const document = makeDocument();
    setAt(document, "b/a", std::string(2000, 'x').c_str());
    LockWitness witness(document->lock);
    document->exportXML(&witness);
    EXPECT_GE(witness.writes, 4);
    EXPECT_EQ(heldLocks(), 0);
}

TEST_F(DocumentExport, PassesOverNodesWithoutCells) {
    item(root, "none", 0);
    ZorSchemaNode* const minus = branch(root, "minus", -3);
    item(minus, "a", 5);
    item(root, "b", 1);
    ZorDocument* const document = makeDocument();
    setAt(document, "b", "x");
    EXPECT_EQ(body(document), "<b>x</b>");
    ZorStringWriter writer;
    document->lock.take(-1);
    EXPECT_FALSE(document->exportXML(minus, 0, &writer)); // what is asked for by itself
    document->lock.give();
    EXPECT_EQ(writer.getValue(), "");
}

// Branches without values, however often they repeat, cost no time.
TEST_F(DocumentExport, PassesOverCountlessEmptyBranches) {
    ZorSchemaNode* parent = root;
    for (int depth = 0; depth < 10; ++depth) parent = branch(parent, "deep", 32767);
    item(root, "b", 1);
    ZorDocument* const document = makeDocument();
    setAt(document, "b", "x");
    EXPECT_EQ(body(document), "<b>x</b>");
}
