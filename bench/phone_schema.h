// The schema of the telephone of phone_data.h.

#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "bench/phone_data.h"

namespace bench {

// Its choices and ranges.
std::vector<PhoneType> const& phoneTypes();
// One of them, or a built-in type. REQUIRES: there is one of that name.
PhoneType const* phoneType(std::string const& name);

// Makes a tree node by node.
class TreeMaker {
public:
    // With a root of that name.
    explicit TreeMaker(char const* name);

    PhoneNode* root() const { return top.get(); }
    // Adds a branch, or a node for values, below one that was made before. Borrowed.
    PhoneNode* branch(PhoneNode* parent, std::string const& name, int occurrences);
    PhoneNode* item(PhoneNode* parent, std::string const& name, int occurrences,
                    PhoneType const* type, std::string const& defaultText);
    std::unique_ptr<PhoneNode> take() { return std::move(top); }

private:
    std::unique_ptr<PhoneNode> top;
    int nodes;
};

// The tree for so many values, its root on top.
// REQUIRES: as for PhoneData.
std::unique_ptr<PhoneNode> makePhoneSchema(int values);

// The types that a tree uses, and its nodes, in the definition language.
std::string definitionOf(PhoneNode const& root);

} // namespace bench
