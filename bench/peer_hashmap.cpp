// A store by hand: a hash map from the standard library, with whole paths such as
// "/line[3]/key[1]/label" as keys, values as their type holds them, validation by hand, and an
// uncontended semaphore around each access.

#include <map>
#include <string>
#include <unordered_map>
#include <variant>

#include "bench/floor_store.h"
#include "bench/peer_workloads.h"
#include "bench/value_check.h"
#include "bench/value_path.h"

namespace bench {
namespace {

class HashMap {
public:
    static constexpr char const* kName = "hashmap";
    static constexpr int kMostPlaces = kAllPlaces;
    using Place = std::string;

    explicit HashMap(PhoneData const& phone) {
        sem_init(&lock, 0, 1);
        for (PhoneValue const& value : phone.flat())
            checks.try_emplace(value.node->type, *value.node->type);
    }
    HashMap(HashMap const&) = delete;
    HashMap& operator=(HashMap const&) = delete;
    ~HashMap() { sem_destroy(&lock); }

    bool fill(PhoneData const& phone) {
        for (PhoneValue const& value : phone.flat()) {
            PhoneType const& type = *value.node->type;
            entries.emplace(bracketPathTo(value),
                            Entry{&checks.at(&type), valueFrom(type, value.text)});
        }
        return entries.size() == phone.flat().size();
    }

    static Place placeOf(PhoneValue const& value) { return bracketPathTo(value); }

    long number(Place const& path) {
        FloorLock const held(lock);
        return std::get<long>(entries.find(path)->second.value);
    }

    std::size_t length(Place const& path) {
        FloorLock const held(lock);
        copied = std::get<std::string>(entries.find(path)->second.value);
        return copied.size();
    }

    std::string text(Place const& path) {
        Value const& value = entries.at(path).value;
        if (auto const* const text = std::get_if<std::string>(&value)) return *text;
        if (auto const* const real = std::get_if<double>(&value)) return std::to_string(*real);
        return std::to_string(std::get<long>(value));
    }

    bool set(Place const& path, long number) {
        FloorLock const held(lock);
        Entry& entry = entries.find(path)->second;
        if (!entry.check->accepts(number)) return false;
        std::get<long>(entry.value) = number;
        return true;
    }

    bool set(Place const& path, char const* text) {
        FloorLock const held(lock);
        Entry& entry = entries.find(path)->second;
        if (!entry.check->accepts(text)) return false;
        std::get<std::string>(entry.value) = text;
        return true;
    }

private:
    using Value = std::variant<long, double, std::string>;
    struct Entry {
        ValueCheck const* check;
        Value value;
    };

    static Value valueFrom(PhoneType const& type, std::string const& text) {
        switch (heldAs(type)) {
        case Held::number:
            return numberFrom(type, text);
        case Held::real:
            return std::stod(text);
        default:
            return text;
        }
    }

    std::map<PhoneType const*, ValueCheck> checks;
    std::unordered_map<std::string, Entry> entries;
    std::string copied;
    sem_t lock;
};

[[maybe_unused]] bool const added =
    addReads<HashMap>() && addWrites<HashMap>() && addMemory<HashMap>();

} // namespace
} // namespace bench
