// What an input that was not parsed to its end leaves in the rules of the definition language.

#pragma once

class ZorElementParseRules;

namespace zor_internal {

// Releases half-built nodes and ranges and the rules of a document's nodes, in `rules` and below.
void releaseLeftovers(ZorElementParseRules* rules);

} // namespace zor_internal
