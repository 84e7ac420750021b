// What zorctl does with a collection. Each prints its result to standard output.

#pragma once

#include <string>

#include "session.h"

// Prints what was read: a line of counts.
void checkFiles(Session& session);

// Prints the values that the path selects in the document, a line each; with `withPaths` behind
// where each stands. A document that does not exist and a path that selects nothing are errors.
void printValues(Session& session, std::string const& document, std::string const& path,
                 bool withPaths);

// Sets every value that the path selects.
void setValues(Session& session, std::string const& document, std::string const& path,
               std::string const& value);

// Writes the whole collection as XML, to standard output when `file` is empty. A file is written
// only when what goes into it can be read back as the same.
void writeExport(Session& session, std::string const& file);

// Makes sure that everything printed has arrived.
void flushOutput(Session& session);
