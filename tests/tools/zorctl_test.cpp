// The command-line program, run as a user runs it.

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>

namespace {

constexpr char kDefinition[] = ZOR_EXAMPLES_DIR "/desk-phone/definition.xml";
constexpr char kConfig[] = ZOR_EXAMPLES_DIR "/desk-phone/config.xml";

std::string contentOf(std::filesystem::path const& path) {
    std::ostringstream content;
    content << std::ifstream(path).rdbuf();
    return content.str();
}

struct Outcome {
    int status;
    std::string out;
    std::string err;
};

// Runs zorctl in a directory of its own.
class Zorctl : public testing::Test {
protected:
    Zorctl() {
        char name[] = "/tmp/zorctl-test-XXXXXX";
        directory = mkdtemp(name);
    }
    ~Zorctl() override { std::filesystem::remove_all(directory); }

    Outcome run(std::string const& arguments) const {
        std::string const command =
            "cd " + directory.string() + " && " ZORCTL_PROGRAM " " + arguments + " >out 2>err";
        int const result = std::system(command.c_str());
        return {WIFEXITED(result) ? WEXITSTATUS(result) : -1, contentOf(directory / "out"),
                contentOf(directory / "err")};
    }

    // Runs a command on the desk telephone.
    Outcome runPhone(std::string const& command, std::string const& rest = "") const {
        return run(command + " " + kDefinition + " " + kConfig + " " + rest);
    }

    void write(char const* name, char const* content) const {
        std::ofstream(directory / name) << content;
    }

    std::filesystem::path directory;
};

TEST_F(Zorctl, CheckIsSilentAboutGoodFiles) {
    Outcome const outcome = runPhone("check");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, "deskphone: 2 schemas, 3 documents, 0 collections\n");
    EXPECT_EQ(outcome.err, "");
}

// An incident is shown with file, line and column, also one that the store raises without them.
TEST_F(Zorctl, CheckReportsEveryIncidentWithItsPosition) {
    write("d.xml", "<cfg>\n"
                   "  <schema name='s'><item name='n' type='int'/></schema>\n"
                   "  <document name='d' schema='s'>\n"
                   "    <n>one</n>\n"
                   "  </document>\n"
                   "  <other/>\n"
                   "</cfg>\n");
    Outcome const outcome = run("check d.xml");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "cfg: 1 schemas, 1 documents, 0 collections\n");
    EXPECT_EQ(outcome.err,
              "d.xml:4:10: error: setStringNodeValue: value (one) is not valid\n"
              "d.xml:6:2: warning: element not recognised in this context <other>\n"
              "d.xml:6:2: warning: Element is 'other'. Possible valid elements are 'collection' "
              "'schema' 'document' . outerContext->currentElement->elementName = 'cfg'\n"
              "d.xml:6:2: warning: . outerOuterContextElementName = 'root-node'\n");
}

TEST_F(Zorctl, CheckReportsBrokenXml) {
    write("d.xml", "<cfg>\n  <schema name='s'></cfg>");
    Outcome const outcome = run("check d.xml");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "d.xml:2:21: error: mismatched tag\n");
}

TEST_F(Zorctl, WarningsAloneAreNoFailure) {
    write("d.xml", "<cfg><schema name='s'/><schema name='s'/></cfg>");
    Outcome const outcome = run("check d.xml");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "d.xml:1:23: warning: Schema s Already Exists\n");
}

TEST_F(Zorctl, AFileThatIsNotThereIsAnError) {
    Outcome const outcome = run("check nowhere.xml");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, "nowhere.xml: error: File: \"nowhere.xml\" not found.\n");
}

TEST_F(Zorctl, ADirectoryIsAnError) {
    Outcome const outcome = run("check .");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, ".: error: Is a directory\n");
}

// It opens like any other file, and then every read fails.
TEST_F(Zorctl, AFileThatCannotBeReadIsAnError) {
    Outcome const outcome = run("check /proc/self/mem");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, "/proc/self/mem: error: Input/output error\n");
}

// What is not read does not keep the rest from being imported.
TEST_F(Zorctl, AFileThatCannotBeReadSparesTheOthers) {
    write("d.xml", "<cfg><schema name='s'/></cfg>");
    Outcome const outcome = run("check nowhere.xml . /proc/self/mem d.xml");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "cfg: 1 schemas, 0 documents, 0 collections\n");
    EXPECT_EQ(outcome.err, "nowhere.xml: error: File: \"nowhere.xml\" not found.\n"
                           ".: error: Is a directory\n"
                           "/proc/self/mem: error: Input/output error\n");
}

