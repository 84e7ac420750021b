#include "bench/phone_data.h"

#include <cstdio>
#include <cstdlib>
#include <map>
#include <utility>

#include "bench/phone_schema.h"
#include "bench/phone_text.h"

namespace bench {
namespace {

// Makes the tree and the list side by side.
class Filler {
public:
    explicit Filler(std::vector<PhoneValue>& values) : list(values) {}

    // Adds all occurrences of what is below a node to `element`, one occurrence of it.
    void fill(PhoneNode const& node, int flat, PhoneElement& element) {
        for (std::unique_ptr<PhoneNode> const& child : node.children) {
            for (int i = 0; i < child->occurrences; ++i) {
                add(*child, flat * child->occurrences + i, i + 1, element);
            }
        }
    }

private:
    void add(PhoneNode const& node, int flat, int occurrence, PhoneElement& outer) {
        path.push_back({&node, occurrence});
        PhoneElement element = {&node, occurrence, node.type ? textFor(node, flat) : "", {}};
        if (node.type) list.push_back({path, &node, flat, element.text});
        fill(node, flat, element);
        outer.children.push_back(std::move(element));
        path.pop_back();
    }

    std::vector<PhoneValue>& list;
    std::vector<PhoneStep> path;
};

void appendElements(std::string& out, std::vector<PhoneElement> const& elements) {
    for (PhoneElement const& element : elements) {
        out.append("<").append(element.node->name).append(">");
        appendEscaped(out, element.text);
        appendElements(out, element.children);
        out.append("</").append(element.node->name).append(">");
    }
}

std::string documentOf(PhoneElement const& top) {
    std::string const root = PhoneData::kRoot;
    std::string out = "<" + root + "><document schema=\"" + top.node->name + "\" name=\"" +
                      PhoneData::kDocument + "\">";
    appendElements(out, top.children);
    return out + "</document></" + root + ">";
}

PhoneNode const* findNode(PhoneNode const& node, char const* path) {
    if (node.path == path) return &node;
    for (std::unique_ptr<PhoneNode> const& child : node.children) {
        if (PhoneNode const* const found = findNode(*child, path)) return found;
    }
    return nullptr;
}

} // namespace

PhoneData::PhoneData(int values) : PhoneData(makePhoneSchema(values)) {}

PhoneData::PhoneData(std::unique_ptr<PhoneNode> schema)
    : root(std::move(schema)), top{root.get(), 1, "", {}} {
    Filler(list).fill(*root, 0, top);
    definitionText = definitionOf(*root);
    documentText = documentOf(top);
}

std::vector<PhoneType> const& PhoneData::types() const { return phoneTypes(); }

PhoneNode const& PhoneData::node(char const* path) const {
    if (PhoneNode const* const found = findNode(*root, path)) return *found;
    std::fprintf(stderr, "no node %s\n", path);
    std::abort();
}

PhoneData const& phoneData(int values) {
    static std::map<int, PhoneData> made;
    return made.try_emplace(values, values).first->second;
}

} // namespace bench
