#include "tests/support/incidents.h"

#include <gtest/gtest.h>

#include <cstdio>

#include "zor/incident.h"

namespace {

std::string caught;

void catchIncident(severity sev, std::string& message) {
    caught += std::to_string(static_cast<int>(sev)) + ' ' + message + '\n';
}

// Between tests, so that a stray incident is seen.
void printIncident(severity, std::string& message) { std::printf("%s\n", message.c_str()); }

} // namespace

IncidentLog::IncidentLog() {
    caught.clear();
    zor_setLoggingFunction(catchIncident);
}

IncidentLog::~IncidentLog() {
    EXPECT_EQ(caught, "") << "incidents that the test did not take";
    std::string().swap(caught); // with its storage
    zor_setLoggingFunction(printIncident);
}

std::string IncidentLog::take() {
    std::string taken;
    taken.swap(caught);
    return taken;
}
