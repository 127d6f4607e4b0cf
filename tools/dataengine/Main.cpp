// Reads the command line of the dataengine tool and runs the command that it names.
#include <CLI/CLI.hpp>
#include <clocale>
#include <cstdio>
#include <exception>
#include <functional>
#include <memory>

#include "contracts/DataEngineVersion.h"
#include "tools/dataengine/Commands.h"
#include "tools/dataengine/Failure.h"
#include "tools/dataengine/Files.h"
#include "tools/dataengine/Table.h"

namespace tool {

void PrintError(const std::string& error) {
    std::fprintf(stderr, "dataengine: %s\n", Printable(error).c_str());
}

namespace {

constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;

/// The command that was chosen on the command line.
struct Command {
    std::string name;
    std::function<int()> run;
};

/// Adds a command that calls `run`. Returns it, and the options that `run` receives.
template <typename Options>
std::pair<CLI::App&, Options&> AddCommand(CLI::App& app, Command& chosen, const char* name,
                                          const char* description, int (*run)(const Options&)) {
    const auto options = std::make_shared<Options>();
    CLI::App& command = *app.add_subcommand(name, description);
    command.callback([=, &chosen] { chosen.run = [=] { return run(*options); }; });
    return {command, *options};
}

/// Adds an option whose value help shows as `type`.
template <typename Value>
CLI::Option* AddOption(CLI::App& command, const char* name, const char* type, Value& value,
                       const char* help) {
    return command.add_option(name, value, help)->type_name(type);
}

void AddOutput(CLI::App& command, std::string& output) {
    AddOption(command, "-o,--output", "FILE", output,
              "The file to write; standard output by default");
}

void AddFormat(CLI::App& command, std::string& format, const std::vector<std::string>& formats,
               const char* help) {
    command.add_option("--format", format, help)
        ->type_name("FORMAT")
        ->check(CLI::IsMember(formats));
}

void AddFrame(CLI::App& command, std::string& frame, std::string& offsets) {
    command.add_option("FRAME", frame, "The packed frame; - for standard input")->required();
    AddOption(command, "--offsets", "FILE", offsets,
              "The offsets of the values, as a JSON array; by default, values are consecutive");
}

void AddShow(CLI::App& app, Command& chosen) {
    const auto [command, options] = AddCommand(
        app, chosen, "show", "Show the header, the schema and the values of a packed frame", Show);
    AddFrame(command, options.frame, options.offsets);
    AddOutput(command, options.output);
    command.footer("Example: dataengine show interfaces.frame --offsets interfaces.offsets");
}

void AddDecode(CLI::App& app, Command& chosen) {
    const auto [command, options] =
        AddCommand(app, chosen, "decode", "Decode the values of a packed frame", Decode);
    AddFrame(command, options.frame, options.offsets);
    AddOption(command, "--select", "NAME", options.select,
              "Names (hostname, ifTable, ifTable.ifName), or one file with a JSON selection");
    AddOption(command, "--map", "FILE", options.map,
              "Wanted names of variables: a JSON object {\"wanted\": \"variable\"}, or an array of "
              "mapping documents");
    AddOption(command, "--parser", "PATH", options.parser,
              "The parser whose variables are renamed; the name of the frame by default");
    AddFormat(command, options.format, {"table", "json", "lines", "csv"},
              "table (the default), json, lines or csv");
    AddOutput(command, options.output);
    command.footer("Example: dataengine decode interfaces.frame --select ifTable --format csv");
}

void AddPack(CLI::App& app, Command& chosen) {
    const auto [command, options] =
        AddCommand(app, chosen, "pack", "Pack a CSV table or a JSON document into a frame", Pack);
    command
        .add_option("INPUT", options.input,
                    "A CSV table, or a JSON document as decode prints it; - for standard input")
        ->required();
    AddOption(command, "-o,--output", "FRAME", options.output, "The frame to write")->required();
    AddOption(command, "--offsets", "FILE", options.offsets, "The file to write the offsets to");
    AddOption(command, "--name", "NAME", options.name,
              "The name of the frame; the unit of the CSV, or the name of INPUT by default");
    command.footer("Example: dataengine pack interfaces.csv -o interfaces.frame");
}

void AddRecord(CLI::App& app, Command& chosen) {
    const auto [command, options] = AddCommand(
        app, chosen, "record", "Print the record that a store receives for a payload", Record);
    command.add_option("DEVICE", options.device, "A GUID, a host name, or N:type:id for a node")
        ->required();
    command.add_option("TYPE", options.type, "The kind of payload")
        ->required()
        ->check(
            CLI::IsMember({"config", "cmd", "sysTable", "nctTable", "parser", "pingtrace", "raw"}));
    command
        .add_option("NAME", options.name,
                    "The command line for cmd, empty ('') for config, else the location")
        ->required();
    command.add_option("FILE", options.file, "The payload; - for standard input")->required();
    AddOption(command, "--time", "T", options.time,
              "Milliseconds since 1970; the current time by default");
    AddOption(command, "--view", "VIEW", options.views,
              "The views to print, separated by commas; store,keys by default")
        ->delimiter(',')
        ->check(CLI::IsMember({"store", "status", "device", "keys"}));
    AddFormat(command, options.format, {"json", "bson"}, "json (the default) or bson");
    AddOutput(command, options.output);
    command.footer(
        "The data key of config, sysTable and nctTable is the checksum of the payload.\n"
        "Example: dataengine record N:router:edge-r1 cmd 'show version' version.txt --view keys");
}

void AddNames(CLI::App& app, Command& chosen) {
    const auto [command, options] =
        AddCommand(app, chosen, "names", "List the names of the document store", Names);
    command.add_option("TEXT", options.text, "List only names that contain TEXT in name or text");
    AddOutput(command, options.output);
    command.footer("Example: dataengine names localIntf");
}

std::function<int()> Print(const std::string& text) {
    return [text] {
        WriteFiles({{kStandard, text}});
        return 0;
    };
}

/// Parses the command line into `chosen`. Throws UsageError, with the name set if it is known.
void Parse(int argc, char** argv, Command& chosen) {
    CLI::App app(
        "Reads and writes packed frames, builds records and lists the names of the document store",
        "dataengine");
    app.set_version_flag("--version", std::string("dataengine ") + dataengine::Version());
    app.require_subcommand(1);
    AddShow(app, chosen);
    AddDecode(app, chosen);
    AddPack(app, chosen);
    AddRecord(app, chosen);
    AddNames(app, chosen);
    std::string error;
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp&) {
        chosen.run = Print(app.help());
    } catch (const CLI::CallForVersion& version) {
        chosen.run = Print(std::string(version.what()) + "\n");
    } catch (const CLI::ParseError& parseError) {
        error = parseError.what();
    }
    if (!app.get_subcommands().empty()) {
        chosen.name = app.get_subcommands()[0]->get_name() + " ";
    } else if (!error.empty() && app.remaining_size() > 0) {
        error = app.remaining()[0] + " is not a command";
    }
    if (!error.empty()) throw UsageError(error);
}

int Run(int argc, char** argv) {
    Command command;
    try {
        Parse(argc, argv, command);
        return command.run();
    } catch (const UsageError& error) {
        PrintError(std::string(error.what()) + "; see dataengine " + command.name + "--help");
        return kWrongUsage;
    } catch (const std::exception& error) {
        PrintError(error.what());
        return kFailed;
    }
}

}  // namespace
}  // namespace tool

int main(int argc, char** argv) {
    std::setlocale(LC_CTYPE, "C.UTF-8");  // for the width of characters; all text is UTF-8
    return tool::Run(argc, argv);
}
