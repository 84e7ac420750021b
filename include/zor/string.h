// Shared, interned strings.
//
// A ZorString is a byte string with a small inline buffer, shared by counting references. Names of
// nodes, types, schemas, documents and map keys and all stored texts are ZorStrings. Sixteen
// frequent texts are permanent: `create` and the mutators hand out the permanent object instead of
// a private copy, so such a text costs no memory and never needs counting.
//
//     ZorString* s = ZorString::create("line", -1);
//     s = s->append(2, "Key", -1, "s", -1); // always go on with the returned pointer
//     puts(zor_stringValue(s));             // lineKeys
//     s->removeRef();
//
// Threads: counts are plain fields. One thread at a time uses a string, under its owner's lock.
// Permanent strings may be shared freely; they are usable from any static initialiser and until
// the process ends.

#pragma once

#include "zor/export.h"

class ZOR_API ZorString {
public:
    // The longest text a string holds. A text that would pass it is cut there.
    static constexpr int maxLength = 65534;
    // The size of the inline buffer: texts of up to 32 characters need no heap block.
    static constexpr int localSize = 33;
    // The reference count of a permanent string.
    static constexpr unsigned short permanentCount = 0xFFFF;
    static constexpr int stdCount = 16;

    // A string of `count` (text, length) pairs: the named arguments are the first pair, further
    // pairs follow as `char const*` and `int`. A null text is skipped, a length of -1 means up to
    // the NUL, any other length below 1 adds nothing. The new string has one reference and is
    // never replaced by a permanent one.
    // REQUIRES: a string on which a mutator or `removeRef` is called, or that is passed where a
    // reference is added to it (as a name or key), lives on the heap.
    ZorString(int count, char const* text, int length, ...);

    // An independent copy with one reference, also of a permanent string.
    ZorString(ZorString const& other);
    ZorString& operator=(ZorString const&) = delete;
    ~ZorString();

    // The string of `length` characters of `text`, or of all of them up to the NUL when `length`
    // is -1: the permanent one when the text is one of the sixteen, else a new one. A null text
    // and one without characters give the permanent empty string. New reference.
    static ZorString* create(char const* text, int length);

    // Adds the pairs (as for the constructor) behind the text. A string with other holders is left
    // untouched and a private copy is changed. Pairs may point into this very string: they count
    // as it was before the call. Takes ownership of the caller's reference to this string.
    // Returns the string to go on with. New reference.
    [[nodiscard]] ZorString* append(int count, char const* text, int length, ...);

    // Replaces the text by the pairs; as `append` otherwise. With a `count` of 0 the result is
    // an empty private string, not the permanent one. Takes ownership of the caller's reference to
    // this string. New reference.
    [[nodiscard]] ZorString* set(int count, char const* text, int length, ...);

    // Removes leading and trailing white space (blank, \t, \n, \v, \f, \r). Takes ownership of the
    // caller's reference to this string; returns this string when there is nothing to remove.
    // New reference.
    [[nodiscard]] ZorString* trim();

    // Drops one reference; the last one destroys the string. Does nothing to a permanent one.
    void removeRef();

    // The order of `stdZorStringContainer`: the shorter string first, equal lengths by `strcmp`.
    static bool compareZorString(ZorString const* a, ZorString const* b);

    // The permanent strings: "", "DefaultSchema", "schema", "managementId", "CommsMgmtId",
    // "QbexMgmtId", "Id", "PhysiclaIfcMgmtId", "StimulusKeySettings", "TilecardContainerMgmtId",
    // "LineKeySettings", "MediaProcessMgmtId", "DssKeySettings", "true", "false", "occurrence".
    static ZorString (&stdZorStrings)[stdCount];
    // The same objects in the order of `compareZorString`.
    static ZorString* const stdZorStringContainer[stdCount];

    // text[length] is NUL; length < capacity; text is localBuffer exactly when no heap block is
    // owned, and then capacity is localSize.
    signed char marker; // always -1, which tells a ZorString from plain text
    char localBuffer[localSize];
    unsigned short length;
    unsigned short refCount;
    unsigned short capacity; // bytes of the current buffer
    char* text;

private:
    struct PermanentStrings;
    union PermanentStorage;
    ZOR_HIDDEN static PermanentStorage permanentStorage;
    ZOR_HIDDEN constexpr explicit ZorString(char const* permanentText);
    ZOR_HIDDEN ZorString(char const* chars, int count);
};

// Adds one reference. A count that climbs to 0xFFFF makes the string permanent.
ZOR_API void zor_stringAddRef(ZorString* string);

// A string with the characters of `string`; null gives the empty string. New reference.
ZOR_API ZorString* zor_stringCopy(ZorString const* string);

// `strcmp` of the two texts.
ZOR_API int zor_stringCompare(ZorString const* a, ZorString const* b);

// The number of characters, NUL not counted: 0 to 65534.
ZOR_API unsigned short zor_stringLength(ZorString const* string);

// The NUL-terminated characters. Borrowed until the string is next changed or released.
ZOR_API char* zor_stringValue(ZorString* string);

// Makes room for `size` characters (at most 65534), so that appending them needs no allocation.
// REQUIRES: the caller holds the only reference.
ZOR_API void zor_stringPreAllocate(ZorString* string, int size);

// 1 when `text` is a ZorString, 0 when it is null or plain text. Plain text whose first byte is
// 0xFF also answers 1: such a text cannot be passed where either form is accepted.
ZOR_API int zor_isString(void const* text);
