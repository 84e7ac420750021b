// zorctl: reads configuration files into a collection, and shows, changes and writes what is there.

#include <CLI/CLI.hpp>

#include <cstdio>
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
    app.fallthrough();
    app.add_option("--name", arguments.name,
                   "the collection's name (default: the first file's root element)");
    app.footer(
        "FILE is an XML file, definitions before the documents that use them; DOC a document's\n"
        "name; PATH a select path such as lineKey[3]/label.\n"
        "Results go to standard output, incidents to standard error as\n"
        "FILE:LINE:COLUMN: error: ... (lines count from 1, columns from 0).\n"
        "Exit status: 0 without errors, 1 with errors, 2 for wrong usage.");

    auto const addCommand = [&](char const* command, char const* operands,
                                char const* description) {
        CLI::App* const added = app.add_subcommand(command, description);
        // The files come first and may be many, so what follows them is taken off their end.
        added->add_option("FILE", arguments.files)
            ->option_text(std::string("... ") + operands)
            ->required()
            ->expected(1, -1);
        return added;
    };
    addCommand("check", "", "Import the files and report every incident");
    addCommand("tree", "", "Print the schemas with types, occurrences and defaults");

    CLI::App* const get = addCommand("get", "DOC PATH", "Print the values that a path selects");
    get->add_flag("-p,--paths", arguments.withPaths, "print PATH = VALUE");

    CLI::App* const set = addCommand("set", "DOC PATH VALUE",
                                     "Set the values that a path selects and write the collection");
    set->add_option("-o,--output", arguments.output, "write to this file");

    CLI::App* const exported = addCommand("export", "", "Write the collection as XML");
    exported->add_option("-o,--output", arguments.output, "write to this file");
}

// Takes the operands of the command off the end of the files.
void splitOperands(CLI::App const& command, Arguments& arguments) {
    std::vector<std::string*> operands;
    if (command.get_name() == "get") operands = {&arguments.path, &arguments.document};
    if (command.get_name() == "set") {
        operands = {&arguments.value, &arguments.path, &arguments.document};
    }
    if (arguments.files.size() <= operands.size()) {
        throw CLI::RequiredError(operands.size() == 2 ? "FILE, DOC and PATH"
                                                      : "FILE, DOC, PATH and VALUE");
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
    if (command == "check")
        checkFiles(session);
    else if (command == "tree")
        printTree(session.collection());
    else if (command == "get") {
        printValues(session, arguments.document, arguments.path, arguments.withPaths);
    } else if (command == "set")
        setAndWrite(session, arguments);
    else
        writeExport(session, arguments.output);
    return session.hasFailed() ? kIncident : kSuccess;
}

int parseAndRun(int argc, char** argv) {
    CLI::App app("Reads zor configuration files, shows, changes and writes what they hold.",
                 "zorctl");
    Arguments arguments;
    addCommands(app, arguments);
    try {
        app.parse(argc, argv);
        splitOperands(*app.get_subcommands().front(), arguments);
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
