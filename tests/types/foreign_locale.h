// A locale in which numbers and letters go other ways, in force until the end of the test: the
// decimal point is a comma, thousands are set apart by points, and "I" is not the capital of "i".
//
//     ForeignLocale const locale;
//     ASSERT_TRUE(locale.isInForce()) << locale.problem();
//
// localedef makes it, from nothing but the two files written here; where that fails, the Turkish
// one of the system serves, which goes the same ways.

#pragma once

#include <cctype>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>

class ForeignLocale {
public:
    ForeignLocale() {
        make();
        if (isInForce()) return;
        for (char const* const name : {"tr_TR", "tr_TR.ISO-8859-9"}) {
            if (std::setlocale(LC_ALL, name) && isInForce()) return;
        }
    }
    ForeignLocale(ForeignLocale const&) = delete;
    ForeignLocale& operator=(ForeignLocale const&) = delete;
    ~ForeignLocale() {
        std::setlocale(LC_ALL, "C");
        unsetenv("LOCPATH");
        std::error_code ignored;
        if (!folder.empty()) std::filesystem::remove_all(folder, ignored);
    }

    // Whether the C library goes the other ways now.
    bool isInForce() const {
        char text[16];
        std::snprintf(text, sizeof text, "%g", 1.5);
        return std::string(text) == "1,5" && std::tolower('I') != 'i';
    }

    char const* problem() const {
        return "no such locale: localedef is missing (libc-bin), and tr_TR is not installed";
    }

private:
    void make() {
        std::string pattern = std::filesystem::temp_directory_path() / "zor-locale-XXXXXX";
        if (!mkdtemp(pattern.data())) return;
        folder = pattern;
        writeCharacters(folder / "charmap");
        writeSource(folder / "source");
        // -c: go on although other categories are missing, which the exit status tells.
        std::string command = "cd '";
        command += pattern;
        command += "' && localedef -c ";
        command +=
            isBigEndian() ? "--big-endian" : "--little-endian"; // it may be another machine's
        command += " -f ./charmap -i ./source ./foreign >output 2>&1";
        if (std::system(command.c_str()) == -1) return;
        setenv("LOCPATH", pattern.c_str(), 1);
        std::setlocale(LC_ALL, "foreign");
    }

    static bool isBigEndian() {
        unsigned const one = 1;
        unsigned char first;
        std::memcpy(&first, &one, 1);
        return first == 0;
    }

    static void writeCharacters(std::filesystem::path const& path) {
        std::ofstream file(path);
        file << "<code_set_name> ANSI_X3.4-1968\n<comment_char> %\n<escape_char> /\nCHARMAP\n";
        for (unsigned code = 0; code < 128; ++code) {
            char line[32];
            std::snprintf(line, sizeof line, "<U%04X> /x%02x\n", code, code);
            file << line;
        }
        file << "END CHARMAP\n";
    }

    static void writeSource(std::filesystem::path const& path) {
        std::ofstream file(path);
        file << "comment_char %\nescape_char /\nLC_CTYPE\nupper " << letters('A') << "\nlower "
             << letters('a') << "\ntoupper " << pairs() << "\nEND LC_CTYPE\n"
             << "LC_NUMERIC\ndecimal_point \",\"\nthousands_sep \".\"\ngrouping 3;3\n"
             << "END LC_NUMERIC\n";
    }

    static std::string symbol(char character) {
        char text[16];
        std::snprintf(text, sizeof text, "<U%04X>", static_cast<unsigned>(character));
        return text;
    }

    static std::string letters(char first) {
        std::string list = symbol(first);
        for (int i = 1; i < 26; ++i) list.append(";").append(symbol(static_cast<char>(first + i)));
        return list;
    }

    // Every letter with its capital, but "i".
    static std::string pairs() {
        std::string list;
        for (char letter = 'a'; letter <= 'z'; ++letter) {
            if (letter == 'i') continue;
            if (!list.empty()) list += ';';
            char const capital = static_cast<char>(letter - 'a' + 'A');
            list.append("(").append(symbol(letter)).append(",").append(symbol(capital)).append(")");
        }
        return list;
    }

    std::filesystem::path folder;
};
