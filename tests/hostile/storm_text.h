// Random texts in the definition language, most of them nearly right: names, types and values come
// from short lists, so that they meet, and elements, attributes and characters that do not belong
// there come between them.

#pragma once

#include <cstddef>
#include <random>
#include <string>

// The source of everything random. The same on every platform.
class Dice {
public:
    void seed(unsigned long seed) { source.seed(static_cast<std::mt19937::result_type>(seed)); }

    // From 0 to limit - 1.
    unsigned below(unsigned limit) { return static_cast<unsigned>(source() % limit); }
    bool oneIn(unsigned n) { return below(n) == 0; }
    int anyInt() { return static_cast<int>(source()); }

    template <std::size_t count>
    char const* oneOf(char const* const (&texts)[count]) {
        return texts[below(count)];
    }

private:
    std::mt19937 source;
};

// Texts are put together with += only, which decides the order in which the dice fall.
class StormText {
public:
    explicit StormText(Dice& source) : dice(source) {}

    std::string name() {
        return dice.oneOf({"a", "b", "c", "x", "y", "Id", "true", "schema", "DefaultSchema",
                           "a name that is longer than thirty-two characters, surely"});
    }

    std::string value() {
        return dice.oneOf({"",
                           " x ",
                           "1",
                           "7",
                           "-5",
                           "0.5",
                           "+12#",
                           "true",
                           "false",
                           "opt",
                           "o2",
                           "inf",
                           "nan",
                           "1e400",
                           "4294967295",
                           "-2147483648",
                           "10.0.0.1",
                           "255.255.0.0",
                           "\"\"",
                           "&lt;&amp;",
                           "a text that is longer than thirty-two characters, for the heap"});
    }

    std::string type() {
        return dice.oneOf({"string", "int", "uint", "bool", "float", "digit_string", "ip_address",
                           "ip_mask", "domain_name", "url", "choice", "range", "float range",
                           "nothing", "own"});
    }

    std::string occurrences() {
        if (!dice.oneIn(8)) return std::to_string(dice.below(6));
        return dice.oneOf({"32767", "32768", "65535", "65536", "-1", "2147483648", "4294967296",
                           "4294967297", "x", ""});
    }

    std::string path() {
        std::string text = step();
        while (dice.oneIn(3)) {
            text += dice.oneIn(2) ? "/" : "//";
            text += step();
        }
        return text;
    }

    // A whole file for a collection "c"; some end early, and in some a byte is another one.
    std::string file() {
        std::string text = "<c>" + content(2) + "</c>";
        if (dice.oneIn(6)) text.resize(dice.below(unsigned(text.size()) + 1));
        if (!text.empty() && dice.oneIn(8)) {
            text[dice.below(unsigned(text.size()))] = "<>&\"'/x\x80"[dice.below(8)];
        }
        return text;
    }

    // Sub-collections are nested so many levels deep.
    std::string content(int depth) {
        std::string text;
        for (unsigned left = dice.below(5); left > 0; --left) {
            switch (dice.below(6)) {
            case 0:
            case 1:
                text += schema();
                break;
            case 2:
            case 3:
                text += document();
                break;
            case 4:
                if (depth > 0) text += collection(depth - 1);
                break;
            default:
                text += stray();
            }
        }
        return text;
    }

    std::string declarations() {
        std::string text;
        for (unsigned left = dice.below(8); left > 0; --left) {
            switch (dice.below(7)) {
            case 0:
                text += choice();
                break;
            case 1:
                text += range();
                break;
            case 2:
            case 3:
                text += branch();
                break;
            case 4:
                text += stray();
                break;
            default:
                text += item();
            }
        }
        return text;
    }

private:
    std::string step() {
        return dice.oneOf({"/",
                           "//",
                           "a",
                           "b",
                           "*",
                           "//*",
                           "/a",
                           "b/a",
                           "a//b",
                           "*/*",
                           "///",
                           "",
                           "x[1]",
                           "b[2]/a",
                           "//x",
                           "schema",
                           "*[3]",
                           "b[*]",
                           "[1]",
                           "a[",
                           "//*//*//*",
                           "*/",
                           "b[2147483648]",
                           "y[ 1 z]"});
    }

    // Mostly nothing; else what has no business there.
    std::string stray() {
        if (!dice.oneIn(4)) return "";
        if (dice.oneIn(3)) return dice.oneOf({"&#10;", "&undef;", "</c>", "<"});
        return dice.oneOf({"<junk/>", "<item/>", "<branch/>", "text", " ", "<junk><item/></junk>",
                           "<document/>", "<collection/>", "<!-- c -->", "<![CDATA[x]]>",
                           "<schema/>", "<option>q</option>"});
    }

    std::string strayAttribute() { return dice.oneIn(6) ? " z='1'" : ""; }

    static std::string attribute(char const* name, std::string const& value) {
        std::string text = " ";
        return text.append(name).append("='").append(value).append("'");
    }

    std::string choice() {
        std::string text = "<choice" + attribute("name", dice.oneIn(3) ? name() : "choice");
        text += strayAttribute() + '>';
        text += stray();
        if (!dice.oneIn(5)) text += "<option>opt</option>";
        text += stray();
        if (!dice.oneIn(3)) text += "<option> o2 </option>";
        if (dice.oneIn(8)) text += "<option> </option>";
        return text + "</choice>";
    }

    std::string range() {
        std::string text = "<range";
        text += attribute("name", dice.oneIn(2) ? "range" : "float range");
        text += attribute("baseType", dice.oneIn(2) ? "int" : type());
        text += attribute("minValue", dice.oneIn(3) ? value() : "1");
        if (!dice.oneIn(9)) text += attribute("maxValue", dice.oneIn(3) ? value() : "9");
        text += strayAttribute();
        return text + "/>";
    }

    std::string branch() {
        std::string text = "<branch" + attribute("name", dice.oneIn(2) ? "b" : name());
        text += placement();
        text += stray();
        return text + "</branch>";
    }

    std::string item() {
        std::string text = "<item" + attribute("name", name());
        text += attribute("type", type());
        if (dice.oneIn(3)) text += attribute("default", value());
        text += placement();
        text += stray();
        return text + "</item>";
    }

    std::string placement() {
        std::string text;
        if (dice.oneIn(2)) text += attribute("occurrences", occurrences());
        if (dice.oneIn(2)) text += attribute("parent", path());
        text += strayAttribute();
        return text + '>';
    }

    std::string schema() {
        std::string text = "<schema" + attribute("name", name());
        text += strayAttribute() + '>';
        text += stray();
        text += declarations();
        return text + "</schema>";
    }

    std::string document() {
        std::string text = "<document";
        if (!dice.oneIn(10)) text += attribute("name", name());
        if (dice.oneIn(2)) text += attribute("schema", name());
        text += strayAttribute() + '>';
        text += stray();
        text += values(2);
        return text + "</document>";
    }

    std::string values(int depth) {
        std::string text;
        for (unsigned left = dice.below(6); left > 0; --left) {
            std::string element = dice.oneIn(2) ? "b" : name();
            if (element.find(' ') != std::string::npos) element = "a";
            text += '<' + element;
            if (dice.oneIn(3)) text += attribute("occurrence", occurrences());
            text += strayAttribute() + '>';
            text += stray();
            text += depth > 0 && dice.oneIn(2) ? values(depth - 1) : value();
            text += "</" + element + '>';
        }
        return text;
    }

    std::string collection(int depth) {
        std::string text = "<collection";
        if (!dice.oneIn(10)) text += attribute("name", name());
        text += '>' + content(depth);
        return text + "</collection>";
    }

    Dice& dice;
};
