// The workloads of peers, who differ only in how they hold the data. What one of them does is in
// its peer_WHO.cpp: a class with those of the following that its workloads need.
//
//     struct Peer {
//         static constexpr char const* kName = "glib"; // WHO
//         explicit Peer(PhoneData const& phone);       // with a schema, if it has any; no values
//         bool fill(PhoneData const& phone);           // with all values; it had none
//
//         // Import and export: a text in its own language, as much as possible like the document.
//         static std::string inputFrom(PhoneData const& phone);
//         bool read(std::string const& input); // it had no values
//         void clear();
//         std::string write();
//
//         // Reading and writing. A place is what says where a value is, made ahead of time.
//         using Place = ...;
//         static constexpr int kMostPlaces = kAllPlaces; // or kSomePlaces
//         Place placeOf(PhoneValue const& value);
//         long number(Place& place);
//         std::size_t length(Place& place); // gets the text as users do, and says how long it is
//         std::string text(Place& place);
//         bool set(Place& place, long number);      // after validation
//         bool set(Place& place, char const* text); // after validation
//
//         // Selecting. A query is a path that is made ready ahead, as far as that is possible.
//         using Query = ...;
//         Query queryFor(std::string const& path); // "/line[3]/label", "//label"
//         std::size_t select(Query& query);        // the number of results, which are freed
//         std::vector<std::string> texts(Query& query);
//     };
//
// Peers are used as they come, by one thread: where a library has no lock, none is taken.

#pragma once

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <string>
#include <vector>

#include "bench/accesses.h"
#include "bench/floor_store.h"
#include "bench/heap_meter.h"
#include "bench/phone_data.h"
#include "bench/stopwatch.h"
#include "bench/workload.h"

namespace bench {

// Every occurrence is accessed, or, by those who search for each among its siblings, some of them,
// from everywhere.
constexpr int kAllPlaces = std::numeric_limits<int>::max();
constexpr int kSomePlaces = 256;

// Whether a peer's text is that of the value: a number with a fraction may have other zeros, and an
// address or a truth value may be kept as a number.
inline bool sameText(PhoneValue const& value, std::string const& text) {
    if (value.text == text) return true;
    PhoneType const& type = *value.node->type;
    switch (heldAs(type)) {
    case Held::number:
        return std::to_string(numberFrom(type, value.text)) == text;
    case Held::real:
        return std::strtod(value.text.c_str(), nullptr) == std::strtod(text.c_str(), nullptr);
    default:
        return false;
    }
}

// Whether the peer has the values, looking at some of all kinds.
template <typename Peer>
bool hasValues(Peer& peer, PhoneData const& phone) {
    std::size_t const step = std::max<std::size_t>(1, phone.flat().size() / 499);
    for (std::size_t i = 0; i < phone.flat().size(); i += step) {
        PhoneValue const& value = phone.flat()[i];
        auto place = peer.placeOf(value);
        if (!sameText(value, peer.text(place))) return false;
    }
    return true;
}

template <typename Peer>
void importByPeer(benchmark::State& state) {
    PhoneData const& phone = phoneData(sizeOf(state));
    std::string const input = Peer::inputFrom(phone);
    Peer peer(phone);
    bool good = true;
    for (auto _ : state) {
        peer.clear();
        Stopwatch const watch(state);
        good &= peer.read(input);
    }
    if (!good || !hasValues(peer, phone)) fail(state, "other values");
    countItems(state, phone.values());
}

template <typename Peer>
void exportByPeer(benchmark::State& state) {
    PhoneData const& phone = phoneData(sizeOf(state));
    Peer peer(phone);
    bool good = peer.fill(phone);
    std::string text;
    for (auto _ : state) text = peer.write();
    peer.clear();
    good = good && peer.read(text) && hasValues(peer, phone);
    if (!good) fail(state, "another text");
    countItems(state, phone.values());
}

template <typename Peer>
void memoryOfPeer(benchmark::State& state) {
    PhoneData const& phone = phoneData(sizeOf(state));
    long bytes = 0;
    for (auto _ : state) {
        Peer peer(phone);
        HeapMeter const meter;
        bool const good = peer.fill(phone);
        bytes = meter.bytes();
        if (!good || !hasValues(peer, phone)) fail(state, "other values");
    }
    countBytes(state, bytes, phone.values());
}

// A peer with all values, and the places of those of one node, in the order of the accesses.
template <typename Peer>
class PeerAccesses {
public:
    PeerAccesses(benchmark::State& state, char const* path)
        : phone(phoneData(sizeOf(state))), peer(phone), node(phone.node(path)),
          values(valuesOf(phone, node)), order(shuffled(node.total)) {
        if (!peer.fill(phone)) fail(state, "no values");
        if (order.size() > Peer::kMostPlaces) order.resize(Peer::kMostPlaces);
        for (int const i : order) {
            places.push_back(peer.placeOf(*values[static_cast<std::size_t>(i)]));
        }
    }

