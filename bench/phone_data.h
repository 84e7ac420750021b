// The data of a desk telephone, in any amount: what all benchmarks work on.
//
// The schema is always the same, some eighty nodes of all built-in types, choices and ranges; its
// accounts, lines with their keys, directory and recent calls repeat as often as it takes to reach
// the wanted number of values. Each value is given, and differs from its default. The same data
// is there as XML for zor (and for every reader of XML), as a tree, and as a flat list:
//
//     PhoneData const& phone = phoneData(1000);
//     store.importXML(phone.definition().c_str()); // ZorCollection store(PhoneData::kRoot)
//     store.importXML(phone.document().c_str());
//     for (PhoneValue const& value : phone.flat()) use(value.path, value.node->type, value.text);
//
// The amount of every kind of text, number and branch is in proportion at every size. Nothing is
// random: a size gives the same bytes on every machine.
//
// Threads: phoneData is for the main thread; the data is only read afterwards.

#pragma once

#include <memory>
#include <string>
#include <vector>

namespace bench {

// A type of values. A built-in one has neither options nor bounds; a choice is made of its options,
// its base being "string"; a range has a base and two bounds, both included.
struct PhoneType {
    std::string name;
    std::string base;
    std::vector<std::string> options;
    std::string minimum;
    std::string maximum;
};

// A node of the schema, which has an own path such as "/line/key/label"; the root's is empty.
struct PhoneNode {
    std::string name;
    std::string path;
    PhoneNode const* parent; // null for the root
    PhoneType const* type;   // null for branches and for the root
    std::string defaultText; // of values: not empty
    int occurrences;         // under one occurrence of the parent
    int total;               // in all
    int order;               // from 0, the root's; parents and elder siblings come first
    std::vector<std::unique_ptr<PhoneNode>> children;
};

// An occurrence of a branch, with what it holds, or a value with its text. `occurrence` counts from
// 1, below one occurrence of the parent.
struct PhoneElement {
    PhoneNode const* node;
    int occurrence;
    std::string text;
    std::vector<PhoneElement> children;
};

struct PhoneStep {
    PhoneNode const* node;
    int occurrence; // from 1
};

// A value by itself: the steps that lead to it from below the root on, its own being the last one.
struct PhoneValue {
    std::vector<PhoneStep> path;
    PhoneNode const* node;
    int flat; // which of node->total, from 0
    std::string text;
};

class PhoneData {
public:
    static constexpr char const* kRoot = "deskphone"; // the root element, and the collection
    static constexpr char const* kSchema = "phone";   // the name of the root node
    static constexpr char const* kDocument = "phone1";
    static constexpr int kFewest = 100;
    static constexpr int kMost = 500000; // no node repeats more than 32767 times

    // REQUIRES: kFewest <= values <= kMost.
    explicit PhoneData(int values);
    // Values for a schema of another shape.
    explicit PhoneData(std::unique_ptr<PhoneNode> schema);

    // The number of values: exactly what was asked for.
    int values() const { return static_cast<int>(list.size()); }

    PhoneNode const& schema() const { return *root; }
    std::vector<PhoneType> const& types() const; // choices and ranges
    // The node at a path such as "/line/label". REQUIRES: there is one.
    PhoneNode const& node(char const* path) const;

    PhoneElement const& tree() const { return top; } // its children are those of the root
    std::vector<PhoneValue> const& flat() const { return list; }

    // The definition of the schema in zor's definition language.
    std::string const& definition() const { return definitionText; }
    // All values, byte for byte as zor exports them: without white space between the elements, in
    // the order of the schema.
    std::string const& document() const { return documentText; }

private:
    std::unique_ptr<PhoneNode> root;
    PhoneElement top;
    std::vector<PhoneValue> list;
    std::string definitionText;
    std::string documentText;
};

// The data of that many values, made at the first call. Borrowed: until the program ends.
PhoneData const& phoneData(int values);

} // namespace bench
