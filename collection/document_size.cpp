#include "collection/document_size.h"

#include "collection/limits.h"
#include "foundation/string_ref.h"
#include "platform/lock_holder.h"
#include "schema/tree_walk.h"
#include "types/number_value.h"

namespace zor_internal {
namespace {

// The same on every device, so that each refuses the same documents.
constexpr std::int64_t kBytesOfCell = 16;
constexpr std::int64_t kBytesOfBlock = 64;

std::int64_t bytesOfValue(ZorSchemaNode const* node) {
    if (node->dataType->copyValueFn == numberCopy) return kBytesOfCell;
    StringRef const text(node->getDefaultValue());
    return kBytesOfCell + (text ? kBytesOfBlock + text.get()->length : 0);
}

} // namespace

std::int64_t bytesOfDocument(ZorSchema* schema) {
    LockHolder const holder(schema->lock);
    if (reasonAgainstDocument(schema)) return 0;
    std::int64_t bytes = 0;
    ZorSchemaNode const* const root = schema->rootNode;
    for (ZorSchemaNode const* node = root; node; node = nextInTree(node, root)) {
        if (node->isDataNode() && node->totalOccurrences > 0) {
            bytes += node->totalOccurrences * bytesOfValue(node);
        }
    }
    return bytes;
}

} // namespace zor_internal
