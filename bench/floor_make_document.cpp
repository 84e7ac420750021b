// The floor of making a document: `new` and fill of the same cells, and their release. A text is a
// block of its own, as long as it is; a floating-point number is in its cell.

#include <cstring>
#include <memory>
#include <string>

#include "bench/floor_store.h"
#include "bench/phone_data.h"
#include "bench/workload.h"

namespace bench {
namespace {

// A node's cells: what they hold at first.
struct Block {
    Held held;
    long number;
    double real;
    std::string text;
    int count;
};

struct Cell {
    union {
        long number;
        double real;
        char* text;
    };
    unsigned char flags;
};

void collect(PhoneNode const& node, std::vector<Block>& blocks) {
    if (node.type) {
        Block block = {heldAs(*node.type), 0, 0, node.defaultText, node.total};
        if (block.held == Held::number) block.number = numberFrom(*node.type, block.text);
        if (block.held == Held::real) block.real = std::stod(block.text);
        blocks.push_back(block);
    }
    for (std::unique_ptr<PhoneNode> const& child : node.children) collect(*child, blocks);
}

char* copyOf(std::string const& text) {
    char* const copy = new char[text.size() + 1];
    std::memcpy(copy, text.c_str(), text.size() + 1);
    return copy;
}

Cell* fill(Cell* cell, Block const& block) {
    Cell* const end = cell + block.count;
    for (; cell < end; ++cell) {
        switch (block.held) {
        case Held::number:
            cell->number = block.number;
            break;
        case Held::real:
            cell->real = block.real;
            break;
        case Held::text:
            cell->text = copyOf(block.text);
            break;
        }
        cell->flags = 0;
    }
    return end;
}

Cell* makeCells(std::vector<Block> const& blocks, std::size_t count) {
    Cell* const cells = new Cell[count];
    Cell* next = cells;
    for (Block const& block : blocks) next = fill(next, block);
    return cells;
}

void deleteCells(std::vector<Block> const& blocks, Cell* cells) {
    Cell* cell = cells;
    for (Block const& block : blocks) {
        Cell* const end = cell + block.count;
        for (; block.held == Held::text && cell < end; ++cell) delete[] cell->text;
        cell = end;
    }
    delete[] cells;
}

void makeByFloor(benchmark::State& state) {
    PhoneData const& phone = phoneData(sizeOf(state));
    std::vector<Block> blocks;
    collect(phone.schema(), blocks);
    auto const count = static_cast<std::size_t>(phone.values());
    for (auto _ : state) {
        Cell* const cells = makeCells(blocks, count);
        keep(cells);
        deleteCells(blocks, cells);
    }
    Cell* const cells = makeCells(blocks, count);
    if (phone.node("/model").defaultText != cells[0].text) fail(state, "other cells");
    deleteCells(blocks, cells);
    countItems(state, phone.values());
}

[[maybe_unused]] auto* const added =
    addWorkload("MakeDocument", "floor", makeByFloor, phoneSizes());

} // namespace
} // namespace bench
