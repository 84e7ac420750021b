// One running `parse`, for the handlers: where it keeps what one of them threw, and what they have
// learnt about the rules.
//
// No exception may pass through the XML parser's own frames. A handler that throws stops the
// parser; the exception goes on once that has returned.

#pragma once

#include <memory>
#include <new>
#include <utility>

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

    // The run that the parser is in; null when it is in none. Asked at every event, so what is
    // nearly always so comes first: the innermost frame is that of the run.
    static ParseRun* of(ZorXmlParser const* parser) {
        if (!parser->incidentContext) return nullptr;
        ZorIncidentContext const* const frame = parser->incidentContext->top;
        if (frame->render != renderPosition) return below(frame);
        return static_cast<ParseRun*>(frame->renderData);
    }

    // Calls `handle`, unless a handler has thrown before.
    template <typename Handle>
    void guard(Handle handle) {
        if (!failure.isThere() && !failure.keepFrom(handle)) stop();
    }

    RuleSearches& ruleSearches() { return searches; }

    // The context of an element that opens inside `outer`, and its end. Elements open and close by
    // the thousand, so the memory of the last context that was closed, of its text and of its
    // attributes serves the next one. With new memory an import takes 6 % more instructions, a
    // definition 11 %.
    std::unique_ptr<ZORParseContext> open(ZORParseContext* outer, char const* name,
                                          char const** attributes);
    void close(std::unique_ptr<ZORParseContext> context);

    // The string of `length` characters, as ZorString::create gives it. New reference.
    ZorString* makeText(char const* text, int length) {
        if (!spareText) return ZorString::create(text, length);
        ZorString* const made = spareText->set(1, text, length); // or it stays, and is released
        spareText = nullptr;
        return made;
    }

    // An empty map. The caller deletes it, unless it is the map of a context.
    ZorMapEntry** makeAttributes() {
        return spareAttributes ? std::exchange(spareAttributes, nullptr) : zor_mapMake();
    }

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
    struct FreeBlock {
        void operator()(void* block) const { ::operator delete(block); }
    };
    using Block = std::unique_ptr<void, FreeBlock>;

    static ParseRun* below(ZorIncidentContext const* frame);
    static void renderPosition(std::string& out, void* run);
    void stop();

    ZorXmlParser* parser;
    bool temporary;
    char const* refusal = nullptr;
    KeptException failure;
    RuleSearches searches;
    Block spareContext;             // memory for one
    ZorString* spareText = nullptr; // nobody else's
    ZorMapEntry** spareAttributes = nullptr;
};

} // namespace zor_internal
