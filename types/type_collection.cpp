// Named sets of types.

#include "foundation/list_ref.h"
#include "platform/lock_holder.h"
#include "zor/types.h"

using zor_internal::ListRef;
using zor_internal::LockHolder;

ZorDataTypeCollection::ZorDataTypeCollection() : typesSem(1, 1, false), types(zor_mapMake()) {}

ZorDataTypeCollection::ZorDataTypeCollection(ZorListNode* list) : ZorDataTypeCollection() {
    ListRef const sources(list);
    for (ZorListNode const* node = list; node; node = node->next) {
        auto* const copy = new ZorDataType(static_cast<ZorDataType*>(node->value));
        if (!ZorDataTypeCollection::addDataType(copy)) delete copy;
    }
}

ZorDataTypeCollection::~ZorDataTypeCollection() {
    ListRef const all(zor_mapValues(types));
    for (ZorListNode const* node = all.first(); node; node = node->next) {
        delete static_cast<ZorDataType*>(node->value);
    }
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
