#include "session.h"

#include <expat.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

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

} // namespace

Session::Session(std::string const& name, std::vector<std::string> const& files)
    : parser(nullptr), failed(false) {
    active = this;
    zor_setLoggingFunction(onIncident);
    std::string const collectionName = name.empty() ? rootElementName(files.front()) : name;
    StringHolder const holder(collectionName);
    store = std::make_unique<ZorCollection>(holder.get());
    for (std::string const& path : files) readFile(path);
}

Session::~Session() {
    store.reset();
    zor_setLoggingFunction(nullptr);
    active = nullptr;
}

void Session::fail(std::string const& message) {
    zor_raiseIncident(nullptr, severityError, incidentNotFound, 1, message.c_str());
}

// Drives the parser itself, so that it can ask where an incident arose that does not say so, and
// reads the whole file, so that everything that is wrong in it is reported.
void Session::readFile(std::string const& path) {
    file = path;
    std::unique_ptr<std::FILE, CloseFile> const stream(std::fopen(path.c_str(), "rb"));
    if (!stream) {
        fail("File: \"" + path + "\" not found.");
    } else {
        ZorIncidentContext context(std::string(), nullptr, nullptr);
        ZorXmlParser reading(store.get(), &context);
        parser = &reading;
        char buffer[4096];
        std::size_t count;
        do {
            errno = 0;
            count = std::fread(buffer, 1, sizeof buffer, stream.get());
            if (std::ferror(stream.get())) {
                fail(std::strerror(errno));
                break;
            }
            reading.parse(buffer, static_cast<int>(count), count < sizeof buffer);
        } while (count == sizeof buffer && XML_GetErrorCode(reading.expatParser) == XML_ERROR_NONE);
        parser = nullptr;
    }
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
