#include "collection/node_info.h"

NodeInfo::NodeInfo(ZorSchemaNode* parentNode, ZorString* nodeName, short count)
    : parent(parentNode), name(nodeName), occurrences(count), type(nullptr), defaultValue(nullptr) {
    zor_stringAddRef(name);
}

NodeInfo::~NodeInfo() {
    name->removeRef();
    if (defaultValue) defaultValue->removeRef();
}
