// A platform of a host's own: other members, the same operations.

#pragma once

#include <condition_variable>
#include <mutex>

class __attribute__((visibility("default"))) Semaphore {
public:
    Semaphore(int initial, int maximum, bool flag);
    ~Semaphore();
    bool take(int timeout);
    bool give();

    static long takes; // by all semaphores together

private:
    std::mutex guard;
    std::condition_variable available;
    int units;
    int most;
};

class __attribute__((visibility("default"))) TraceProfile {
public:
    explicit TraceProfile(int mostDetailedLevel);
    int Get(char const* name, int level, int flag); // not virtual here

    static TraceProfile* _instance;

private:
    int mostDetailed;
};
