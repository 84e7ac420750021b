// Starts and stops with the library loaded, and is over then:
//
//     zor_start
//
// or, in between, imports the desk telephone into a collection and destroys it:
//
//     zor_start examples/desk-phone
//
// With --peak behind that it prints its memory. scripts/bench-start has the figures.

#include <cstdio>
#include <cstring>
#include <string>

#include "bench/instructions/peak.h"
#include "zor/zor.h"

namespace {

// Answers whether the telephone is there, to the last of its line keys.
bool useTelephone(std::string const& directory) {
    ZorCollection store("deskphone");
    store.importFromFile((directory + "/definition.xml").c_str());
    store.importFromFile((directory + "/config.xml").c_str());
    ZorDocument* const phone = store.getDocument("phone1");
    if (!phone) return false;
    ZorResultSet* const label = phone->select("lineKey[48]/label");
    std::string text;
    if (!label->eof()) label->getValue(text);
    delete label;
    return !text.empty();
}

} // namespace

int main(int argc, char** argv) {
    bool const works = argc > 1 && std::strcmp(argv[1], "--peak") != 0;
    if (works && !useTelephone(argv[1])) {
        std::fputs("zor_start: the telephone was not imported\n", stderr);
        return 1;
    }
    printPeakIfAsked(argc, argv);
    return 0;
}
