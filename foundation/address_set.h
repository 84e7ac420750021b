// A set of objects of any type, by their addresses. One class for all of them is one piece of code.

#pragma once

#include <set>

namespace zor_internal {

class AddressSet {
public:
    // False when it was there.
    bool add(void const* address) { return addresses.insert(address).second; }
    bool has(void const* address) const { return addresses.count(address) > 0; }

private:
    std::set<void const*> addresses;
};

} // namespace zor_internal
