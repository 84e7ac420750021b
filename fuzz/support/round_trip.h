// Export, import of the export, export again: the same text.

#pragma once

#include <string>

class IncidentLog;
class ZorCollection;

// The name of every collection that the targets import into: the root element of their inputs.
inline constexpr char kStoreName[] = "phone";

// Checks that exporting is repeatable and that the export, imported into an empty collection, is
// accepted in silence and gives the same export. A store that holds something which the format
// cannot carry is imported again all the same, without expectations. Takes the incidents in `log`.
// REQUIRES: everything in the collection was imported, or copied from what was; it is called
// kStoreName.
void checkRoundTrip(ZorCollection& collection, IncidentLog& log);

// Checks that correct input still imports, in silence and with the right values.
// REQUIRES: `log` is empty.
void checkStillImports(ZorCollection& collection, IncidentLog& log);
