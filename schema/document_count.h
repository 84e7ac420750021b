// The number of live documents of a schema, which several threads may read and change.

#pragma once

#include "zor/schema.h"

namespace zor_internal {

inline short liveDocuments(ZorSchemaNode const* root) {
    return __atomic_load_n(&root->documentCount, __ATOMIC_ACQUIRE);
}

inline void countDocuments(ZorSchemaNode* root, short change) {
    __atomic_fetch_add(&root->documentCount, change, __ATOMIC_ACQ_REL);
}

} // namespace zor_internal
