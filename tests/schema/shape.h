// Schemas written as text.
//
//     Shape phone("line*2{key*3:int=5 label:string} volume:bool=true");
//     phone["line/key"]->getTotalOccurrences(); // 6
//     EXPECT_EQ(shapeOf(phone.root()), "line*2{key*3:int=5 label:string} volume:bool=true");
//
// A node is its name, "*" and its occurrences unless they are 1, and either its children in braces
// or ":" and its type, perhaps with "=" and a default. Blanks separate nodes.

#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "tests/support/text.h"
#include "zor/schema.h"

class Shape {
public:
    // The schema owns the types from then on; the text may name them.
    explicit Shape(std::string const& text, std::vector<ZorDataType*> const& ownTypes = {})
        : schema(nullptr, "phone") {
        for (ZorDataType* const type : ownTypes) EXPECT_EQ(schema.addDataType(type), 1);
        char const* at = text.c_str();
        readChildren(at, root());
        EXPECT_STREQ(at, "") << "not understood in " << text;
    }

    ZorSchemaNode* root() const { return schema.rootNode; }

    // The node of that path of names; fails the test when there is none.
    ZorSchemaNode* operator[](std::string const& path) const {
        ZorSchemaNode* node = root();
        for (std::size_t at = 0; node && at <= path.size();) {
            std::size_t const end = std::min(path.find('/', at), path.size());
            node = childOf(node, path.substr(at, end - at));
            at = end + 1;
        }
        EXPECT_NE(node, nullptr) << "no node " << path;
        return node;
    }

    ZorSchema schema;

private:
    static ZorSchemaNode* childOf(ZorSchemaNode const* node, std::string const& name) {
        ZorSchemaNode* child = node->firstChild;
        while (child && name != child->getName()) child = child->next;
        return child;
    }

    // The characters up to one of `ends`.
    static std::string word(char const*& at, char const* ends) {
        std::size_t const length = std::strcspn(at, ends);
        std::string const text(at, length);
        at += length;
        return text;
    }

    void readChildren(char const*& at, ZorSchemaNode* parent) {
        while (*at && *at != '}') {
            if (*at == ' ')
                ++at;
            else
                readNode(at, parent);
        }
    }

    void readNode(char const*& at, ZorSchemaNode* parent) {
        std::string const name = word(at, "*:{");
        int const occurrences = *at == '*' ? std::atoi(word(++at, ":{").c_str()) : 1;
        bool const isBranch = *at++ == '{';
        if (isBranch) {
            ZorSchemaNode* const node =
                schema.makeBranchNode(parent, name.c_str(), static_cast<short>(occurrences));
            readChildren(at, node);
            if (*at) ++at;
            return;
        }
        std::string const type = word(at, "= }");
        bool const hasDefault = *at == '=';
        std::string const defaultText = hasDefault ? word(++at, " }") : "";
        schema.makeDataNode(parent, name.c_str(), static_cast<short>(occurrences),
                            schema.getDataType(type.c_str()),
                            hasDefault ? defaultText.c_str() : nullptr);
    }
};

// What is below the node, in the same notation.
inline std::string shapeOf(ZorSchemaNode const* node) {
    std::string text;
    for (ZorSchemaNode const* child = node->firstChild; child; child = child->next) {
        if (!text.empty()) text += ' ';
        text += child->getName();
        if (child->occurrences != 1) text += '*' + std::to_string(child->occurrences);
        if (child->isBranchNode()) {
            text += '{' + shapeOf(child) + '}';
            continue;
        }
        text += std::string(":") + zor_dataTypeName(child->dataType);
        if (ZorString* const defaultText = child->getDefaultValue())
            text += '=' + taken(defaultText);
    }
    return text;
}

// The names from the root down, without the root's.
inline std::string pathOf(ZorSchemaNode const* node) {
    if (node->isSchemaRootNode()) return "";
    std::string const above = pathOf(node->parent);
    return above.empty() ? node->getName() : above + '/' + node->getName();
}

// All nodes below `node`, parents first.
inline void collectNodes(ZorSchemaNode* node, std::vector<ZorSchemaNode*>& out) {
    for (ZorSchemaNode* child = node->firstChild; child; child = child->next) {
        out.push_back(child);
        collectNodes(child, out);
    }
}

inline std::vector<ZorSchemaNode*> nodesBelow(ZorSchemaNode* node) {
    std::vector<ZorSchemaNode*> nodes;
    collectNodes(node, nodes);
    return nodes;
}

// A shape of up to `depth` levels, whose occurrences are drawn from `occurrences`.
inline std::string randomShape(std::mt19937& random, int depth,
                               std::vector<int> const& occurrences) {
    auto const below = [&random](std::size_t limit) {
        return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random);
    };
    static char const* const items[] = {":string",    ":string=x", ":int=7",
                                        ":bool=true", ":uint",     ":float=0.5"};
    std::string text;
    for (char const* const name : {"b", "a", "d", "c"}) {
        if (below(3) == 0) continue;
        if (!text.empty()) text += ' ';
        text += name;
        text += '*' + std::to_string(occurrences[below(occurrences.size())]);
        if (depth > 1 && below(2) == 0)
            text += '{' + randomShape(random, depth - 1, occurrences) + '}';
        else
            text += items[below(6)];
    }
    return text;
}
