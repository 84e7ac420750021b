// A text into every type: the built-in ones, a choice, and ranges. Types accept what dull rules
// accept. An accepted text reads back to an accepted text of equal value, by whichever way it gets
// in, and is written the same from then on. A refused one changes nothing and is reported once.

#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <cstring>

#include "fuzz/support/check.h"
#include "fuzz/support/incident_log.h"
#include "fuzz/support/leftovers.h"
#include "fuzz/support/parts.h"
#include "fuzz/support/target.h"
#include "tests/support/text.h"

namespace {

// One document with an item of every type.
struct EveryType {
    EveryType() : collection("phone"), document(nullptr) {
        IncidentLog log;
        collection.importXML(
            "<phone><schema name='s'>"
            "<choice name='mode'><option>off</option><option>on</option><option>1</option>"
            "<option>true</option><option>a longer option than the others</option></choice>"
            "<range name='small' baseType='int' minValue='-3' maxValue='+10'/>"
            "<range name='port' baseType='uint' minValue='1' maxValue='65535'/>"
            "<range name='gain' baseType='float' minValue='-1.5' maxValue='1e3'/>"
            "<range name='zone' baseType='string' minValue='A' maxValue='F'/>"
            "<range name='yes' baseType='bool' minValue='false' maxValue='true'/>"
            "<range name='cast' baseType='ip_address' minValue='224.0.0.0' maxValue='239.9.9.9'/>"
            "<range name='net' baseType='ip_mask' minValue='255.0.0.0' maxValue='255.255.255.0'/>"
            "<item name='a' type='string'/><item name='b' type='int'/><item name='c' type='uint'/>"
            "<item name='d' type='bool'/><item name='e' type='float'/>"
            "<item name='f' type='digit_string'/><item name='g' type='ip_address'/>"
            "<item name='h' type='ip_mask'/><item name='i' type='domain_name'/>"
            "<item name='j' type='url'/><item name='k' type='mode'/><item name='l' type='small'/>"
            "<item name='m' type='port'/><item name='n' type='gain'/><item name='o' type='zone'/>"
            "<item name='p' type='yes'/><item name='q' type='cast'/><item name='r' type='net'/>"
            "</schema><document name='d' schema='s'/></phone>");
        checkSame(log.take(), "", "the document of every type is correct");
        document = collection.getDocument("d");
        check(document != nullptr, "the document of every type is there");
    }

