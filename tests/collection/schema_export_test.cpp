// Schemas in the definition language.

#include <gtest/gtest.h>

#include <vector>

#include "tests/collection/objects.h"
#include "tests/support/checked_semaphore.h"
#include "tests/support/incidents.h"
#include "tests/types/recording_writer.h"
#include "zor/collection.h"

namespace {

class SchemaExport : public testing::Test {
protected:
    ZorSchemaNode* item(ZorSchemaNode* parent, char const* name, short occurrences,
                        char const* type, char const* defaultText = nullptr) {
        return schema->makeDataNode(parent, name, occurrences, schema->getDataType(type),
                                    defaultText);
    }

    ZorSchemaNode* branch(ZorSchemaNode* parent, char const* name, short occurrences) {
        return schema->makeBranchNode(parent, name, occurrences);
    }

    // What stands between the tags of the schema.
    std::string body() {
        std::string whole = written([this](ZorDataWriter* writer) { schema->exportXML(writer); });
        std::string const start = "<schema name=\"phone\">";
        std::string const end = "</schema>";
        if (whole.size() < start.size() + end.size()) return whole;
        EXPECT_EQ(whole.substr(0, start.size()), start);
        EXPECT_EQ(whole.substr(whole.size() - end.size()), end);
        return whole.substr(start.size(), whole.size() - start.size() - end.size());
    }

