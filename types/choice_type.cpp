// Choices: a text out of an ordered list.
//
// The user data of a choice is its list of options, ZorStrings with one reference each; null while
// there is none.

#include "types/choice_options.h"

#include <cstring>

#include "foundation/list_builder.h"
#include "foundation/string_ref.h"
#include "foundation/text_argument.h"
#include "foundation/write_text.h"
#include "types/value_holder.h"

using zor_internal::ListBuilder;
using zor_internal::writeJoined;
using zor_internal::writeText;

namespace {

ZorListNode* optionsIn(void* userData) { return static_cast<ZorListNode*>(userData); }

ZorString* optionAt(ZorListNode const* node) { return static_cast<ZorString*>(node->value); }

int choiceIsValid(void* userData, char const* text) {
    for (ZorListNode const* node = optionsIn(userData); node; node = node->next) {
        if (std::strcmp(optionAt(node)->text, text) == 0) return 1;
    }
    return 0;
}

void choiceFreeOptions(void* userData) {
    ZorListNode* const options = optionsIn(userData);
    for (ZorListNode const* node = options; node; node = node->next) optionAt(node)->removeRef();
    zor_listDelete(options);
}

void* choiceCloneOptions(void* userData) {
    ListBuilder copies;
    for (ZorListNode const* node = optionsIn(userData); node; node = node->next) {
        copies.append(node->value);
    }
    for (ZorListNode const* node = copies.first(); node; node = node->next) {
        zor_stringAddRef(optionAt(node));
    }
    return copies.release();
}

// Kept: name and options are written as they are, unescaped.
void choiceExport(ZorDataWriter* writer, ZorString* name, void* userData) {
    writeJoined(writer, {"<choice name=\"", name->text, "\">"});
    for (ZorListNode const* node = optionsIn(userData); node; node = node->next) {
        writeJoined(writer, {"<option>", optionAt(node)->text, "</option>"});
    }
    writeText(writer, "</choice>");
}

} // namespace

ZorDataType* zor_choiceMake(void const* name) {
    ZorDataType* const choice =
        zor_derivedTypeMake(name, nullptr, nullptr, choiceIsValid, nullptr, choiceFreeOptions,
                            ZorBuiltIn::getDataType("string"), choiceCloneOptions);
    choice->flags |= ZorDataType::isChoice;
    zor_dataTypeSetXmlExportFn(choice, choiceExport);
    return choice;
}

void zor_choiceAddOption(ZorDataType* choice, void const* option) {
    zor_internal::appendOption(choice, optionsIn(choice->userData), option);
}

ZorListNode* zor_internal::appendOption(ZorDataType* choice, ZorListNode* last,
                                        void const* option) {
    StringRef reference(stringOf(option));
    if (last) {
        ZorListNode* const added = zor_listAddNode(last, reference.get());
        (void)reference.release();
        return added;
    }
    ValueHolder madeDefault(choice->freeValueFn, choice->fromStringFn(reference.text()));
    ZorListNode* const first = zor_listMake(reference.get());
    (void)reference.release();
    choice->userData = first;
    choice->defaultValue = madeDefault.release();
    choice->flags = static_cast<unsigned char>(choice->flags & ~ZorDataType::noDefault);
    return first;
}

int zor_choiceEnumerate(ZorDataType* type, void (*callback)(int index, char const* text)) {
    if (!zor_datatypeIsChoice(type)) return 0;
    int count = 0;
    for (ZorListNode const* node = optionsIn(type->userData); node; node = node->next) {
        callback(count++, optionAt(node)->text);
    }
    return count;
}
