// The process-wide cache of children by name: ZorSchema::sNodeMap behind its lock.

#pragma once

#include <string_view>

#include "zor/schema.h"

namespace zor_internal {

// The child of `parent` with that name, or null. Borrowed.
ZorSchemaNode* cachedChild(ZorSchemaNode const* parent, std::string_view name);

void cacheChild(ZorSchemaNode const* parent, ZorSchemaNode* child);

// Removes everything the cache holds of this node and all below it, so that a later node at the
// same address never inherits names.
void forgetTree(ZorSchemaNode const* top);

} // namespace zor_internal
