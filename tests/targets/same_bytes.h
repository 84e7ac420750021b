// Text that has to be the same on every machine, whatever its word size, byte order, and sign of
// char. Each function tells in lines what the store does with a long list of inputs.

#pragma once

#include <string>

#include "zor/zor.h"

namespace same_bytes {

// The example's telephone with further values, exported; an element per line.
std::string exportedStore();

// What paths select in the example's telephone.
std::string selectResults();

// What is reported about bad definitions, documents, files and calls. Writes the files that it
// imports into the working directory.
std::string raisedIncidents();

// What types make of texts and numbers.
std::string valueForms();

// What the helpers of texts make of them.
std::string helperResults();

// All incidents since the last call, a line each: severity, the level that the trace profile was
// asked for, message.
std::string takeIncidents();

// Imports the example's definition and config. REQUIRES: the store is named "deskphone".
void importDeskPhone(ZorCollection& store);

// The text in quotes, with every byte but printable ASCII as \xNN; "null" for none.
std::string quoted(char const* text);
// The same for a string that the caller owns a reference to, which is released.
std::string quotedAndReleased(ZorString* string);

} // namespace same_bytes
