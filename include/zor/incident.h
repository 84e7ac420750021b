// Incidents: how every failure is reported.
//
// An incident has a severity, a type and a message made of pieces, with the current context before
// it. The context is a stack of labelled frames, so that a message reads like a path to where the
// trouble arose: a root "A" with frames "B" and "C" gives "A{B{C}}". Messages go to one logging
// function, if the platform's trace profile "ManageableData" admits their level.
//
//     std::string label("boot");
//     ZorIncidentContext context(label, nullptr, nullptr);
//     zor_raiseIncident(&context, severityError, incidentNotFound, 3, "file ", name, " missing");
//     // prints "Error: bootfile phone.xml missing"
//     if (context.getMaxIncidentSeverity() >= severityError) ...
//
// Threads: a root and its frames belong to one thread at a time. The logging function is meant to
// be set once, at start-up; it is called in the thread that raises, often with locks of the store
// held, and must not call back into the object that is being worked on.

#pragma once

#include <string>

#include "zor/export.h"

// Any other value is treated as a trace message.
enum severity : int {
    severityNone = 0,
    severityTrace = 1,
    severityWarning = 2,
    severityError = 3,
};

// Classifies an incident for its raiser's reader; neither the message nor the logger shows it.
enum incidentType : int {
    incidentInvalidXml = 1,      // broken XML, bad content of definition or document
    incidentInvalidArgument = 2, // a bad argument or value in a call
    incidentNotFound = 3,        // something unknown or not supported
    incidentInvalidState = 4,    // cursor past its end, schema frozen by its documents
    incidentXmlStructure = 5,    // element or attribute where it is not allowed
};

// Appends a dynamic description of a frame to the text. It must not push or pop frames.
using ZorIncidentRender = void (*)(std::string& out, void* data);
// Receives every incident that is let through.
using ZorLoggingFunction = void (*)(severity sev, std::string& message);

class ZOR_API ZorIncidentContext {
public:
    // A root frame with a copy of the label. `render` may be null.
    ZorIncidentContext(std::string const& label, ZorIncidentRender render, void* renderData);
    ZorIncidentContext(ZorIncidentContext const&) = delete;
    ZorIncidentContext& operator=(ZorIncidentContext const&) = delete;
    // Destroys the frames still pushed, too.
    virtual ~ZorIncidentContext();

    // Puts a frame on top of the stack. The root owns it.
    // REQUIRES: this is the root.
    void push(std::string const& label, ZorIncidentRender render, void* renderData);

    // Takes the top frame away; does nothing when only the root is left.
    // REQUIRES: this is the root.
    void pop();

    // Appends this frame and those pushed on it to `out`.
    void getContextString(std::string& out) const;

    // The severity of the last incident raised through this root, even when an earlier one was
    // higher; 0 when none was.
    severity getMaxIncidentSeverity() const;
    void setMaxIncidentSeverity(severity sev);

    std::string label;
    ZorIncidentRender render; // or null
    void* renderData;
    ZorIncidentContext* top;   // in the root only: the innermost frame
    ZorIncidentContext* outer; // null in the root
    ZorIncidentContext* inner; // null in the innermost frame
    severity maxIncidentSeverity;
};

// Raises one incident whose message is the context (if `ctx` is not null) and the `count` texts,
// `text` first, joined as they stand; a null text adds nothing. The severity is noted in the
// context even when nothing is logged. A count below 1 leaves the context alone in the message.
// REQUIRES: `ctx` is null or a root; as many texts are passed as `count` says.
ZOR_API void zor_raiseIncident(ZorIncidentContext* ctx, severity sev, incidentType type, int count,
                               char const* text, ...);

// Replaces the logging function; null silences all incidents. The initial one prints the message
// with a newline to standard output, behind "Warning: ", "Error: " or "Trace: ".
ZOR_API void zor_setLoggingFunction(ZorLoggingFunction fn);
