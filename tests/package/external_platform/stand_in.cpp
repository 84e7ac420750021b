#include "stand_in.h"

#include <cstring>

long Semaphore::takes = 0;

Semaphore::Semaphore(int initial, int maximum, bool) : units(initial), most(maximum) {}

Semaphore::~Semaphore() = default;

bool Semaphore::take(int) {
    std::unique_lock<std::mutex> lock(guard);
    while (units == 0) available.wait(lock);
    --units;
    ++takes;
    return true;
}

bool Semaphore::give() {
    std::lock_guard<std::mutex> const lock(guard);
    if (units == most) return false;
    ++units;
    available.notify_one();
    return true;
}

TraceProfile::TraceProfile(int mostDetailedLevel) : mostDetailed(mostDetailedLevel) {}

int TraceProfile::Get(char const* name, int level, int) {
    return std::strcmp(name, "ManageableData") == 0 && level <= mostDetailed;
}

TraceProfile* TraceProfile::_instance = nullptr;
