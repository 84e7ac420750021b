// Incidents caught instead of printed.
//
//     IncidentLog log;
//     EXPECT_EQ(collection.makeSchema("phone"), nullptr);
//     EXPECT_EQ(log.take(), "3 ZorCollection::makeSchema{Schema (phone) already exists}\n");
//
// A test that leaves incidents in the log fails: a success is silent.

#pragma once

#include <string>

class IncidentLog {
public:
    IncidentLog();
    IncidentLog(IncidentLog const&) = delete;
    IncidentLog& operator=(IncidentLog const&) = delete;
    // Fails the test when incidents were not taken. Later incidents are printed.
    ~IncidentLog();

    // All incidents since the last call, a line each: severity, blank, message. Empties the log.
    std::string take();
};
