// The name of a text's root element, by which a collection is called.

#pragma once

#include <string>

// Empty when the text has no root element.
std::string rootElementName(std::string const& xml);
