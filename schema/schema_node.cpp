// Schema nodes: life and accessors.

#include "zor/schema.h"

#include "foundation/text_argument.h"
#include "schema/root_of.h"

using zor_internal::rootOf;
using zor_internal::stringOf;

ZorSchemaNode::ZorSchemaNode(e_nodeType nodeType, void const* nodeName)
    : type(nodeType), name(stringOf(nodeName)), next(nullptr), previous(nullptr),
      sortedChildren(nullptr), documentCount(0), firstChild(nullptr), lastChild(nullptr),
      childCount(0), parent(nullptr), occurrences(0), totalOccurrences(0), dataType(nullptr),
      defaultValue(), valueIndex(0), flags(0) {}

ZorSchemaNode::ZorSchemaNode(ZorSchemaNode const& other)
    : type(other.type), name(zor_stringCopy(other.name)), next(nullptr), previous(nullptr),
      sortedChildren(nullptr), documentCount(0), firstChild(nullptr), lastChild(nullptr),
      childCount(0), parent(nullptr), occurrences(0), totalOccurrences(0), dataType(other.dataType),
      defaultValue(other.defaultValue), valueIndex(0), flags(other.flags) {
    if (isDataNode() && !(flags & noDefault)) flags |= sharedDefault;
}

ZorSchemaNode::~ZorSchemaNode() {
    if (isDataNode() && dataType && !(flags & (noDefault | sharedDefault))) {
        dataType->freeValueFn(defaultValue);
    }
    // Children hand their own children to the queue before they go, so that the depth of the tree
    // costs no stack.
    for (ZorSchemaNode* queue = firstChild; queue;) {
        ZorSchemaNode* const child = queue;
        queue = child->next;
        if (child->firstChild) {
            child->lastChild->next = queue;
            queue = child->firstChild;
            child->firstChild = nullptr;
        }
        delete child;
    }
    delete[] sortedChildren;
    name->removeRef();
}

char const* ZorSchemaNode::getName() const { return name ? name->text : nullptr; }

int ZorSchemaNode::getOccurrences() const { return isSchemaRootNode() ? 1 : occurrences; }

int ZorSchemaNode::getTotalOccurrences() const { return isSchemaRootNode() ? 1 : totalOccurrences; }

ZorSchemaNode* ZorSchemaNode::getParentNode() const {
    return isSchemaRootNode() ? nullptr : parent;
}

ZorSchemaNode* ZorSchemaNode::getNextNode() const { return next; }

ZorSchemaNode* ZorSchemaNode::getPreviousNode() const { return previous; }

ZorSchemaNode* ZorSchemaNode::getFirstChildNode() const {
    return isDataNode() ? nullptr : firstChild;
}

ZorSchemaNode* ZorSchemaNode::getLastChildNode() const {
    return isDataNode() ? nullptr : lastChild;
}

ZorDataType* ZorSchemaNode::getDataType() const { return isDataNode() ? dataType : nullptr; }

ZorString* ZorSchemaNode::getDefaultValue() const {
    if (!isDataNode() || !dataType || (flags & noDefault)) return nullptr;
    return dataType->toStringFn(defaultValue);
}

bool ZorSchemaNode::isSchemaRootNode() const { return type == ROOT_NODE; }

bool ZorSchemaNode::isBranchNode() const { return type == BRANCH_NODE; }

bool ZorSchemaNode::isDataNode() const { return type == DATA_NODE; }

ZorSchemaNode* ZorSchemaNode::getSchemaRootNode() const {
    return rootOf(const_cast<ZorSchemaNode*>(this));
}
