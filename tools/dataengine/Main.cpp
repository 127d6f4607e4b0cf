// Reads the command line of the dataengine tool and runs the command that it names.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <new>

#include "contracts/DataEngineVersion.h"
#include "tools/dataengine/Commands.h"
#include "tools/dataengine/Failure.h"
#include "tools/dataengine/Files.h"
#include "tools/dataengine/Text.h"

namespace dataengine::tool {

void PrintError(const std::string& error) {
    constexpr std::size_t kLongest = 1000;  // in columns; names may be long
    std::fprintf(stderr, "dataengine: %s\n", Cut(Printable(error), kLongest).c_str());
}

namespace {

constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;

/// Adds an option whose value help shows as `type`. It takes one value each time it is given.
template <typename Value>
CLI::Option* Add(CLI::App& command, const char* name, const char* type, Value& value,
                 const char* help) {
    CLI::Option* const option = command.add_option(name, value, help);
    if (name[0] == '-') option->allow_extra_args(false);
    return option->type_name(type);
}

void AddFormat(CLI::App& command, Options& options, std::vector<std::string> formats,
               const char* help) {
    options.format = formats.front();
    Add(command, "--format", "FORMAT", options.format, help)
        ->check(CLI::IsMember(std::move(formats)));
}

void AddColor(CLI::App& command, Options& options) {
    Add(command, "--color", "WHEN", options.color, "auto (the default), always or never")
        ->check(CLI::IsMember({"auto", "always", "never"}));
}

void AddOffsets(CLI::App& command, Options& options) {
    Add(command, "--offsets", "FILE", options.offsets,
        "The offsets of the values, as a JSON array; by default, values are consecutive");
}

void AddInput(CLI::App& command, const char* name, std::string& input, const char* help) {
    Add(command, name, "", input, help)->required();
}

void AddShow(CLI::App& command, Options& options) {
    AddInput(command, "FRAME", options.input, "The packed frame; - for standard input");
    AddOffsets(command, options);
    AddColor(command, options);
}

void AddDecode(CLI::App& command, Options& options) {
    Add(command, "FRAME", "", options.inputs, "The packed frames; - for standard input");
    Add(command, "--files-from", "FILE", options.filesFrom,
        "A file with the paths of more frames, one a line; - for standard input");
    AddOffsets(command, options);
    Add(command, "--select", "NAME", options.select,
        "A name (hostname, ifTable, ifTable.ifName) or several, separated by commas; or a file "
        "with a JSON selection; may be repeated");
    Add(command, "--map", "FILE", options.map,
        "Wanted names of variables: a JSON object {\"wanted\": \"variable\"}, or an array of "
        "mapping documents");
    Add(command, "--parser", "PATH", options.parser,
        "The parser whose variables are renamed; the name of the frame by default");
    AddFormat(command, options, {"table", "json", "lines", "rows", "csv"},
              "table (the default), json, lines, rows or csv");
    Add(command, "--jobs", "N", options.jobs, "The number of threads; 1 by default")
        ->check(CLI::Range(1, 256));
    command.add_flag("--safe-csv", options.safeCsv,
                     "Quote CSV cells that a spreadsheet would run as a formula");
    AddColor(command, options);
}

void AddUnpack(CLI::App& command, Options& options) {
    AddInput(command, "FRAME", options.input, "The packed frame; - for standard input");
}

void AddPack(CLI::App& command, Options& options) {
    AddInput(command, "INPUT", options.input,
             "The text of unpack, a JSON document or CSV table of decode, or a CSV sheet; - for "
             "standard input");
    Add(command, "-o,--output", "FRAME", options.output, "The frame to write")->required();
    Add(command, "--offsets", "FILE", options.offsets, "The file to write the offsets to");
    Add(command, "--name", "NAME", options.name,
        "The name of the frame; the unit of the CSV, or the name of INPUT by default");
    Add(command, "--like", "FRAME", options.like,
        "A frame that has the unit, the table and the types of a CSV table");
}

void AddDiff(CLI::App& command, Options& options) {
    AddInput(command, "A", options.input, "A packed frame; - for standard input");
    AddInput(command, "B", options.other, "The packed frame to compare it with");
}

void AddBson(CLI::App& command, Options& options) {
    AddInput(command, "FILE", options.input, "BSON documents; - for standard input");
    command.add_flag("--debug", options.debug, "Show offset, size and type of each element");
    AddColor(command, options);
}

void AddRecord(CLI::App& command, Options& options) {
    Add(command, "DEVICE", "", options.device, "A GUID, a host name, or N:type:id for a node")
        ->required();
    Add(command, "TYPE", "", options.type, "The kind of payload")
        ->required()
        ->check(
            CLI::IsMember({"config", "cmd", "sysTable", "nctTable", "parser", "pingtrace", "raw"}));
    Add(command, "NAME", "", options.location,
        "The command line for cmd, empty ('') for config, else the location")
        ->required();
    AddInput(command, "FILE", options.input, "The payload; - for standard input");
    Add(command, "--time", "T", options.time,
        "Milliseconds since 1970, or ISO 8601; the current time by default");
    Add(command, "--view", "VIEW", options.views,
        "The views to print, separated by commas; store,keys by default")
        ->delimiter(',')
        ->check(CLI::IsMember({"store", "status", "device", "keys"}));
    AddFormat(command, options, {"json", "bson"}, "json (the default) or bson");
}

void AddNames(CLI::App& command, Options& options) {
    Add(command, "TEXT", "", options.text,
        "List only names that contain TEXT in name or text, in upper or lower case");
}

struct Command {
    const char* name;
    const char* description;
    void (*add)(CLI::App&, Options&);
    int (*run)(const Options&);
    const char* example;
};

constexpr Command kCommands[] = {
    {"show", "Show the header, the schema and the values of a packed frame", AddShow, Show,
     "show interfaces.frame --offsets interfaces.offsets"},
    {"decode", "Decode the values of packed frames", AddDecode, Decode,
     "decode interfaces.frame --select ifTable --format csv"},
    {"unpack", "Print a packed frame as JSON text that loses nothing", AddUnpack, Unpack,
     "unpack interfaces.frame -o interfaces.json"},
    {"pack", "Pack text or CSV into a frame", AddPack, Pack,
     "pack interfaces.csv -o interfaces.frame"},
    {"diff", "Print the differences of two packed frames", AddDiff, Diff,
     "diff interfaces.frame interfaces.frame"},
    {"bson", "Print BSON documents as Extended JSON", AddBson, Bson, "bson record.bson --debug"},
    {"record", "Print the record that a store receives for a payload", AddRecord, Record,
     "record N:router:edge-r1 cmd 'show version' version.txt --view keys"},
    {"names", "List the names of the document store", AddNames, Names, "names localIntf"},
};

int Print(const std::string& text) {
    WriteFile(kStandard, text, Content::kSafe);
    return 0;
}

/// Returns the error for arguments that no option or command takes.
std::string UnexpectedArgument(const CLI::App& app) {
    const std::string argument = app.remaining(true).front();
    if (argument.size() > 1 && argument[0] == '-') return "unknown option " + argument;
    return app.get_subcommands().empty() ? argument + " is not a command"
                                         : "unexpected argument " + argument;
}

/// Runs the command of the command line. Sets `name` to its name if it has one.
int RunCommand(int argc, char** argv, std::string& name) {
    CLI::App app("Reads and writes packed frames and the records of a data engine", "dataengine");
    app.set_version_flag("--version", std::string("dataengine ") + Version());
    app.require_subcommand(0, 1);
    Options options;
    const Command* chosen = nullptr;
    for (const Command& command : kCommands) {
        CLI::App& added = *app.add_subcommand(command.name, command.description);
        if (argc < 2 || std::string(argv[1]) != command.name) continue;
        chosen = &command;
        name = std::string(command.name) + " ";
        command.add(added, options);
        if (added.get_option_no_throw("--output") == nullptr)
            Add(added, "-o,--output", "FILE", options.output,
                "The file to write; standard output by default");
        added.footer(std::string("Example: dataengine ") + command.example);
    }
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp&) {
        return Print(app.help());
    } catch (const CLI::CallForVersion& version) {
        return Print(std::string(version.what()) + "\n");
    } catch (const CLI::ExtrasError&) {
        throw UsageError(UnexpectedArgument(app));
    } catch (const CLI::ParseError& error) {
        throw UsageError(error.what());
    }
    if (chosen == nullptr) throw UsageError("a command is required");
    return chosen->run(options);
}

int Run(int argc, char** argv) {
    std::string name;
    try {
        return RunCommand(argc, argv, name);
    } catch (const UsageError& error) {
        PrintError(std::string(error.what()) + "; see dataengine " + name + "--help");
        return kWrongUsage;
    } catch (const std::bad_alloc&) {
        PrintError("out of memory");
    } catch (const std::exception& error) {
        PrintError(error.what());
    }
    return name == "diff " ? kWrongUsage : kFailed;
}

}  // namespace
}  // namespace dataengine::tool

int main(int argc, char** argv) {
    return dataengine::tool::Run(argc, argv);
}
