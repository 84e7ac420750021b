// The end of an input.

#pragma once

class ZorXmlParser;

namespace zor_internal {

// Releases what an input needed: the XML parser with its buffers, the contexts left open, and what
// the definition rules were building. Allocates nothing. The parser takes no input until `reset`.
void releaseInput(ZorXmlParser* parser);

} // namespace zor_internal
