// Reads the command line of the dataengine tool and runs the command that it names.
#include <CLI/CLI.hpp>
#include <new>
#include <sstream>

#include "contracts/DataEngineVersion.h"
#include "tools/dataengine/Commands.h"

namespace dataengine::tool {
namespace {

constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;

/// Adds an option whose value help shows as `type`, or a positional argument, which is required. An
/// option takes one value each time it is given.
template <typename Value>
CLI::Option* Add(CLI::App& command, const char* name, const char* type, Value& value,
                 const char* help) {
    CLI::Option* const option = command.add_option(name, value, help)->type_name(type);
    return name[0] == '-' ? option->allow_extra_args(false) : option->required();
}

void AddColor(CLI::App& command, Options& o) {
    Add(command, "--color", "WHEN", o.color, "When to use color; auto by default")
        ->check(CLI::IsMember({"auto", "always", "never"}));
}

void AddFormat(CLI::App& command, Options& o, std::vector<std::string> formats) {
    o.format = formats.front();
    Add(command, "--format", "FORMAT", o.format, "The output format; the first by default")
        ->check(CLI::IsMember(std::move(formats)));
}

void AddFrame(CLI::App& command, Options& o) {
    Add(command, "FRAME", "", o.input, "The packed frame; - for standard input");
}

void AddOffsets(CLI::App& command, Options& o) {
    Add(command, "--offsets", "FILE", o.offsets,
        "The offsets of the values, as a JSON array; by default, values are consecutive");
}

void AddShow(CLI::App& command, Options& o) {
    AddFrame(command, o);
    AddOffsets(command, o);
    AddColor(command, o);
}

void AddDecode(CLI::App& command, Options& o) {
    Add(command, "FRAME", "", o.inputs, "The packed frames; - for standard input")->required(false);
    Add(command, "--files-from", "FILE", o.filesFrom,
        "A file with the paths of more frames, one a line; - for standard input");
    AddOffsets(command, o);
    Add(command, "--select", "NAME", o.select,
        "Names such as hostname or ifTable.ifName, separated by commas, or a file with a JSON "
        "selection; may be repeated");
    Add(command, "--map", "FILE", o.map,
        "Wanted names of variables, as a JSON object, or mapping documents, as a JSON array");
    Add(command, "--parser", "PATH", o.parser,
        "The parser whose variables are renamed; the name of the frame by default");
    AddFormat(command, o, {"table", "json", "lines", "rows", "csv"});
    Add(command, "--jobs", "N", o.jobs, "The number of threads; 1 by default")
        ->check(CLI::Range(1, 256));
    command.add_flag("--safe-csv", o.safeCsv, "Quote cells that a spreadsheet would run");
    AddColor(command, o);
}

void AddPack(CLI::App& command, Options& o) {
    Add(command, "INPUT", "", o.input,
        "The text of unpack, JSON or CSV of decode, or a CSV sheet; - for standard input");
    Add(command, "-o,--output", "FRAME", o.output, "The frame to write")->required();
    Add(command, "--offsets", "FILE", o.offsetsOutput, "The file to write the offsets to");
    Add(command, "--name", "NAME", o.name,
        "The name of the frame; the unit of the CSV, or the name of INPUT by default");
    Add(command, "--like", "FRAME", o.like, "A frame to take all but the rows of a CSV table from");
}

void AddDiff(CLI::App& command, Options& o) {
    Add(command, "A", "", o.input, "A packed frame; - for standard input");
    Add(command, "B", "", o.other, "The packed frame to compare it with");
}

void AddBson(CLI::App& command, Options& o) {
    Add(command, "FILE", "", o.input, "BSON documents; - for standard input");
    command.add_flag("--debug", o.debug, "Show offset, size and type of each element");
    AddColor(command, o);
}

void AddRecord(CLI::App& command, Options& o) {
    Add(command, "DEVICE", "", o.device, "A GUID, a host name, or N:type:id for a node");
    Add(command, "TYPE", "", o.type, "The kind of payload")
        ->check(
            CLI::IsMember({"config", "cmd", "sysTable", "nctTable", "parser", "pingtrace", "raw"}));
    Add(command, "NAME", "", o.location,
        "The command line for cmd, empty ('') for config, else the location");
    Add(command, "FILE", "", o.input, "The payload; - for standard input");
    Add(command, "--time", "T", o.time,
        "Milliseconds since 1970, or ISO 8601; the current time by default");
    Add(command, "--view", "VIEW", o.views, "The views to print; store,keys by default")
        ->delimiter(',')
        ->check(CLI::IsMember({"store", "status", "device", "keys"}));
    AddFormat(command, o, {"json", "bson"});
}

void AddNames(CLI::App& command, Options& o) {
    Add(command, "TEXT", "", o.text, "Only names with TEXT in name or text, in any case")
        ->required(false);
}

struct Command {
    const char* name;
    const char* description;
    void (*add)(CLI::App&, Options&);
    void (*run)(const Options&, Output&);
    const char* example;
};

constexpr Command kCommands[] = {
    {"show", "Show the header, the schema and the values of a packed frame", AddShow, Show,
     "show interfaces.frame --offsets interfaces.offsets"},
    {"decode", "Decode the values of packed frames", AddDecode, Decode,
     "decode interfaces.frame --select ifTable --format csv"},
    {"unpack", "Print a packed frame as JSON text that loses nothing", AddFrame, Unpack,
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

/// Returns the error for arguments that no option or command takes.
std::string UnexpectedArgument(const CLI::App& app) {
    const std::string argument = app.remaining(true).front();
    if (argument.size() > 1 && argument[0] == '-') return "unknown option " + argument;
    return app.get_subcommands().empty() ? argument + " is not a command"
                                         : "unexpected argument " + argument;
}

/// Checks the paths of a command, and reads the list of its inputs.
void PreparePaths(Options& options) {
    std::vector<std::string> inputs = {options.input,   options.other, options.filesFrom,
                                       options.offsets, options.map,   options.like};
    if (!options.filesFrom.empty()) {
        std::istringstream lines(ReadFile(options.filesFrom));
        for (std::string line; std::getline(lines, line);)
            if (!line.empty()) options.inputs.push_back(line);
    }
    for (const auto* paths : {&options.inputs, &options.select})
        inputs.insert(inputs.end(), paths->begin(), paths->end());
    CheckPaths(inputs, {options.output, options.offsetsOutput});
}

/// Runs the command of the command line and returns its status. Sets `name` to its name.
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
    std::string help;
    try {
        app.parse(argc, argv);
        if (chosen == nullptr) throw UsageError("a command is required");
        PreparePaths(options);
    } catch (const CLI::CallForHelp&) {
        help = app.help();
    } catch (const CLI::CallForVersion& version) {
        help = std::string(version.what()) + "\n";
    } catch (const CLI::ExtrasError&) {
        throw UsageError(UnexpectedArgument(app));
    } catch (const CLI::ParseError& error) {
        throw UsageError(error.what());
    }
    Output output(help.empty() ? options.output : kStandard);
    output.text += help;
    if (help.empty()) chosen->run(options, output);
    output.Complete();
    return output.status;
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