    IncidentLog log;
    ZorCollection store{"cfg"};
    ZorSchema* const schema = store.makeSchema("phone");
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

TEST_F(SchemaExport, WithoutNodesIsOneElement) {
    EXPECT_EQ(written([this](ZorDataWriter* writer) { schema->exportXML(writer); }),
              "<schema name=\"phone\"></schema>");
}

TEST_F(SchemaExport, WritesEverythingBackToBack) {
    ZorDataType* const mode = zor_choiceMake("mode");
    zor_choiceAddOption(mode, "on");
    zor_choiceAddOption(mode, "off");
    schema->addDataType(mode);
    item(root, "volume", 1, "int", "5");
    ZorSchemaNode* const net = branch(root, "net", 1);
    ZorSchemaNode* const eth = branch(net, "eth", 2);
    item(eth, "mode", 3, "mode", "off");
    item(net, "host", 1, "domain_name");
    item(root, "last", 4, "bool");
    EXPECT_EQ(written([this](ZorDataWriter* writer) { schema->exportXML(writer); }),
              "<schema name=\"phone\">"
              "<choice name=\"mode\"><option>on</option><option>off</option></choice>"
              "<item name=\"volume\" type=\"int\" default=\"5\"></item>"
              "<branch name=\"net\"></branch>"
              "<branch name=\"eth\" occurrences=\"2\" parent=\"/net\"></branch>"
              "<item name=\"mode\" type=\"mode\" default=\"off\" occurrences=\"3\" "
              "parent=\"/net/eth\"></item>"
              "<item name=\"host\" type=\"domain_name\" parent=\"/net\"></item>"
              "<item name=\"last\" type=\"bool\" occurrences=\"4\"></item>"
              "</schema>");
}

TEST_F(SchemaExport, WritesADefaultWhenTheNodeHasOne) {
    item(root, "none", 1, "int");
    item(root, "empty", 1, "string", "");
    item(root, "zero", 1, "int", "0");
    EXPECT_EQ(body(), "<item name=\"none\" type=\"int\"></item>"
                      "<item name=\"empty\" type=\"string\" default=\"\"></item>"
                      "<item name=\"zero\" type=\"int\" default=\"0\"></item>");
}

// The default is written as its type writes values.
TEST_F(SchemaExport, WritesDefaultsInTheFormOfTheirTypes) {
    item(root, "a", 1, "int", "+007");
    item(root, "b", 1, "float", "1.50");
    item(root, "c", 1, "ip_address", "010.1.02.3");
    item(root, "d", 1, "bool", "TRUE"); // not valid, and so false
    EXPECT_EQ(body(), "<item name=\"a\" type=\"int\" default=\"7\"></item>"
                      "<item name=\"b\" type=\"float\" default=\"1.5\"></item>"
                      "<item name=\"c\" type=\"ip_address\" default=\"10.1.2.3\"></item>"
                      "<item name=\"d\" type=\"bool\" default=\"false\"></item>");
}

// A count of 2 or more is written; 1 is implicit, and below 1 there is nothing to say.
TEST_F(SchemaExport, WritesOccurrencesFromTwoOn) {
    struct {
        short occurrences;
        char const* attribute;
    } const cases[] = {
        {-32768, ""},
        {-1, ""},
        {0, ""},
        {1, ""},
        {2, " occurrences=\"2\""},
        {32767, " occurrences=\"32767\""},
    };
    std::string expected;
    for (auto const& counted : cases) {
        std::string const name = "n" + std::to_string(counted.occurrences);
        item(root, name.c_str(), counted.occurrences, "int");
        branch(root, ("b" + name).c_str(), counted.occurrences);
        expected += "<item name=\"" + name + "\" type=\"int\"" + counted.attribute + "></item>";
        expected += "<branch name=\"b" + name + "\"" + counted.attribute + "></branch>";
    }
    EXPECT_EQ(body(), expected);
}

// The path is made of all names from below the root down to the parent, each behind a slash.
TEST_F(SchemaExport, NamesParentsByTheirWholePaths) {
    ZorSchemaNode* parent = root;
    std::string path;
    std::string expected;
    for (int depth = 1; depth <= 40; ++depth) {
        std::string const name = "level" + std::to_string(depth);
        parent = branch(parent, name.c_str(), 1);
        expected += "<branch name=\"" + name + "\"" +
                    (path.empty() ? "" : " parent=\"" + path + "\"") + "></branch>";
        path += "/" + name;
    }
    item(parent, "deepest", 1, "int");
    expected += "<item name=\"deepest\" type=\"int\" parent=\"" + path + "\"></item>";
    EXPECT_EQ(body(), expected);
    store.importXML(("<cfg><schema name=\"again\">" + expected + "</schema></cfg>").c_str());
    EXPECT_STREQ(nodeAt(store.getSchema("again"), (path + "/deepest").c_str())->getName(),
                 "deepest");
}

// Children follow behind the closed branch as siblings, in the order they were made.
TEST_F(SchemaExport, WritesNodesDepthFirstInOrderOfMaking) {
    ZorSchemaNode* const z = branch(root, "z", 1);
    ZorSchemaNode* const a = branch(root, "a", 1);
    item(a, "y", 1, "int");
    item(z, "x", 1, "int");
    ZorSchemaNode* const b = branch(z, "b", 1);
    item(z, "a", 1, "int");
    item(b, "c", 1, "int");
    EXPECT_EQ(body(), "<branch name=\"z\"></branch>"
                      "<item name=\"x\" type=\"int\" parent=\"/z\"></item>"
                      "<branch name=\"b\" parent=\"/z\"></branch>"
                      "<item name=\"c\" type=\"int\" parent=\"/z/b\"></item>"
                      "<item name=\"a\" type=\"int\" parent=\"/z\"></item>"
                      "<branch name=\"a\"></branch>"
                      "<item name=\"y\" type=\"int\" parent=\"/a\"></item>");
}

// Types come first, in the order of the schema's own list; a type without a definition to write,
// and the types of the collection, are not written.
TEST_F(SchemaExport, WritesItsOwnTypesInListOrder) {
    ZorDataType* const integer = ZorBuiltIn::getDataType("int");
    for (int i = 0; i < 30; ++i) {
        std::string const name = "type" + std::to_string(i);
        if (i % 3 == 0) {
            ZorDataType* const choice = zor_choiceMake(name.c_str());
            zor_choiceAddOption(choice, "yes");
            schema->addDataType(choice);
        } else if (i % 3 == 1) {
            schema->addDataType(zor_rangeMake(integer, name.c_str(), "1", "9"));
        } else {
            schema->addDataType(zor_derivedTypeMake(name.c_str(), nullptr, nullptr, nullptr,
                                                    nullptr, nullptr, integer, nullptr));
        }
    }
    store.addDataType(zor_choiceMake("shared"));
    item(root, "derived", 1, "type2");

    std::string expected;
    ZorListNode* const types = schema->getDataTypes();
    for (ZorListNode const* node = types; node; node = node->next) {
        auto* const type = static_cast<ZorDataType*>(node->value);
        std::string const name = zor_dataTypeName(type);
        if (zor_datatypeIsChoice(type)) {
            expected += "<choice name=\"" + name + "\"><option>yes</option></choice>";
        } else if (zor_datatypeIsRange(type)) {
            expected +=
                "<range name=\"" + name + "\" baseType=\"int\" minValue=\"1\" maxValue=\"9\"/>";
        }
    }
    zor_listDelete(types);
    EXPECT_EQ(body(), expected + "<item name=\"derived\" type=\"type2\"></item>");
}

// A choice takes a write for each tag and option, a range a single one.
TEST_F(SchemaExport, WritesTypesInTheirOwnPieces) {
    ZorDataType* const mode = zor_choiceMake("mode");
    zor_choiceAddOption(mode, "on");
    zor_choiceAddOption(mode, "off");
    schema->addDataType(mode);
    schema->addDataType(zor_rangeMake(ZorBuiltIn::getDataType("uint"), "port", "1", "65535"));
    RecordingWriter writer;
    schema->exportXML(&writer);
    std::string const choice = "<choice name=\"mode\">|<option>on</option>|<option>off</option>|"
                               "</choice>|";
    std::string const range =
        "<range name=\"port\" baseType=\"uint\" minValue=\"1\" maxValue=\"65535\"/>|";
    std::string pieces;
    for (std::size_t i = 1; i + 1 < writer.writes.size(); ++i) pieces += writer.writes[i] + '|';
    ZorListNode* const types = schema->getDataTypes();
    bool const choiceFirst = zor_datatypeIsChoice(static_cast<ZorDataType*>(types->value));
    zor_listDelete(types);
    EXPECT_EQ(pieces, choiceFirst ? choice + range : range + choice);
}

// Kept: names, types, defaults and paths are written as they are, so that a definition must not
// carry markup in them.
TEST_F(SchemaExport, EscapesNothing) {
    ZorDataType* const type = zor_choiceMake("t<1>");
    zor_choiceAddOption(type, "a&b");
    schema->addDataType(type);
    ZorSchemaNode* const odd = branch(root, "b'<\"", 1);
    item(odd, "i&", 1, "t<1>", "a&b");
    EXPECT_EQ(body(), "<choice name=\"t<1>\"><option>a&b</option></choice>"
                      "<branch name=\"b'<\"\"></branch>"
                      "<item name=\"i&\" type=\"t<1>\" default=\"a&b\" parent=\"/b'<\"\"></item>");
    ZorSchema other(&store, "<&\"'>");
    EXPECT_EQ(written([&other](ZorDataWriter* writer) { other.exportXML(writer); }),
              "<schema name=\"<&\"'>\"></schema>");
}

// Lines have no length limit.
TEST_F(SchemaExport, WritesLongNamesWhole) {
    std::string const name(5000, 'n');
    std::string const text(60000, 't');
    ZorSchemaNode* const parent = branch(root, name.c_str(), 2);
    item(parent, "i", 1, "string", text.c_str());
    ZorDataType* const choice = zor_choiceMake(name.c_str());
    zor_choiceAddOption(choice, text.c_str());
    schema->addDataType(choice);
    EXPECT_EQ(body(), "<choice name=\"" + name + "\"><option>" + text + "</option></choice>" +
                          "<branch name=\"" + name + "\" occurrences=\"2\"></branch>" +
                          "<item name=\"i\" type=\"string\" default=\"" + text + "\" parent=\"/" +
                          name + "\"></item>");
}

// One node and what follows it, without the lock.
TEST_F(SchemaExport, WritesOneNode) {
    ZorSchemaNode* const net = branch(root, "net", 2);
    ZorSchemaNode* const host = item(net, "host", 1, "string");
    ZorSchemaNode* const last = item(root, "last", 1, "int");
    std::string const hostText = "<item name=\"host\" type=\"string\" parent=\"/net\"></item>";
    std::string const netText = "<branch name=\"net\" occurrences=\"2\"></branch>" + hostText;
    std::string const lastText = "<item name=\"last\" type=\"int\"></item>";
    auto const node = [this](ZorSchemaNode* which) {
        return written([&](ZorDataWriter* writer) { schema->exportSchemaNode(writer, which); });
    };
    auto const children = [this](ZorSchemaNode* which) {
        return written([&](ZorDataWriter* writer) { schema->exportChildNodes(writer, which); });
    };
    schema->lock.take(-1);
    EXPECT_EQ(node(host), hostText);
    EXPECT_EQ(node(net), netText);
    EXPECT_EQ(node(last), lastText);
    EXPECT_EQ(node(root), "<schema name=\"phone\">" + netText + lastText + "</schema>");
    EXPECT_EQ(children(host), "");
    EXPECT_EQ(children(net), hostText);
    EXPECT_EQ(children(root), netText + lastText);
    schema->lock.give();
}

// A node that hangs on no schema names its parents as far as they go.
TEST_F(SchemaExport, WritesALooseNode) {
    ZorSchemaNode net(ZorSchemaNode::BRANCH_NODE, "net");
    ZorSchemaNode port(ZorSchemaNode::DATA_NODE, "port");
    port.dataType = ZorBuiltIn::getDataType("uint");
    port.flags = ZorSchemaNode::noDefault;
    port.parent = &net;
    EXPECT_EQ(written([&](ZorDataWriter* writer) { schema->exportSchemaNode(writer, &port); }),
              "<item name=\"port\" type=\"uint\" parent=\"/net\"></item>");
}

TEST_F(SchemaExport, AppendsToTheWriter) {
    ZorStringWriter writer;
    writer.writeData("before ", -1);
    schema->exportXML(&writer);
    schema->exportXML(&writer);
    EXPECT_EQ(writer.getValue(),
              "before <schema name=\"phone\"></schema><schema name=\"phone\"></schema>");
}

// The schema's lock is held from the first piece to the last, and no other.
TEST_F(SchemaExport, HoldsTheSchemasLock) {
    ZorDataType* const mode = zor_choiceMake("mode");
    zor_choiceAddOption(mode, "on");
    schema->addDataType(mode);
    item(branch(root, "net", 2), "mode", 1, "mode");
    LockWitness witness(schema->lock);
    schema->exportXML(&witness);
    EXPECT_GE(witness.writes, 7);
    EXPECT_EQ(heldLocks(), 0);
}

// Documents change nothing about it.
TEST_F(SchemaExport, IsTheSameWhileDocumentsExist) {
    item(branch(root, "b", 2), "i", 2, "int", "1");
    item(root, "a", 1, "int");
    std::string const before = body();
    setAt(store.makeDocument("phone", "phone1"), "a", "5");
    EXPECT_EQ(body(), before);
}

TEST_F(SchemaExport, IsReadBackAsTheSameSchema) {
    ZorDataType* const mode = zor_choiceMake("mode");
    zor_choiceAddOption(mode, "on");
    schema->addDataType(mode);
    schema->addDataType(zor_rangeMake(ZorBuiltIn::getDataType("float"), "gain", "-1.5", "2"));
    ZorSchemaNode* const net = branch(branch(root, "net", 3), "eth", 2);
    item(net, "mode", 2, "mode", "on");
    item(net, "gain", 1, "gain");
    item(root, "eth", 1, "string", "two words");
    ZorCollection again("cfg");
    again.importXML(store.exportSchema("phone").c_str());
    EXPECT_EQ(again.exportSchema("phone"), store.exportSchema("phone"));
    EXPECT_EQ(nodeAt(again.getSchema("phone"), "net/eth/mode")->getTotalOccurrences(), 12);
}
