// Incidents caught instead of printed.
//
//     IncidentLog log;
//     collection.importXML(text);
//     check(log.take().empty(), "the import is silent");
//
// Of very many incidents only the first are kept as text; the others count and enter a hash, so
// that two lists are still told apart.

#pragma once

#include <string>

class IncidentLog {
public:
    IncidentLog();
    IncidentLog(IncidentLog const&) = delete;
    IncidentLog& operator=(IncidentLog const&) = delete;
    // Later incidents are lost.
    ~IncidentLog();

    // All incidents since the last call, a line each: severity, blank, message. Empties the log.
    std::string take();
};
