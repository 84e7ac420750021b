// Text scanning, XML escaping and output writers.
//
// The scanners move a cursor and never move it on failure. Escaping is what export applies to
// values. A ZorDataWriter is where export writes to; ZorStringWriter collects the output:
//
//     ZorStringWriter writer;
//     document->exportXML(&writer);
//     std::string xml = writer.getValue();
//
// White space is blank, \t, \n, \v, \f and \r in every locale.

#pragma once

#include <string>

#include "zor/export.h"
#include "zor/string.h"

// Moves the cursor over white space. 1 when it moved, 0 when not.
ZOR_API int skipSpace(char** cursor);

// Reads a run of decimal digits (no sign, no white space before it; no overflow check: the number
// wraps at the width of the host's long). 1 with the number stored and the cursor behind the
// digits; 0 when there is no digit, with both untouched.
ZOR_API int readUInt(char** cursor, long* value);

// 1 and the cursor behind `token` when the text begins with it; 0 and the cursor untouched when
// not. The empty token always matches.
ZOR_API int skipToken(char** cursor, char const* token);

// The text (a ZorString or plain text) with < > & ' " written as &lt; &gt; &amp; &apos; &quot;.
// An empty text becomes two double-quote characters, so that it stays visible; null becomes the
// empty string. A result longer than 65534 characters is cut there. New reference, never the
// argument itself, unless that is a permanent string with nothing to escape.
ZOR_API ZorString* escapeCData(void const* text);

// Undoes what escaping does to the empty text, entities being the XML tokenizer's business: two
// double-quote characters give the empty string, any other text a copy of itself (plain text cut to
// 65534 characters), no text (null or no characters) null. New reference.
ZOR_API ZorString* unescapeCData(void const* text);

// Reads a dotted quad of four decimal numbers below 256, of 1 to 3 digits each (leading zeros are
// decimal, too). 1 with the address stored, the first number as the most significant byte; 0 with
// `*address` untouched.
// REQUIRES: `text` is not null.
ZOR_API int parseIpAddress(char const* text, unsigned long* address);

// Where export writes to. A host may implement its own; it is called with the lock of the schema or
// document held that is being exported, and must not use that.
class ZOR_API ZorDataWriter {
public:
    // Takes `length` characters of `data`, or all up to the NUL when `length` is below 1.
    virtual void writeData(char const* data, int length) = 0;
    virtual ~ZorDataWriter();
};

// Collects what is written in a buffer that doubles; up to 1023 characters need no heap block.
class ZOR_API ZorStringWriter : public ZorDataWriter {
public:
    ZorStringWriter();
    ZorStringWriter(ZorStringWriter const&) = delete;
    ZorStringWriter& operator=(ZorStringWriter const&) = delete;
    ~ZorStringWriter() override;

    void writeData(char const* data, int length) override;

    // A copy of the text written so far, up to its first NUL.
    std::string getValue();

    char* begin;  // localBuffer or a heap block
    char* end;    // the terminating NUL, where the next write goes
    int capacity; // bytes of the buffer
    int used;     // bytes in use, NUL included
    char localBuffer[1024];
};
