#include "bench/phone_text.h"

#include <cstdint>
#include <cstdio>
#include <iterator>

namespace bench {
namespace {

constexpr char const* kFirstNames[] = {"Anna",  "Bj\xC3\xB6rn",    "Carla", "David",
                                       "Elif",  "Fran\xC3\xA7ois", "Gina",  "Henrik",
                                       "Irene", "Jakub",           "Katja", "Liam"};
constexpr char const* kLastNames[] = {"Andersson", "Baker",   "Costa",         "Dubois",
                                      "Evans",     "Fischer", "M\xC3\xBCller", "O'Brien",
                                      "Rossi",     "Wagner",  "Yilmaz",        "Zhang"};
constexpr char const* kLabels[] = {"Reception",   "Front desk", "R&D",          "Sales <east>",
                                   "Workshop",    "Warehouse",  "Hotline",      "Meeting room",
                                   "Caf\xC3\xA9", "Laboratory", "Night bell",   "Purchasing",
                                   "Conference",  "Park",       "Boss \"Jim\"", "Door"};

// Numbers that look random and are the same everywhere: the finaliser of a common hash.
std::uint32_t mixed(std::uint32_t a, std::uint32_t b) {
    std::uint32_t h = a * 0x9E3779B1U + b;
    h = (h ^ (h >> 16)) * 0x85EBCA6BU;
    h = (h ^ (h >> 13)) * 0xC2B2AE35U;
    return h ^ (h >> 16);
}

template <std::size_t count>
char const* pick(char const* const (&from)[count], std::uint32_t number) {
    return from[number % count];
}

template <typename... Arguments>
std::string print(char const* format, Arguments... arguments) {
    char buffer[64];
    std::snprintf(buffer, sizeof(buffer), format, arguments...);
    return buffer;
}

std::string stringFor(PhoneNode const& node, std::uint32_t number) {
    if (node.name == "mac") {
        return print("00:1A:%02X:%02X:%02X:%02X", number & 0xFFU, number >> 8 & 0xFFU,
                     number >> 16 & 0xFFU, number >> 24);
    }
    if (node.name == "password") return print("%08x%04x", number, number % 65521);
    if (node.name == "user") return print("user%05u", number % 100000);
    if (node.name == "name" || node.name == "displayName") {
        return std::string(pick(kFirstNames, number)) + " " + pick(kLastNames, number >> 8);
    }
    return std::string(pick(kLabels, number)) + " " + std::to_string(number >> 8 & 0x3FFU);
}

std::string digitsFor(std::uint32_t number) {
    switch (number % 4) {
    case 0:
        return print("%u", 1000 + number / 4 % 9000);
    case 1:
        return print("*%u#", 10 + number / 4 % 90);
    case 2:
        return print("0%u", 301000000 + number / 4 % 98000000);
    default:
        return print("+49 30 %u", 1000000 + number / 4 % 9000000);
    }
}

std::string addressFor(std::uint32_t number) {
    return print("10.%u.%u.%u", number & 0xFFU, number >> 8 & 0xFFU, 1 + (number >> 16) % 254);
}

std::string maskFor(std::uint32_t number) {
    std::uint32_t const mask = ~0U << (1 + number % 20);
    return print("%u.%u.%u.%u", mask >> 24, mask >> 16 & 0xFFU, mask >> 8 & 0xFFU, mask & 0xFFU);
}

// In eighths, which are exact and come back as they stand.
std::string eighths(long number) { return print("%.10g", static_cast<double>(number) / 8); }

std::string boundedFor(PhoneType const& type, std::uint32_t number) {
    if (type.base == "float") {
        long const first = static_cast<long>(std::stod(type.minimum) * 8);
        long const last = static_cast<long>(std::stod(type.maximum) * 8);
        return eighths(first + static_cast<long>(number) % (last - first + 1));
    }
    long const first = std::stol(type.minimum);
    return std::to_string(first +
                          static_cast<long>(number) % (std::stol(type.maximum) - first + 1));
}

std::string anyText(PhoneNode const& node, std::uint32_t number) {
    PhoneType const& type = *node.type;
    if (!type.options.empty()) return type.options[number % type.options.size()];
    if (!type.minimum.empty()) return boundedFor(type, number);
    if (type.base == "int") return std::to_string(static_cast<long>(number % 200001) - 100000);
    if (type.base == "uint") return std::to_string(number % 1000000);
    if (type.base == "bool") return number % 2 ? "true" : "false";
    if (type.base == "float") return eighths(static_cast<long>(number % 16001) - 8000);
    if (type.base == "digit_string") return digitsFor(number);
    if (type.base == "ip_address") return addressFor(number);
    if (type.base == "ip_mask") return maskFor(number);
    if (type.base == "domain_name") return print("host-%u.office.example.com", number % 1000);
    if (type.base == "url") return print("https://www.example.com/phones/%u.xml", number % 100000);
    return stringFor(node, number);
}

} // namespace

std::string textFor(PhoneNode const& node, int flat) {
    auto const order = static_cast<std::uint32_t>(node.order);
    std::uint32_t number = mixed(order, static_cast<std::uint32_t>(flat));
    std::string text = anyText(node, number);
    while (text == node.defaultText) text = anyText(node, ++number);
    return text;
}

void appendEscaped(std::string& out, std::string const& text) {
    for (char const c : text) {
        switch (c) {
        case '<':
            out += "&lt;";
            break;
        case '>':
            out += "&gt;";
            break;
        case '&':
            out += "&amp;";
            break;
        case '\'':
            out += "&apos;";
            break;
        case '"':
            out += "&quot;";
            break;
        default:
            out += c;
        }
    }
}

} // namespace bench
