// What is reported about bad input: every message whole, with lines and columns.

#include <cfloat>
#include <climits>
#include <cstdio>
#include <memory>

#include "tests/targets/same_bytes.h"

namespace same_bytes {
namespace {

char const* const kDefinition =
    "<s><schema name=\"kept\">"
    "<choice name=\"mode\"><option>on</option><option>off</option></choice>"
    "<range name=\"low\" baseType=\"int\" minValue=\"-5\" maxValue=\"5\"/>"
    "<item name=\"text\" type=\"string\"/><item name=\"int\" type=\"int\" default=\"7\"/>"
    "<item name=\"uint\" type=\"uint\"/><item name=\"bool\" type=\"bool\"/>"
    "<item name=\"float\" type=\"float\"/><item name=\"digits\" type=\"digit_string\"/>"
    "<item name=\"address\" type=\"ip_address\"/><item name=\"mask\" type=\"ip_mask\"/>"
    "<item name=\"mode\" type=\"mode\"/><item name=\"low\" type=\"low\"/>"
    "<branch name=\"group\" occurrences=\"2\"/>"
    "<item name=\"item\" type=\"string\" occurrences=\"3\" parent=\"/group\"/>"
    "<item name=\"text\" type=\"string\" parent=\"/group\"/>"
    "</schema><document schema=\"kept\" name=\"kept\"/></s>";

char const* const kTexts[] = {
    // No XML.
    "",
    " ",
    "text",
    "<",
    "<s",
    "<s>",
    "<s></t>",
    "<s/><s/>",
    "<s/>text",
    "</s>",
    "<s a=1/>",
    "<s a=\"1\" a=\"2\"/>",
    "<s>&nothing;</s>",
    "<s>&#0;</s>",
    "<s>&#x110000;</s>",
    "<s>&</s>",
    "<s><!-- -- --></s>",
    "<s>\n\n  <schema name='\x01'/></s>",
    "<s>]]></s>",
    "<s><![CDATA[</s>",
    "<?xml version=\"1.1\"?><s/>",
    "<?xml version=\"1.0\" encoding=\"none\"?><s/>",
    " <?xml?><s/>",
    "<s>\xFF</s>",
    "<s>\xC3</s>",
    "<s>\xED\xA0\x80</s>",
    "<s>\n\xC3\xA9\xC3\xA9 & </s>",
    "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>\n<s><\xE9/></s>",
    "<!DOCTYPE s [<!ENTITY a \"b\">]><s>&a;</s>",
    "<!DOCTYPE s [<!ENTITY a \"&a;\">]><s>&a;</s>",
    "<!DOCTYPE s [<!ATTLIST schema name CDATA \"x\">]><s><schema/></s>",
    "<!DOCTYPE s SYSTEM \"s.dtd\"><s>&a;</s>",
    // Elements and attributes that are not known.
    "<other/>",
    "<s a=\"1\"/>",
    "<s><schema nam=\"x\"/></s>",
    "<s><sch\xC3\xA9ma/></s>",
    "<s><unknown><schema/></unknown></s>",
    "<s><schema name=\"x\"><foo/></schema></s>",
    "<s><schema name=\"x\"><choice name=\"y\"><foo/></choice></schema></s>",
    // Collections and schemas.
    "<s><collection/></s>",
    "<s><collection name=\"\"/></s>",
    "<s><schema/></s>",
    "<s><schema name=\"\"/></s>",
    "<s><schema name=\"kept\"><item/></schema></s>",
    "<s><collection><schema name=\"x\"/><document name=\"y\"/></collection></s>",
    // Documents.
    "<s><document/></s>",
    "<s><document schema=\"none\" name=\"x\"/></s>",
    "<s><document schema=\"DefaultSchema\" name=\"kept\"/></s>",
    "<s><document name=\"note\"><itemValue>1</itemValue><itemValue>2</itemValue></document></s>",
};

// Inside <schema name="new">.
char const* const kSchemaTexts[] = {
    "<branch/>",
    "<branch name=\"\"/>",
    "<branch name=\" \t \"/>",
    "<branch name=\"a\"/><branch name=\" a \"/>",
    "<branch name=\"a\" occurrences=\"0\"/>",
    "<branch name=\"a\" occurrences=\"-2\"/>",
    "<branch name=\"a\" occurrences=\"x\"/>",
    "<branch name=\"a\" occurrences=\"\"/>",
    "<branch name=\"a\" occurrences=\"32768\"/>",
    "<branch name=\"a\" occurrences=\"65536\"/>",
    "<branch name=\"a\" occurrences=\"65537\"/>",
    "<branch name=\"a\" occurrences=\"2147483648\"/>",
    "<branch name=\"a\" occurrences=\"4294967297\"/>",
    "<branch name=\"a\" occurrences=\"99999999999999999999\"/>",
    "<branch name=\"a\" parent=\"\"/>",
    "<branch name=\"a\" parent=\"/none\"/>",
    "<branch name=\"a\" parent=\"a\"/>",
    "<branch name=\"a\"/><branch name=\"b\"/><item name=\"c\" type=\"int\" parent=\"*\"/>",
    "<item name=\"a\"/>",
    "<item name=\"a\" type=\"\"/>",
    "<item name=\"a\" type=\"Int\"/>",
    "<item name=\"a\" type=\"int\" default=\"x\"/>",
    "<item name=\"a\" type=\"int\" default=\"\"/>",
    "<item name=\"a\" type=\"int\" default=\"2147483648\"/>",
    "<item name=\"a\" type=\"uint\" default=\"-1\"/>",
    "<item name=\"a\" type=\"bool\" default=\"True\"/>",
    "<item name=\"a\" type=\"float\" default=\"\xC2\xBD\"/>",
    "<item name=\"a\" type=\"digit_string\" default=\"1-2\"/>",
    "<item name=\"a\" type=\"ip_address\" default=\"1.2.3.256\"/>",
    "<item name=\"a\" type=\"ip_mask\" default=\"255.0.255.0\"/>",
    "<item name=\"a\" type=\"int\"/><item name=\"a\" type=\"int\"/>",
    "<item name=\"a\" type=\"int\"/><item name=\"b\" type=\"int\" parent=\"/a\"/>",
    "<choice/>",
    "<choice name=\"\"/>",
    "<choice name=\"a\"><option/></choice>",
    "<choice name=\"a\"><option>x</option></choice><item name=\"a\" type=\"a\" default=\"X\"/>",
    "<range/>",
    "<range name=\"\"/>",
    "<range name=\"a\"/>",
    "<range name=\"a\" baseType=\"\"/>",
    "<range name=\"a\" baseType=\"int\"/>",
    "<range name=\"a\" baseType=\"int\" minValue=\"\"/>",
    "<range name=\"a\" baseType=\"int\" minValue=\"1\"/>",
    "<range name=\"a\" baseType=\"none\" minValue=\"1\" maxValue=\"2\"/>",
    "<range name=\"a\" baseType=\"url\" minValue=\"1\" maxValue=\"2\"/>",
    "<range name=\"a\" baseType=\"int\" minValue=\"2\" maxValue=\"1\"/>",
    "<range name=\"a\" baseType=\"uint\" minValue=\"-1\" maxValue=\"5\"/>",
    "<range name=\"a\" baseType=\"int\" minValue=\"x\" maxValue=\"y\"/>",
    "<range name=\"a\" baseType=\"int\" minValue=\"0\" maxValue=\"2147483648\"/>",
    "<range name=\"a\" baseType=\"float\" minValue=\"1e400\" maxValue=\"1e300\"/>",
    ("<range name=\"a\" baseType=\"ip_address\" minValue=\"128.0.0.0\" "
     "maxValue=\"127.255.255.255\"/>"),
    "<range name=\"a\" baseType=\"string\" minValue=\"\xC3\xA9\" maxValue=\"z\"/>",
};

// Inside <document name="kept">.
char const* const kDocumentTexts[] = {
    "<int>x</int>",
    "<int></int>",
    "<int> 1</int>",
    "<int>2147483648</int>",
    "<int>-2147483649</int>",
    "<uint>-1</uint>",
    "<uint>4294967296</uint>",
    "<bool>1</bool>",
    "<bool>TRUE</bool>",
    "<float>abc</float>",
    "<float>\xC3\xA9</float>",
    "<digits>12a</digits>",
    "<digits>+</digits>",
    "<address>1.2.3</address>",
    "<address>256.1.1.1</address>",
    "<address>4294967297.0.0.1</address>",
    "<mask>255.0.255.0</mask>",
    "<mask>0.0.0.1</mask>",
    "<mode>On</mode>",
    "<mode></mode>",
    "<low>6</low>",
    "<low>-6</low>",
    "<low>low</low>",
    "<none/>",
    "<int><more/></int>",
    "<int>1</int><int>2</int>",
    "<int a=\"b\">1</int>",
    "<group/><group/><group/>",
    "<group occurrence=\"0\"/>",
    "<group occurrence=\"x\"/>",
    "<group occurrence=\"3\"><text>x</text></group>",
    "<group occurrence=\"-1\"><text>x</text></group>",
    "<group occurrence=\"65537\"><text>x</text></group>",
    "<group occurrence=\"2147483647\"><text>x</text></group>",
    "<group occurrence=\"2147483648\"><text>x</text></group>",
    "<group occurrence=\"4294967297\"><text>x</text></group>",
    "<group occurrence=\"-2147483648\"><text>x</text></group>",
    "<group><item/><item/><item/><item/></group>",
    "<group><item occurrence=\"4\">x</item></group>",
    "<group><int>1</int></group>",
    "<int>x</int><uint>y</uint>\n<bool>z</bool>",
    "<int>x<unknown/></int><none/><uint>y</uint>",
};

// A store that holds what bad input may run into. Its own import reports nothing.
class Store {
public:
    Store() : collection("s") { collection.importXML(kDefinition); }

