// The schema that every collection is born with, and that export leaves out.

#pragma once

#include <cstring>

#include "zor/schema.h"

namespace zor_internal {

inline constexpr char kDefaultSchemaName[] = "DefaultSchema";

inline bool isDefaultSchema(ZorSchemaNode const* rootNode) {
    return std::strcmp(rootNode->getName(), kDefaultSchemaName) == 0;
}

} // namespace zor_internal