TEST_F(Zorctl, TheRootElementNamesTheCollectionUnlessANameIsGiven) {
    write("d.xml", "<?xml version='1.0'?><!-- first --><cfg/>");
    EXPECT_EQ(run("export d.xml").out, "<cfg></cfg>\n");
    Outcome const named = run("export --name other d.xml");
    EXPECT_EQ(named.status, 0);
    EXPECT_EQ(named.out, "<other></other>\n");
    EXPECT_EQ(named.err,
              "d.xml:1:35: warning: element not recognised in this context <cfg>\n"
              "d.xml:1:35: warning: Element is 'cfg'. Possible valid elements are 'other' . "
              "outerContext->currentElement->elementName = 'root-node'\n");
}

TEST_F(Zorctl, TreeShowsTypesOccurrencesAndDefaults) {
    write("d.xml", "<cfg><schema name='s'>"
                   "<choice name='mode'><option>on</option><option>off</option></choice>"
                   "<range name='level' baseType='int' minValue='1' maxValue='9'/>"
                   "<item name='mode' type='mode' default='off'/>"
                   "<branch name='b' occurrences='3'/>"
                   "<item name='level' type='level' occurrences='2' parent='/b'/>"
                   "</schema><collection name='inner'/></cfg>");
    Outcome const outcome = run("tree d.xml");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, "schema s\n"
                           "  mode: mode (on | off) = \"off\"\n"
                           "  b/ [3]\n"
                           "    level [2]: level (int 1 to 9)\n"
                           "schema DefaultSchema\n"
                           "  itemValue: string = \"\"\n"
                           "collection inner\n"
                           "  schema DefaultSchema\n"
                           "    itemValue: string = \"\"\n");
}

TEST_F(Zorctl, GetPrintsOneValueALine) {
    EXPECT_EQ(runPhone("get", "phone1 network/ipv4/address").out, "192.0.2.23\n");
    EXPECT_EQ(runPhone("get", "phone1 emergencyNumber").out, "112\n911\n\n999\n");
}

TEST_F(Zorctl, GetWithPathsTellsNoValueFromTheEmptyText) {
    EXPECT_EQ(runPhone("get", "-p phone1 emergencyNumber").out, "emergencyNumber[1] = 112\n"
                                                                "emergencyNumber[2] = 911\n"
                                                                "emergencyNumber[3]\n"
                                                                "emergencyNumber[4] = 999\n");
    EXPECT_EQ(runPhone("get", "phone1 'display/idleText[2]' --paths").out,
              "display/idleText[2] = \n");
}

// A path may select branches, too, which have no value to print or set.
TEST_F(Zorctl, BranchesHaveNoValue) {
    write("d.xml", "<c><schema name='s'><item name='i' type='int' default='1'/><branch name='b'/>"
                   "</schema><document name='d' schema='s'/></c>");
    EXPECT_EQ(run("get d.xml d '*'").out, "1\n");
    Outcome const nothing = run("get d.xml d b");
    EXPECT_EQ(nothing.status, 0);
    EXPECT_EQ(nothing.out + nothing.err, "");
    Outcome const set = run("set d.xml d b 1 -o out.xml");
    EXPECT_EQ(set.status, 1);
    EXPECT_EQ(set.err, "zorctl: error: setStringNodeValue: node is not a data node\n");
    EXPECT_FALSE(std::filesystem::exists(directory / "out.xml"));
}

TEST_F(Zorctl, WhatIsNotThereIsAnError) {
    Outcome const document = runPhone("get", "nobody network/ipv4/address");
    EXPECT_EQ(document.status, 1);
    EXPECT_EQ(document.err, "zorctl: error: document (nobody) does not exist\n");
    Outcome const path = runPhone("get", "phone1 nothing");
    EXPECT_EQ(path.status, 1);
    EXPECT_EQ(path.err, "zorctl: error: path (nothing) selects nothing\n");
}

TEST_F(Zorctl, SetWritesTheChangedCollection) {
    Outcome const outcome = runPhone("set", "phone1 clockDrift -5 -o new.xml");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out + outcome.err, "");
    EXPECT_EQ(run("get new.xml phone1 clockDrift").out, "-5\n");
}

