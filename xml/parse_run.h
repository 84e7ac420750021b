// One running `parse`, for the handlers: where it keeps what one of them threw, and what they have
// learnt about the rules.
//
// No exception may pass through the XML parser's own frames. A handler that throws stops the
// parser; the exception goes on once that has returned.

#pragma once

#include "xml/kept_exception.h"
#include "xml/rule_search.h"
#include "zor/xml.h"

namespace zor_internal {

// The frame of a parser's incident context that gives every incident of one `parse` its position.
// A parser without an incident context has one for as long as the frame stands.
class ParseRun {
public:
    explicit ParseRun(ZorXmlParser* running);
    ParseRun(ParseRun const&) = delete;
    ParseRun& operator=(ParseRun const&) = delete;
    ~ParseRun();

    // The run that the parser is in; null when it is in none.
    static ParseRun* of(ZorXmlParser const* parser);

    // Calls `handle`, unless a handler has thrown before.
    template <typename Handle>
    void guard(Handle handle) {
        if (!failure.isThere() && !failure.keepFrom(handle)) stop();
    }

    RuleSearches& ruleSearches() { return searches; }

    // Stops the parser for a reason of ours.
    void refuse(char const* reason) {
        refusal = reason;
        stop();
    }

    // The reason why the parser stopped; null when it is none of ours.
    char const* reason() const { return refusal; }

    // Throws on what a handler threw, if any did.
    void rethrow() const { failure.rethrow(); }

private:
    static void renderPosition(std::string& out, void* run);
    void stop();

    ZorXmlParser* parser;
    bool temporary;
    char const* refusal = nullptr;
    KeptException failure;
    RuleSearches searches;
};

} // namespace zor_internal
