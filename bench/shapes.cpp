#include "bench/shapes.h"

#include <algorithm>
#include <string>

#include "bench/phone_schema.h"
#include "zor/collection.h"

namespace bench {
namespace {

std::string numbered(char const* name, int number) { return name + std::to_string(number); }

// The types that the shapes use, looked up once: what is measured is the making of nodes.
struct Types {
    explicit Types(ZorSchema& schema)
        : text(schema.getDataType("string")), number(schema.getDataType("int")) {}

    ZorDataType* of(PhoneNode const& node) const {
        return node.type->name == "string" ? text : number;
    }

    ZorDataType* text;
    ZorDataType* number;
};

void buildBelow(ZorSchema& schema, ZorSchemaNode* made, PhoneNode const& node, Types const& types) {
    for (std::unique_ptr<PhoneNode> const& child : node.children) {
        char const* const name = child->name.c_str();
        auto const occurrences = static_cast<short>(child->occurrences);
        if (child->type)
            schema.makeDataNode(made, name, occurrences, types.of(*child),
                                child->defaultText.c_str());
        else
            buildBelow(schema, schema.makeBranchNode(made, name, occurrences), *child, types);
    }
}

} // namespace

std::unique_ptr<PhoneNode> schemaOf(int nodes) {
    constexpr int kGroups = 10;
    constexpr int kItems = 9;
    TreeMaker tree("schema");
    for (int made = 0; made < nodes; made += kGroups * (kItems + 1)) {
        PhoneNode* const area = tree.branch(tree.root(), numbered("area", made), 1);
        for (int i = 0; i < kGroups; ++i) {
            PhoneNode* const group = tree.branch(area, numbered("group", i), 2);
            for (int k = 0; k < kItems; ++k) {
                bool const isText = k % 3 == 0;
                tree.item(group, numbered("item", k), 1, phoneType(isText ? "string" : "int"),
                          isText ? "none" : "0");
            }
        }
    }
    return tree.take();
}

std::unique_ptr<PhoneNode> wideSchema(int names) {
    TreeMaker tree("schema");
    PhoneNode* const branch = tree.branch(tree.root(), "settings", 1);
    for (int i = 0; i < names; ++i) {
        tree.item(branch, numbered("setting", i), 1, phoneType("int"), "0");
    }
    return tree.take();
}

std::unique_ptr<PhoneNode> repeatedSchema(int occurrences) {
    TreeMaker tree("schema");
    PhoneNode* const list = tree.branch(tree.root(), "list", 1);
    PhoneNode* const entry = tree.branch(list, "entry", occurrences);
    tree.item(entry, "name", 1, phoneType("string"), "none");
    return tree.take();
}

std::unique_ptr<PhoneNode> largeSchema(int cells) {
    constexpr int kItems = 10;
    constexpr int kOccurrences = 10;
    TreeMaker tree("schema");
    PhoneNode* const row = tree.branch(tree.root(), "row", cells / kItems / kOccurrences);
    for (int i = 0; i < kItems; ++i) {
        tree.item(row, numbered("item", i), kOccurrences, phoneType("int"), "7");
    }
    return tree.take();
}

int nodesBelow(PhoneNode const& node) {
    int sum = static_cast<int>(node.children.size());
    for (std::unique_ptr<PhoneNode> const& child : node.children) sum += nodesBelow(*child);
    return sum;
}

ZorSchema* buildSchema(ZorCollection& store, PhoneNode const& root) {
    ZorSchema* const schema = store.makeSchema(root.name.c_str());
    buildBelow(*schema, schema->rootNode, root, Types(*schema));
    return schema;
}

bool isSameTree(ZorSchemaNode const& made, PhoneNode const& node) {
    if (node.name != made.getName() || node.occurrences != made.getOccurrences() ||
        made.isDataNode() != (node.type != nullptr)) {
        return false;
    }
    if (node.type && node.type->name != zor_dataTypeName(made.getDataType())) return false;
    ZorSchemaNode const* child = made.getFirstChildNode();
    for (std::unique_ptr<PhoneNode> const& expected : node.children) {
        if (!child || !isSameTree(*child, *expected)) return false;
        child = child->getNextNode();
    }
    return child == nullptr;
}

} // namespace bench
