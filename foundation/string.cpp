// ZorString: storage, copy-on-write mutation and reference counts.
//
// What is shared is never changed: a mutator called on a string with other holders goes on with a
// private copy. What may fail to allocate comes before the caller's reference is given up, so that
// the caller still has it when memory runs out. The text of a string that nobody shares may be
// changed in part then.

#include "zor/string.h"

#include <cstdarg>
#include <cstring>
#include <functional>
#include <memory>

#include "foundation/ascii.h"
#include "foundation/permanent_strings.h"

using zor_internal::findPermanent;
using zor_internal::isSpace;

namespace {

constexpr int kLargestCapacity = ZorString::maxLength + 1;

// The buffer size for `need` bytes: the next multiple of 16 above, as far as 16 bits hold it.
int capacityFor(int need) {
    int const rounded = (need & ~15) + 16;
    return rounded < kLargestCapacity ? rounded : kLargestCapacity;
}

void freeBlock(ZorString* s) {
    if (s->text != s->localBuffer) delete[] s->text;
}

void reserve(ZorString* s, int need) {
    if (need <= s->capacity) return;
    int const capacity = capacityFor(need);
    char* const block = new char[static_cast<unsigned>(capacity)];
    std::memcpy(block, s->text, s->length);
    freeBlock(s);
    s->text = block;
    s->capacity = static_cast<unsigned short>(capacity);
    s->text[s->length] = '\0';
}

// The number of characters that a pair stands for, cut to what any string can hold.
int charactersIn(char const* chars, int size) {
    if (!chars) return 0;
    if (size == -1) return static_cast<int>(strnlen(chars, ZorString::maxLength));
    if (size < 0) return 0;
    return size < ZorString::maxLength ? size : ZorString::maxLength;
}

void appendCharacters(ZorString* s, char const* chars, int size) {
    int count = charactersIn(chars, size);
    int const room = ZorString::maxLength - s->length;
    if (count > room) count = room;
    if (count == 0) return;
    reserve(s, s->length + count + 1);
    std::memcpy(s->text + s->length, chars, static_cast<unsigned>(count));
    s->length = static_cast<unsigned short>(s->length + count);
    s->text[s->length] = '\0';
}

void clear(ZorString* s) {
    s->length = 0;
    s->text[0] = '\0';
}

// The permanent string that stands in for a private one of the same text, or null. A string under
// construction has a count of 0 and stays what it is.
ZorString* permanentOf(ZorString const* s) {
    return s->refCount == 1 ? findPermanent(s->text, s->length) : nullptr;
}

// That instead of the private string, else the string itself.
ZorString* interned(ZorString* s) {
    ZorString* const permanent = permanentOf(s);
    if (!permanent) return s;
    s->removeRef();
    return permanent;
}

// The common case of a mutator, without a look at further pairs and other holders: a private string
// keeps its first `kept` characters and gets one pair behind them, in the room that it has. Null,
// with nothing changed, when there is not enough. By the whole way, writing a text takes a third
// more instructions.
ZorString* changeInPlace(ZorString* s, int kept, char const* chars, int added) {
    int const length = kept + added;
    if (length >= s->capacity) return nullptr;
    // The pair may be characters of its own.
    if (added > 0) std::memmove(s->text + kept, chars, static_cast<unsigned>(added));
    s->text[length] = '\0';
    s->length = static_cast<unsigned short>(length);
    return interned(s);
}

template <typename Function>
void forEachPair(int count, char const* chars, int size, va_list rest, Function apply) {
    for (int i = 0; i < count; ++i) {
        if (i > 0) {
            // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): the caller has started it
            chars = va_arg(rest, char const*);
            size = va_arg(rest, int);
        }
        apply(chars, size);
    }
}

// Keeps the characters of a string that is about to change, if any of the pairs points at them.
class PinnedText {
public:
    PinnedText(ZorString const* string, int count, char const* chars, int size, va_list rest)
        : base(string->text), bytes(string->capacity) {
        bool pointsInto = false;
        va_list pairs;
        va_copy(pairs, rest);
        forEachPair(count, chars, size, pairs,
                    [&](char const* text, int) { pointsInto = pointsInto || contains(text); });
        va_end(pairs);
        if (pointsInto) copy = std::make_unique<ZorString>(*string);
    }

    // Where the characters of a pair stand safely.
    char const* resolve(char const* chars) const {
        return copy && contains(chars) ? copy->text + (chars - base) : chars;
    }

private:
    bool contains(char const* chars) const {
        std::less<char const*> const before;
        return !before(chars, base) && before(chars, base + bytes);
    }

    char const* base;
    int bytes;
    std::unique_ptr<ZorString> copy;
};

// The string to change in place of `s`: a new one made by `makePrivate` when `s` has other
// holders, else `s` itself.
class PrivateString {
public:
    template <typename Make>
    PrivateString(ZorString* string, Make makePrivate) : shared(string) {
        if (string->refCount >= 2) own.reset(makePrivate());
    }

    ZorString* get() const { return own ? own.get() : shared; }

    // Gives up the reference to the shared string, if there is a private one now.
    ZorString* commit() {
        if (!own) return shared;
        shared->removeRef();
        return own.release();
    }

private:
    ZorString* shared;
    std::unique_ptr<ZorString> own;
};

} // namespace

ZorString::ZorString(int count, char const* chars, int size, ...)
    : marker(-1), length(0), refCount(0), capacity(localSize), text(localBuffer) {
    localBuffer[0] = '\0';
    va_list rest;
    va_start(rest, size);
    forEachPair(count, chars, size, rest,
                [this](char const* t, int n) { appendCharacters(this, t, n); });
    va_end(rest);
    refCount = 1;
}

