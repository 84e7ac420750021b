// Strings that are changed, shared and released, against std::string.
//
// Input: a line per operation: its letter, a digit for one of four slots, and a text. "=0line" sets
// slot 0, "+0Key" appends; the letters are those in `apply`. After every operation every slot holds
// what the model holds, whatever was done to a string that it shares, and the rules of storage
// hold.

#include <algorithm>
#include <cstring>

#include "fuzz/support/check.h"
#include "fuzz/support/leftovers.h"
#include "fuzz/support/parts.h"
#include "fuzz/support/target.h"

namespace {

constexpr std::size_t kSlots = 4;
constexpr std::size_t kMostOperations = 200;
constexpr std::size_t kLongest = ZorString::maxLength;

bool isPermanent(ZorString const* string) {
    ZorString const* const first = &ZorString::stdZorStrings[0];
    return string >= first && string < first + ZorString::stdCount;
}

void checkSound(ZorString const* string) {
    check(string->marker == -1, "a string can be told from plain text");
    check(string->length < string->capacity, "a string fits its buffer");
    check(string->text[string->length] == '\0', "a string ends with a NUL");
    bool const isLocal = string->text == string->localBuffer;
    check(isLocal == (string->capacity == ZorString::localSize),
          "the buffer inside is used exactly when its size says so");
    check(!isPermanent(string) || string->refCount == ZorString::permanentCount,
          "a permanent string is not counted");
}

std::string cut(std::string text) {
    if (text.size() > kLongest) text.resize(kLongest);
    return text;
}

std::string trimmed(std::string const& text) {
    char const* const blanks = " \t\n\v\f\r";
    std::size_t const first = text.find_first_not_of(blanks);
    if (first == std::string::npos) return "";
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

// Whether a text is one of the sixteen, found the slow way.
bool isStandard(std::string const& text) {
    return std::any_of(std::begin(ZorString::stdZorStrings), std::end(ZorString::stdZorStrings),
                       [&text](ZorString const& standard) {
                           return text == std::string(standard.text, standard.length);
                       });
}

class Slots {
public:
    Slots() {
        for (ZorString*& string : strings) string = ZorString::create("", -1);
    }
    Slots(Slots const&) = delete;
    Slots& operator=(Slots const&) = delete;
    ~Slots() {
        for (ZorString* const string : strings) string->removeRef();
    }

    void apply(char operation, std::size_t slot, std::string const& text);
    void checkAll() const;

private:
    // The slot's string goes to the operation, which gives back the one to go on with.
    void put(std::size_t slot, ZorString* string, std::string const& text) {
        strings[slot] = string;
        models[slot] = cut(text);
    }
    void replace(std::size_t slot, ZorString* string, std::string const& text) {
        strings[slot]->removeRef();
        put(slot, string, text);
        check(isPermanent(string) == isStandard(models[slot]),
              "exactly the sixteen frequent texts are permanent objects");
    }

    ZorString* strings[kSlots];
    std::string models[kSlots];
};

void Slots::apply(char operation, std::size_t slot, std::string const& text) {
    std::size_t const other = (slot + 1) % kSlots;
    ZorString* const s = strings[slot];
    std::string const model = models[slot];
    char const* const chars = text.data();
    int const length = static_cast<int>(text.size());
    switch (operation) {
    case '=': // a new string
        return replace(slot, ZorString::create(chars, length), text);
    case 'c': // a copy of the next slot's
        return replace(slot, zor_stringCopy(strings[other]), models[other]);
    case '&': // the next slot's, shared
        s->removeRef();
        zor_stringAddRef(strings[other]);
        return put(slot, strings[other], models[other]);
    case '!': // a private copy, whatever the text
        s->removeRef();
        return put(slot, new ZorString(*strings[other]), models[other]);
    case '+':
        return put(slot, s->append(1, chars, length), model + text);
    case '2': // two pairs, the second up to its NUL
        return put(slot, s->append(2, chars, length, text.c_str(), -1),
                   cut(model + text) + upToNul(text));
    case '0': // pairs that add nothing
        return put(slot, s->append(3, nullptr, 4, chars, 0, chars, -2), model);
    case 'd': // its own text, twice
        return put(slot, s->append(2, s->text, s->length, s->text, s->length),
                   cut(model + model) + model);
    case 'i': { // a part of its own text
        int const from = s->length / 2;
        return put(slot, s->append(2, s->text + from, s->length - from, chars, length),
                   cut(model + model.substr(model.size() / 2)) + text);
    }
    case 's':
        return put(slot, s->set(1, chars, length), text);
    case 'S': // three pairs, its own text in the middle
        return put(slot, s->set(3, chars, length, s->text, s->length, chars, length),
                   cut(cut(text + model) + text));
    case 'e':
        return put(slot, s->set(0, nullptr, 0), "");
    case 't':
        return put(slot, s->trim(), trimmed(model));
    case 'p': // room for as many characters as the text has, in hundreds
        if (s->refCount == 1) zor_stringPreAllocate(s, length * 100);
        return;
    default:
        return;
    }
}

void Slots::checkAll() const {
    for (std::size_t i = 0; i < kSlots; ++i) {
        checkSound(strings[i]);
        checkSame(std::string(zor_stringValue(strings[i]), zor_stringLength(strings[i])), models[i],
                  "a string holds what was put together");
        ZorString const* const next = strings[(i + 1) % kSlots];
        int const order = std::strcmp(models[i].c_str(), models[(i + 1) % kSlots].c_str());
        int const compared = zor_stringCompare(strings[i], next);
        check((order < 0) == (compared < 0) && (order > 0) == (compared > 0),
              "strings compare as their characters do");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    std::string const script = textOfInput(data, size);
    NoLeftovers const nothing;
    Slots slots;
    std::size_t at = 0;
    for (std::size_t i = 0; i < kMostOperations && at < script.size(); ++i) {
        std::string const line = script.substr(at, script.find('\n', at) - at);
        at += line.size() + 1;
        if (line.size() < 2) continue;
        slots.apply(line[0], static_cast<unsigned char>(line[1]) % kSlots, line.substr(2));
        slots.checkAll();
    }
    return 0;
}
