// A map of types while it is made, and on its way out: it owns them, the map itself does not.

#pragma once

#include <memory>
#include <utility>

#include "foundation/map_entries.h"
#include "zor/types.h"

namespace zor_internal {

class TypeTable {
public:
    TypeTable() : types(zor_mapMake()) {}
    // Takes ownership of the map and its types; null is allowed.
    explicit TypeTable(ZorMapEntry** made) : types(made) {}
    TypeTable(TypeTable const&) = delete;
    TypeTable& operator=(TypeTable const&) = delete;
    ~TypeTable() {
        if (!types) return;
        forEachEntry(types,
                     [](ZorMapEntry& entry) { delete static_cast<ZorDataType*>(entry.value); });
        zor_mapDelete(types);
    }

    ZorDataType* find(ZorString* name) const {
        return static_cast<ZorDataType*>(zor_mapGet(types, name));
    }

    // Adds the type, unless its name is taken.
    void add(std::unique_ptr<ZorDataType> type) {
        if (find(type->name)) return;
        zor_mapSet(types, type->name, type.get());
        (void)type.release();
    }

    // Hands the map and its types to the caller.
    [[nodiscard]] ZorMapEntry** release() { return std::exchange(types, nullptr); }

private:
    ZorMapEntry** types;
};

} // namespace zor_internal
