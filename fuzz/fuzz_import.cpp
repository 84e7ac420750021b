// One text into a collection. Whatever it was, exporting is repeatable, the export imports again to
// the same export, and correct input still imports afterwards.

#include "fuzz/support/check.h"
#include "fuzz/support/incident_log.h"
#include "fuzz/support/leftovers.h"
#include "fuzz/support/parts.h"
#include "fuzz/support/proportion.h"
#include "fuzz/support/round_trip.h"
#include "fuzz/support/target.h"

namespace {

// Knows one schema, and one document of it.
class OneSchema : public ZorDictionary {
public:
    std::string getSchemaName(std::string const& documentName) override {
        return documentName == "supplied" ? "supplied" : "";
    }
    std::string getSchemaDefinition(std::string const& schemaName) override {
        if (schemaName != "supplied") return "";
        return "<phone><schema name='supplied'><item name='port' type='uint' default='80'/>"
               "</schema></phone>";
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    std::string const text = textOfInput(data, size);
    if (asksForVeryMuch(text)) return 0;
    NoLeftovers const nothing;
    IncidentLog log;
    OneSchema dictionary;
    ZorCollection collection(kStoreName, &dictionary);
    collection.importXML(text.c_str());
    check(collection.parseDepth == 0, "no import is left running");
    log.take();
    checkRoundTrip(collection, log);
    checkStillImports(collection, log);
    return 0;
}
