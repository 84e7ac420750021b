#include "fuzz/support/incident_log.h"

#include "zor/containers.h"
#include "zor/incident.h"

namespace {

constexpr std::size_t kMostText = 4U << 20U; // more than short inputs lead to

std::string caught;
unsigned long uncaught = 0;
unsigned int hashOfUncaught = 0;

void catchIncident(severity sev, std::string& message) {
    if (caught.size() < kMostText) {
        caught += std::to_string(static_cast<int>(sev)) + ' ' + message + '\n';
        return;
    }
    ++uncaught;
    hashOfUncaught = hashOfUncaught * 31 + fnv0_32_str(message.c_str());
}

} // namespace

IncidentLog::IncidentLog() {
    take();
    zor_setLoggingFunction(catchIncident);
}

IncidentLog::~IncidentLog() {
    zor_setLoggingFunction(nullptr);
    std::string().swap(caught); // with its storage
}

std::string IncidentLog::take() {
    std::string taken;
    taken.swap(caught);
    if (uncaught > 0) {
        taken += "and " + std::to_string(uncaught) + " more of hash " +
                 std::to_string(hashOfUncaught) + '\n';
    }
    uncaught = 0;
    hashOfUncaught = 0;
    return taken;
}
