// A local holder of one string reference: released on every return.

#pragma once

#include "zor/string.h"

namespace zor_internal {

class StringRef {
public:
    // Takes ownership of the reference; null is allowed.
    explicit StringRef(ZorString* reference) : string(reference) {}
    StringRef(StringRef const&) = delete;
    StringRef& operator=(StringRef const&) = delete;
    ~StringRef() {
        if (string) string->removeRef();
    }

    explicit operator bool() const { return string != nullptr; }
    ZorString* get() const { return string; }
    char const* text() const { return string->text; }

    // Hands the reference to the caller.
    [[nodiscard]] ZorString* release() {
        ZorString* released = string;
        string = nullptr;
        return released;
    }

    // Goes on with what a mutator of the held string returned.
    void replace(ZorString* successor) { string = successor; }

private:
    ZorString* string;
};

} // namespace zor_internal
