#include "bench/floor_store.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>

namespace bench {
namespace {

constexpr std::size_t kLeastCapacity = 32;

std::unique_ptr<FloorNode> copyOf(PhoneNode const& node, FloorNode const* parent, long* cells) {
    std::unique_ptr<FloorNode> copy(new FloorNode{node.name,
                                                  parent,
                                                  !node.type,
                                                  node.occurrences,
                                                  node.total,
                                                  node.order,
                                                  *cells,
                                                  &node,
                                                  {}});
    if (node.type) *cells += node.total;
    for (std::unique_ptr<PhoneNode> const& child : node.children) {
        copy->children.push_back(copyOf(*child, copy.get(), cells));
    }
    return copy;
}

// Calls visit(node) for every node with values.
template <typename Visit>
void forEachItem(FloorNode const& node, Visit const& visit) {
    if (!node.isBranch) visit(node);
    for (std::unique_ptr<FloorNode> const& child : node.children) forEachItem(*child, visit);
}

void setCell(FloorCell& cell, PhoneType const& type, std::string const& text) {
    switch (heldAs(type)) {
    case Held::number:
        cell.number = numberFrom(type, text);
        break;
    case Held::real:
        cell.real = std::stod(text);
        break;
    case Held::text:
        cell.text = makeText(text.data(), text.size());
        break;
    }
    cell.flags = kFloorChanged;
}

} // namespace

std::unique_ptr<FloorNode> floorTree(PhoneNode const& root) {
    long cells = 0;
    return copyOf(root, nullptr, &cells);
}

long cellCount(FloorNode const& root) {
    long count = 0;
    forEachItem(root, [&count](FloorNode const& node) { count += node.total; });
    return count;
}

FloorNode const& floorNode(FloorNode const& root, std::string const& path) {
    FloorNode const* found = nullptr;
    forEachItem(root, [&](FloorNode const& node) {
        if (node.phone->path == path) found = &node;
    });
    if (found) return *found;
    std::fprintf(stderr, "no node %s\n", path.c_str());
    std::abort();
}

Held heldAs(PhoneType const& type) {
    if (type.base == "float") return Held::real;
    for (char const* const base : {"int", "uint", "bool", "ip_address", "ip_mask"}) {
        if (type.base == base) return Held::number;
    }
    return Held::text;
}

long numberFrom(PhoneType const& type, std::string const& text) {
    if (type.base == "bool") return text == "true";
    if (type.base != "ip_address" && type.base != "ip_mask") return std::stol(text);
    unsigned a = 0;
    unsigned b = 0;
    unsigned c = 0;
    unsigned d = 0;
    if (std::sscanf(text.c_str(), "%u.%u.%u.%u", &a, &b, &c, &d) != 4) std::abort();
    return static_cast<long>(a << 24 | b << 16 | c << 8 | d);
}

FloorText* makeText(char const* text, std::size_t length) {
    std::size_t const capacity = std::max(kLeastCapacity, length);
    auto* const made = static_cast<FloorText*>(std::malloc(sizeof(FloorText) + capacity + 1));
    made->length = static_cast<unsigned short>(length);
    made->capacity = static_cast<unsigned short>(capacity);
    std::memcpy(made->characters(), text, length);
    made->characters()[length] = '\0';
    return made;
}

void freeText(FloorText* text) { std::free(text); }

FloorDocument::FloorDocument(FloorNode const& top, PhoneData const& phone)
    : root(top), cells(new FloorCell[static_cast<std::size_t>(cellCount(top))]) {
    sem_init(&lock, 0, 1);
    std::map<PhoneNode const*, FloorCell*> places;
    forEachItem(root, [&](FloorNode const& node) { places.emplace(node.phone, cellsOf(node)); });
    for (PhoneValue const& value : phone.flat()) {
        setCell(places.at(value.node)[value.flat], *value.node->type, value.text);
    }
}

FloorDocument::~FloorDocument() {
    forEachItem(root, [this](FloorNode const& node) {
        if (heldAs(*node.phone->type) != Held::text) return;
        std::for_each_n(cellsOf(node), node.total, [](FloorCell& cell) { freeText(cell.text); });
    });
    sem_destroy(&lock);
}

} // namespace bench
