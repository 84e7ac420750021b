// Threads that start together, and what happened in each.
//
//     inThreads(4, [&](int thread) {
//         Random random(thread);
//         for (int i = 0; i < kRounds; ++i) use(store, random.below(8));
//     });
//
// Nothing here orders two threads between their start and their end, so that whatever order they
// keep is the library's own.

#pragma once

#include <atomic>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/sanitizer.h"
#include "tests/support/text.h"
#include "zor/collection.h"

// How many rounds a test makes. ThreadSanitizer sees a race without its going wrong; without it,
// only a great many rounds show one.
constexpr int rounds(int underSanitizer) {
    return kThreadSanitizer || kAddressSanitizer ? underSanitizer : underSanitizer * 8;
}

// Runs `work(number of the thread)` in `count` threads that start at the same moment, and waits for
// all of them.
template <typename Work>
void inThreads(int count, Work work) {
    std::atomic<int> missing{count};
    std::vector<std::thread> threads;
    for (int i = 0; i < count; ++i) {
        threads.emplace_back([&missing, &work, i] {
            missing.fetch_sub(1, std::memory_order_relaxed);
            while (missing.load(std::memory_order_relaxed) > 0) std::this_thread::yield();
            work(i);
        });
    }
    for (std::thread& thread : threads) thread.join();
}

// Set by one thread for others that run until it is done. Relaxed: it hands nothing over.
class Flag {
public:
    void set() { value.store(true, std::memory_order_relaxed); }
    bool isSet() const { return value.load(std::memory_order_relaxed); }

private:
    std::atomic<bool> value{false};
};

// Numbers that are the same in every run.
class Random {
public:
    explicit Random(int thread) : engine(20041u + static_cast<unsigned>(thread)) {}
    int below(int end) { return static_cast<int>(engine() % static_cast<unsigned>(end)); }

private:
    std::minstd_rand engine;
};

// The incidents that the running thread raised since it last asked: severity, blank, message, a
// line each.
std::string takeIncidents();

// The text of a value, and of the results that a path selects, blanks between them.
inline std::string textAt(ZorDocument* document, ZorSchemaNode* node, long occurrence) {
    return taken(document->getStringNodeValue(node, occurrence));
}

inline std::string selected(ZorDocument* document, char const* path) {
    ZorResultSet* const results = document->select(path);
    std::string text;
    for (; !results->eof(); results->next()) text += taken(results->getValue()) + ' ';
    delete results;
    return text;
}

inline ZorSchemaNode* nodeAt(ZorSchema* schema, char const* path) {
    return schema->rootNode->findSubNode(Text(path));
}
