// What the initial logging function prints.
//
// The initial function can be seen only until something replaces it, so this is done by a static
// object that is constructed before anything else in the program; the test looks at the result.

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "zor/incident.h"

namespace {

void renderLine(std::string& out, void*) { out += "7"; }

void raiseSome() {
    zor_raiseIncident(nullptr, severityError, incidentInvalidArgument, 1,
                      "xpath must not be empty");
    zor_raiseIncident(nullptr, severityWarning, incidentNotFound, 2, "name ", "unknown");
    for (int const number : {1, 0, 4, -1}) {
        zor_raiseIncident(nullptr, static_cast<severity>(number), incidentNotFound, 2, "severity ",
                          std::to_string(number).c_str());
    }
    zor_raiseIncident(nullptr, severityError, incidentNotFound, 1, "100%s of %n");
    zor_raiseIncident(nullptr, severityError, incidentNotFound, 0, nullptr);
    ZorIncidentContext root("line ", renderLine, nullptr);
    root.push("frame", nullptr, nullptr);
    zor_raiseIncident(&root, severityError, incidentNotFound, 1, ": text");
}

// What `act` prints on standard output; it must fit into a pipe.
std::string printedBy(void (*act)()) {
    int ends[2];
    std::fflush(stdout);
    int const realOutput = dup(STDOUT_FILENO);
    if (realOutput < 0 || pipe(ends) != 0) return "(cannot watch standard output)";
    dup2(ends[1], STDOUT_FILENO);
    close(ends[1]);
    act();
    std::fflush(stdout);
    dup2(realOutput, STDOUT_FILENO);
    close(realOutput);

    std::string printed;
    char buffer[512];
    for (ssize_t count; (count = read(ends[0], buffer, sizeof buffer)) > 0;) {
        printed.append(buffer, static_cast<std::size_t>(count));
    }
    close(ends[0]);
    return printed;
}

struct Early {
    std::string const printed = printedBy(raiseSome);
};

__attribute__((init_priority(101))) Early early;

} // namespace

// Errors, warnings and all others each have their form; the message is printed as it stands.
TEST(DefaultLogger, PrintsALinePerIncident) {
    EXPECT_EQ(early.printed, "Error: xpath must not be empty\n"
                             "Warning: name unknown\n"
                             "Trace: severity 1\n"
                             "Trace: severity 0\n"
                             "Trace: severity 4\n"
                             "Trace: severity -1\n"
                             "Error: 100%s of %n\n"
                             "Error: \n"
                             "Error: line 7{frame}: text\n");
}
