// The store on the host's platform: its semaphores are taken, its trace profile is asked.

#include <zor/zor.h>

#include <cstdio>
#include <string>

namespace {

std::string logged;

void logIncident(severity, std::string& message) { logged += message + "\n"; }

} // namespace

int main() {
    zor_setLoggingFunction(logIncident);
    ZorCollection store("s");
    store.makeSchema("DefaultSchema"); // no profile yet: silent
    TraceProfile errorsOnly(2);
    TraceProfile::_instance = &errorsOnly;
    store.makeSchema("DefaultSchema");
    store.importXML("<other/>"); // warnings only: filtered out
    TraceProfile::_instance = nullptr;

    bool const ok = Semaphore::takes > 0 &&
                    logged == "ZorCollection::makeSchema{Schema (DefaultSchema) already exists}\n";
    if (ok)
        std::puts("ok");
    else
        std::printf("wrong: %ld takes, logged: %s", Semaphore::takes, logged.c_str());
    return ok ? 0 : 1;
}
