// The floor of an export: a loop that appends the same bytes, escaping the texts, under one lock.
// The tags, and numbers as texts, lie ready.

#include <cstring>
#include <string>

#include "bench/floor_store.h"
#include "bench/phone_data.h"
#include "bench/workload.h"

namespace bench {
namespace {

// What is written of a value: the tags before it, its text, and its own end tag.
struct Piece {
    std::string start;
    std::string text;
    std::string end;
};

// All of a document, and the tags behind the last value.
struct Pieces {
    std::vector<Piece> pieces;
    std::string rest;
};

void collect(PhoneElement const& element, Pieces& into) {
    into.rest += "<" + element.node->name + ">";
    for (PhoneElement const& child : element.children) collect(child, into);
    std::string const end = "</" + element.node->name + ">";
    if (!element.node->type) {
        into.rest += end;
        return;
    }
    into.pieces.push_back({into.rest, element.text, end});
    into.rest.clear();
}

Pieces piecesOf(PhoneData const& phone) {
    std::string const& whole = phone.document();
    std::string const head = ">";
    Pieces made;
    made.rest = whole.substr(0, whole.find(head, whole.find("<document")) + 1);
    for (PhoneElement const& element : phone.tree().children) collect(element, made);
    made.rest += whole.substr(whole.rfind("</document>"));
    return made;
}

char const* entityFor(char c) {
    switch (c) {
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '&':
        return "&amp;";
    case '\'':
        return "&apos;";
    case '"':
        return "&quot;";
    default:
        return nullptr;
    }
}

// Runs without markup are appended in one go.
void appendEscapedRuns(std::string& out, std::string const& text) {
    char const* run = text.data();
    char const* const end = run + text.size();
    for (char const* at = run; at < end; ++at) {
        char const* const entity = entityFor(*at);
        if (!entity) continue;
        out.append(run, static_cast<std::size_t>(at - run)).append(entity);
        run = at + 1;
    }
    out.append(run, static_cast<std::size_t>(end - run));
}

std::string write(Pieces const& from, sem_t& lock) {
    FloorLock const held(lock);
    std::string out;
    for (Piece const& piece : from.pieces) {
        out.append(piece.start);
        appendEscapedRuns(out, piece.text);
        out.append(piece.end);
    }
    return out.append(from.rest);
}

void exportByFloor(benchmark::State& state) {
    PhoneData const& phone = phoneData(sizeOf(state));
    Pieces const pieces = piecesOf(phone);
    sem_t lock;
    sem_init(&lock, 0, 1);
    std::string text;
    for (auto _ : state) text = write(pieces, lock);
    if (text != phone.document()) fail(state, "another text");
    countItems(state, phone.values());
}

[[maybe_unused]] auto* const added = addWorkload("Export", "floor", exportByFloor, phoneSizes());

} // namespace
} // namespace bench
