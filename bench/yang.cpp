#include "bench/yang.h"

#include "bench/phone_text.h"
#include "bench/value_path.h"

namespace bench {
namespace {

std::string baseOf(PhoneType const& type) {
    if (type.base == "int") return "int32";
    if (type.base == "uint") return "uint32";
    if (type.base == "bool") return "boolean";
    if (type.base == "float") return "decimal64";
    if (type.base == "ip_address" || type.base == "ip_mask") return "inet:ipv4-address-no-zone";
    return "string"; // a domain name and a URL are any text, as they are for zor
}

std::string statementOf(PhoneType const& type) {
    if (!type.options.empty()) {
        std::string text = "type enumeration {";
        for (std::string const& option : type.options) text += " enum \"" + option + "\";";
        return text + " }";
    }
    std::string details;
    if (type.base == "float") details += " fraction-digits 3;";
    if (!type.minimum.empty()) details += " range \"" + type.minimum + ".." + type.maximum + "\";";
    if (type.base == "digit_string") details += " pattern \"[+]?[0-9#* ]+\";";
    return "type " + baseOf(type) + (details.empty() ? ";" : " {" + details + " }");
}

void appendNode(std::string& out, PhoneNode const& node) {
    bool const isList = node.occurrences > 1;
    if (isList) out += "list " + node.name + " { key index; leaf index { type uint32; }\n";
    if (node.type) {
        out += "leaf " + (isList ? "value" : node.name) + " { " + statementOf(*node.type) + " }\n";
    } else {
        if (!isList) out += "container " + node.name + " {\n";
        for (std::unique_ptr<PhoneNode> const& child : node.children) appendNode(out, *child);
        if (!isList) out += "}\n";
    }
    if (isList) out += "}\n";
}

void appendElements(std::string& out, std::vector<PhoneElement> const& elements) {
    for (PhoneElement const& element : elements) {
        bool const isList = element.node->occurrences > 1;
        bool const hasOwnLeaf = isList && element.node->type;
        out += "<" + element.node->name + ">";
        if (isList) out += "<index>" + std::to_string(element.occurrence) + "</index>";
        if (hasOwnLeaf) out += "<value>";
        appendEscaped(out, element.text);
        appendElements(out, element.children);
        if (hasOwnLeaf) out += "</value>";
        out += "</" + element.node->name + ">";
    }
}

std::string topOf(PhoneNode const& root) { return "/" + root.name + ":" + root.name; }

} // namespace

std::string yangModule(PhoneNode const& root) {
    std::string out = "module " + root.name + " { yang-version 1.1; namespace \"urn:" + root.name +
                      "\"; prefix p; import ietf-inet-types { prefix inet; }\n";
    appendNode(out, root);
    return out + "}\n";
}

std::string yangDocument(PhoneData const& phone) {
    std::string const& name = phone.schema().name;
    std::string out = "<" + name + " xmlns=\"urn:" + name + "\">";
    appendElements(out, phone.tree().children);
    return out + "</" + name + ">";
}

std::string yangPathTo(PhoneValue const& value) {
    std::string const path = pathTo(
        value, "/", [](int occurrence) { return "[index='" + std::to_string(occurrence) + "']"; });
    PhoneNode const* root = value.node;
    while (root->parent) root = root->parent;
    return topOf(*root) + path + (value.node->occurrences > 1 ? "/value" : "");
}

std::string yangPathTo(PhoneNode const& root, PhoneNode const& node) {
    return topOf(root) + node.path;
}

std::string yangQueryFor(std::string const& path) {
    std::string query = "/phone:phone";
    for (char const c : path) {
        if (c == '[') {
            query += "[index='";
        } else if (c == ']') {
            query += "']";
        } else {
            query += c;
        }
    }
    return query;
}

} // namespace bench
