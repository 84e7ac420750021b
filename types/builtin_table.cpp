// The table of the built-in types, made by the first lookup.

#include "zor/types.h"

#include <new>

#include "foundation/immortal.h"
#include "foundation/list_ref.h"
#include "platform/lock_holder.h"
#include "types/builtin_makers.h"

using zor_internal::ListRef;
using zor_internal::LockHolder;

namespace {

ZOR_CONSTINIT zor_internal::Immortal<Semaphore> semaphoreStorage;

// The lock of the table, which is made by the first to ask for it.
Semaphore& tableLock() {
    static bool const made = (new (&semaphoreStorage.object) Semaphore(1, 1, false), true);
    (void)made;
    return semaphoreStorage.object;
}

// Before the static initialisers of any program that the library is linked into.
[[gnu::constructor(zor_internal::kBeforeStaticInitialisers)]] void makeAtLoad() { tableLock(); }

} // namespace

ZorMapEntry** ZorBuiltIn::builtInTypes = nullptr;
Semaphore& ZorBuiltIn::builtInTypesSem = semaphoreStorage.object;

ZorDataType* ZorBuiltIn::getDataType(void const* name) {
    LockHolder const lock(tableLock());
    if (!builtInTypes) makeBuiltInTypes();
    return static_cast<ZorDataType*>(zor_mapGet(builtInTypes, name));
}

void ZorBuiltIn::makeBuiltInTypes() {
    using namespace zor_internal;
    builtInTypes = zor_mapMake();
    for (auto* const make : {makePlainStringType, makeIntType, makeUIntType, makeBoolType,
                             makeFloatType, makeDigitStringType, makeIpAddressType, makeIpMaskType,
                             makeDomainNameType, makeUrlType}) {
        ZorDataType* const type = make();
        zor_mapSet(builtInTypes, type->name, type);
    }
}

void ZorBuiltIn::deleteBuiltInTypes() {
    LockHolder const lock(tableLock());
    if (!builtInTypes) return;
    ListRef const types(zor_mapValues(builtInTypes));
    for (ZorListNode const* node = types.first(); node; node = node->next) {
        delete static_cast<ZorDataType*>(node->value);
    }
    zor_mapDelete(builtInTypes);
    builtInTypes = nullptr;
}
