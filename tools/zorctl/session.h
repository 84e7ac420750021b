// One run of zorctl: the collection, the files read into it, and the incidents on the way.

#pragma once

#include <memory>
#include <string>
#include <vector>

#include "zor/zor.h"

class Session {
public:
    // A collection of that name; when the name is empty, called like the root element of the first
    // file that has one. Incidents go to standard error from now on. One session at a time.
    Session(std::string const& name, std::vector<std::string> const& files);
    Session(Session const&) = delete;
    Session& operator=(Session const&) = delete;
    ~Session();

    ZorCollection& collection() { return *store; }

    // Whether an incident of severity 3 was raised.
    bool hasFailed() const { return failed; }

    // Raises an error of the program's own.
    void fail(std::string const& message);

private:
    void import(std::string const& path, std::string const& xml);
    void report(severity sev, std::string const& message);
    static void onIncident(severity sev, std::string& message);

    std::unique_ptr<ZorCollection> store;
    std::string file;           // being read, or empty
    ZorXmlParser const* parser; // reading it, or null
    bool failed;
};