    ZorCollection* operator->() { return &collection; }
    ZorDocument* document() { return collection.getDocument("kept"); }

private:
    ZorCollection collection;
};

// The input's beginning, and what was reported since the last call.
std::string reportAbout(std::string const& input) {
    constexpr std::size_t kShown = 100;
    std::string const cut = input.size() > kShown ? " and more" : "";
    return quoted(input.substr(0, kShown).c_str()) + cut + '\n' + takeIncidents();
}

std::string reportOfText(std::string const& text) {
    Store store;
    store->importXML(text.c_str());
    return reportAbout(text);
}

std::string reportOfFile(std::string const& text) {
    char const* const name = "bad.xml";
    Store store;
    if (std::FILE* const file = std::fopen(name, "wb")) {
        std::fwrite(text.data(), 1, text.size(), file);
        std::fclose(file);
    }
    store->importFromFile(name);
    std::remove(name);
    return reportAbout(text);
}

std::string repeated(std::string const& text, int count) {
    std::string out;
    for (int i = 0; i < count; ++i) out += text;
    return out;
}

// What goes beyond a limit.
std::string reportsOfLargeTexts() {
    std::string const longText(65535, 'x');
    std::string const schema = "<schema name=\"x\"><branch name=\"a\" occurrences=\"32767\"/>"
                               "<branch name=\"b\" parent=\"/a\" occurrences=\"32767\"/>"
                               "<item name=\"c\" parent=\"/a/b\" type=\"int\"/></schema>";
    std::string const document = "<document schema=\"x\" name=\"y\"/>";
    std::string reports =
        reportOfText("<s><document name=\"kept\"><text>" + longText + "</text></document></s>");
    reports += reportOfText("<s>" + schema + document + "</s>");
    reports += reportOfText("<s>" + repeated("<collection name=\"c\">", 258) +
                            repeated("</collection>", 258) + "</s>");
    return reports;
}

std::string reportsOfFiles() {
    std::string const padding(4096, ' ');
    Store()->importFromFile("no such file.xml");
    std::string reports = reportAbout("no such file.xml");
    for (std::string const& text : {
             std::string(),
             std::string("<s>\n<s2>\n</s>\n"),
             "<s><schema/>" + padding + "<schema/></s>",
             "<s><unknown/>" + padding + "\n<unknown2/></s>",
             "<s>" + padding.substr(3),
             "<s><document name=\"kept\"><int>x</int></document>" + padding + "</s",
             std::string("<s>\0</s>", 8),
         }) {
        reports += reportOfFile(text);
    }
    return reports;
}

// Sets the value of a path in every way that a document offers, and reads it back as each number.
std::string reportOfNode(char const* path) {
    Store store;
    std::unique_ptr<ZorResultSet> const found(store.document()->select(path));
    int isNull = 0;
    found->setValue("\xE2\x82\xAC");
    found->setIntValue(INT_MIN);
    found->setUIntValue(4294967295UL);
    found->setFloatValue(DBL_MIN);
    found->getIntValue(&isNull);
    found->getUIntValue(&isNull);
    found->getFloatValue(&isNull);
    found->seek(4294967295U);
    found->getOccurrence();
    return reportAbout(path);
}

// Schemas, documents and collections that are refused.
std::string reportsOfCalls() {
    Store store;
    ZorSchema* const schema = store->getSchema("kept");
    ZorSchemaNode* const root = schema->getRootNode();
    ZorSchemaNode* const item = schema->getChildNode(root, "int");
    store->makeSchema("kept");
    store->makeDocument("none", "x");
    store->makeDocument("kept", "kept");
    store->exportSubset({"kept", "none"});
    schema->makeBranchNode(nullptr, "a", 1);
    schema->makeBranchNode(item, "a", 1);
    schema->makeDataNode(root, "a", 1, nullptr, nullptr);
    schema->makeDataNode(root, "a", 1, schema->getDataType("int"), nullptr);
    store->deleteDocument("kept");
    schema->makeDataNode(root, "int", 1, schema->getDataType("int"), nullptr);
    return reportAbout("calls");
}

// Paths to one node of a schema.
std::string reportsOfNodePaths() {
    Store store;
    std::string reports;
    for (char const* const text : {"", "/", "group", "group/", "//text", "*", "group/none",
                                   "///group", "group[1]", "\xFF"}) {
        ZorString* const path = ZorString::create(text, -1);
        bool const isFound = store->getSchema("kept")->getRootNode()->findSubNode(path) != nullptr;
        path->removeRef();
        reports += (isFound ? "found " : "not found ") + reportAbout(text);
    }
    return reports;
}

// Messages under frames of a context, and severities that are neither warning nor error.
std::string reportsUnderContexts() {
    ZorIncidentContext context("outer ", nullptr, nullptr);
    int number = INT_MIN;
    auto const render = [](std::string& out, void* data) {
        out += std::to_string(*static_cast<int*>(data));
    };
    context.push("number ", render, &number);
    for (int const sev : {0, 1, 2, 3, 4, -1, INT_MAX}) {
        zor_raiseIncident(&context, static_cast<severity>(sev), incidentNotFound, 3, "one", " two ",
                          "\x80");
    }
    context.pop();
    zor_raiseIncident(&context, severityWarning, incidentNotFound, 1, "popped");
    return reportAbout("contexts");
}

} // namespace

std::string raisedIncidents() {
    std::string reports;
    for (char const* const text : kTexts) reports += reportOfText(text);
    for (char const* const text : kSchemaTexts) {
        reports += reportOfText("<s><schema name=\"new\">" + std::string(text) + "</schema></s>");
    }
    for (char const* const text : kDocumentTexts) {
        reports +=
            reportOfText("<s><document name=\"kept\">\n" + std::string(text) + "</document></s>");
    }
    reports += reportsOfLargeTexts();
    reports += reportsOfFiles();
    for (char const* const path : {"text", "int", "uint", "bool", "float", "digits", "address",
                                   "mask", "mode", "low", "group/item[3]", "group", "none"}) {
        reports += reportOfNode(path);
    }
    reports += reportsOfCalls();
    reports += reportsOfNodePaths();
    reports += reportsUnderContexts();
    return reports;
}

} // namespace same_bytes
