// The floor of writing: the check by hand and the write, between take and give of an uncontended
// semaphore. A text goes into the buffer that is there.

#include <cstring>
#include <string>

#include "bench/accesses.h"
#include "bench/floor_store.h"
#include "bench/workload.h"

namespace bench {
namespace {

// What the type of a node allows.
struct Rule {
    long minimum;
    long maximum;
    std::vector<std::string> const* options;
};

[[gnu::noinline]] bool writeNumber(FloorDocument& document, FloorCell& cell, Rule const& rule,
                                   long value) {
    FloorLock const held(document.lock);
    if (value < rule.minimum || value > rule.maximum) return false;
    cell.number = value;
    cell.flags = kFloorChanged;
    return true;
}

bool storeText(FloorCell& cell, char const* text) {
    std::size_t const length = std::strlen(text);
    if (length > cell.text->capacity) return false;
    std::memcpy(cell.text->characters(), text, length + 1);
    cell.text->length = static_cast<unsigned short>(length);
    cell.flags = kFloorChanged;
    return true;
}

[[gnu::noinline]] bool writeChoice(FloorDocument& document, FloorCell& cell, Rule const& rule,
                                   char const* text) {
    FloorLock const held(document.lock);
    for (std::string const& option : *rule.options) {
        if (std::strcmp(option.c_str(), text) == 0) return storeText(cell, text);
    }
    return false;
}

[[gnu::noinline]] bool writeDigits(FloorDocument& document, FloorCell& cell, Rule const&,
                                   char const* text) {
    FloorLock const held(document.lock);
    char const* at = text;
    if (*at == '+' && !*++at) return false;
    for (; *at; ++at) {
        if ((*at < '0' || *at > '9') && *at != '#' && *at != '*' && *at != ' ') return false;
    }
    return storeText(cell, text);
}

[[gnu::noinline]] bool writeText(FloorDocument& document, FloorCell& cell, Rule const&,
                                 char const* text) {
    FloorLock const held(document.lock);
    return storeText(cell, text);
}

void writeNumberByFloor(benchmark::State& state) {
    PhoneData const& phone = phoneData(sizeOf(state));
    std::unique_ptr<FloorNode> const tree = floorTree(phone.schema());
    FloorDocument document(*tree, phone);
    FloorNode const& node = floorNode(*tree, kNumberPath);
    PhoneType const& type = *node.phone->type;
    Rule const rule = {std::stol(type.minimum), std::stol(type.maximum), nullptr};
    FloorCell* const cells = document.cellsOf(node);
    std::vector<int> const order = shuffled(node.total);
    std::vector<long> const numbers = numericReplacementsFor(*node.phone);
    int round = 0;
    bool all = true;
    for (auto _ : state) {
        ++round;
        for (int const i : order) {
            all &= writeNumber(document, cells[i], rule, numbers[replacementAt(i, round)]);
        }
    }
    for (int i = 0; i < node.total; ++i) {
        all &= cells[i].number == numbers[replacementAt(i, round)];
    }
    if (!all) fail(state, "other numbers");
    countItems(state, static_cast<long>(order.size()));
}

template <typename Write>
void writeTextsByFloor(benchmark::State& state, char const* path, Write const& write) {
    PhoneData const& phone = phoneData(sizeOf(state));
    std::unique_ptr<FloorNode> const tree = floorTree(phone.schema());
    FloorDocument document(*tree, phone);
    FloorNode const& node = floorNode(*tree, path);
    Rule const rule = {0, 0, &node.phone->type->options};
    FloorCell* const cells = document.cellsOf(node);
    std::vector<int> const order = shuffled(node.total);
    std::vector<std::string> const texts = replacementsFor(*node.phone);
    int round = 0;
    bool all = true;
    for (auto _ : state) {
        ++round;
        for (int const i : order) {
            all &= write(document, cells[i], rule, texts[replacementAt(i, round)].c_str());
        }
    }
    for (int i = 0; i < node.total; ++i) {
        all &= texts[replacementAt(i, round)] == cells[i].text->characters();
    }
    if (!all) fail(state, "other texts");
    countItems(state, static_cast<long>(order.size()));
}

void writeChoiceByFloor(benchmark::State& state) {
    writeTextsByFloor(state, kChoicePath, writeChoice);
}
void writeDigitsByFloor(benchmark::State& state) {
    writeTextsByFloor(state, kDigitsPath, writeDigits);
}
void writeTextByFloor(benchmark::State& state) { writeTextsByFloor(state, kTextPath, writeText); }

[[maybe_unused]] auto* const number =
    addWorkload("WriteNumber", "floor", writeNumberByFloor, phoneSizes());
[[maybe_unused]] auto* const choice =
    addWorkload("WriteChoice", "floor", writeChoiceByFloor, phoneSizes());
[[maybe_unused]] auto* const digits =
    addWorkload("WriteDigits", "floor", writeDigitsByFloor, phoneSizes());
[[maybe_unused]] auto* const text =
    addWorkload("WriteText", "floor", writeTextByFloor, phoneSizes());

} // namespace
} // namespace bench
