// The handlers that expat calls. Their user data is the address of the parser's currentContext.

#pragma once

namespace zor_internal {

void onStartElement(void* currentContext, char const* name, char const** attributes);
void onCharacterData(void* currentContext, char const* text, int length);
void onEndElement(void* currentContext, char const* name);
void onAttributeDeclaration(void* currentContext, char const* element, char const* attribute,
                            char const* type, char const* defaultValue, int isRequired);
void onSkippedEntity(void* currentContext, char const* name, int isParameterEntity);

} // namespace zor_internal
