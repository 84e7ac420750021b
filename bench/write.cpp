// Writing one value with validation, by its node and occurrence: a number, a choice, a digit string
// and a text, the texts being short ones that replace short ones. Every occurrence in turn, in an
// order that no cache foresees.

#include <string>

#include "bench/accesses.h"
#include "bench/heap_meter.h"
#include "bench/workload.h"
#include "bench/zor_phone.h"

namespace bench {
namespace {

// Whether every occurrence has the text that it was given in that round.
bool hasRound(ZorDocument& document, ZorSchemaNode* node, std::vector<std::string> const& texts,
              int round) {
    for (int i = 0; i < node->getTotalOccurrences(); ++i) {
        ZorString* const found = document.getStringNodeValue(node, i);
        bool const same = found && texts[replacementAt(i, round)] == zor_stringValue(found);
        if (found) found->removeRef();
        if (!same) return false;
    }
    return true;
}

void writeNumberByZor(benchmark::State& state) {
    PhoneData const& phone = phoneData(sizeOf(state));
    ZorPhone zor(phone);
    ZorDocument& document = zor.document();
    ZorSchemaNode* const node = zor.node(kNumberPath);
    std::vector<int> const order = shuffled(node->getTotalOccurrences());
    std::vector<std::string> const texts = replacementsFor(phone.node(kNumberPath));
    std::vector<long> const numbers = numericReplacementsFor(phone.node(kNumberPath));
    int round = 0;
    for (auto _ : state) {
        ++round;
        for (int const i : order) {
            document.setIntNodeValue(node, i, numbers[replacementAt(i, round)]);
        }
    }
    if (!hasRound(document, node, texts, round)) fail(state, "other numbers");
    countItems(state, static_cast<long>(order.size()));
}

void writeTextsByZor(benchmark::State& state, char const* path) {
    PhoneData const& phone = phoneData(sizeOf(state));
    ZorPhone zor(phone);
    ZorDocument& document = zor.document();
    ZorSchemaNode* const node = zor.node(path);
    std::vector<int> const order = shuffled(node->getTotalOccurrences());
    std::vector<std::string> const texts = replacementsFor(phone.node(path));
    int round = 0;
    auto const writeRound = [&] {
        ++round;
        for (int const i : order) {
            document.setStringNodeValue(node, i, texts[replacementAt(i, round)].c_str());
        }
    };
    for (auto _ : state) writeRound();
    HeapMeter const meter;
    writeRound();
    if (meter.allocations() != 0) fail(state, "a short text was allocated");
    if (!hasRound(document, node, texts, round)) fail(state, "other texts");
    countItems(state, static_cast<long>(order.size()));
}

void writeChoiceByZor(benchmark::State& state) { writeTextsByZor(state, kChoicePath); }
void writeDigitsByZor(benchmark::State& state) { writeTextsByZor(state, kDigitsPath); }
void writeTextByZor(benchmark::State& state) { writeTextsByZor(state, kTextPath); }

[[maybe_unused]] auto* const number =
    addWorkload("WriteNumber", "zor", writeNumberByZor, phoneSizes());
[[maybe_unused]] auto* const choice =
    addWorkload("WriteChoice", "zor", writeChoiceByZor, phoneSizes());
[[maybe_unused]] auto* const digits =
    addWorkload("WriteDigits", "zor", writeDigitsByZor, phoneSizes());
[[maybe_unused]] auto* const text = addWorkload("WriteText", "zor", writeTextByZor, phoneSizes());

} // namespace
} // namespace bench
