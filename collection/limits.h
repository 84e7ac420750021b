// How large things may become.

#pragma once

namespace zor_internal {

constexpr short kMaxDocuments = 32767; // of one schema: its count is 16 bits wide
constexpr long kMaxCells = 16777216;   // of one document
constexpr int kMaxImportDepth = 16;    // imports within imports, the outermost included

} // namespace zor_internal
