// The example's telephone from end to end: its files imported, queried, changed and exported.

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <set>
#include <string>

#include "tests/collection/objects.h"
#include "tests/support/incidents.h"
#include "zor/zor.h"

namespace {

std::string fileOf(char const* name) { return std::string(ZOR_EXAMPLES_DIR "/desk-phone/") + name; }

std::string contentOf(char const* name) {
    std::ifstream file(fileOf(name), std::ios::binary);
    EXPECT_TRUE(file) << "missing: " << fileOf(name);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// XML as export writes it: without declaration, comments and the white space between elements.
std::string condensed(std::string const& xml) {
    std::string out;
    for (std::size_t at = 0; at < xml.size();) {
        bool const betweenTags = out.empty() || out.back() == '>';
        if (xml.compare(at, 4, "<!--") == 0)
            at = xml.find("-->", at) + 3;
        else if (xml.compare(at, 2, "<?") == 0)
            at = xml.find("?>", at) + 2;
        else if (betweenTags && std::string(" \t\r\n").find(xml[at]) != std::string::npos)
            ++at;
        else
            out += xml[at++];
    }
    return out;
}

// The element from its start tag's first characters to its end tag.
std::string elementIn(std::string const& xml, std::string const& start, std::string const& end) {
    std::size_t const from = xml.find(start);
    std::size_t const to = xml.find(end, from);
    if (from == std::string::npos || to == std::string::npos) return "no " + start;
    return xml.substr(from, to + end.size() - from);
}

// The nodes of a schema element as export writes them: with an end tag.
std::string withEndTags(std::string xml, std::string const& name) {
    for (std::size_t at = xml.find("<" + name + " "); at != std::string::npos;
         at = xml.find("<" + name + " ", at + 1)) {
        std::size_t const end = xml.find("/>", at);
        if (end == xml.find('>', at) - 1) xml.replace(end, 2, "></" + name + ">");
    }
    return xml;
}

// What a schema element consists of: its types in alphabetical order, and its nodes.
std::string typesThenNodes(std::string const& element) {
    std::size_t const start = element.find('>') + 1;
    std::size_t const nodes = element.find("<item");
    std::set<std::string> types;
    for (std::size_t at = start; at < nodes;) {
        std::size_t end = element.find("/>", at) + 2;
        if (element[at + 1] == 'c') end = element.find("</choice>", at) + 9;
        types.insert(element.substr(at, end - at));
        at = end;
    }
    std::string out = element.substr(0, start) + '\n';
    for (std::string const& type : types) out += type + '\n';
    return out + element.substr(nodes);
}

// Where in the text something stands, as incidents say it.
std::string positionIn(std::string const& text, std::string const& wanted) {
    std::size_t const at = text.find(wanted);
    auto const line = std::count(text.begin(), text.begin() + static_cast<long>(at), '\n') + 1;
    std::size_t const column = at - (text.rfind('\n', at) + 1);
    return "line " + std::to_string(line) + ", column " + std::to_string(column) + ' ';
}

unsigned long answersAt(ZorDocument* document, char const* path) {
    return std::unique_ptr<ZorResultSet>(document->select(path))->getResultCount();
}

// Visits every node below `node`, parents first.
template <typename Visit>
void forEachNode(ZorSchemaNode* node, Visit const& visit) {
    for (ZorSchemaNode* child = node->getFirstChildNode(); child; child = child->getNextNode()) {
        visit(child);
        forEachNode(child, visit);
    }
}

int nodesOf(ZorSchema* schema) {
    int count = 0;
    forEachNode(schema->getRootNode(), [&count](ZorSchemaNode*) { ++count; });
    return count;
}

int changedIn(ZorDocument* document) {
    int count = 0;
    forEachNode(document->getRootNode(), [&](ZorSchemaNode* node) {
        for (int i = 0; node->isDataNode() && i < node->getTotalOccurrences(); ++i) {
            count += document->wasChanged(node, i);
        }
    });
    return count;
}

// Every value of the document, in the order of the schema.
std::string everyValueOf(ZorDocument* document) {
    std::string values;
    forEachNode(document->getRootNode(), [&](ZorSchemaNode* node) {
        for (int i = 0; node->isDataNode() && i < node->getTotalOccurrences(); ++i) {
            values += std::string(node->getName()) + '=' +
                      taken(document->getStringNodeValue(node, i)) + '\n';
        }
    });
    return values;
}

// A collection with the two files, in the order that the README gives.
class DeskPhone : public testing::Test {
protected:
    DeskPhone() {
        store.importFromFile(fileOf("definition.xml").c_str());
        store.importFromFile(fileOf("config.xml").c_str());
        EXPECT_EQ(log.take(), "");
        phone = store.getDocument("phone1");
        directory = store.getDocument("directory");
        note = store.getDocument("note");
    }

    void SetUp() override {
        ASSERT_NE(phone, nullptr);
        ASSERT_NE(directory, nullptr);
        ASSERT_NE(note, nullptr);
    }

    IncidentLog log;
    ZorCollection store{"deskphone"};
    ZorDocument* phone;
    ZorDocument* directory;
    ZorDocument* note;
};

} // namespace

TEST_F(DeskPhone, HasTheSchemasAndDocumentsOfItsReadme) {
    ZorSchema* const phoneSchema = store.getSchema("phone");
    ZorSchema* const directorySchema = store.getSchema("directory");
    EXPECT_EQ(nodesOf(phoneSchema), 128);
    EXPECT_EQ(phoneSchema->getRootNode()->countRequiredValueNodes(), 1198);
    EXPECT_EQ(nodesOf(directorySchema), 10);
    EXPECT_EQ(directorySchema->getRootNode()->countRequiredValueNodes(), 3504);
    EXPECT_EQ(phone->getRootNode(), phoneSchema->getRootNode());
    EXPECT_EQ(directory->getRootNode(), directorySchema->getRootNode());
    EXPECT_EQ(note->getRootNode(), store.getSchema("DefaultSchema")->getRootNode());
    EXPECT_EQ(changedIn(phone), 665);
    EXPECT_EQ(changedIn(directory), 1688);
    EXPECT_EQ(changedIn(note), 1);
}

// Every built-in type, choices and ranges: where the README says they are.
TEST_F(DeskPhone, UsesEveryKindOfType) {
    struct {
        char const* path;
        char const* type;
        char const* value;
    } const cases[] = {
        {"model", "string", "Desk Phone 48"},
        {"clockDrift", "int", "-14"},
        {"sip/sessionTimer", "uint", "900"},
        {"calls/waiting", "bool", "true"},
        {"temperatureLimit", "float", "62.5"},
        {"emergencyNumber", "digit_string", "112|911|(null)|999"},
        {"network/ipv4/address", "ip_address", "192.0.2.23"},
        {"network/ipv4/mask", "ip_mask", "255.255.255.128"},
        {"network/hostName", "domain_name", "reception-17.office.example.com"},
        {"provisioning/url", "url", "https://provision.example.com/desk?zone=c&lines=48"},
        {"network/ipv4/mode", "addressMode", "static"},
        {"audio/ringerVolume", "volume", "15"},
        {"network/vlan/id", "vlanId", "120|4094"},
        {"audio/microphoneGain", "gain", "-2.25"},
        {"zone", "zone", "C"},
        {"paging[10]/address", "multicastAddress", "239.255.255.255"},
    };
    for (auto const& typed : cases) {
        EXPECT_EQ(valuesAt(phone, typed.path), typed.value) << typed.path;
        std::unique_ptr<ZorResultSet> const found(phone->select(typed.path));
        EXPECT_STREQ(zor_dataTypeName(found->getDataType()), typed.type) << typed.path;
    }
    ZorSchema* const schema = store.getSchema("phone");
    for (char const* const name : {"addressMode", "codecName", "keyFunction"}) {
        EXPECT_TRUE(zor_datatypeIsChoice(schema->getDataType(name))) << name;
    }
    std::map<std::string, std::string> const bases = {{"volume", "int"},
                                                      {"vlanId", "uint"},
                                                      {"gain", "float"},
                                                      {"zone", "string"},
                                                      {"multicastAddress", "ip_address"}};
    for (auto const& range : bases) {
        ZorDataType* const base = zor_rangeBaseType(schema->getDataType(range.first.c_str()));
        ASSERT_NE(base, nullptr) << range.first;
        EXPECT_EQ(zor_dataTypeName(base), range.second) << range.first;
    }
}

// The other features of the README's table.
TEST_F(DeskPhone, HasTheValuesOfItsReadme) {
    struct {
        char const* path;
        char const* values;
    } const cases[] = {
        {"network/dns/server", "192.0.2.53|(null)|198.51.100.53"},
        {"account[4]/user", "(null)"},
        {"network/ipv4/route[2]/gateway", "(null)"},
        {"calls/forward/always", ""},
        {"display/idleText", "Empfang \xE2\x80\x93 R\xC3\xA9"
                             "ception|"},
        {"calls/dialRule[12]/prefix", ""},
        {"calls/dialRule[11]/prefix", "(null)"},
        {"provisioning/password", "7<a>\"b\"&'c'"},
        {"lineKey[4]/label", "Zo\xC3\xAB"},
        {"audio/equaliser[2]/band", "0|0|0|0|0"},
        {"audio/equaliser[3]/band", "0|4.5|0|-0.75|-12.5"},
        {"ringer[9]/*", "(null)|(null)|10|1|(null)|(null)|(null)|(null)"},
        {"ringer[2]/cadence", "400|200|400|2000"},
        {"account[5]/enabled", "false"},
        {"account/ringer", "1|4|9|1|1|1|6|1"},
    };
    for (auto const& stored : cases) {
        EXPECT_EQ(valuesAt(phone, stored.path), stored.values) << stored.path;
    }
    EXPECT_EQ(valuesAt(directory, "entry[1]/name"), "Front desk <main hall>");
    EXPECT_EQ(valuesAt(directory, "entry[12]/number"), "(null)|+44 7700 900295|(null)");
    EXPECT_EQ(valuesAt(directory, "revision"), "4000000417");
}

TEST_F(DeskPhone, AnswersThePathsOfItsReadme) {
    EXPECT_EQ(valuesAt(phone, "network/ipv4/address"), "192.0.2.23");
    EXPECT_EQ(valuesAt(phone, "network/*/server"),
              "192.0.2.53|(null)|198.51.100.53|time1.example.net|time2.example.net|"
              "time.example.org");
    EXPECT_EQ(valuesAt(phone, "lineKey[9]/lamp/colour"), "off|amber|red");
    EXPECT_EQ(answersAt(phone, "lineKey/lamp[3]/colour"), 48U);
    EXPECT_EQ(valuesAt(phone, "account[6]/codec/name"), "PCMU|(null)|G729|(null)|(null)");
    std::string const ports = "5061|20500|20502|20504|10000|10000|10000|10000|10000|10000|65535|";
    EXPECT_EQ(valuesAt(phone, "*/port"), ports + "1514");
    EXPECT_EQ(answersAt(phone, "*/port"), 12U);
    EXPECT_EQ(answersAt(phone, "//port"), 28U);
    EXPECT_EQ(answersAt(phone, "account/proxy/port"), 16U);
    EXPECT_EQ(answersAt(phone, "lineKey[49]/label"), 0U);
    EXPECT_EQ(valuesAt(directory, "entry[6]/number"), "+1 202 555 0100|(null)|+1 202 555 0101");
    EXPECT_EQ(answersAt(directory, "*/name"), 500U);
    EXPECT_EQ(valuesAt(directory, "entry[500]/name"), "Uma Zimmer");
    EXPECT_EQ(valuesAt(note, "itemValue"),
              "Moved from hall \"B\" to reception; ask Zo\xC3\xAB < S\xC3\xB8ren first.");
}

// The export of each document is its text in the file without comments and white space.
TEST_F(DeskPhone, ExportsTheDocumentsOfTheFile) {
    std::string const file = condensed(contentOf("config.xml"));
    for (char const* const name : {"phone1", "directory", "note"}) {
        std::string const start = std::string("<document") +
                                  (name == std::string("note")     ? ""
                                   : name == std::string("phone1") ? " schema=\"phone\""
                                                                   : " schema=\"directory\"") +
                                  " name=\"" + name + "\">";
        EXPECT_EQ(store.exportDocument(name),
                  "<deskphone>" + elementIn(file, start, "</document>") + "</deskphone>");
    }
}

// And so is that of its schemas, but for the order of types, and for elements without content,
// which are written with an end tag.
TEST_F(DeskPhone, ExportsTheSchemasOfTheFile) {
    std::string const file = condensed(contentOf("definition.xml"));
    for (std::string const name : {"phone", "directory"}) {
        std::string const start = "<schema name=\"" + name + "\">";
        std::string const inFile = elementIn(file, start, "</schema>");
        std::string const text = store.exportSchema(name.c_str());
        EXPECT_EQ(text.find("<deskphone>" + start), 0U);
        EXPECT_EQ(typesThenNodes(elementIn(text, start, "</schema>")),
                  typesThenNodes(withEndTags(withEndTags(inFile, "item"), "branch")));
    }
}

TEST_F(DeskPhone, IsTheSameAfterExportAndImport) {
    std::string const text = store.exportAll();
    ZorCollection again("deskphone");
    again.importXML(text.c_str());
    EXPECT_EQ(log.take(), "");
    EXPECT_EQ(again.exportAll(), text);
    for (char const* const name : {"phone1", "directory", "note"}) {
        EXPECT_EQ(everyValueOf(again.getDocument(name)), everyValueOf(store.getDocument(name)));
        EXPECT_EQ(changedIn(again.getDocument(name)), changedIn(store.getDocument(name)));
    }
}

TEST_F(DeskPhone, KeepsChangesAfterExportAndImport) {
    EXPECT_EQ(setAt(phone, "lineKey[48]/label", "<Spare> & \"more\""), 1);
    EXPECT_EQ(setAt(phone, "lineKey/lamp[1]/brightness", "100"), 48);
    EXPECT_EQ(setAt(phone, "network/dns/server[2]", "198.51.100.54"), 1);
    EXPECT_EQ(setAt(phone, "account[4]/codec[5]/name", "opus"), 1);
    EXPECT_EQ(setAt(phone, "account[8]/displayName", ""), 1);
    EXPECT_EQ(setAt(phone, "provisioning/password", nullptr), 1);
    std::unique_ptr<ZorResultSet> const zone(phone->select("zone"));
    zone->restoreDefault();
    std::unique_ptr<ZorResultSet> const gain(phone->select("audio/microphoneGain"));
    EXPECT_EQ(gain->setFloatValue(12.5), 1);
    EXPECT_EQ(setAt(directory, "entry[250]/favourite", "true"), 1);
    store.makeDocument("phone", "phone2");
    EXPECT_EQ(setAt(store.getDocument("phone2"), "model", "Desk Phone 12"), 1);
    store.deleteDocument("note");

    std::string const text = store.exportAll();
    ZorCollection again("deskphone");
    again.importXML(text.c_str());
    EXPECT_EQ(again.exportAll(), text);
    ZorDocument* const changed = again.getDocument("phone1");
    EXPECT_EQ(valuesAt(changed, "lineKey[48]/label"), "<Spare> & \"more\"");
    EXPECT_EQ(valuesAt(changed, "network/dns/server"), "192.0.2.53|198.51.100.54|198.51.100.53");
    EXPECT_EQ(valuesAt(changed, "account[4]/codec/name"), "(null)|(null)|(null)|(null)|opus");
    EXPECT_EQ(valuesAt(changed, "account[8]/displayName"), "");
    EXPECT_EQ(valuesAt(changed, "provisioning/password"), "(null)");
    EXPECT_EQ(valuesAt(changed, "zone"), "A");
    EXPECT_EQ(valuesAt(changed, "audio/microphoneGain"), "12.5");
    EXPECT_EQ(everyValueOf(changed), everyValueOf(phone));
    EXPECT_EQ(everyValueOf(again.getDocument("directory")), everyValueOf(directory));
    EXPECT_EQ(valuesAt(again.getDocument("phone2"), "model"), "Desk Phone 12");
    EXPECT_EQ(again.getDocument("note"), nullptr);
}

// Every write is checked against the type; a refused one changes nothing.
TEST_F(DeskPhone, RefusesValuesThatTheTypesDoNotAllow) {
    std::string const before = store.exportAll();
    struct {
        char const* path;
        char const* value;
    } const cases[] = {
        {"audio/ringerVolume", "16"},
        {"audio/ringerVolume", "-1"},
        {"network/vlan[2]/id", ""},
        {"network/vlan[1]/id", "4095"},
        {"zone", "G"},
        {"lineKey[1]/function", "Line"},
        {"clockDrift", "2147483648"},
        {"network/ipv4/mask", "255.0.255.0"},
        {"calls/waiting", "yes"},
        {"emergencyNumber[1]", "11a"},
        {"network/ipv4/address", "1.2"},
        {"audio/microphoneGain", "12.6"},
    };
    for (auto const& refused : cases) {
        EXPECT_EQ(setAt(phone, refused.path, refused.value), 0) << refused.path;
        EXPECT_EQ(log.take(),
                  std::string("3 setStringNodeValue: value (") + refused.value + ") is not valid\n")
            << refused.path;
    }
    EXPECT_EQ(store.exportAll(), before);
}

// The schemas of a store with documents are frozen, and come free with the last of them.
TEST_F(DeskPhone, FreezesItsSchemasWhileThereAreDocuments) {
    ZorSchema* const schema = store.getSchema("phone");
    ZorSchemaNode* const network = nodeAt(schema, "/network");
    ZorDataType* const text = schema->getDataType("string");
    EXPECT_EQ(schema->makeDataNode(network, "extra", 1, text, nullptr), nullptr);
    EXPECT_EQ(log.take(),
              "3 zor_dataNodeMake(extra): Cannot modify schema while documents exist\n");
    store.deleteDocument("phone1");
    EXPECT_NE(schema->makeDataNode(network, "extra", 1, text, nullptr), nullptr);
}

// The definition again is a warning for each schema, and the values go into the same documents.
TEST_F(DeskPhone, ImportsItsFilesTwice) {
    std::string const before = store.exportAll();
    store.importFromFile(fileOf("definition.xml").c_str());
    std::string const definition = contentOf("definition.xml");
    std::string const context =
        "2 ZorCollection::importFromFile:" + fileOf("definition.xml") + "{zor_XMLParse: ";
    EXPECT_EQ(log.take(), context + positionIn(definition, "<schema name=\"phone\">") +
                              "}Schema phone Already Exists\n" + context +
                              positionIn(definition, "<schema name=\"directory\">") +
                              "}Schema directory Already Exists\n");
    EXPECT_EQ(setAt(phone, "zone", "F"), 1);
    store.importFromFile(fileOf("config.xml").c_str());
    EXPECT_EQ(store.exportAll(), before);
    EXPECT_EQ(store.getDocument("phone1"), phone);
}
