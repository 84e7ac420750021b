// A type whose functions note each call, for tests of what is called, with what and when.
//
//     CallLog calls;
//     delete makeProbe("probe", "5", nullptr);
//     EXPECT_EQ(calls.take(), "fromString 5;freeValue 5;");
//
// Its values are plain numbers. Its user data is a tag, a text, of which nothing is ever freed.

#pragma once

#include <cstdlib>
#include <string>

#include "zor/types.h"

class CallLog {
public:
    CallLog() { current() = this; }
    CallLog(CallLog const&) = delete;
    CallLog& operator=(CallLog const&) = delete;
    ~CallLog() { current() = nullptr; }

    // What was noted since the last call.
    std::string take() {
        std::string taken;
        taken.swap(noted);
        return taken;
    }

    static void note(std::string const& call) {
        if (current()) current()->noted += call + ';';
    }

private:
    static CallLog*& current() {
        static CallLog* log = nullptr;
        return log;
    }

    std::string noted;
};

namespace probe {

inline std::string tagOf(void* userData) {
    return userData ? static_cast<char const*>(userData) : "null";
}

inline int validate(void* userData, char const* text) {
    CallLog::note("validate " + tagOf(userData) + ' ' + text);
    return 7;
}

inline int compare(void* userData, char const* a, char const* b) {
    CallLog::note("compare " + tagOf(userData) + ' ' + a + ' ' + b);
    return std::string(a).compare(b);
}

inline void freeUserData(void* userData) { CallLog::note("freeUserData " + tagOf(userData)); }

inline void* cloneUserData(void* userData) {
    CallLog::note("cloneUserData " + tagOf(userData));
    static char clone[] = "clone";
    return clone;
}

inline u_zorItemValue fromString(char const* text) {
    CallLog::note(std::string("fromString ") + text);
    u_zorItemValue value;
    value.intValue = std::atol(text);
    return value;
}

inline u_zorItemValue copyValue(u_zorItemValue value) {
    CallLog::note("copyValue " + std::to_string(value.intValue));
    return value;
}

inline void freeValue(u_zorItemValue value) {
    CallLog::note("freeValue " + std::to_string(value.intValue));
}

inline void setFromString(u_zorItemValue* value, char const* text) {
    CallLog::note(std::string("setFromString ") + text);
    value->intValue = std::atol(text);
}

inline ZorString* toString(u_zorItemValue value) {
    std::string const text = std::to_string(value.intValue);
    CallLog::note("toString " + text);
    return ZorString::create(text.c_str(), -1);
}

inline void exportXml(ZorDataWriter* writer, ZorString* name, void* userData) {
    std::string const text = std::string(zor_stringValue(name)) + '/' + tagOf(userData);
    writer->writeData(text.c_str(), static_cast<int>(text.size()));
}

} // namespace probe

// A type of all the functions above.
inline ZorDataType* makeProbe(void const* name, void const* defaultText, char* tag,
                              ZorFreeUserDataFn freeUserData = probe::freeUserData,
                              ZorCloneUserDataFn cloneUserData = probe::cloneUserData) {
    return new ZorDataType(name, defaultText, tag, probe::validate, probe::compare, freeUserData,
                           probe::fromString, probe::copyValue, probe::freeValue,
                           probe::setFromString, probe::toString, cloneUserData);
}
