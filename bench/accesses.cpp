#include "bench/accesses.h"

#include <cstdint>
#include <numeric>
#include <utility>

#include "bench/phone_text.h"

namespace bench {

std::vector<int> shuffled(int count) {
    std::vector<int> numbers(static_cast<std::size_t>(count));
    std::iota(numbers.begin(), numbers.end(), 0);
    std::uint64_t random = 88172645463325252U;
    for (std::size_t i = numbers.size(); i > 1; --i) {
        random ^= random << 13;
        random ^= random >> 7;
        random ^= random << 17;
        std::swap(numbers[i - 1], numbers[random % i]);
    }
    std::size_t const least = 256;
    for (std::size_t i = 0; numbers.size() < least; ++i) numbers.push_back(numbers[i]);
    return numbers;
}

std::vector<std::string> replacementsFor(PhoneNode const& node) {
    std::vector<std::string> texts(kReplacements);
    int flat = node.total;
    for (std::string& text : texts) text = textFor(node, flat++);
    return texts;
}

std::vector<long> numericReplacementsFor(PhoneNode const& node) {
    std::vector<long> numbers;
    numbers.reserve(kReplacements);
    for (std::string const& text : replacementsFor(node)) numbers.push_back(std::stol(text));
    return numbers;
}

std::vector<PhoneValue const*> valuesOf(PhoneData const& phone, PhoneNode const& node) {
    std::vector<PhoneValue const*> values(static_cast<std::size_t>(node.total));
    for (PhoneValue const& value : phone.flat()) {
        if (value.node == &node) values[static_cast<std::size_t>(value.flat)] = &value;
    }
    return values;
}

std::vector<PhoneValue const*> valuesCalled(PhoneData const& phone, char const* name) {
    std::vector<PhoneValue const*> values;
    for (PhoneValue const& value : phone.flat()) {
        if (value.node->name == name) values.push_back(&value);
    }
    return values;
}

std::vector<std::string> numberedPaths(char const* text, int count) {
    std::vector<std::string> paths;
    for (int const i : shuffled(count)) paths.push_back(text + std::to_string(i));
    return paths;
}

std::vector<std::string> pathsToLabels(int lines) {
    std::vector<std::string> paths;
    for (int const i : shuffled(lines)) {
        paths.push_back("line[" + std::to_string(i + 1) + "]/label");
    }
    return paths;
}

long sumOfNumbers(std::vector<PhoneValue const*> const& values, std::vector<int> const& order) {
    long sum = 0;
    for (int const i : order) sum += std::stol(values[static_cast<std::size_t>(i)]->text);
    return sum;
}

long sumOfLengths(std::vector<PhoneValue const*> const& values, std::vector<int> const& order) {
    long sum = 0;
    for (int const i : order) {
        sum += static_cast<long>(values[static_cast<std::size_t>(i)]->text.size());
    }
    return sum;
}

} // namespace bench
