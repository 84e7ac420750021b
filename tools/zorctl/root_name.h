// The name of a file's root element, by which a collection is called.

#pragma once

#include <string>

// Empty when the file cannot be read or has no root element.
std::string rootElementName(std::string const& path);
