#include "bench/phone_schema.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace bench {
namespace {

// Occurrences that depend on the number of values.
enum Scaled : int { kAccounts = -1, kLines = -2, kEntries = -3, kRecentCalls = -4 };

struct Row {
    char const* parent;
    char const* name;
    int occurrences;  // or one of Scaled
    char const* type; // null for a branch
    char const* defaultText;
};

// Parents stand before their children.
constexpr Row kRows[] = {
    {"", "model", 1, "string", "Desk Phone 48"},
    {"", "assetTag", 1, "string", "none"},
    {"", "clockDrift", 1, "int", "0"},
    {"", "temperatureLimit", 1, "float", "60"},
    {"", "emergencyNumber", 2, "digit_string", "112"},

    {"", "network", 1, nullptr, nullptr},
    {"/network", "hostName", 1, "domain_name", "phone"},
    {"/network", "mac", 1, "string", "00:00:00:00:00:00"},
    {"/network", "discovery", 1, "bool", "true"},
    {"/network", "ipv4", 1, nullptr, nullptr},
    {"/network/ipv4", "mode", 1, "addressMode", "dhcp"},
    {"/network/ipv4", "address", 1, "ip_address", "0.0.0.0"},
    {"/network/ipv4", "mask", 1, "ip_mask", "255.255.255.0"},
    {"/network/ipv4", "gateway", 1, "ip_address", "0.0.0.0"},
    {"/network", "vlan", 2, nullptr, nullptr},
    {"/network/vlan", "enabled", 1, "bool", "false"},
    {"/network/vlan", "id", 1, "vlanId", "1"},
    {"/network", "dns", 1, nullptr, nullptr},
    {"/network/dns", "domain", 1, "domain_name", "local"},
    {"/network/dns", "server", 2, "ip_address", "0.0.0.0"},
    {"/network", "ntp", 1, nullptr, nullptr},
    {"/network/ntp", "server", 2, "domain_name", "ntp"},
    {"/network/ntp", "utcOffset", 1, "utcOffset", "0"},

    {"", "provisioning", 1, nullptr, nullptr},
    {"/provisioning", "url", 1, "url", "https://provision.example.com/"},
    {"/provisioning", "user", 1, "string", "phone"},
    {"/provisioning", "password", 1, "string", "secret"},
    {"/provisioning", "interval", 1, "expiry", "3600"},
    {"/provisioning", "verifyCertificate", 1, "bool", "true"},

    {"", "sip", 1, nullptr, nullptr},
    {"/sip", "port", 1, "port", "5060"},
    {"/sip", "sessionTimer", 1, "uint", "1800"},

    {"", "account", kAccounts, nullptr, nullptr},
    {"/account", "enabled", 1, "bool", "false"},
    {"/account", "displayName", 1, "string", "Phone"},
    {"/account", "user", 1, "string", "phone"},
    {"/account", "domain", 1, "domain_name", "sip.example.com"},
    {"/account", "expiry", 1, "expiry", "3600"},
    {"/account", "voicemail", 1, "digit_string", "*97"},
    {"/account", "proxy", 1, nullptr, nullptr},
    {"/account/proxy", "host", 1, "domain_name", "proxy"},
    {"/account/proxy", "port", 1, "port", "5060"},
    {"/account/proxy", "transport", 1, "transport", "udp"},
    {"/account", "codec", 3, nullptr, nullptr},
    {"/account/codec", "name", 1, "codecName", "PCMU"},
    {"/account/codec", "packetTime", 1, "packetTime", "20"},

    {"", "line", kLines, nullptr, nullptr},
    {"/line", "label", 1, "string", "Line"},
    {"/line", "function", 1, "keyFunction", "none"},
    {"/line", "account", 1, "accountNumber", "1"},
    {"/line", "shared", 1, "bool", "false"},
    {"/line", "gain", 1, "gain", "0"},
    {"/line", "key", 2, nullptr, nullptr},
    {"/line/key", "label", 1, "string", "Key"},
    {"/line/key", "target", 1, "digit_string", "0"},
    {"/line/key", "volume", 1, "volume", "8"},
    {"/line/key", "colour", 1, "lampColour", "off"},

    {"", "audio", 1, nullptr, nullptr},
    {"/audio", "handsetVolume", 1, "volume", "8"},
    {"/audio", "speakerVolume", 1, "volume", "9"},
    {"/audio", "microphoneGain", 1, "gain", "0"},
    {"/audio", "sidetone", 1, "float", "-18.5"},

    {"", "display", 1, nullptr, nullptr},
    {"/display", "language", 1, "language", "en"},
    {"/display", "brightness", 1, "percent", "70"},
    {"/display", "idleText", 1, "string", "Welcome"},
    {"/display", "clock24", 1, "bool", "true"},
    {"/display", "wallpaper", 1, "url", "https://images.example.com/none.png"},

    {"", "calls", 1, nullptr, nullptr},
    {"/calls", "waiting", 1, "bool", "true"},
    {"/calls", "busyTarget", 1, "digit_string", "0"},
    {"/calls", "forwardDelay", 1, "uint", "20"},
    {"/calls", "recent", kRecentCalls, "digit_string", "0"},

    {"", "directory", 1, nullptr, nullptr},
    {"/directory", "entry", kEntries, nullptr, nullptr},
    {"/directory/entry", "name", 1, "string", "Unknown"},
    {"/directory/entry", "number", 2, "digit_string", "0"},
    {"/directory/entry", "ringer", 1, "ringerNumber", "1"},
    {"/directory/entry", "favourite", 1, "bool", "false"},
    {"/directory/entry", "revision", 1, "uint", "0"},
};

PhoneType choice(char const* name, std::vector<std::string> options) {
    return {name, "string", std::move(options), "", ""};
}

PhoneType range(char const* name, char const* base, char const* minimum, char const* maximum) {
    return {name, base, {}, minimum, maximum};
}

std::vector<PhoneType> const& builtInTypes() {
    static std::vector<PhoneType> const types = [] {
        std::vector<PhoneType> made;
        for (char const* const name : {"string", "int", "uint", "bool", "float", "digit_string",
                                       "ip_address", "ip_mask", "domain_name", "url"}) {
            made.push_back({name, name, {}, "", ""});
        }
        return made;
    }();
    return types;
}

// How many values one occurrence of the branch holds, but for what is scaled.
int valuesBelow(std::string const& path) {
    int sum = 0;
    for (Row const& row : kRows) {
        if (row.parent != path || row.occurrences < 0) continue;
        int const each = row.type ? 1 : valuesBelow(path + "/" + row.name);
        sum += row.occurrences * each;
    }
    return sum;
}

// How often the scaled nodes repeat for a number of values. About a tenth of all values belongs to
// accounts, half to lines, and the rest to the directory but for a few recent calls, whose number
// makes the sum exact.
class Scale {
public:
    explicit Scale(int values) {
        if (values < PhoneData::kFewest || values > PhoneData::kMost) std::abort();
        int const perAccount = valuesBelow("/account");
        int const perLine = valuesBelow("/line");
        int const perEntry = valuesBelow("/directory/entry");
        int const scaled = values - valuesBelow("");
        accounts = std::max(1, scaled / 10 / perAccount);
        lines = std::max(2, scaled / 2 / perLine);
        int const left = scaled - accounts * perAccount - lines * perLine;
        entries = (left - 1 - scaled / 50) / perEntry;
        recentCalls = left - entries * perEntry;
    }

