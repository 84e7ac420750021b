// Select paths, parsed.

#pragma once

#include "zor/document.h"

namespace zor_internal {

// The steps of a path and the references to their names.
class ParsedPath {
public:
    explicit ParsedPath(char const* path);
    ParsedPath(ParsedPath const&) = delete;
    ParsedPath& operator=(ParsedPath const&) = delete;
    ~ParsedPath();

    // 0 when the path is empty or malformed: it selects nothing.
    int count() const { return valid ? used : 0; }
    XPathStep* first() { return steps; }

private:
    ParsedPath();

    static constexpr int kCapacity = 32; // one more than a path may have

    bool parse(char const* path);

    XPathStep steps[kCapacity];
    int used;
    bool valid;
};

} // namespace zor_internal