ZorString::ZorString(char const* chars, int count)
    : marker(-1), length(static_cast<unsigned short>(count)), refCount(1), capacity(localSize),
      text(localBuffer) {
    if (count >= localSize) {
        capacity = static_cast<unsigned short>(capacityFor(count + 1));
        text = new char[capacity];
    }
    std::memcpy(text, chars, static_cast<unsigned>(count));
    text[count] = '\0';
}

ZorString::ZorString(ZorString const& other)
    : marker(-1), length(other.length), refCount(1), capacity(other.capacity), text(localBuffer) {
    if (other.text == other.localBuffer) {
        // The whole buffer, because a copy of a known size is a few moves.
        std::memcpy(localBuffer, other.localBuffer, sizeof localBuffer);
        return;
    }
    text = new char[capacity];
    std::memcpy(text, other.text, length + 1U);
}

ZorString::~ZorString() { freeBlock(this); }

ZorString* ZorString::create(char const* chars, int size) {
    int const count = charactersIn(chars, size);
    if (count == 0) return stdZorStringContainer[0];
    if (ZorString* const permanent = findPermanent(chars, count)) return permanent;
    return new ZorString(chars, count);
}

ZorString* ZorString::append(int count, char const* chars, int size, ...) {
    if (count == 1 && refCount == 1) {
        int const added = charactersIn(chars, size);
        if (ZorString* const changed = changeInPlace(this, length, chars, added)) return changed;
    }
    va_list rest;
    va_start(rest, size);
    PinnedText const pinned(this, count, chars, size, rest);
    PrivateString target(this, [this] { return new ZorString(*this); });
    forEachPair(count, chars, size, rest, [&](char const* t, int n) {
        appendCharacters(target.get(), pinned.resolve(t), n);
    });
    va_end(rest);
    return interned(target.commit());
}

ZorString* ZorString::set(int count, char const* chars, int size, ...) {
    if (count == 1 && refCount == 1) {
        int const added = charactersIn(chars, size);
        if (ZorString* const changed = changeInPlace(this, 0, chars, added)) return changed;
    }
    va_list rest;
    va_start(rest, size);
    PinnedText const pinned(this, count, chars, size, rest);
    PrivateString target(this, [] { return new ZorString(0, nullptr, 0); });
    if (count == 1) reserve(target.get(), charactersIn(chars, size) + 1); // or nothing changes
    clear(target.get());
    // A permanent string may stand in after any pair, not only after the last; what follows is
    // appended to a copy of it. The target is kept until nothing can fail any more.
    ZorString* result = target.get();
    std::unique_ptr<ZorString> successor;
    forEachPair(count, chars, size, rest, [&](char const* t, int n) {
        if (result->refCount == permanentCount) {
            successor = std::make_unique<ZorString>(*result);
            result = successor.get();
        }
        appendCharacters(result, pinned.resolve(t), n);
        if (ZorString* const permanent = permanentOf(result)) result = permanent;
    });
    va_end(rest);
    ZorString* const last = target.commit();
    if (result == last) return result;
    last->removeRef();
    return result == successor.get() ? successor.release() : result;
}

ZorString* ZorString::trim() {
    if (length == 0) return this;
    int start = 0;
    while (start < length && isSpace(text[start])) ++start;
    int end = length - 1;
    while (start < end && isSpace(text[end])) --end;
    int const kept = end - start + 1;
    if (kept >= length) return this;

    if (refCount >= 2) {
        ZorString* const trimmed = create(text + start, kept);
        removeRef();
        return trimmed;
    }

    bool const fitsLocally = kept < localSize;
    int const newCapacity = fitsLocally ? localSize : capacityFor(kept + 1);
    char* buffer = text;
    if (newCapacity != capacity) {
        buffer = fitsLocally ? localBuffer : new char[static_cast<unsigned>(newCapacity)];
    }
    std::memmove(buffer, text + start, static_cast<unsigned>(kept));
    buffer[kept] = '\0';
    if (buffer != text) freeBlock(this);
    text = buffer;
    length = static_cast<unsigned short>(kept);
    capacity = static_cast<unsigned short>(newCapacity);
    return interned(this);
}

void ZorString::removeRef() {
    if (refCount == permanentCount) return;
    // Kept: a count that is 0 already wraps, and the string becomes permanent.
    refCount = static_cast<unsigned short>(refCount - 1);
    if (refCount == 0) delete this;
}

void zor_stringAddRef(ZorString* string) {
    if (string->refCount == ZorString::permanentCount) return;
    // Kept: the count may climb to 0xFFFF, which makes the string permanent rather than wrong.
    ++string->refCount;
}

ZorString* zor_stringCopy(ZorString const* string) {
    if (!string) return ZorString::create(nullptr, 0);
    if (string->text != string->localBuffer) {
        return ZorString::create(string->text, string->length);
    }
    ZorString* const permanent = findPermanent(string->text, string->length);
    return permanent ? permanent : new ZorString(*string);
}

int zor_stringCompare(ZorString const* a, ZorString const* b) {
    return std::strcmp(a->text, b->text);
}

unsigned short zor_stringLength(ZorString const* string) { return string->length; }

char* zor_stringValue(ZorString* string) { return string->text; }

void zor_stringPreAllocate(ZorString* string, int size) {
    if (size < 0) return;
    reserve(string, (size < ZorString::maxLength ? size : ZorString::maxLength) + 1);
}

int zor_isString(void const* text) {
    // The first byte alone: plain text may stand at any address.
    return text && *static_cast<signed char const*>(text) == -1;
}
