// Schemas: the shape of a document.
//
// A schema is a tree of named nodes under a root that bears the schema's name. Branches group;
// data nodes carry a data type and perhaps a default. Every node has an occurrence count, so that
// one node can stand for a repeated block.
//
//     ZorSchema* schema = collection.makeSchema("phone");
//     ZorSchemaNode* key = schema->makeBranchNode(schema->getRootNode(), "lineKey", 48);
//     schema->makeDataNode(key, "label", 1, schema->getDataType("string"), "");
//     schema->makeDataNode(key, "enabled", 1, schema->getDataType("bool"), "true");
//
// Values: a document holds one cell for every occurrence of every data node, all in one array. A
// data node's cells lie together from its valueIndex on, nodes in depth-first order. Within them, a
// cell is found by its flat occurrence: parent's flat occurrence x node's occurrences + the node's
// own, from 0; the root's is 0.
//
// Names and defaults given as `void const*` are a ZorString or plain text; a null name counts as
// the empty one.
//
// Threads: a schema's lock serialises the making of nodes, and of documents by a collection. While
// a schema has documents it takes no new nodes, and its tree is only read.

#pragma once

#include <functional>
#include <map>
#include <string>

#include "zor/containers.h"
#include "zor/export.h"
#include "zor/platform.h"
#include "zor/string.h"
#include "zor/text.h"
#include "zor/types.h"

class ZorCollection;

// One value of a document.
struct ZorValueNode {
    // Bits of `flags`.
    static constexpr unsigned char noValue = 1;
    static constexpr unsigned char changed = 2;

    u_zorItemValue value; // owned; meaningful while noValue is clear
    unsigned char flags;
};

// A node of a schema: the root, a branch or a data node.
class ZOR_API ZorSchemaNode {
public:
    enum e_nodeType : int { BRANCH_NODE = 0, DATA_NODE = 1, ROOT_NODE = 2 };

    // Bits of `flags`.
    static constexpr unsigned char noDefault = 1;
    static constexpr unsigned char sharedDefault = 2; // a copy's default, which it does not own

    // A node without links, occurrences and type. Adds a reference to a ZorString name.
    ZorSchemaNode(e_nodeType nodeType, void const* nodeName);
    // A node of the same kind, name and type, without links, occurrences, index and documents. A
    // data node's default stays `other`'s, which the copy must not outlive.
    ZorSchemaNode(ZorSchemaNode const& other);
    ZorSchemaNode& operator=(ZorSchemaNode const&) = delete;
    // Destroys everything below the node, too.
    virtual ~ZorSchemaNode();

    // Never null. Borrowed as long as the node lives.
    char const* getName() const;
    // How often the node repeats under one occurrence of its parent; 1 for the root.
    int getOccurrences() const;
    // How often it repeats in all: the number of flat occurrences; 1 for the root.
    int getTotalOccurrences() const;
    // Null for the root.
    ZorSchemaNode* getParentNode() const;
    // The siblings, null at the ends.
    ZorSchemaNode* getNextNode() const;
    ZorSchemaNode* getPreviousNode() const;
    // Null for data nodes, and when there are none.
    ZorSchemaNode* getFirstChildNode() const;
    ZorSchemaNode* getLastChildNode() const;
    // Null unless this is a data node. Borrowed.
    ZorDataType* getDataType() const;
    // The default as text; null when there is none. New reference.
    ZorString* getDefaultValue() const;
    bool isSchemaRootNode() const;
    bool isBranchNode() const; // the root is not a branch
    bool isDataNode() const;
    // The root above this node; null when it is not attached to one.
    ZorSchemaNode* getSchemaRootNode() const;

    // The number of cells this subtree needs; LONG_MAX when it is beyond that. A node whose
    // occurrences are below 1 needs none, nor does anything below it. Also makes the child index
    // of every branch, unless documents of the schema exist.
    long countRequiredValueNodes();
    // Fills the cells of a new document with the defaults, and sets the valueIndex of every data
    // node. The number of cells filled. On the root: startIndex 0, multiplier 1.
    // REQUIRES: `cells` hold no values and are as many as countRequiredValueNodes says.
    long makeValueNodes(ZorValueNode* cells, long startIndex, long multiplier);
    // The same with copies of another document's cells, flags included.
    // REQUIRES: both documents have the same layout.
    long copyValueNodes(ZorValueNode const* from, ZorValueNode* to, long startIndex,
                        long multiplier);
    // Releases the values in the cells; the flags stay. The number of cells visited.
    long freeValueNodes(ZorValueNode* cells, long multiplier);

