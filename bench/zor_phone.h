// The telephone's data in a store.

#pragma once

#include <memory>
#include <string>

#include "bench/phone_data.h"
#include "zor/collection.h"

namespace bench {

class ZorPhone {
public:
    // With the schema, and the document with all values.
    explicit ZorPhone(PhoneData const& phone) : collection(PhoneData::kRoot) {
        collection.importXML(phone.definition().c_str());
        collection.importXML(phone.document().c_str());
    }

    ZorCollection& store() { return collection; }
    ZorDocument& document() { return *collection.getDocument(PhoneData::kDocument); }

    // The node at a path such as "/line/label", or null.
    ZorSchemaNode* node(char const* path) {
        std::unique_ptr<ZorResultSet> const found(document().select(path));
        return found->getResultCount() ? found->getDefinition() : nullptr;
    }

private:
    ZorCollection collection;
};

} // namespace bench
