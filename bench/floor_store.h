// What the floors work on: the cells of a document by hand. They lie as zor's do, one array for all
// values, the nodes in depth-first order, and take as much: a word and a byte of flags. There are
// no checks, and no operation but those that floor_*.cpp write out.

#pragma once

#include <semaphore.h>

#include <memory>
#include <string>
#include <vector>

#include "bench/phone_data.h"

namespace bench {

struct FloorNode {
    std::string name;
    FloorNode const* parent; // null for the root
    bool isBranch;           // the root is one
    int occurrences;
    int total;
    int order; // as PhoneNode's
    long firstCell;
    PhoneNode const* phone;
    std::vector<std::unique_ptr<FloorNode>> children;
};

// A text with room for 32 characters at least, so that a short one can be replaced in place.
struct FloorText {
    unsigned short length;
    unsigned short capacity;
    // They follow this head, with a NUL.
    char* characters() { return reinterpret_cast<char*>(this + 1); }
    char const* characters() const { return reinterpret_cast<char const*>(this + 1); }
};

struct FloorCell {
    union {
        long number;
        double real;
        FloorText* text;
    };
    unsigned char flags;
};

constexpr unsigned char kFloorChanged = 2;

// The tree, with the places of the cells.
std::unique_ptr<FloorNode> floorTree(PhoneNode const& root);
long cellCount(FloorNode const& root);
// The node at a path such as "/line/label". REQUIRES: there is one.
FloorNode const& floorNode(FloorNode const& root, std::string const& path);

// How a cell of that type holds its value.
enum class Held { number, real, text };
Held heldAs(PhoneType const& type);
// The number that stands for the text: of a bool 0 or 1, of an address its 32 bits.
long numberFrom(PhoneType const& type, std::string const& text);

// New text. The caller frees it with freeText.
FloorText* makeText(char const* text, std::size_t length);
void freeText(FloorText* text);

// A document of the tree, with the values of the data.
// On cache lines of its own, so that two of them do not disturb each other.
class alignas(64) FloorDocument {
public:
    // Borrows the tree, which must outlive it.
    FloorDocument(FloorNode const& root, PhoneData const& phone);
    FloorDocument(FloorDocument const&) = delete;
    FloorDocument& operator=(FloorDocument const&) = delete;
    ~FloorDocument();

    FloorNode const& tree() const { return root; }
    // The first cell of a node. Borrowed.
    FloorCell* cellsOf(FloorNode const& node) { return cells.get() + node.firstCell; }

    sem_t lock;

private:
    FloorNode const& root;
    std::unique_ptr<FloorCell[]> cells;
};

// Holds an uncontended POSIX semaphore: the lock of all floors.
class FloorLock {
public:
    explicit FloorLock(sem_t& semaphore) : held(semaphore) { sem_wait(&held); }
    FloorLock(FloorLock const&) = delete;
    FloorLock& operator=(FloorLock const&) = delete;
    ~FloorLock() { sem_post(&held); }

private:
    sem_t& held;
};

// The floor of reading one number. Out of line, as an operation of a library is.
[[gnu::noinline]] inline long readNumber(FloorDocument& document, FloorCell const* cells,
                                         int occurrence) {
    FloorLock const held(document.lock);
    return cells[occurrence].number;
}

} // namespace bench
