// How often any schema of the process has changed: got a node, or was destroyed.
//
// What was derived from a schema is right as long as this number is the same. A schema that is gone
// cannot be asked, and another one may stand at its address.

#pragma once

namespace zor_internal {

unsigned long schemaChanges();

} // namespace zor_internal
