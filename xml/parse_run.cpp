#include "xml/parse_run.h"

#include <expat.h>

#include <cstdio>
#include <string>

#include "xml/parse_context.h"
#include "zor/string.h"

namespace zor_internal {
namespace {

constexpr char kFrameLabel[] = "zor_XMLParse: ";

// Whether nobody else holds the text, and it has no more memory than a new one.
bool isSpare(ZorString const* text) {
    return text && text->refCount == 1 && text->capacity == ZorString::localSize;
}

} // namespace

ParseRun::ParseRun(ZorXmlParser* running) : parser(running), temporary(!running->incidentContext) {
    if (temporary) {
        parser->incidentContext = new ZorIncidentContext(kFrameLabel, renderPosition, this);
    } else {
        parser->incidentContext->push(kFrameLabel, renderPosition, this);
    }
}

ParseRun::~ParseRun() {
    if (spareText) spareText->removeRef();
    if (spareAttributes) zor_mapDelete(spareAttributes);
    if (temporary) {
        delete parser->incidentContext;
        parser->incidentContext = nullptr;
    } else {
        while (of(parser) == this) parser->incidentContext->pop();
    }
}

std::unique_ptr<ZORParseContext> ParseRun::open(ZORParseContext* outer, char const* name,
                                                char const** attributes) {
    Block block = std::move(spareContext);
    if (!block) block.reset(::operator new(sizeof(ZORParseContext)));
    auto* const opened = new (block.get()) ZORParseContext(outer, name, attributes);
    (void)block.release();
    return std::unique_ptr<ZORParseContext>(opened);
}

void ParseRun::close(std::unique_ptr<ZORParseContext> context) {
    if (!spareText && isSpare(context->characterData)) {
        spareText = std::exchange(context->characterData, nullptr);
    }
    if (!spareAttributes && context->attributes) {
        clearAttributes(context->attributes);
        spareAttributes = std::exchange(context->attributes, nullptr);
    }
    if (spareContext) return;
    ZORParseContext* const closed = context.release();
    closed->~ZORParseContext();
    spareContext.reset(closed);
}

// A callback that was left by an exception may have left frames of its own behind.
ParseRun* ParseRun::below(ZorIncidentContext const* frame) {
    while (frame && frame->render != renderPosition) frame = frame->outer;
    return frame ? static_cast<ParseRun*>(frame->renderData) : nullptr;
}

void ParseRun::renderPosition(std::string& out, void* run) {
    XML_Parser const expat = static_cast<ParseRun*>(run)->parser->expatParser;
    char position[64];
    std::snprintf(position, sizeof position, "line %ld, column %ld ",
                  static_cast<long>(XML_GetCurrentLineNumber(expat)),
                  static_cast<long>(XML_GetCurrentColumnNumber(expat)));
    out += position;
}

void ParseRun::stop() { XML_StopParser(parser->expatParser, XML_FALSE); }

} // namespace zor_internal
