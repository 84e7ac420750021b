// The floor of finding one of many documents: its name in a hash table, looked up between take and
// give of a semaphore.

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

#include "bench/accesses.h"
#include "bench/floor_store.h"
#include "bench/workload.h"

namespace bench {
namespace {

struct Document {
    std::string name;
};

using Documents = std::unordered_map<std::string_view, std::unique_ptr<Document>>;

[[gnu::noinline]] Document const* find(sem_t& lock, Documents const& documents, char const* name) {
    FloorLock const held(lock);
    auto const found = documents.find(name);
    return found == documents.end() ? nullptr : found->second.get();
}

void findByFloor(benchmark::State& state) {
    std::vector<std::string> const names = numberedPaths("document", sizeOf(state));
    Documents documents;
    for (std::string const& name : names) {
        auto made = std::make_unique<Document>(Document{name});
        std::string_view const key = made->name;
        documents.emplace(key, std::move(made));
    }
    sem_t lock;
    sem_init(&lock, 0, 1);
    Document const* found = nullptr;
    for (auto _ : state) {
        for (std::string const& name : names) {
            found = find(lock, documents, name.c_str());
            keep(found);
        }
    }
    if (!found || found->name != names.back()) fail(state, "another document");
    countItems(state, static_cast<long>(names.size()));
}

[[maybe_unused]] auto* const added =
    addWorkload("ManyFind", "floor", findByFloor, {1000, 10000, 100000});

} // namespace
} // namespace bench
