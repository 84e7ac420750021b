// Named sets of types.

#include "zor/types.h"

#include <memory>

#include "foundation/list_ref.h"
#include "foundation/map_entries.h"
#include "platform/lock_holder.h"
#include "types/range_params.h"

using zor_internal::forEachEntry;
using zor_internal::ListRef;
using zor_internal::LockHolder;

namespace {

// A range over a type of the same list goes on with that type's copy: the copies must not depend
// on types that die with another set.
void rebindToCopy(ZorDataTypeCollection* set, ZorListNode* sources, ZorDataType const* source) {
    auto* const copy = static_cast<ZorDataType*>(zor_mapGet(set->types, source->name));
    ZorDataType* const base = zor_rangeBaseType(copy);
    if (!base || !zor_listFindNode(sources, base, nullptr)) return;
    auto* const params = static_cast<RangeParams*>(copy->userData);
    params->baseType = static_cast<ZorDataType*>(zor_mapGet(set->types, base->name));
}

} // namespace

ZorDataTypeCollection::ZorDataTypeCollection() : typesSem(1, 1, false), types(zor_mapMake()) {}

ZorDataTypeCollection::ZorDataTypeCollection(ZorListNode* list) : ZorDataTypeCollection() {
    ListRef const sources(list);
    for (ZorListNode const* node = list; node; node = node->next) {
        auto copy = std::make_unique<ZorDataType>(static_cast<ZorDataType*>(node->value));
        if (ZorDataTypeCollection::addDataType(copy.get())) (void)copy.release();
    }
    for (ZorListNode const* node = list; node; node = node->next) {
        rebindToCopy(this, list, static_cast<ZorDataType const*>(node->value));
    }
}

ZorDataTypeCollection::~ZorDataTypeCollection() {
    forEachEntry(types, [](ZorMapEntry& entry) { delete static_cast<ZorDataType*>(entry.value); });
    zor_mapDelete(types);
}

int ZorDataTypeCollection::addDataType(ZorDataType* type) {
    if (!type) return 0;
    LockHolder const lock(typesSem);
    if (zor_mapGet(types, type->name)) return 0;
    zor_mapSet(types, type->name, type);
    return 1;
}

ZorDataType* ZorDataTypeCollection::getDataType(void const* name) {
    LockHolder const lock(typesSem);
    return static_cast<ZorDataType*>(zor_mapGet(types, name));
}

ZorListNode* ZorDataTypeCollection::getDataTypes() const { return zor_mapValues(types); }
