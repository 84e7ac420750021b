// What the helpers of texts make of one: hashes, scanners, escapes, addresses.

#include <cstdio>

#include "tests/support/text.h"
#include "tests/targets/same_bytes.h"

namespace same_bytes {
namespace {

char const* const kTexts[] = {
    "",
    " ",
    "a",
    "occurrence",
    " \t\n\v\f\r a b \t",
    "\2407",
    "\x80",
    "\xFF",
    "\xC3\xA9",
    "z\xC3\xA9",
    "\xE2\x82\xAC 5",
    "\x01\x1F\x7F\x80\xFF",
    "thirty-two characters are inside",
    "thirty-three characters are inside",
    // Addresses.
    "0.0.0.0",
    "1.2.3.4",
    "001.002.003.004",
    "127.255.255.255",
    "128.0.0.0",
    "255.255.255.255",
    "256.1.1.1",
    "1.2.3",
    "1.2.3.4.5",
    "1.2.3.4x",
    " 1.2.3.4",
    "1.2.3.-4",
    "1..3.4",
    "4294967297.0.0.1",
    "1.2.3.18446744073709551617",
    // Escapes.
    "&amp;&lt;&gt;&quot;&apos;",
    "%26%3C",
    "&amp",
    "&",
    "&;",
    "&#65;",
    "&#x20AC;",
    "&nbsp;",
    "\xC3\xA9&",
    "<a b=\"c\">'&'</a>",
    "\"\"",
    "\"",
    "\"\"\"",
};

// A number that a long of 32 bits does not hold is another one where it has 64.
char const* const kNumbers[] = {
    "0x", "0002147483647 ", "2147483647x", "-1", "+1", "", "x",
};

// What the helpers of texts make of one.
std::string helpersOn(char const* text) {
    Text const string(text); // plain text must not begin with the byte 0xFF
    unsigned long address = 0;
    bool const isAddress = parseIpAddress(text, &address) != 0;
    char* cursor = const_cast<char*>(text);
    bool const skipsSpace = skipSpace(&cursor) != 0;
    char numbers[80];
    std::snprintf(numbers, sizeof numbers, " hash %08x first %u space %d+%d address %d %08lx",
                  fnv0_32_str(text), firstCharacterHash(text), skipsSpace,
                  static_cast<int>(cursor - text), isAddress, isAddress ? address : 0);
    ZorString* const trimmed = ZorString::create(text, -1)->trim();
    std::string line = "  " + quoted(text) + numbers + " trimmed " + quotedAndReleased(trimmed);
    line += " escaped " + quotedAndReleased(escapeCData(string));
    return line + " unescaped " + quotedAndReleased(unescapeCData(string)) + '\n';
}

std::string readNumber(char const* text) {
    char* cursor = const_cast<char*>(text);
    long number = -1;
    bool const isRead = readUInt(&cursor, &number) != 0;
    return "  " + quoted(text) + (isRead ? " read " : " not read ") + std::to_string(number) +
           " rest " + quoted(cursor) + '\n';
}

} // namespace

std::string helperResults() {
    std::string lines = "helpers\n";
    for (char const* const text : kTexts) lines += helpersOn(text);
    for (char const* const text : kNumbers) lines += readNumber(text);
    return lines;
}

} // namespace same_bytes
