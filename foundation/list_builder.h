// A list while it is built: freed with its builder, unless it was handed out.

#pragma once

#include <utility>

#include "zor/containers.h"

namespace zor_internal {

class ListBuilder {
public:
    ListBuilder() = default;
    ListBuilder(ListBuilder const&) = delete;
    ListBuilder& operator=(ListBuilder const&) = delete;
    ~ListBuilder() { zor_listDelete(head); }

    void append(void* value) {
        tail = tail ? zor_listAddNode(tail, value) : zor_listMake(value);
        if (!head) head = tail;
    }

    ZorListNode* first() const { return head; }

    // Hands the list to the caller; null when nothing was appended.
    [[nodiscard]] ZorListNode* release() {
        tail = nullptr;
        return std::exchange(head, nullptr);
    }

private:
    ZorListNode* head = nullptr;
    ZorListNode* tail = nullptr;
};

} // namespace zor_internal