    // The one node that `path` names below this one; null for null. Null with an incident
    // (severity 3, type 2) when the path is empty ("xpath must not be empty"), names nothing
    // ("path (P) not found") or more than one node ("path (P) is ambiguous"), or looks at more than
    // 1048576 ("path (P) reaches too many nodes"). Borrowed.
    ZorSchemaNode* findSubNode(ZorString* path);
    // Appends every node that the path names to *result, a list of ZorSchemaNode* that may be null
    // still; `length` -1 means up to the NUL. Names are separated by "/"; "*" stands for every
    // name; "//" reaches children and grandchildren. A node reached twice is listed twice. A
    // leading "/" changes nothing; a trailing one, three slashes in a row, unknown names and null
    // find nothing. Neither does a path that looks at more than 1048576 nodes, which raises "path
    // (P) reaches too many nodes" (severity 3, type 2).
    void findSubNodes(ZorListNode** result, char const* path, int length);

    e_nodeType type;
    ZorString* name;
    ZorSchemaNode* next;
    ZorSchemaNode* previous;
    ZorSchemaNode** sortedChildren; // the children by name (strcmp), made when cells are counted
    short documentCount;            // root only: live documents of this schema
    ZorSchemaNode* firstChild;
    ZorSchemaNode* lastChild;
    short childCount; // entries of sortedChildren
    ZorSchemaNode* parent;
    short occurrences;
    int totalOccurrences;  // saturates at the ends of 32 bits; not above 0 when any factor is not
    ZorDataType* dataType; // data nodes only; not owned
    u_zorItemValue defaultValue; // data nodes only; meaningful while noDefault is clear
    int valueIndex;              // data nodes only: first cell; -1 until a document was made
    unsigned char flags;
};

// The shape of documents: a tree of nodes, and the types that are declared for it.
class ZOR_API ZorSchema : public ZorDataTypeCollection {
public:
    using ChildMap = std::map<std::string, ZorSchemaNode*, std::less<>>;
    using NodeMap = std::map<ZorSchemaNode const*, ChildMap>;

    // A schema without nodes or types, owned by `collection` in the sense that its types are
    // found there, too; null is allowed.
    ZorSchema(ZorCollection* collection, void const* name);
    // A copy with types of its own. Types that the copied nodes use are looked up by name in the
    // copy's scope; a node whose type is not found there is dropped with an incident. Defaults are
    // read again from their text.
    ZorSchema(ZorSchema const& other, ZorCollection const& collection);
    // REQUIRES: no document of this schema is left.
    ~ZorSchema() override;

    // Adds a node under `parent` and returns it. Null with one incident (severity 3, no context),
    // text "zor_branchNodeMake(NAME" or "zor_dataNodeMake(NAME" and, checked in this order:
    // "): parent node is NULL" (type 3), "): parent node is not a branch or schema node" (3),
    // "): Cannot modify schema while documents exist" (4), "): node name already exists for given
    // parent" (2), and for data nodes "): data type is NULL" (3). Occurrences below 1 are taken as
    // they are: such a node has no cells. A null default means none; one that the type would
    // refuse is converted all the same. Borrowed: the schema owns the node.
    // REQUIRES: `parent` is null or a node of this schema.
    ZorSchemaNode* makeBranchNode(ZorSchemaNode* parent, void const* name, short occurrences);
    ZorSchemaNode* makeDataNode(ZorSchemaNode* parent, void const* name, short occurrences,
                                ZorDataType* dataType, void const* defaultValue);

    // The child of `node` with exactly that name, or null. Borrowed.
    ZorSchemaNode* getChildNode(ZorSchemaNode* node, void const* name);

    // The type of that name among the schema's own, else the owning collection's, else the
    // built-in ones; null when there is none. Borrowed.
    ZorDataType* getDataType(void const* name) override;

    // The number of live documents of this schema.
    short documentCount() const;

    // Makes what is below `from` (of any schema) below `toParent` (of this one) again. A node that
    // is refused is left out with all below it, and an incident is raised for it. Does nothing when
    // either is null, and when `toParent` lies below `from`.
    void copySchemaNode(ZorSchemaNode* from, ZorSchemaNode* toParent);

    // Borrowed as long as the schema lives.
    ZorSchemaNode* getRootNode() const;
    char const* getName() const;

    // Writes the schema in the definition language: its types, then its nodes, flat, each naming
    // its parent by path. Names, types, defaults and paths are written as they are, unescaped.
    void exportXML(ZorDataWriter* writer);
    // The same for one node and what is below it.
    // REQUIRES: the caller holds the schema's lock.
    void exportSchemaNode(ZorDataWriter* writer, ZorSchemaNode* node);
    void exportChildNodes(ZorDataWriter* writer, ZorSchemaNode* node);

    // Children by name, for all schemas of the process, guarded by sNodeMapSema4. Both are usable
    // from any static initialiser and never destroyed: they outlive every static object that may
    // still own a schema.
    static NodeMap& sNodeMap;
    static Semaphore& sNodeMapSema4;

    ZorSchemaNode* rootNode;   // owned
    ZorCollection* collection; // or null; not owned
    Semaphore lock;            // serialises the making of nodes; taken before sNodeMapSema4
};
