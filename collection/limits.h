// How large things may become.

#pragma once

class ZorSchema;

namespace zor_internal {

constexpr short kMaxDocuments = 32767;        // of one schema: its count is 16 bits wide
constexpr long kMaxCells = 16777216;          // of one document
constexpr long kMaxImportedBytes = 268435456; // of all documents that one import makes
constexpr int kMaxImportDepth = 16;           // imports within imports, the outermost included

constexpr int kMaxDepth = 256; // of collections and of branches, as far as they are imported

// Why the schema can have no further document, as the end of a message; null when it can.
// REQUIRES: the caller holds the schema's lock.
char const* reasonAgainstDocument(ZorSchema const* schema);

} // namespace zor_internal
