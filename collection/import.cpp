// The import entry points.

#include <cstdio>
#include <memory>
#include <string>

#include "collection/limits.h"
#include "foundation/text_argument.h"
#include "incident/raise.h"
#include "xml/release_input.h"
#include "zor/collection.h"

using zor_internal::kMaxImportDepth;
using zor_internal::raiseError;
using zor_internal::releaseInput;
using zor_internal::textOf;

namespace {

// One more import is running, as long as this lives.
class DepthHolder {
public:
    explicit DepthHolder(int& counted) : depth(counted) { ++depth; }
    DepthHolder(DepthHolder const&) = delete;
    DepthHolder& operator=(DepthHolder const&) = delete;
    ~DepthHolder() { --depth; }

private:
    int& depth;
};

// The parser of a nesting depth, ready for a new input. It belongs to the pool.
ZorXmlParser* parserAt(ZorCollection* collection, int depth) {
    auto const index = static_cast<std::size_t>(depth);
    if (index < collection->parsers.size()) {
        ZorXmlParser* const parser = collection->parsers[index];
        parser->reset(collection);
        return parser;
    }
    auto incidents = std::make_unique<ZorIncidentContext>(std::string(), nullptr, nullptr);
    auto parser = std::make_unique<ZorXmlParser>(collection, incidents.get());
    collection->parsers.push_back(parser.get());
    (void)incidents.release();
    return parser.release();
}

// The use of a pooled parser for one input, of which nothing is kept: it may be large, and share
// strings with what it made, which another thread may use from then on.
struct RunningInput {
    explicit RunningInput(ZorXmlParser* used) : parser(used) {}
    RunningInput(RunningInput const&) = delete;
    RunningInput& operator=(RunningInput const&) = delete;
    ~RunningInput() { releaseInput(parser); }

    ZorXmlParser* parser;
};

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

} // namespace

void ZorCollection::importXML(char const* text) {
    if (parseDepth >= kMaxImportDepth) {
        raiseError(nullptr, incidentInvalidArgument, "schema definitions are nested too deeply");
        return;
    }
    int const depth = parseDepth;
    DepthHolder const running(parseDepth);
    RunningInput const input(parserAt(this, depth));
    input.parser->parse(text ? text : "", -1, 1);
}

void ZorCollection::importFromFile(void const* path) {
    char const* const fileName = textOf(path);
    std::unique_ptr<std::FILE, CloseFile> const file(std::fopen(fileName, "r"));
    if (!file) {
        raiseError(nullptr, incidentNotFound, "File: \"", fileName, "\" not found.");
        return;
    }
    std::string label("ZorCollection::importFromFile:");
    label += fileName;
    ZorIncidentContext incidents(label, nullptr, nullptr);
    ZorXmlParser parser(this, &incidents);
    char buffer[4096];
    std::size_t count;
    do {
        count = std::fread(buffer, 1, sizeof buffer, file.get());
        parser.parse(buffer, static_cast<int>(count), count < sizeof buffer);
        // Kept: after an error the rest of the file is not read, and the input never made final.
    } while (count == sizeof buffer && incidents.getMaxIncidentSeverity() < severityError);
}
