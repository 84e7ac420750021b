// A local holder of a list: its nodes are freed on every return, its values are not.

#pragma once

#include "zor/containers.h"

namespace zor_internal {

class ListRef {
public:
    // Takes ownership of the list; null is allowed.
    explicit ListRef(ZorListNode* first) : list(first) {}
    ListRef(ListRef const&) = delete;
    ListRef& operator=(ListRef const&) = delete;
    ~ListRef() { zor_listDelete(list); }

    ZorListNode* first() const { return list; }

private:
    ZorListNode* list;
};

} // namespace zor_internal
