// What a host brings into the store, each piece of which fails on request: a type, a writer, a
// logging function, a dictionary. They are C++ functions, so a failure is an exception.

#pragma once

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <utility>

#include "tests/support/incidents.h"
#include "zor/collection.h"

// What a function of the host throws.
struct HostFailure {};

// Lets one call of a function of the host throw: the n-th from now on, counted from 1. One lives at
// a time.
class FailingHostCall {
public:
    explicit FailingHostCall(long n) { untilFailure() = n; }
    FailingHostCall(FailingHostCall const&) = delete;
    FailingHostCall& operator=(FailingHostCall const&) = delete;
    ~FailingHostCall() { untilFailure() = 0; }

    // Whether so many calls took place that one threw.
    bool happened() const { return untilFailure() <= 0; }

    // Every function of the host calls this first.
    static void count() {
        if (untilFailure() > 0 && --untilFailure() == 0) throw HostFailure();
    }

private:
    static long& untilFailure() {
        static long left = 0;
        return left;
    }
};

namespace host_type {

inline u_zorItemValue fromString(char const* text) {
    FailingHostCall::count();
    u_zorItemValue value;
    value.stringValue = ZorString::create(text, -1);
    return value;
}

inline u_zorItemValue copyValue(u_zorItemValue value) {
    FailingHostCall::count();
    u_zorItemValue copy;
    copy.stringValue = zor_stringCopy(value.stringValue);
    return copy;
}

inline void freeValue(u_zorItemValue value) { value.stringValue->removeRef(); }

inline void setFromString(u_zorItemValue* value, char const* text) {
    FailingHostCall::count();
    value->stringValue = value->stringValue->set(1, text, -1);
}

inline ZorString* toString(u_zorItemValue value) {
    FailingHostCall::count();
    return zor_stringCopy(value.stringValue);
}

inline int validate(void*, char const* text) {
    FailingHostCall::count();
    return *text != 'n';
}

inline int compare(void*, char const* a, char const* b) {
    FailingHostCall::count();
    return std::strcmp(a, b);
}

inline void freeUserData(void* data) { delete static_cast<std::string*>(data); }

inline void* cloneUserData(void* data) {
    FailingHostCall::count();
    return new std::string(*static_cast<std::string*>(data));
}

inline void exportXML(ZorDataWriter* writer, ZorString*, void*) {
    FailingHostCall::count();
    writer->writeData("<!--a type of the host-->", -1);
}

inline u_zorItemValue fromLong(u_zorItemValue external) {
    return fromString(std::to_string(external.intValue).c_str());
}

inline void setLong(u_zorItemValue* internal, u_zorItemValue external) {
    setFromString(internal, std::to_string(external.intValue).c_str());
}

inline void getLong(u_zorItemValue internal, u_zorItemValue* external) {
    FailingHostCall::count();
    external->intValue = std::atol(zor_stringValue(internal.stringValue));
}

inline int validateLong(void*, u_zorItemValue) {
    FailingHostCall::count();
    return 1;
}

// A type of texts that do not begin with "n", in the order of strcmp, which also takes numbers.
inline std::unique_ptr<ZorDataType> make(char const* name, char const* defaultText) {
    auto data = std::make_unique<std::string>("what a copy of the type has a copy of");
    auto type = std::make_unique<ZorDataType>(name, defaultText, data.get(), validate, compare,
                                              freeUserData, fromString, copyValue, freeValue,
                                              setFromString, toString, cloneUserData);
    (void)data.release();
    zor_dataTypeSetXmlExportFn(type.get(), exportXML);
    zor_dataTypeSetConversionFuncs(type.get(), zorExtLong, fromLong, setLong, getLong, validateLong,
                                   nullptr);
    return type;
}

// Adds the type, unless its name is taken.
inline void add(ZorDataTypeCollection& types, std::unique_ptr<ZorDataType> type) {
    if (types.addDataType(type.get())) (void)type.release();
}

} // namespace host_type

// Counts what it is given.
class HostWriter : public ZorDataWriter {
public:
    void writeData(char const* data, int length) override {
        FailingHostCall::count();
        written += length < 1 ? std::strlen(data) : static_cast<std::size_t>(length);
    }
    std::size_t written = 0;
};

// Drops every incident while it lives.
class HostLog {
public:
    HostLog() { zor_setLoggingFunction(drop); }

private:
    static void drop(severity, std::string&) { FailingHostCall::count(); }

    IncidentLog restoring; // sets the logging function back in the end
};
