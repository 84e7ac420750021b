// zorctl: reads configuration files into a collection, and shows, changes and writes what is there.

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <exception>
#include <string>
#include <vector>

#include "commands.h"
#include "session.h"
#include "tree.h"

namespace {

constexpr int kSuccess = 0;
constexpr int kIncident = 1;
constexpr int kUsage = 2;

constexpr char kNotes[] =
    "FILE is an XML file, definitions before the documents that use them; DOC a document's name\n"
    "(not one of a sub-collection); PATH a select path such as lineKey[3]/label. What begins with\n"
    "a dash and is no option goes behind \"--\".\n"
    "Results go to standard output, incidents to standard error as\n"
    "FILE:LINE:COLUMN: error: ... (lines count from 1, columns from 0).\n"
    "Exit status: 0 without errors, 1 with errors, 2 for wrong usage.";

struct Arguments {
    std::vector<std::string> files;
    std::string name;
    std::string document;
    std::string path;
    std::string value;
    std::string output;
    bool withPaths = false;
};

void addCommands(CLI::App& app, Arguments& arguments) {
    app.set_version_flag("--version", std::string("zorctl ") + ZORCTL_VERSION);
    app.require_subcommand(1);
    app.footer(kNotes);
    auto const addName = [&arguments](CLI::App* to) {
        to->add_option("--name", arguments.name,
                       "the collection's name (default: the first file's root element)");
    };
    addName(&app);

    auto const addCommand = [&](char const* command, char const* operands,
                                char const* description) {
        CLI::App* const added = app.add_subcommand(command, description);
        // The operands are taken as they are: an option would split them at brackets and commas.
        added->allow_extras();
        addName(added);
        added->footer(std::string("zorctl ") + command + " [OPTIONS] " + operands + "\n\n" +
                      kNotes);
        return added;
    };
    addCommand("check", "FILE...", "Import the files and report every incident");
    addCommand("tree", "FILE...", "Print the schemas with types, occurrences and defaults");
    addCommand("get", "FILE... DOC PATH", "Print the values that a path selects")
        ->add_flag("-p,--paths", arguments.withPaths, "print PATH = VALUE");
    char const* const output = "write to this file instead of standard output";
    addCommand("set", "FILE... DOC PATH VALUE",
               "Set the values that a path selects and write the collection")
        ->add_option("-o,--output", arguments.output, output);
    addCommand("export", "FILE...", "Write the collection as XML")
        ->add_option("-o,--output", arguments.output, output);
}

// Whether the text looks like an option. Negative numbers do not.
bool isOption(std::string const& text) {
    return text.size() > 1 && text[0] == '-' && !(text[1] >= '0' && text[1] <= '9');
}

// What the command expects behind the files, the last one first.
std::vector<std::string*> operandsOf(std::string const& command, Arguments& arguments) {
    if (command == "get") return {&arguments.path, &arguments.document};
    if (command == "set") return {&arguments.value, &arguments.path, &arguments.document};
    return {};
}

// Sorts out what stands behind the command; what stood behind "--" may begin with a dash.
void splitOperands(CLI::App const& command, std::vector<std::string> const& behindDashes,
                   Arguments& arguments) {
    arguments.files = command.remaining();
    for (std::string const& text : arguments.files) {
        if (isOption(text)) throw CLI::ExtrasError({text});
    }
    arguments.files.insert(arguments.files.end(), behindDashes.begin(), behindDashes.end());

    std::vector<std::string*> const operands = operandsOf(command.get_name(), arguments);
    if (arguments.files.size() <= operands.size()) {
        char const* const required[] = {"FILE", "", "FILE, DOC and PATH",
                                        "FILE, DOC, PATH and VALUE"};
        throw CLI::RequiredError(required[operands.size()]);
    }
    for (std::string* const operand : operands) {
        *operand = arguments.files.back();
        arguments.files.pop_back();
    }
}

// What `set` writes is meant to replace its input, so an import that failed writes nothing.
void setAndWrite(Session& session, Arguments const& arguments) {
    if (!session.hasFailed()) {
        setValues(session, arguments.document, arguments.path, arguments.value);
    }
    if (!session.hasFailed()) writeExport(session, arguments.output);
}

int run(std::string const& command, Arguments const& arguments) {
    Session session(arguments.name, arguments.files);
    if (command == "check") checkFiles(session);
    if (command == "tree") printTree(session.collection());
    if (command == "get") {
        printValues(session, arguments.document, arguments.path, arguments.withPaths);
    }
    if (command == "set") setAndWrite(session, arguments);
    if (command == "export") writeExport(session, arguments.output);
    flushOutput(session);
    return session.hasFailed() ? kIncident : kSuccess;
}

int parseAndRun(int argc, char** argv) {
    CLI::App app("Reads zor configuration files, shows, changes and writes what they hold.",
                 "zorctl");
    Arguments arguments;
    addCommands(app, arguments);
    char** const end = argv + argc;
    char** const dashes = std::find_if(
        argv + 1, end, [](char const* argument) { return std::strcmp(argument, "--") == 0; });
    std::vector<std::string> const behindDashes(dashes == end ? end : dashes + 1, end);
    try {
        app.parse(static_cast<int>(dashes - argv), argv);
        splitOperands(*app.get_subcommands().front(), behindDashes, arguments);
    } catch (CLI::ParseError const& error) {
        return app.exit(error) == 0 ? kSuccess : kUsage;
    }
    return run(app.get_subcommands().front()->get_name(), arguments);
}

} // namespace

int main(int argc, char** argv) {
    try {
        return parseAndRun(argc, argv);
    } catch (std::exception const& error) {
        std::fprintf(stderr, "zorctl: error: %s\n", error.what());
        return kIncident;
    }
}