TEST_F(Zorctl, SetMayReplaceItsInput) {
    EXPECT_EQ(runPhone("export", "-o phone.xml").status, 0);
    EXPECT_EQ(run("set phone.xml phone1 clockDrift 6 -o phone.xml").status, 0);
    EXPECT_EQ(run("get phone.xml phone1 clockDrift").out, "6\n");
}

// A value that is refused leaves the output file as it was.
TEST_F(Zorctl, SetWritesNothingAfterAnError) {
    write("kept.xml", "kept");
    Outcome const refused = runPhone("set", "phone1 clockDrift fast -o kept.xml");
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.err, "zorctl: error: setStringNodeValue: value (fast) is not valid\n");
    EXPECT_EQ(run("set nowhere.xml d a b -o kept.xml").status, 1);
    EXPECT_EQ(contentOf(directory / "kept.xml"), "kept");
}

// Operands are taken to the letter.
TEST_F(Zorctl, SetTakesAnyValue) {
    write("d.xml", "<c><schema name='s'><item name='t' type='string'/></schema>"
                   "<document name='d' schema='s'/></c>");
    for (char const* const value : {"[x]", "[a,b]", "[]", "a b", "-5", "a,b", "%s", "{}"}) {
        EXPECT_EQ(run(std::string("set d.xml d t '") + value + "' -o e.xml").status, 0) << value;
        EXPECT_EQ(run("get e.xml d t").out, std::string(value) + "\n");
    }
    EXPECT_EQ(run("set -o e.xml d.xml d t -- --name").status, 0);
    EXPECT_EQ(run("get e.xml d t").out, "--name\n");
    EXPECT_EQ(run("set d.xml d t -name -o e.xml").status, 2);
}

TEST_F(Zorctl, ReadsInputThatComesOnlyOnce) {
    write("d.xml", "<c/>");
    EXPECT_EQ(run("export /dev/stdin <d.xml").out, "<c></c>\n");
}

// Nothing takes the place of a good file unless everything that should be in it was read.
TEST_F(Zorctl, SetWritesNothingWhenAFileIsMissingOrCut) {
    std::string const config = contentOf(kConfig);
    write("cut.xml", config.substr(0, config.size() / 2).c_str());
    for (char const* const file : {"nowhere.xml", ".", "/proc/self/mem", "cut.xml", "/dev/null"}) {
        write("out.xml", "as before");
        Outcome const outcome = run(std::string("set -o out.xml ") + kDefinition + " " + kConfig +
                                    " " + file + " phone1 zone B");
        EXPECT_EQ(outcome.status, 1) << file;
        EXPECT_EQ(outcome.out, "") << file;
        EXPECT_EQ(contentOf(directory / "out.xml"), "as before") << file;
    }
}

// A pipe gives its input bit by bit, and may end early.
TEST_F(Zorctl, ReadsInputThatComesBitByBit) {
    std::string const text = "<cfg><schema name='s'>\n</schema></cfg>";
    ASSERT_EQ(mkfifo((directory / "pipe").c_str(), 0600), 0);
    auto const runOnFirst = [&](std::size_t length) {
        std::thread writer([&, length] {
            std::ofstream pipe(directory / "pipe");
            for (std::size_t at = 0; at < length; ++at) pipe.put(text[at]).flush();
        });
        Outcome const outcome = run("check pipe");
        writer.join();
        return outcome;
    };
    Outcome const whole = runOnFirst(text.size());
    EXPECT_EQ(whole.status, 0);
    EXPECT_EQ(whole.out, "cfg: 1 schemas, 0 documents, 0 collections\n");
    EXPECT_EQ(whole.err, "");
    Outcome const cut = runOnFirst(text.find("</cfg>"));
    EXPECT_EQ(cut.status, 1);
    EXPECT_EQ(cut.err, "pipe:2:9: error: no element found\n");
}

