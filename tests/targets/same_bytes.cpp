// zor_same_bytes DIRECTORY: writes export.xml, selects.txt, incidents.txt and values.txt, which are
// compared with the kept files in tests/targets/expected. So every machine has to write what the
// developer's did.

#include "tests/targets/same_bytes.h"

#include <unistd.h>

#include <cstdio>

namespace same_bytes {
namespace {

std::string caught;
int askedLevel = 0;

void catchIncident(severity sev, std::string& message) {
    caught += std::to_string(static_cast<int>(sev)) + '/' + std::to_string(askedLevel) + ' ' +
              message + '\n';
}

class EveryLevel : public TraceProfile {
public:
    int Get(char const*, int level, int) override {
        askedLevel = level;
        return 1;
    }
};

bool writeFile(char const* name, std::string const& text) {
    std::FILE* const file = std::fopen(name, "wb");
    if (!file) return false;
    bool const isWhole = std::fwrite(text.data(), 1, text.size(), file) == text.size();
    return std::fclose(file) == 0 && isWhole;
}

// All lists but that of incidents hold only what the store accepts in silence. So an incident means
// that a line does not do what it says.
bool wasSilent(char const* name) {
    std::string const incidents = takeIncidents();
    if (!incidents.empty()) std::fprintf(stderr, "%s:\n%s", name, incidents.c_str());
    return incidents.empty();
}

bool writeAll() {
    struct {
        char const* file;
        std::string (*make)();
    } const outputs[] = {
        {"export.xml", exportedStore},
        {"selects.txt", selectResults},
        {"incidents.txt", raisedIncidents},
        {"values.txt", [] { return valueForms() + helperResults(); }},
    };
    for (auto const& [file, make] : outputs) {
        std::string const text = make();
        if (!wasSilent(file)) return false;
        if (writeFile(file, text)) continue;
        std::perror(file);
        return false;
    }
    return true;
}

} // namespace

std::string takeIncidents() {
    std::string taken;
    taken.swap(caught);
    return taken;
}

void importDeskPhone(ZorCollection& store) {
    store.importFromFile(ZOR_EXAMPLES_DIR "/desk-phone/definition.xml");
    store.importFromFile(ZOR_EXAMPLES_DIR "/desk-phone/config.xml");
}

std::string quoted(char const* text) {
    if (!text) return "null";
    std::string out = "\"";
    for (; *text; ++text) {
        unsigned const byte = static_cast<unsigned char>(*text);
        char shown[8];
        bool const isPlain = byte >= 0x20 && byte < 0x7F && byte != '"' && byte != '\\';
        std::snprintf(shown, sizeof shown, isPlain ? "%c" : "\\x%02X", byte);
        out += shown;
    }
    return out + '"';
}

std::string quotedAndReleased(ZorString* string) {
    if (!string) return "null";
    std::string const out = quoted(zor_stringValue(string));
    string->removeRef();
    return out;
}

} // namespace same_bytes

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: zor_same_bytes DIRECTORY\n");
        return 2;
    }
    if (chdir(argv[1]) != 0) {
        std::perror(argv[1]);
        return 2;
    }
    same_bytes::EveryLevel profile;
    TraceProfile::_instance = &profile;
    zor_setLoggingFunction(same_bytes::catchIncident);
    bool const isDone = same_bytes::writeAll();
    ZorBuiltIn::deleteBuiltInTypes();
    return isDone ? 0 : 1;
}
