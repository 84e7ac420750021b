// Schemas of awkward shapes, and the comparison of a schema in a store with the tree it is of.

#pragma once

#include <memory>

#include "bench/phone_data.h"
#include "zor/schema.h"

namespace bench {

// About so many nodes in three levels: areas of ten groups of nine items each.
std::unique_ptr<PhoneNode> schemaOf(int nodes);
// So many items of distinct names, all directly under one branch.
std::unique_ptr<PhoneNode> wideSchema(int names);
// A branch that occurs so often, with one item, "name".
std::unique_ptr<PhoneNode> repeatedSchema(int occurrences);
// A document of so many numbers, a multiple of 1000: ten items under each of many rows.
std::unique_ptr<PhoneNode> largeSchema(int cells);

// The number of nodes below the root.
int nodesBelow(PhoneNode const& node);

// Makes the schema in the store, node by node. Borrowed: the store owns it.
ZorSchema* buildSchema(ZorCollection& store, PhoneNode const& root);

// Whether the store's tree has the same nodes in the same order: names, occurrences, types.
bool isSameTree(ZorSchemaNode const& made, PhoneNode const& node);

} // namespace bench
