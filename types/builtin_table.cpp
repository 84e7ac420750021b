// The table of the built-in types, made by the first lookup.

#include "zor/types.h"

#include <memory>
#include <new>

#include "foundation/immortal.h"
#include "platform/lock_holder.h"
#include "types/builtin_makers.h"
#include "types/type_table.h"

using zor_internal::LockHolder;
using zor_internal::TypeTable;

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
    TypeTable table;
    for (auto* const make : {makePlainStringType, makeIntType, makeUIntType, makeBoolType,
                             makeFloatType, makeDigitStringType, makeIpAddressType, makeIpMaskType,
                             makeDomainNameType, makeUrlType}) {
        table.add(std::unique_ptr<ZorDataType>(make()));
    }
    builtInTypes = table.release();
}

void ZorBuiltIn::deleteBuiltInTypes() {
    LockHolder const lock(tableLock());
    if (!builtInTypes) return;
    TypeTable const table(builtInTypes); // destroys it
    builtInTypes = nullptr;
}
