// Reads the command line of the dataengine tool and runs the command that it names.
#include <CLI/CLI.hpp>
#include <clocale>
#include <cstdio>
#include <exception>
#include <functional>

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

/// The command that the command line names.
struct Command {
    std::string name;
    std::function<int()> run;
};

void AddOutput(CLI::App& command, std::string& output) {
    command.add_option("-o,--output", output, "The file to write; standard output by default")
        ->type_name("FILE");
}

void AddFrame(CLI::App& command, std::string& frame, std::string& offsets) {
    command.add_option("FRAME", frame, "The packed frame; - for standard input")->required();
    command
        .add_option("--offsets", offsets,
                    "The offsets of the values, as a JSON array; without it, values are taken to "
                    "be consecutive")
        ->type_name("FILE");
}

void AddShow(CLI::App& app, Command& chosen) {
    const auto options = std::make_shared<ShowOptions>();
    CLI::App& command = *app.add_subcommand("show", "Show what a packed frame holds");
    AddFrame(command, options->frame, options->offsets);
    AddOutput(command, options->output);
    command.footer("Example: dataengine show interfaces.frame --offsets interfaces.offsets");
    command.callback([options, &chosen] { chosen.run = [options] { return Show(*options); }; });
}

void AddDecode(CLI::App& app, Command& chosen) {
    const auto options = std::make_shared<DecodeOptions>();
    CLI::App& command = *app.add_subcommand("decode", "Decode the values of a packed frame");
    AddFrame(command, options->frame, options->offsets);
    command
        .add_option("--select", options->select,
                    "Names (hostname, ifTable, ifTable.ifName), or one file with a JSON selection")
        ->type_name("NAME");
    command
        .add_option("--map", options->map,
                    "Wanted names of variables: a JSON object {\"wanted\": \"variable\"}, or an "
                    "array of mapping documents")
        ->type_name("FILE");
    command
        .add_option("--parser", options->parser,
                    "The parser whose variables are renamed; the name of the frame by default")
        ->type_name("PATH");
    command.add_option("--format", options->format, "table (the default), json, lines or csv")
        ->type_name("FORMAT")
        ->check(CLI::IsMember({"table", "json", "lines", "csv"}));
    AddOutput(command, options->output);
    command.footer("Example: dataengine decode interfaces.frame --select ifTable --format csv");
    command.callback([options, &chosen] { chosen.run = [options] { return Decode(*options); }; });
}

void AddPack(CLI::App& app, Command& chosen) {
    const auto options = std::make_shared<PackOptions>();
    CLI::App& command = *app.add_subcommand("pack", "Pack a frame");
    command
        .add_option("INPUT", options->input,
                    "A CSV table, or a JSON document as decode prints it; - for standard input")
        ->required();
    command.add_option("-o,--output", options->output, "The frame to write")
        ->required()
        ->type_name("FRAME");
    command.add_option("--offsets", options->offsets, "The file to write the offsets to")
        ->type_name("FILE");
    command
        .add_option("--name", options->name,
                    "The name of the frame; the unit of the CSV, or the name of INPUT by default")
        ->type_name("NAME");
    command.footer("Example: dataengine pack interfaces.csv -o interfaces.frame");
    command.callback([options, &chosen] { chosen.run = [options] { return Pack(*options); }; });
}

void AddRecord(CLI::App& app, Command& chosen) {
    const auto options = std::make_shared<RecordOptions>();
    CLI::App& command = *app.add_subcommand("record", "Print what a store receives for a payload");
    command.add_option("DEVICE", options->device, "A GUID, a host name, or N:type:id for a node")
        ->required();
    command.add_option("TYPE", options->type, "What the payload is")
        ->required()
        ->check(
            CLI::IsMember({"config", "cmd", "sysTable", "nctTable", "parser", "pingtrace", "raw"}));
    command
        .add_option("NAME", options->name,
                    "The command line of cmd, else the location; empty ('') for config")
        ->required();
    command.add_option("FILE", options->file, "The payload; - for standard input")->required();
    command
        .add_option("--time", options->time, "Milliseconds since 1970; the current time by default")
        ->type_name("T");
    command
        .add_option("--view", options->views,
                    "What to print, separated by commas; store,keys by default")
        ->delimiter(',')
        ->type_name("VIEW")
        ->check(CLI::IsMember({"store", "status", "device", "keys"}));
    command.add_option("--format", options->format, "json (the default) or bson")
        ->type_name("FORMAT")
        ->check(CLI::IsMember({"json", "bson"}));
    AddOutput(command, options->output);
    command.footer(
        "Where the data key comes from outside (config, sysTable, nctTable), it is the checksum of "
        "the payload.\n"
        "Example: dataengine record N:router:edge-r1 cmd 'show version' version.txt --view keys");
    command.callback([options, &chosen] { chosen.run = [options] { return Record(*options); }; });
}

void AddNames(CLI::App& app, Command& chosen) {
    const auto options = std::make_shared<NamesOptions>();
    CLI::App& command = *app.add_subcommand("names", "List the names of the store's vocabulary");
    command.add_option("TEXT", options->text, "List only names that hold it, or whose text does");
    AddOutput(command, options->output);
    command.footer("Example: dataengine names localIntf");
    command.callback([options, &chosen] { chosen.run = [options] { return Names(*options); }; });
}

std::function<int()> Print(const std::string& text) {
    return [text] {
        WriteFiles({{kStandard, text}});
        return 0;
    };
}

/// Parses the command line into `chosen`. Throws UsageError; the name is then set if it is known.
void Parse(int argc, char** argv, Command& chosen) {
    CLI::App app("Reads and writes packed frames, builds records, and lists the store's vocabulary",
                 "dataengine");
    app.set_version_flag("--version", std::string("dataengine ") + DataEngineVersion());
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
    std::setlocale(LC_CTYPE, "C.UTF-8");  // for the width of characters; texts are UTF-8 everywhere
    return tool::Run(argc, argv);
}
