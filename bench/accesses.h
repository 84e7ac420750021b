// What is read, written and selected by the workloads on one value: all occurrences of one node, in
// an order that no cache foresees, by everybody in the same.

#pragma once

#include <string>
#include <vector>

#include "bench/phone_data.h"

namespace bench {

// The nodes whose values are read and written.
constexpr char const* kNumberPath = "/line/key/volume"; // of an int in a range
constexpr char const* kChoicePath = "/line/key/colour";
constexpr char const* kDigitsPath = "/line/key/target";
constexpr char const* kTextPath = "/line/key/label"; // of up to 20 characters
constexpr char const* kManyLabels = "/line/label";   // selected as "line/label"

// The numbers from 0 to count - 1 in an order that looks random and is always the same. Repeated
// until there are 256 at least, so that a loop over them takes longer than to start it.
std::vector<int> shuffled(int count);

// What the values of a node are replaced by: as many texts as kReplacements, none longer than 20
// characters. In round r, occurrence i gets the text replacementAt(i, r).
constexpr int kReplacements = 8;
std::vector<std::string> replacementsFor(PhoneNode const& node);
// The same as numbers, of a node that holds numbers.
std::vector<long> numericReplacementsFor(PhoneNode const& node);
constexpr unsigned replacementAt(int occurrence, int round) {
    return static_cast<unsigned>(occurrence + round) % kReplacements;
}

// The values of a node, by flat occurrence. Borrowed from the data.
std::vector<PhoneValue const*> valuesOf(PhoneData const& phone, PhoneNode const& node);
// The values of all nodes of that name, in the order of the document. Borrowed from the data.
std::vector<PhoneValue const*> valuesCalled(PhoneData const& phone, char const* name);

// The text with each of the numbers from 0 on behind it, shuffled.
std::vector<std::string> numberedPaths(char const* text, int count);

// "line[k]/label" for so many lines, shuffled.
std::vector<std::string> pathsToLabels(int lines);

// What a loop over `order` finds when it adds up the values of a node: as numbers, or as lengths of
// texts.
long sumOfNumbers(std::vector<PhoneValue const*> const& values, std::vector<int> const& order);
long sumOfLengths(std::vector<PhoneValue const*> const& values, std::vector<int> const& order);

} // namespace bench