    int occurrences(int ofRow) const {
        switch (ofRow) {
        case kAccounts:
            return accounts;
        case kLines:
            return lines;
        case kEntries:
            return entries;
        case kRecentCalls:
            return recentCalls;
        default:
            return ofRow;
        }
    }

private:
    int accounts;
    int lines;
    int entries;
    int recentCalls;
};

PhoneNode* findNode(PhoneNode* node, std::string const& path) {
    if (node->path == path) return node;
    for (std::unique_ptr<PhoneNode> const& child : node->children) {
        if (PhoneNode* const found = findNode(child.get(), path)) return found;
    }
    return nullptr;
}

void appendAttribute(std::string& out, char const* name, std::string const& value) {
    out.append(" ").append(name).append("=\"").append(value).append("\"");
}

void appendType(std::string& out, PhoneType const& type) {
    if (type.options.empty()) {
        out += "<range";
        appendAttribute(out, "name", type.name);
        appendAttribute(out, "baseType", type.base);
        appendAttribute(out, "minValue", type.minimum);
        appendAttribute(out, "maxValue", type.maximum);
        out += "/>\n";
        return;
    }
    out += "<choice";
    appendAttribute(out, "name", type.name);
    out += ">";
    for (std::string const& option : type.options) out += "<option>" + option + "</option>";
    out += "</choice>\n";
}

bool uses(PhoneNode const& node, PhoneType const& type) {
    return node.type == &type ||
           std::any_of(node.children.begin(), node.children.end(),
                       [&type](auto const& child) { return uses(*child, type); });
}

void appendNode(std::string& out, PhoneNode const& node) {
    if (node.parent) {
        out += node.type ? "<item" : "<branch";
        appendAttribute(out, "name", node.name);
        if (node.type) appendAttribute(out, "type", node.type->name);
        if (node.type) appendAttribute(out, "default", node.defaultText);
        if (node.occurrences != 1) {
            appendAttribute(out, "occurrences", std::to_string(node.occurrences));
        }
        if (node.parent->parent) appendAttribute(out, "parent", node.parent->path);
        out += "/>\n";
    }
    for (std::unique_ptr<PhoneNode> const& child : node.children) appendNode(out, *child);
}

} // namespace

