// The cache and its lock are made by the first to ask, or when the library is loaded.

#include "schema/name_cache.h"

#include <new>
#include <string>

#include "foundation/immortal.h"
#include "platform/lock_holder.h"
#include "schema/tree_walk.h"

using zor_internal::Immortal;

namespace {

ZOR_CONSTINIT Immortal<ZorSchema::NodeMap> mapStorage;
ZOR_CONSTINIT Immortal<Semaphore> semaphoreStorage;

Semaphore& cacheLock() {
    static bool const made = (new (&mapStorage.object) ZorSchema::NodeMap,
                              new (&semaphoreStorage.object) Semaphore(1, 1, false), true);
    (void)made;
    return semaphoreStorage.object;
}

// Before the static initialisers of any program that the library is linked into.
[[gnu::constructor(zor_internal::kBeforeStaticInitialisers)]] void makeAtLoad() { cacheLock(); }

} // namespace

ZorSchema::NodeMap& ZorSchema::sNodeMap = mapStorage.object;
Semaphore& ZorSchema::sNodeMapSema4 = semaphoreStorage.object;

namespace zor_internal {

ZorSchemaNode* cachedChild(ZorSchemaNode const* parent, std::string_view name) {
    LockHolder const lock(cacheLock());
    auto const children = ZorSchema::sNodeMap.find(parent);
    if (children == ZorSchema::sNodeMap.end()) return nullptr;
    auto const found = children->second.find(name);
    return found == children->second.end() ? nullptr : found->second;
}

void cacheChild(ZorSchemaNode const* parent, ZorSchemaNode* child) {
    LockHolder const lock(cacheLock());
    // The text is moved into its entry: a copy could fail inside it, which would have to be caught.
    ZorSchema::sNodeMap[parent].insert_or_assign(std::string(child->getName()), child);
}

void forgetTree(ZorSchemaNode const* top) {
    LockHolder const lock(cacheLock());
    for (ZorSchemaNode const* node = top; node; node = nextInTree(node, top)) {
        if (node->isDataNode()) continue;
        auto const children = ZorSchema::sNodeMap.find(node);
        if (children != ZorSchema::sNodeMap.end()) ZorSchema::sNodeMap.erase(children);
    }
}

} // namespace zor_internal
