// Schemas: making nodes with all their checks, looking up types, copying.

#include "zor/schema.h"

#include <climits>
#include <cstdint>
#include <memory>

#include "foundation/string_ref.h"
#include "foundation/text_argument.h"
#include "foundation/unfinished.h"
#include "incident/raise.h"
#include "platform/lock_holder.h"
#include "schema/document_count.h"
#include "schema/name_cache.h"
#include "schema/schema_changes.h"
#include "zor/collection.h"

using zor_internal::cacheChild;
using zor_internal::cachedChild;
using zor_internal::forgetTree;
using zor_internal::liveDocuments;
using zor_internal::LockHolder;
using zor_internal::raiseError;
using zor_internal::stringOf;
using zor_internal::StringRef;
using zor_internal::textOf;
using zor_internal::Unfinished;

namespace {

// Why a node cannot be made.
struct Refusal {
    incidentType type;
    char const* message;
};

constexpr Refusal kNoParent = {incidentNotFound, "): parent node is NULL"};
constexpr Refusal kParentIsData = {incidentNotFound,
                                   "): parent node is not a branch or schema node"};
constexpr Refusal kFrozen = {incidentInvalidState, "): Cannot modify schema while documents exist"};
constexpr Refusal kNameTaken = {incidentInvalidArgument,
                                "): node name already exists for given parent"};
constexpr Refusal kNoType = {incidentNotFound, "): data type is NULL"};

// The first reason against a child of that name, or null.
Refusal const* refusalOf(ZorSchemaNode const* parent, char const* name) {
    if (!parent) return &kNoParent;
    if (parent->isDataNode()) return &kParentIsData;
    ZorSchemaNode const* const root = parent->getSchemaRootNode();
    if (root && liveDocuments(root) > 0) return &kFrozen;
    if (cachedChild(parent, name)) return &kNameTaken;
    return nullptr;
}

ZorSchemaNode* refuse(char const* operation, char const* name, Refusal const& refusal) {
    raiseError(nullptr, refusal.type, operation, name, refusal.message);
    return nullptr;
}

// The product, held within 32 bits, and not above 0 when a factor is not: a node below 1
// occurrence has no cells, whatever is multiplied with it.
int totalOf(short occurrences, int parentTotal) {
    std::int64_t const product = std::int64_t(occurrences) * parentTotal;
    if ((occurrences < 1 || parentTotal < 1) && product > 0) return 0;
    if (product > INT_MAX) return INT_MAX;
    return product < INT_MIN ? INT_MIN : static_cast<int>(product);
}

unsigned long changes = 0;

void countChange() { __atomic_fetch_add(&changes, 1, __ATOMIC_RELAXED); }

// Gives the node its place: its counts, its name in the cache, its links.
ZorSchemaNode* attach(std::unique_ptr<ZorSchemaNode> made, ZorSchemaNode* parent,
                      short occurrences) {
    made->occurrences = occurrences;
    made->totalOccurrences = totalOf(occurrences, parent->getTotalOccurrences());
    made->parent = parent;
    made->previous = parent->lastChild;
    cacheChild(parent, made.get()); // where other threads find it
    countChange();
    ZorSchemaNode* const node = made.release();
    if (parent->lastChild)
        parent->lastChild->next = node;
    else
        parent->firstChild = node;
    parent->lastChild = node;
    return node;
}

// A copy into what is being copied would never end.
bool isBelow(ZorSchemaNode const* node, ZorSchemaNode const* top) {
    do node = node->parent;
    while (node && node != top);
    return node != nullptr;
}

void destroyTree(ZorSchemaNode* rootNode) {
    countChange();
    forgetTree(rootNode);
    delete rootNode;
}

} // namespace

unsigned long zor_internal::schemaChanges() { return __atomic_load_n(&changes, __ATOMIC_RELAXED); }

ZorSchema::ZorSchema(ZorCollection* owner, void const* name)
    : rootNode(new ZorSchemaNode(ZorSchemaNode::ROOT_NODE, name)), collection(owner),
      lock(1, 1, false) {}

ZorSchema::ZorSchema(ZorSchema const& other, ZorCollection const& owner)
    : ZorDataTypeCollection(other.getDataTypes()), rootNode(new ZorSchemaNode(*other.rootNode)),
      collection(const_cast<ZorCollection*>(&owner)), lock(1, 1, false) {
    Unfinished<ZorSchemaNode> tree(rootNode, destroyTree);
    copySchemaNode(other.rootNode, rootNode);
    tree.finish();
}

ZorSchema::~ZorSchema() { destroyTree(rootNode); }

ZorSchemaNode* ZorSchema::makeBranchNode(ZorSchemaNode* parent, void const* nodeName,
                                         short occurrences) {
    LockHolder const holder(lock);
    StringRef const name(stringOf(nodeName));
    if (Refusal const* const refusal = refusalOf(parent, name.text())) {
        return refuse("zor_branchNodeMake(", name.text(), *refusal);
    }
    auto node = std::make_unique<ZorSchemaNode>(ZorSchemaNode::BRANCH_NODE, name.get());
    return attach(std::move(node), parent, occurrences);
}

ZorSchemaNode* ZorSchema::makeDataNode(ZorSchemaNode* parent, void const* nodeName,
                                       short occurrences, ZorDataType* dataType,
                                       void const* defaultValue) {
    LockHolder const holder(lock);
    StringRef const name(stringOf(nodeName));
    Refusal const* refusal = refusalOf(parent, name.text());
    if (!refusal && !dataType) refusal = &kNoType;
    if (refusal) return refuse("zor_dataNodeMake(", name.text(), *refusal);

    auto node = std::make_unique<ZorSchemaNode>(ZorSchemaNode::DATA_NODE, name.get());
    node->flags = ZorSchemaNode::noDefault;
    node->valueIndex = -1;
    node->dataType = dataType;
    if (defaultValue) {
        node->defaultValue = dataType->fromStringFn(textOf(defaultValue));
        node->flags = 0;
    }
    return attach(std::move(node), parent, occurrences);
}

ZorSchemaNode* ZorSchema::getChildNode(ZorSchemaNode* node, void const* name) {
    if (!node || node->isDataNode()) return nullptr;
    return cachedChild(node, textOf(name));
}

ZorDataType* ZorSchema::getDataType(void const* name) {
    if (ZorDataType* const own = ZorDataTypeCollection::getDataType(name)) return own;
    if (collection) {
        if (ZorDataType* const shared = collection->getDataType(name)) return shared;
    }
    return ZorBuiltIn::getDataType(name);
}

short ZorSchema::documentCount() const { return liveDocuments(rootNode); }

void ZorSchema::copySchemaNode(ZorSchemaNode* from, ZorSchemaNode* toParent) {
    if (!from || !toParent || isBelow(toParent, from)) return;
    for (ZorSchemaNode const* child = from->getFirstChildNode(); child; child = child->next) {
        // A copy of the name, because the two schemas may be used by different threads.
        StringRef const name(zor_stringCopy(child->name));
        if (child->isBranchNode()) {
            copySchemaNode(const_cast<ZorSchemaNode*>(child),
                           makeBranchNode(toParent, name.get(), child->occurrences));
            continue;
        }
        StringRef const defaultText(child->getDefaultValue());
        // Kept: the type is looked up by name, and may be another one here.
        ZorDataType* const dataType = ZorSchema::getDataType(child->dataType->name);
        makeDataNode(toParent, name.get(), child->occurrences, dataType, defaultText.get());
    }
}

ZorSchemaNode* ZorSchema::getRootNode() const { return rootNode; }

char const* ZorSchema::getName() const { return rootNode->getName(); }