std::vector<PhoneType> const& phoneTypes() {
    static std::vector<PhoneType> const types = {
        choice("addressMode", {"dhcp", "static", "auto"}),
        choice("transport", {"udp", "tcp", "tls"}),
        choice("codecName", {"PCMU", "PCMA", "G722", "G729", "opus"}),
        choice("keyFunction", {"none", "line", "speed dial", "busy lamp", "park", "intercom",
                               "transfer", "conference"}),
        choice("lampColour", {"off", "green", "amber", "red"}),
        choice("language", {"en", "de", "es", "fr", "it", "pl", "sv"}),
        range("volume", "int", "0", "15"),
        range("utcOffset", "int", "-720", "840"),
        range("accountNumber", "uint", "1", "8"),
        range("ringerNumber", "uint", "1", "10"),
        range("port", "uint", "1", "65535"),
        range("vlanId", "uint", "1", "4094"),
        range("percent", "uint", "0", "100"),
        range("expiry", "uint", "60", "86400"),
        range("packetTime", "uint", "10", "60"),
        range("gain", "float", "-12.5", "12.5"),
    };
    return types;
}

PhoneType const* phoneType(std::string const& name) {
    for (std::vector<PhoneType> const* const types : {&builtInTypes(), &phoneTypes()}) {
        for (PhoneType const& type : *types) {
            if (type.name == name) return &type;
        }
    }
    std::fprintf(stderr, "no type %s\n", name.c_str());
    std::abort();
}

TreeMaker::TreeMaker(char const* name)
    : top(new PhoneNode{name, "", nullptr, nullptr, "", 1, 1, 0, {}}), nodes(1) {}

PhoneNode* TreeMaker::branch(PhoneNode* parent, std::string const& name, int occurrences) {
    return item(parent, name, occurrences, nullptr, "");
}

PhoneNode* TreeMaker::item(PhoneNode* parent, std::string const& name, int occurrences,
                           PhoneType const* type, std::string const& defaultText) {
    int const total = occurrences * parent->total;
    parent->children.emplace_back(new PhoneNode{
        name, parent->path + "/" + name, parent, type, defaultText, occurrences, total, nodes, {}});
    ++nodes;
    return parent->children.back().get();
}

std::unique_ptr<PhoneNode> makePhoneSchema(int values) {
    Scale const scale(values);
    TreeMaker tree(PhoneData::kSchema);
    for (Row const& row : kRows) {
        PhoneNode* const parent = findNode(tree.root(), row.parent);
        int const occurrences = scale.occurrences(row.occurrences);
        if (row.type)
            tree.item(parent, row.name, occurrences, phoneType(row.type), row.defaultText);
        else
            tree.branch(parent, row.name, occurrences);
    }
    return tree.take();
}

std::string definitionOf(PhoneNode const& root) {
    std::string out = std::string("<") + PhoneData::kRoot + ">\n<schema";
    appendAttribute(out, "name", root.name);
    out += ">\n";
    for (PhoneType const& type : phoneTypes()) {
        if (uses(root, type)) appendType(out, type);
    }
    appendNode(out, root);
    return out + "</schema>\n</" + PhoneData::kRoot + ">\n";
}

} // namespace bench
