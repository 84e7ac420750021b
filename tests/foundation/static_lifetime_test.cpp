// Strings, maps, writers and incidents are usable from the first static initialiser of a program to
// its last static destructor.

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "tests/foundation/strings.h"
#include "tests/support/text.h"
#include "zor/containers.h"
#include "zor/incident.h"
#include "zor/text.h"

namespace {

// Uses the library and tells the first thing that went wrong; "" when all is well.
std::string firstTrouble() {
    char const* const texts[] = {"",
                                 "DefaultSchema",
                                 "schema",
                                 "managementId",
                                 "CommsMgmtId",
                                 "QbexMgmtId",
                                 "Id",
                                 "PhysiclaIfcMgmtId",
                                 "StimulusKeySettings",
                                 "TilecardContainerMgmtId",
                                 "LineKeySettings",
                                 "MediaProcessMgmtId",
                                 "DssKeySettings",
                                 "true",
                                 "false",
                                 "occurrence"};
    for (unsigned i = 0; i < 16; ++i) {
        ZorString const& string = ZorString::stdZorStrings[i];
        if (string.refCount != 0xFFFF || content(&string) != texts[i]) return "a permanent string";
        if (ZorString::create(texts[i], -1) != &string) return "finding a permanent string";
    }
    for (unsigned i = 1; i < 16; ++i) {
        if (!ZorString::compareZorString(ZorString::stdZorStringContainer[i - 1],
                                         ZorString::stdZorStringContainer[i])) {
            return "the order of the set";
        }
    }
    if (ZorString::create("tru", -1)->append(1, "e", 1) != permanent("true")) return "append";
    if (taken(ZorString::create(" a ", -1)->trim()) != "a") return "trim";

    int value = 1;
    ZorMapEntry** const map = zor_mapMake();
    zor_mapSet(map, "schema", &value);
    zor_mapSet(map, "volume", &value);
    bool const isFound = zor_mapGet(map, "volume") == &value;
    zor_mapDelete(map);
    if (!isFound) return "a map";

    ZorStringWriter writer;
    writer.writeData("text", -1);
    if (writer.getValue() != "text" || taken(escapeCData("<")) != "&lt;") return "writing";
    return "";
}

std::string* heard;

void hear(severity, std::string& message) { *heard += message; }

// Constructed before everything else in the program and destroyed after it.
class FirstAndLast {
public:
    FirstAndLast() : atStart(firstTrouble()) {}
    ~FirstAndLast() {
        std::string trouble = firstTrouble();
        std::string messages;
        heard = &messages;
        zor_setLoggingFunction(hear);
        zor_raiseIncident(nullptr, severityError, incidentNotFound, 1, "late");
        if (messages != "late") trouble += " raising";
        if (trouble.empty()) return;
        std::fprintf(stderr, "at the end of the program: %s\n", trouble.c_str());
        std::_Exit(EXIT_FAILURE); // too late for a test to fail
    }

    std::string const atStart;
};

__attribute__((init_priority(101))) FirstAndLast firstAndLast;

} // namespace

// A host's static objects may use the library in their constructors.
TEST(StaticLifetime, LibraryIsUsableFromTheFirstInitialiser) {
    EXPECT_EQ(firstAndLast.atStart, "");
}
