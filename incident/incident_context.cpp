// The stack of context frames.

#include "zor/incident.h"

ZorIncidentContext::ZorIncidentContext(std::string const& frameLabel, ZorIncidentRender frameRender,
                                       void* data)
    : label(frameLabel), render(frameRender), renderData(data), top(this), outer(nullptr),
      inner(nullptr), maxIncidentSeverity(severityNone) {}

ZorIncidentContext::~ZorIncidentContext() {
    while (top != this) pop();
}

void ZorIncidentContext::push(std::string const& frameLabel, ZorIncidentRender frameRender,
                              void* data) {
    auto* const frame = new ZorIncidentContext(frameLabel, frameRender, data);
    frame->outer = top;
    top->inner = frame;
    top = frame;
}

void ZorIncidentContext::pop() {
    if (top == this) return;
    ZorIncidentContext* const popped = top;
    top = popped->outer;
    top->inner = nullptr;
    delete popped;
}

void ZorIncidentContext::getContextString(std::string& out) const {
    int open = 0;
    for (ZorIncidentContext const* frame = this; frame; frame = frame->inner) {
        if (frame != this) {
            out += '{';
            ++open;
        }
        out += frame->label;
        if (frame->render) frame->render(out, frame->renderData);
    }
    out.append(static_cast<unsigned>(open), '}');
}

severity ZorIncidentContext::getMaxIncidentSeverity() const { return maxIncidentSeverity; }

void ZorIncidentContext::setMaxIncidentSeverity(severity sev) { maxIncidentSeverity = sev; }
