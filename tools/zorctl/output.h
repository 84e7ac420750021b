// Writing a file that may be replaced.

#pragma once

#include <string>

// Writes the text to the file and returns whether that worked. A regular file is replaced only
// after everything is on disk, and keeps its mode; anything else (a link, a pipe, a device) is
// written to as it is. After a failure a regular file is as it was.
bool writeFile(std::string const& path, std::string const& text);