    ZorCollection collection;
    ZorDocument* document;
};

bool isFloat(ZorDataType const* type) {
    return type->toStringFn == ZorBuiltIn::getDataType("float")->toStringFn;
}

bool isDigits(std::string const& text) {
    return !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
}

// Digits, behind one of the signs or none.
bool isDecimal(std::string const& text, std::string const& signs) {
    bool const isSigned = !text.empty() && signs.find(text[0]) != std::string::npos;
    return isDigits(isSigned ? text.substr(1) : text);
}

bool isDialled(std::string text) {
    if (text.empty()) return true;
    if (text[0] == '+') text.erase(0, 1);
    return !text.empty() && text.find_first_not_of("0123456789#* ") == std::string::npos;
}

// Whether a number in decimal lies within the bounds, worked out by the C library.
bool liesWithin(std::string const& text, long long min, long long max) {
    errno = 0;
    long long const number = std::strtoll(text.c_str(), nullptr, 10);
    return errno == 0 && number >= min && number <= max;
}

// The four octets in one number; -1 when the text is no address.
long long addressIn(std::string text) {
    long long address = 0;
    text += '.';
    for (int octets = 0; octets < 4; ++octets) {
        std::size_t const length = text.find('.');
        if (length == std::string::npos) return -1;
        std::string const octet = text.substr(0, length);
        if (!isDigits(octet) || length > 3 || std::atoi(octet.c_str()) > 255) return -1;
        address = address * 256 + std::atoi(octet.c_str());
        text.erase(0, length + 1);
    }
    return text.empty() ? address : -1;
}

bool isMask(long long address) {
    for (int zeros = 0; zeros <= 32; ++zeros) {
        if (address == (1LL << 32) - (1LL << zeros)) return true;
    }
    return false;
}

// Whether the type of that name accepts the text, worked out the dull way; `otherwise` for types
// that are not as simple.
bool dullAccepts(std::string const& type, std::string const& text, bool otherwise) {
    if (type == "string" || type == "domain_name" || type == "url") return true;
    if (type == "bool" || type == "yes") return text == "true" || text == "false";
    if (type == "mode") {
        return text == "off" || text == "on" || text == "1" || text == "true" ||
               text == "a longer option than the others";
    }
    if (type == "zone") return text >= "A" && text <= "F";
    bool const isSigned = isDecimal(text, "-+");
    bool const isUnsigned = isDecimal(text, "+");
    if (type == "int") return isSigned && liesWithin(text, -2147483648LL, 2147483647LL);
    if (type == "small") return isSigned && liesWithin(text, -3, 10);
    if (type == "uint") return isUnsigned && liesWithin(text, 0, 4294967295LL);
    if (type == "port") return isUnsigned && liesWithin(text, 1, 65535);
    if (type == "digit_string") return isDialled(text);
    if (type == "ip_address") return addressIn(text) >= 0;
    if (type == "cast") return addressIn(text) >= 0xE0000000LL && addressIn(text) <= 0xEF090909LL;
    if (type == "ip_mask") return isMask(addressIn(text));
    if (type == "net") {
        return isMask(addressIn(text)) && addressIn(text) >= 0xFF000000LL &&
               addressIn(text) <= 0xFFFFFF00LL;
    }
    return otherwise;
}

// A value made from a text, as text.
std::string readBack(ZorDataType* type, std::string const& text) {
    u_zorItemValue const value = type->fromStringFn(text.c_str());
    std::string const made = taken(type->toStringFn(value));
    u_zorItemValue copy = type->copyValueFn(value);
    checkSame(taken(type->toStringFn(copy)), made, "a copy is the same value");
    type->setFromStringFn(&copy, made.c_str());
    type->setFromStringFn(&copy, text.c_str());
    checkSame(taken(type->toStringFn(copy)), made, "a text sets what it makes");
    type->freeValueFn(copy);
    type->freeValueFn(value);
    return made;
}

double doubleOf(ZorDataType* type, std::string const& text) {
    u_zorItemValue const value = type->fromStringFn(text.c_str());
    double const number = *value.floatValue;
    type->freeValueFn(value);
    return number;
}

// A float is written with 15 digits, so it reads back as a number that equals it in these. Next to
// a bound, or to the largest number that there is, it may come to lie beyond that.
void checkFloatReadsBack(ZorDataType* type, std::string const& text, std::string const& written) {
    double const number = doubleOf(type, text);
    double const again = doubleOf(type, written);
    double const expected = std::strtod(text.c_str(), nullptr);
    check(number == expected || (std::isnan(number) && std::isnan(expected)),
          "a number is read as the C library reads it");
    if (std::isnan(number)) return check(std::isnan(again), "what is no number stays none");
    if (std::isinf(again) && !std::isinf(number)) {
        return check(std::fabs(number) >= 1.797693134862315e308, "a number stays finite");
    }
    if (std::isinf(number)) return check(again == number, "an infinite number stays what it is");
    // Half a unit of the 15th digit, and the roundings of reading both texts.
    check(std::fabs(again - number) <= std::fabs(number) * 6e-15, "15 digits of a number stay");
    checkSame(readBack(type, written), written, "15 digits are written as they were read");
    if (zor_dataTypeValidate(type, Text(written))) return;
    check(zor_datatypeIsRange(type) && again != number, "only rounding leaves a range");
}

void checkReadsBack(ZorDataType* type, std::string const& text) {
    std::string const written = readBack(type, text);
    if (isFloat(type)) return checkFloatReadsBack(type, text, written);
    check(zor_dataTypeValidate(type, Text(written)), "a value is written as an accepted text");
    check(zor_dataTypeCompare(type, Text(text), Text(written)) == 0, "it reads back as equal");
    checkSame(readBack(type, written), written, "what is written stays what it is");
}

// Host numbers are compared with the bounds of a range as these read as decimal numbers, which the
// texts of other bases do not.
bool takesHostNumbers(ZorDataType* type) {
    if (!zor_datatypeIsRange(type)) return true;
    char const* const base = zor_dataTypeName(zor_rangeBaseType(type));
    return std::strcmp(base, "int") == 0 || std::strcmp(base, "uint") == 0 || isFloat(type);
}

// The number that a host reads is one that a host may set, and the same value.
void checkHostNumbers(ZorDocument* document, ZorSchemaNode* node, std::string const& written) {
    ZorDataType* const type = node->getDataType();
    if (!takesHostNumbers(type)) return;
    int isNull = 0;
    if (type->extFuncs[zorExtLong].toInternal) {
        long const number = document->getIntNodeValue(node, 0, &isNull);
        check(!isNull && document->setIntNodeValue(node, 0, number), "a signed number goes back");
    }
    if (type->extFuncs[zorExtULong].toInternal) {
        unsigned long const number = document->getUIntNodeValue(node, 0, &isNull);
        check(!isNull && document->setUIntNodeValue(node, 0, number), "an unsigned one goes back");
    }
    if (type->extFuncs[zorExtDouble].toInternal) {
        double const number = document->getFloatNodeValue(node, 0, &isNull);
        check(!isNull && document->setFloatNodeValue(node, 0, number), "a double goes back");
    }
    checkSame(taken(document->getStringNodeValue(node, 0)), written, "and is the same value");
}

void checkStores(ZorDocument* document, ZorSchemaNode* node, std::string const& text,
                 IncidentLog& log) {
    ZorDataType* const type = node->getDataType();
    document->restoreDefault(node, 0);
    bool const accepted = zor_dataTypeValidate(type, Text(text)) != 0;
    bool const stored =
        document->setStringNodeValue(node, 0, static_cast<ZorString*>(Text(text))) != 0;
    check(accepted == dullAccepts(zor_dataTypeName(type), text, accepted),
          "a type accepts what the dull rules accept");
    check(stored == accepted, "a document stores what the type accepts");
    check(document->wasChanged(node, 0) == accepted, "only what is stored counts as changed");
    std::string const now = taken(document->getStringNodeValue(node, 0));
    if (!accepted) {
        checkSame(now, "(null)", "what is refused leaves the cell as it was");
        checkSame(log.take(), "3 setStringNodeValue: value (" + text + ") is not valid\n",
                  "what is refused is reported");
        return;
    }
    checkReadsBack(type, text);
    checkSame(now, readBack(type, text), "a document reads what the type reads");
    checkHostNumbers(document, node, now);
    document->restoreDefault(node, 0);
    checkSame(log.take(), "", "what is accepted is stored in silence");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    static EveryType& every = *new EveryType;
    std::string const text = upToNul(textOfInput(data, size));
    NoLeftovers const nothing;
    IncidentLog log;
    ZorSchemaNode* node = every.document->getRootNode()->getFirstChildNode();
    for (; node; node = node->getNextNode()) checkStores(every.document, node, text, log);

    ZorString* const escaped = escapeCData(Text(text));
    check(!std::strpbrk(escaped->text, "<>'") && (text.empty() || !std::strchr(escaped->text, '"')),
          "an escaped text has no markup");
    escaped->removeRef();
    unsigned long address = 0;
    check(parseIpAddress(text.c_str(), &address) == 0 || address <= 0xFFFFFFFFUL,
          "an address has 32 bits");
    return 0;
}
