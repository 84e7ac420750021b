// Raising and logging.

#include "incident/raise.h"

#include <cstdarg>
#include <cstdio>

#include "zor/platform.h"

namespace {

void printIncident(severity sev, std::string& message) {
    char const* const format = sev == severityWarning ? "Warning: %s\n"
                               : sev == severityError ? "Error: %s\n"
                                                      : "Trace: %s\n";
    std::printf(format, message.c_str());
}

ZorLoggingFunction loggingFunction = printIncident;

// Whether the platform's trace profile lets incidents of this severity through.
bool isAdmitted(severity sev) {
    if (!TraceProfile::_instance) return false;
    int const level = sev == severityWarning ? 3 : sev == severityError ? 2 : 6;
    return TraceProfile::_instance->Get("ManageableData", level, 0) != 0;
}

} // namespace

void zor_raiseIncident(ZorIncidentContext* ctx, severity sev, incidentType, int count,
                       char const* text, ...) {
    // Kept: a lower severity overwrites a higher one; what is read back is the last severity.
    if (ctx) ctx->setMaxIncidentSeverity(sev);
    if (!isAdmitted(sev) || !loggingFunction) return;
    std::string message;
    if (ctx) ctx->getContextString(message);
    va_list rest;
    va_start(rest, text);
    for (int i = 0; i < count; ++i) {
        // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): it is started above
        char const* const piece = i == 0 ? text : va_arg(rest, char const*);
        if (piece) message += piece;
    }
    va_end(rest);
    loggingFunction(sev, message);
}

void zor_setLoggingFunction(ZorLoggingFunction fn) { loggingFunction = fn; }
