#include "session.h"

#include <expat.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <utility>

#include "root_name.h"
#include "string_holder.h"

namespace {

Session* active = nullptr;

char const* levelOf(severity sev) {
    return sev == severityError ? "error" : sev == severityWarning ? "warning" : "trace";
}

// The message behind the context that the parser puts before it: the position is shown in front of
// the line instead.
std::string withoutPosition(std::string const& message) {
    char const prefix[] = "{zor_XMLParse: line ";
    if (message.compare(0, sizeof prefix - 1, prefix) != 0) return message;
    return message.substr(message.find('}') + 1);
}

struct CloseFile {
    void operator()(std::FILE* stream) const { std::fclose(stream); }
};

// Appends the file's content to `xml`. Empty, or why it cannot be read.
std::string readFile(std::string const& path, std::string& xml) {
    std::unique_ptr<std::FILE, CloseFile> const stream(std::fopen(path.c_str(), "rb"));
    if (!stream) return "File: \"" + path + "\" not found.";
    char buffer[65536];
    std::size_t count;
    while ((count = std::fread(buffer, 1, sizeof buffer, stream.get())) > 0) {
        xml.append(buffer, count);
    }
    return std::ferror(stream.get()) ? std::strerror(errno) : "";
}

} // namespace

Session::Session(std::string const& name, std::vector<std::string> const& files)
    : parser(nullptr), failed(false) {
    active = this;
    zor_setLoggingFunction(onIncident);
    struct Input {
        std::string path;
        std::string xml;
    };
    std::vector<Input> inputs;
    std::string collectionName = name;
    for (std::string const& path : files) {
        file = path;
        std::string xml;
        std::string const reason = readFile(path, xml);
        if (!reason.empty()) {
            fail(reason);
            continue;
        }
        if (collectionName.empty()) collectionName = rootElementName(xml);
        inputs.push_back({path, std::move(xml)});
    }
    file.clear();
    StringHolder const holder(collectionName);
    store = std::make_unique<ZorCollection>(holder.get());
    for (Input const& input : inputs) import(input.path, input.xml);
}

Session::~Session() {
    store.reset();
    ZorBuiltIn::deleteBuiltInTypes();
    zor_setLoggingFunction(nullptr);
    active = nullptr;
}

void Session::fail(std::string const& message) {
    zor_raiseIncident(nullptr, severityError, incidentNotFound, 1, message.c_str());
}

// Drives the parser itself, so that it can ask where an incident arose that does not say so, and
// goes on to the end of the file.
void Session::import(std::string const& path, std::string const& xml) {
    file = path;
    ZorIncidentContext context(std::string(), nullptr, nullptr);
    ZorXmlParser reading(store.get(), &context);
    parser = &reading;
    reading.parse(xml.data(), static_cast<int>(xml.size()), 1);
    parser = nullptr;
    file.clear();
}

void Session::report(severity sev, std::string const& message) {
    if (sev >= severityError) failed = true;
    std::string place = file.empty() ? "zorctl" : file;
    if (parser) {
        place += ":" + std::to_string(XML_GetCurrentLineNumber(parser->expatParser)) + ":" +
                 std::to_string(XML_GetCurrentColumnNumber(parser->expatParser));
    }
    std::fprintf(stderr, "%s: %s: %s\n", place.c_str(), levelOf(sev),
                 withoutPosition(message).c_str());
}

void Session::onIncident(severity sev, std::string& message) { active->report(sev, message); }
