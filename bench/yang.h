// The telephone in the languages of libyang: its schema as a YANG module, its data as that module's
// XML, and paths to the data. What repeats is a list with the key "index", from 1; a value that
// repeats is the leaf "value" of such a list, because a leaf-list may not have the same value
// twice.

#pragma once

#include <string>

#include "bench/phone_data.h"

namespace bench {

// The module, called like the root: a container of that name, with what is below.
std::string yangModule(PhoneNode const& root);

// All values as an instance of the module of the telephone.
std::string yangDocument(PhoneData const& phone);

// "/phone:phone/line[index='3']/label"
std::string yangPathTo(PhoneValue const& value);
// The path of a schema node, "/phone:phone/line/label", in a tree below that root.
std::string yangPathTo(PhoneNode const& root, PhoneNode const& node);
// What "/line[3]/label" is there, or "//label".
std::string yangQueryFor(std::string const& path);

} // namespace bench