    PhoneData const& phone;
    Peer peer;
    PhoneNode const& node;
    std::vector<PhoneValue const*> values;
    std::vector<int> order;
    std::vector<typename Peer::Place> places; // of each of `order`
};

template <typename Peer>
void readNumberByPeer(benchmark::State& state) {
    PeerAccesses<Peer> accesses(state, kNumberPath);
    long sum = 0;
    for (auto _ : state) {
        sum = 0;
        for (auto& place : accesses.places) sum += accesses.peer.number(place);
    }
    if (sum != sumOfNumbers(accesses.values, accesses.order)) fail(state, "other numbers");
    countItems(state, static_cast<long>(accesses.places.size()));
}

template <typename Peer>
void readTextByPeer(benchmark::State& state) {
    PeerAccesses<Peer> accesses(state, kTextPath);
    std::size_t sum = 0;
    for (auto _ : state) {
        sum = 0;
        for (auto& place : accesses.places) sum += accesses.peer.length(place);
    }
    if (static_cast<long>(sum) != sumOfLengths(accesses.values, accesses.order)) {
        fail(state, "other texts");
    }
    countItems(state, static_cast<long>(accesses.places.size()));
}

// Writes what replaces the values, as `given` has it, round after round, and reads it at the end.
template <typename Peer, typename Given>
void writeByPeer(benchmark::State& state, char const* path, std::vector<Given> const& given) {
    PeerAccesses<Peer> accesses(state, path);
    std::vector<std::string> const texts = replacementsFor(accesses.node);
    int round = 0;
    bool good = true;
    for (auto _ : state) {
        ++round;
        for (std::size_t k = 0; k < accesses.places.size(); ++k) {
            Given const& value = given[replacementAt(accesses.order[k], round)];
            good &= accesses.peer.set(accesses.places[k], value);
        }
    }
    for (std::size_t k = 0; k < accesses.places.size(); ++k) {
        good &= accesses.peer.text(accesses.places[k]) ==
                texts[replacementAt(accesses.order[k], round)];
    }
    if (!good) fail(state, "other values");
    countItems(state, static_cast<long>(accesses.places.size()));
}

template <typename Peer>
void writeNumberByPeer(benchmark::State& state) {
    std::vector<long> numbers;
    for (std::string const& text : replacementsFor(phoneData(sizeOf(state)).node(kNumberPath))) {
        numbers.push_back(std::stol(text));
    }
    writeByPeer<Peer>(state, kNumberPath, numbers);
}

template <typename Peer>
void writeTextsByPeer(benchmark::State& state, char const* path) {
    std::vector<std::string> const texts = replacementsFor(phoneData(sizeOf(state)).node(path));
    std::vector<char const*> given;
    given.reserve(texts.size());
    for (std::string const& text : texts) given.push_back(text.c_str());
    writeByPeer<Peer>(state, path, given);
}

template <typename Peer>
void writeChoiceByPeer(benchmark::State& state) {
    writeTextsByPeer<Peer>(state, kChoicePath);
}

template <typename Peer>
void writeDigitsByPeer(benchmark::State& state) {
    writeTextsByPeer<Peer>(state, kDigitsPath);
}

template <typename Peer>
void writeTextByPeer(benchmark::State& state) {
    writeTextsByPeer<Peer>(state, kTextPath);
}

template <typename Peer>
bool selectsValues(Peer& peer, typename Peer::Query& query,
                   std::vector<PhoneValue const*> const& values) {
    std::vector<std::string> const texts = peer.texts(query);
    return std::equal(
        texts.begin(), texts.end(), values.begin(), values.end(),
        [](std::string const& text, PhoneValue const* value) { return text == value->text; });
}

// Some lines' labels, each by itself.
template <typename Peer>
void selectOneByPeer(benchmark::State& state) {
    PhoneData const& phone = phoneData(sizeOf(state));
    Peer peer(phone);
    bool good = peer.fill(phone);
    std::vector<PhoneValue const*> const labels = valuesOf(phone, phone.node(kManyLabels));
    std::vector<int> order = shuffled(static_cast<int>(labels.size()));
    order.resize(kSomePlaces);
    std::vector<typename Peer::Query> queries;
    queries.reserve(order.size());
    for (int const i : order) {
        queries.push_back(peer.queryFor("/line[" + std::to_string(i + 1) + "]/label"));
    }
    std::size_t results = 0;
    for (auto _ : state) {
        results = 0;
        for (auto& query : queries) results += peer.select(query);
    }
    for (std::size_t k = 0; k < queries.size(); ++k) {
        good &= selectsValues(peer, queries[k], {labels[static_cast<std::size_t>(order[k])]});
    }
    if (!good || results != queries.size()) fail(state, "other results");
    countItems(state, static_cast<long>(queries.size()));
}

template <typename Peer>
void selectByPeer(benchmark::State& state, char const* path,
                  std::vector<PhoneValue const*> const& expected) {
    PhoneData const& phone = phoneData(sizeOf(state));
    Peer peer(phone);
    bool good = peer.fill(phone);
    auto query = peer.queryFor(path);
    for (auto _ : state) good &= peer.select(query) == expected.size();
    if (!good || !selectsValues(peer, query, expected)) fail(state, "other results");
    countItems(state, static_cast<long>(expected.size()));
}

template <typename Peer>
void selectManyByPeer(benchmark::State& state) {
    PhoneData const& phone = phoneData(sizeOf(state));
    selectByPeer<Peer>(state, kManyLabels, valuesOf(phone, phone.node(kManyLabels)));
}

template <typename Peer>
void selectDeepByPeer(benchmark::State& state) {
    selectByPeer<Peer>(state, "//label", valuesCalled(phoneData(sizeOf(state)), "label"));
}

template <typename Peer>
bool addImport() {
    return addWorkload("Import", Peer::kName, importByPeer<Peer>, phoneSizes())->UseManualTime();
}

template <typename Peer>
bool addExport() {
    return addWorkload("Export", Peer::kName, exportByPeer<Peer>, phoneSizes());
}

template <typename Peer>
bool addMemory() {
    return addWorkload("Memory", Peer::kName, memoryOfPeer<Peer>, phoneSizes())->Iterations(1);
}

template <typename Peer>
bool addReads() {
    return addWorkload("ReadNumber", Peer::kName, readNumberByPeer<Peer>, phoneSizes()) &&
           addWorkload("ReadText", Peer::kName, readTextByPeer<Peer>, phoneSizes());
}

template <typename Peer>
bool addWrites() {
    return addWorkload("WriteNumber", Peer::kName, writeNumberByPeer<Peer>, phoneSizes()) &&
           addWorkload("WriteChoice", Peer::kName, writeChoiceByPeer<Peer>, phoneSizes()) &&
           addWorkload("WriteDigits", Peer::kName, writeDigitsByPeer<Peer>, phoneSizes()) &&
           addWorkload("WriteText", Peer::kName, writeTextByPeer<Peer>, phoneSizes());
}

template <typename Peer>
bool addSelects() {
    return addWorkload("SelectOne", Peer::kName, selectOneByPeer<Peer>, phoneSizes()) &&
           addWorkload("SelectMany", Peer::kName, selectManyByPeer<Peer>, phoneSizes()) &&
           addWorkload("SelectDeep", Peer::kName, selectDeepByPeer<Peer>, phoneSizes());
}

} // namespace bench
