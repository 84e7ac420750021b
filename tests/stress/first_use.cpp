// A process whose threads all use the library for the first time at the same moment, again and
// again: each round is a child process in which nothing has been used yet. Exits with the number of
// rounds that failed.

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "tests/stress/threads.h"

namespace {

constexpr int kChildren = 40;
constexpr int kThreads = 6;

void require(bool condition, char const* what) {
    if (condition) return;
    std::fprintf(stderr, "failed: %s\n", what);
    std::_Exit(1);
}

// What a thread may be the first to do.
void (*const kFirstUses[])() = {
    [] {
        ZorDataType* const type = ZorBuiltIn::getDataType("ip_mask");
        require(type && zor_dataTypeValidate(type, "255.255.255.0"), "a type is there, complete");
    },
    [] {
        ZorDataType* const type = ZorBuiltIn::getDataType("int");
        require(type && type == ZorBuiltIn::getDataType("int"), "a type stays the same");
    },
    [] { require(!ZorBuiltIn::getDataType("nothing"), "an unknown type is unknown"); },
    [] {
        ZorDataType* const choice = zor_choiceMake("colour");
        zor_choiceAddOption(choice, "red");
        require(zor_dataTypeValidate(choice, "red") == 1, "a choice has the value functions");
        delete choice;
    },
    [] {
        ZorCollection const store("store");
        require(store.defaultSchema->documentCount() == 0, "a collection is born");
    },
    [] {
        ZorCollection store("store");
        store.importXML("<store><schema name='s'><item name='a' type='uint' default='7'/></schema>"
                        "<document schema='s' name='d'><a>8</a></document></store>");
        require(store.exportAllDocuments() ==
                    "<store><document schema=\"s\" name=\"d\"><a>8</a></document></store>",
                "an import finds its types");
    },
};

int runChild(int round) {
    require(!ZorBuiltIn::builtInTypes, "nothing was used yet");
    inThreads(kThreads, [round](int thread) {
        constexpr int kinds = static_cast<int>(std::size(kFirstUses));
        // In the first half of the rounds all do the same, then each something else.
        kFirstUses[(round < kChildren / 2 ? round : round + thread) % kinds]();
    });
    ZorListNode* const types = zor_mapValues(ZorBuiltIn::builtInTypes);
    int count = 0;
    for (ZorListNode const* node = types; node; node = zor_listNextNode(node)) ++count;
    zor_listDelete(types);
    require(count == 10, "the table was made once");
    ZorBuiltIn::deleteBuiltInTypes();
    return 0;
}

} // namespace

int main() {
    int failures = 0;
    for (int round = 0; round < kChildren; ++round) {
        pid_t const child = fork();
        if (child < 0) return EXIT_FAILURE;
        if (child == 0) std::exit(runChild(round)); // with the checks that a sanitizer does at exit
        int status = 0;
        waitpid(child, &status, 0);
        if (status == 0) continue;
        std::fprintf(stderr, "round %d ended with status %d\n", round, status);
        ++failures;
    }
    return failures;
}
