// The callbacks of the definition language, one pair per element, as the rules name them.

#pragma once

class ZORParseContext;

namespace zor_internal {

// definition_nodes.cpp
void branchStart(ZORParseContext* context);
void branchEnd(ZORParseContext* context);
void itemStart(ZORParseContext* context);
void itemEnd(ZORParseContext* context);

// definition_types.cpp
void rangeStart(ZORParseContext* context);
void rangeEnd(ZORParseContext* context);
void choiceStart(ZORParseContext* context);
void optionEnd(ZORParseContext* context);

} // namespace zor_internal