TEST_F(Zorctl, AReplacedFileKeepsItsMode) {
    namespace fs = std::filesystem;
    EXPECT_EQ(runPhone("export", "-o out.xml").status, 0);
    fs::permissions(directory / "out.xml", fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(run("set out.xml phone1 clockDrift 3 -o out.xml").status, 0);
    EXPECT_EQ(fs::status(directory / "out.xml").permissions(),
              fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(Zorctl, ALinkIsWrittenThrough) {
    write("target.xml", "old");
    std::filesystem::create_symlink("target.xml", directory / "link.xml");
    EXPECT_EQ(runPhone("export", "-o link.xml").status, 0);
    EXPECT_TRUE(std::filesystem::is_symlink(directory / "link.xml"));
    EXPECT_EQ(contentOf(directory / "target.xml"), contentOf(directory / "link.xml"));
    EXPECT_EQ(contentOf(directory / "target.xml"), runPhone("export").out);
}

// Exported defaults are not escaped: a file that nothing could read is not written.
TEST_F(Zorctl, WhatCouldNotBeReadBackIsNotWritten) {
    write("d.xml", "<c><schema name='s'><item name='t' type='string' default='a&lt;b'/></schema>"
                   "<document name='d' schema='s'/></c>");
    std::string const before = contentOf(directory / "d.xml");
    Outcome const outcome = run("set d.xml d t x -o d.xml");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "zorctl: error: not well-formed (invalid token)\n"
                           "zorctl: error: File: \"d.xml\" not written: it could not be read "
                           "back\n");
    EXPECT_EQ(contentOf(directory / "d.xml"), before);
}

TEST_F(Zorctl, OutputThatDoesNotArriveIsAnError) {
    for (char const* const command : {"check", "tree", "export"}) {
        int const result = std::system((std::string(ZORCTL_PROGRAM " ") + command + " " +
                                        kDefinition + " >/dev/full 2>/dev/null")
                                           .c_str());
        EXPECT_EQ(WEXITSTATUS(result), 1) << command;
    }
}

TEST_F(Zorctl, ExportReadsBackAsTheSame) {
    EXPECT_EQ(runPhone("export", "-o first.xml").status, 0);
    Outcome const again = run("export first.xml");
    EXPECT_EQ(again.status, 0);
    EXPECT_EQ(again.err, "");
    EXPECT_EQ(again.out, contentOf(directory / "first.xml"));
}

TEST_F(Zorctl, OutputThatCannotBeWrittenIsAnError) {
    Outcome const outcome = runPhone("export", "-o missing/out.xml");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "zorctl: error: File: \"missing/out.xml\" cannot be written\n");
    Outcome const full = runPhone("export", "-o /dev/full");
    EXPECT_EQ(full.status, 1);
    EXPECT_EQ(full.err, "zorctl: error: File: \"/dev/full\" cannot be written\n");
}

// A file that cannot be replaced stays as it is: here there is no room in its name for that of the
// file that would take its place.
TEST_F(Zorctl, AFileThatCannotBeReplacedStays) {
    std::string const name(250, 'n');
    write(name.c_str(), "<old/>");
    Outcome const outcome = runPhone("export", "-o " + name);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "zorctl: error: File: \"" + name + "\" cannot be written\n");
    EXPECT_EQ(contentOf(directory / name), "<old/>");
}

// Set reports what its path does not find, before it writes anything.
TEST_F(Zorctl, SetOfNothingWritesNothing) {
    EXPECT_EQ(runPhone("set", "phone1 nothing 1 -o out.xml").status, 1);
    EXPECT_FALSE(std::filesystem::exists(directory / "out.xml"));
}

TEST_F(Zorctl, HelpAndVersionSucceed) {
    Outcome const version = run("--version");
    EXPECT_EQ(version.status, 0);
    EXPECT_EQ(version.out, "zorctl " ZORCTL_VERSION "\n");
    for (char const* const help : {"--help", "check --help", "get --help", "set --help"}) {
        Outcome const outcome = run(help);
        EXPECT_EQ(outcome.status, 0) << help;
        EXPECT_NE(outcome.out.find("Usage: zorctl"), std::string::npos) << help;
    }
}

TEST_F(Zorctl, WrongUsageExitsWith2) {
    write("d.xml", "<cfg/>");
    for (char const* const wrong : {"", "bogus", "check", "check --bogus d.xml", "get d.xml",
                                    "get d.xml doc", "set d.xml doc path", "--name", "tree"}) {
        Outcome const outcome = run(wrong);
        EXPECT_EQ(outcome.status, 2) << wrong;
        EXPECT_EQ(outcome.out, "") << wrong;
        EXPECT_NE(outcome.err, "") << wrong;
    }
}

} // namespace
