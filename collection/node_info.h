// A node between the start and the end of its <branch> or <item> element.

#pragma once

#include "zor/schema.h"

class NodeInfo {
public:
    // Adds a reference to the name.
    NodeInfo(ZorSchemaNode* parentNode, ZorString* nodeName, short count);
    NodeInfo(NodeInfo const&) = delete;
    NodeInfo& operator=(NodeInfo const&) = delete;
    virtual ~NodeInfo();

    ZorSchemaNode* parent; // not owned
    ZorString* name;       // one reference
    short occurrences;
    ZorDataType* type;       // items only; not owned
    ZorString* defaultValue; // items only; one reference, or null
};
