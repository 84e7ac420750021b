// What no input may leave behind, beyond memory, for which the runner looks itself.

#pragma once

#include "fuzz/support/check.h"
#include "zor/collection.h"

// REQUIRES: everything made after it is destroyed before it.
class NoLeftovers {
public:
    NoLeftovers() : collections(ZorCollection::refCount), cached(ZorSchema::sNodeMap.size()) {}
    NoLeftovers(NoLeftovers const&) = delete;
    NoLeftovers& operator=(NoLeftovers const&) = delete;
    ~NoLeftovers() {
        check(ZorCollection::refCount == collections, "collections are counted rightly");
        check(ZorSchema::sNodeMap.size() == cached, "the name cache forgets what is destroyed");
    }

private:
    int collections;
    std::size_t cached;
};
