// The sixteen permanent strings and the ordered set they are found in.
//
// Both are laid out by the compiler, so that they exist before any code runs, and never destroyed:
// every static initialiser and destructor of a host may use them.

#include "foundation/permanent_strings.h"

#include <cstring>

#include "foundation/constinit.h"

constexpr ZorString::ZorString(char const* permanentText)
    : marker(-1), localBuffer{}, length(0), refCount(permanentCount), capacity(localSize),
      text(localBuffer) {
    while (permanentText[length]) {
        localBuffer[length] = permanentText[length];
        ++length;
    }
}

// In the order of stdZorStrings. Members, because an array of a class with a destructor cannot be
// laid out by every compiler.
struct ZorString::PermanentStrings {
    ZorString empty{""};
    ZorString defaultSchema{"DefaultSchema"};
    ZorString schema{"schema"};
    ZorString managementId{"managementId"};
    ZorString commsMgmtId{"CommsMgmtId"};
    ZorString qbexMgmtId{"QbexMgmtId"};
    ZorString id{"Id"};
    ZorString physiclaIfcMgmtId{"PhysiclaIfcMgmtId"}; // Kept: documents spell it like this
    ZorString stimulusKeySettings{"StimulusKeySettings"};
    ZorString tilecardContainerMgmtId{"TilecardContainerMgmtId"};
    ZorString lineKeySettings{"LineKeySettings"};
    ZorString mediaProcessMgmtId{"MediaProcessMgmtId"};
    ZorString dssKeySettings{"DssKeySettings"};
    ZorString trueText{"true"};
    ZorString falseText{"false"};
    ZorString occurrence{"occurrence"};
};

union ZorString::PermanentStorage {
    constexpr PermanentStorage() : strings() {}
    // The strings stay. NOLINTNEXTLINE(modernize-use-equals-default): that deletes it
    ~PermanentStorage() {}
    PermanentStrings strings;
};

ZOR_CONSTINIT ZorString::PermanentStorage ZorString::permanentStorage;

// The members as the array that they are laid out as.
ZorString (&ZorString::stdZorStrings)[ZorString::stdCount] =
    reinterpret_cast<ZorString (&)[stdCount]>(permanentStorage.strings);

ZorString* const ZorString::stdZorStringContainer[ZorString::stdCount] = {
    &permanentStorage.strings.empty,
    &permanentStorage.strings.id,
    &permanentStorage.strings.trueText,
    &permanentStorage.strings.falseText,
    &permanentStorage.strings.schema,
    &permanentStorage.strings.qbexMgmtId,
    &permanentStorage.strings.occurrence,
    &permanentStorage.strings.commsMgmtId,
    &permanentStorage.strings.managementId,
    &permanentStorage.strings.defaultSchema,
    &permanentStorage.strings.dssKeySettings,
    &permanentStorage.strings.lineKeySettings,
    &permanentStorage.strings.physiclaIfcMgmtId,
    &permanentStorage.strings.mediaProcessMgmtId,
    &permanentStorage.strings.stimulusKeySettings,
    &permanentStorage.strings.tilecardContainerMgmtId,
};

bool ZorString::compareZorString(ZorString const* a, ZorString const* b) {
    if (a->length != b->length) return a->length < b->length;
    return std::strcmp(a->text, b->text) < 0;
}

namespace {

constexpr int kLongest = 23;

// By length, where the strings of that length begin in stdZorStringContainer; stdCount where there
// are none. Most texts are told apart by their length alone: every text that is stored or read is
// looked up, and with a search of the whole order reading one takes a sixth more instructions.
constexpr unsigned char kFirstOfLength[kLongest + 1] = {
    0, 16, 1, 16, 2, 3, 4, 16, 16, 16, 5, 7, 8, 9, 10, 11, 16, 12, 13, 14, 16, 16, 16, 15};

} // namespace

ZorString* zor_internal::findPermanent(char const* chars, int length) {
    if (length > kLongest) return nullptr;
    for (int i = kFirstOfLength[length]; i < ZorString::stdCount; ++i) {
        ZorString* const candidate = ZorString::stdZorStringContainer[i];
        if (candidate->length != length) return nullptr;
        if (length == 0 || (chars[0] == candidate->text[0] &&
                            std::memcmp(chars, candidate->text, unsigned(length)) == 0)) {
            return candidate;
        }
    }
    return nullptr;
}
