// Named sets of types.

#include "zor/types.h"

#include <memory>

#include "foundation/address_set.h"
#include "foundation/list_ref.h"
#include "platform/lock_holder.h"
#include "types/range_params.h"
#include "types/type_table.h"

using zor_internal::AddressSet;
using zor_internal::ListRef;
using zor_internal::LockHolder;
using zor_internal::TypeTable;

namespace {

ZorDataType* typeAt(ZorListNode const* node) { return static_cast<ZorDataType*>(node->value); }

RangeParams* paramsOf(ZorDataType* range) { return static_cast<RangeParams*>(range->userData); }

// A range over a type of the same list goes on with that type's copy: the copies must not depend
// on types that die with another set.
void rebindToCopy(TypeTable const& copies, AddressSet const& sources, ZorDataType const* source) {
    ZorDataType* const copy = copies.find(source->name);
    ZorDataType* const base = zor_rangeBaseType(copy);
    if (base && sources.has(base)) paramsOf(copy)->baseType = copies.find(base->name);
}

ZorString* unshared(ZorString* string) {
    ZorString* const copy = zor_stringCopy(string);
    string->removeRef();
    return copy;
}

// Gives a copied type strings of its own. Their counts are plain, and another thread may use the
// source.
void unshareStrings(ZorDataType* copy) {
    copy->name = unshared(copy->name);
    if (zor_datatypeIsRange(copy)) {
        paramsOf(copy)->minValue = unshared(paramsOf(copy)->minValue);
        paramsOf(copy)->maxValue = unshared(paramsOf(copy)->maxValue);
    }
    if (!zor_datatypeIsChoice(copy)) return;
    for (auto* node = static_cast<ZorListNode*>(copy->userData); node; node = node->next) {
        node->value = unshared(static_cast<ZorString*>(node->value));
    }
}

// Copies of the types, of which it takes no ownership; of two with one name, of the first.
ZorMapEntry** copiesOf(ZorListNode* sources) {
    TypeTable copies;
    AddressSet sourceSet;
    for (ZorListNode const* node = sources; node; node = node->next) {
        sourceSet.add(typeAt(node));
        auto copy = std::make_unique<ZorDataType>(typeAt(node));
        unshareStrings(copy.get());
        copies.add(std::move(copy));
    }
    for (ZorListNode const* node = sources; node; node = node->next) {
        rebindToCopy(copies, sourceSet, typeAt(node));
    }
    return copies.release();
}

} // namespace

ZorDataTypeCollection::ZorDataTypeCollection() : typesSem(1, 1, false), types(zor_mapMake()) {}

ZorDataTypeCollection::ZorDataTypeCollection(ZorListNode* list)
    : typesSem(1, 1, false), types(nullptr) {
    ListRef const sources(list);
    types = copiesOf(list);
}

ZorDataTypeCollection::~ZorDataTypeCollection() { TypeTable const destroyed(types); }

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
