// Large inputs that are never held as a whole, and incidents in numbers that are never kept.

#pragma once

#include <gtest/gtest.h>
#include <time.h>

#include <algorithm>
#include <functional>
#include <string>
#include <utility>

#include "tests/support/incidents.h"
#include "zor/collection.h"

// Compares incidents one by one with what is expected, each as a line that IncidentLog would give,
// and keeps none of them.
//
//     IncidentStream incidents([](long i) { return errorAt(2 + i, 0, "missing name attribute"); });
//     ...
//     EXPECT_EQ(incidents.difference(), "");
//     EXPECT_EQ(incidents.count(), 1000000);
class IncidentStream {
public:
    explicit IncidentStream(std::function<std::string(long index)> expectedLine)
        : expected(std::move(expectedLine)) {
        active() = this;
        zor_setLoggingFunction(compare);
    }
    IncidentStream(IncidentStream const&) = delete;
    IncidentStream& operator=(IncidentStream const&) = delete;
    ~IncidentStream() { active() = nullptr; }

    long count() const { return seen; }

    // The first incident that was another one than expected; empty when there was none.
    std::string const& difference() const { return unlike; }

private:
    static IncidentStream*& active() {
        static IncidentStream* stream = nullptr;
        return stream;
    }

    static void compare(severity sev, std::string& message) {
        IncidentStream* const stream = active();
        std::string line = std::to_string(static_cast<int>(sev)) + ' ' + message + '\n';
        if (stream->unlike.empty() && line != stream->expected(stream->seen)) {
            stream->unlike = "incident " + std::to_string(stream->seen) + " is " + line;
        }
        ++stream->seen;
    }

    IncidentLog restoring; // sets the logging function back in the end
    std::function<std::string(long)> expected;
    std::string unlike;
    long seen = 0;
};

// An import in pieces.
class Feed {
public:
    explicit Feed(ZorCollection& collection)
        : incidents("", nullptr, nullptr), parser(&collection, &incidents) {}

    void operator()(std::string const& piece) {
        parser.parse(piece.data(), static_cast<int>(piece.size()), 0);
    }
    // The piece, that many times, several at a time.
    void repeat(std::string const& piece, long times) {
        std::string const many = repeated(piece, std::min(times, 1 + 65536 / long(piece.size())));
        long const atATime = long(many.size() / piece.size());
        for (; times >= atATime; times -= atATime) (*this)(many);
        (*this)(repeated(piece, times));
    }
    void end(std::string const& piece = "") {
        parser.parse(piece.data(), static_cast<int>(piece.size()), 1);
    }

    static std::string repeated(std::string const& piece, long times) {
        std::string text;
        text.reserve(piece.size() * std::size_t(times));
        for (long i = 0; i < times; ++i) text += piece;
        return text;
    }

private:
    ZorIncidentContext incidents;
    ZorXmlParser parser;
};

// `piece(0)` to `piece(count - 1)`, one behind the other.
inline std::string series(long count, std::function<std::string(long index)> const& piece) {
    std::string text;
    for (long i = 0; i < count; ++i) text += piece(i);
    return text;
}

// Expects that four times as much takes not much more than four times as long, where the square
// would be sixteen times. `work(size)` does everything but the making of its input, and returns
// nothing; of three attempts the fastest counts.
template <typename Prepare, typename Work>
void expectLinearTime(long size, Prepare const& prepare, Work const& work) {
    auto const secondsFor = [&](long count) {
        double fastest = 1e9;
        auto const input = prepare(count);
        for (int attempt = 0; attempt < 3; ++attempt) {
            timespec from;
            timespec to;
            clock_gettime(CLOCK_THREAD_CPUTIME_ID, &from);
            work(input);
            clock_gettime(CLOCK_THREAD_CPUTIME_ID, &to);
            fastest = std::min(fastest, double(to.tv_sec - from.tv_sec) +
                                            1e-9 * double(to.tv_nsec - from.tv_nsec));
        }
        return fastest;
    };
    double const little = secondsFor(size / 4);
    double const much = secondsFor(size);
    EXPECT_LT(much, little * 9) << much << " s for " << size << ", " << little
                                << " s for a quarter";
}
