// Writes a packed frame, and the offsets that go with it, from a CSV file.
#include <VxUtil/vxJson.h>
#include <msgpack.hpp>

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <map>

#include "examples/Example.h"

namespace {

const char usage[] = R"(usage: make_sample_frame CSV FRAME OFFSETS

Packs the leaves and the table of a CSV file (examples/data/interfaces.csv tells its form) into one
frame, and writes two files:
  FRAME     version, name and schema, and behind them the values
  OFFSETS   where each value begins, as JSON, counted from the end of the schema
)";

using Packer = msgpack::packer<msgpack::sbuffer>;

/// A value of the sample with the name and the kind under which the schema lists it.
struct Field {
    std::string kind;
    std::string name;
    std::vector<std::string> cells;  // one for a leaf or an attribute, one per line for a column
};

struct Sample {
    std::string unit;
    std::string table;
    std::vector<Field> leaves;
    std::vector<Field> columns;
    std::vector<Field> attributes;
};

// 11 marks a table. All other type numbers are the writer's own: the decoder only passes them on.
const int tableType = 11;
const std::map<std::string, int> typeOfKind = {
    {"text", 1}, {"integer", 2}, {"number", 3}, {"boolean", 4}, {"bytes", 5}};

/// Splits a line at its commas. A cell in quotation marks may hold commas, and marks written twice.
std::vector<std::string> splitLine(const std::string& line) {
    std::vector<std::string> cells(1);
    bool quoted = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const bool mark = line[i] == '"';
        if (mark && quoted && line[i + 1] == '"') {
            cells.back() += line[++i];
        } else if (mark) {
            quoted = !quoted;
        } else if (line[i] == ',' && !quoted) {
            cells.emplace_back();
        } else if (line[i] != '\r') {
            cells.back() += line[i];
        }
    }
    if (quoted) throw std::invalid_argument("a quotation mark is not closed");
    return cells;
}

Field makeField(const std::string& kind, const std::string& name) {
    if (typeOfKind.count(kind) == 0) throw std::invalid_argument("\"" + kind + "\" is no kind");
    return {kind, name, {}};
}

/// Takes one line in. The columns follow the table's name, and the rows follow the columns.
void readLine(const std::vector<std::string>& cells, Sample& sample) {
    if (!sample.columns.empty()) {
        if (cells.size() != sample.columns.size())
            throw std::invalid_argument("has " + std::to_string(cells.size()) + " cells for " +
                                        std::to_string(sample.columns.size()) + " columns");
        for (std::size_t i = 0; i < cells.size(); ++i) sample.columns[i].cells.push_back(cells[i]);
    } else if (!sample.table.empty()) {
        for (const std::string& cell : cells) {
            const std::size_t colon = cell.find(':');
            if (colon == std::string::npos)
                throw std::invalid_argument("column \"" + cell + "\" is not kind:name");
            sample.columns.push_back(makeField(cell.substr(0, colon), cell.substr(colon + 1)));
        }
    } else if (cells.size() == 2 && cells[0] == "unit") {
        sample.unit = cells[1];
    } else if (cells.size() == 2 && cells[0] == "table") {
        sample.table = cells[1];
    } else if (cells.size() == 4 && (cells[0] == "leaf" || cells[0] == "attribute")) {
        Field field = makeField(cells[1], cells[2]);
        field.cells.push_back(cells[3]);
        (cells[0] == "leaf" ? sample.leaves : sample.attributes).push_back(std::move(field));
    } else {
        throw std::invalid_argument("is no unit, leaf, attribute or table");
    }
}

Sample readSample(const std::string& path) {
    std::istringstream text(example::readFile(path));
    Sample sample;
    std::string line;
    for (int number = 1; std::getline(text, line); ++number) {
        if (line.empty() || line[0] == '#') continue;
        example::explain(path + ":" + std::to_string(number), "correct this line",
                         [&] { readLine(splitLine(line), sample); });
    }
    if (sample.unit.empty() || sample.columns.empty())
        throw example::Failure(path + ": has no unit or no table; see make_sample_frame --help");
    return sample;
}

void packInteger(Packer& packer, const std::string& text) {
    char* end = nullptr;
    errno = 0;
    if (text[0] == '-')
        packer.pack(static_cast<std::int64_t>(std::strtoll(text.c_str(), &end, 10)));
    else
        packer.pack(static_cast<std::uint64_t>(std::strtoull(text.c_str(), &end, 10)));
    if (errno != 0 || *end != '\0') throw std::invalid_argument("\"" + text + "\" is no integer");
}

void packNumber(Packer& packer, const std::string& text) {
    char* end = nullptr;
    packer.pack(std::strtod(text.c_str(), &end));
    if (*end != '\0') throw std::invalid_argument("\"" + text + "\" is no number");
}

void packText(Packer& packer, const std::string& text) {
    packer.pack_str(static_cast<std::uint32_t>(text.size()));
    packer.pack_str_body(text.data(), static_cast<std::uint32_t>(text.size()));
}

void packBytes(Packer& packer, const std::string& bytes) {
    packer.pack_bin(static_cast<std::uint32_t>(bytes.size()));
    packer.pack_bin_body(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
}

void packCell(Packer& packer, const std::string& kind, const std::string& cell) {
    if (cell.empty()) {
        packer.pack_nil();
    } else if (kind == "text") {
        packText(packer, cell);
    } else if (kind == "integer") {
        packInteger(packer, cell);
    } else if (kind == "number") {
        packNumber(packer, cell);
    } else if (kind == "boolean") {
        if (cell != "true" && cell != "false")
            throw std::invalid_argument("\"" + cell + "\" is neither true nor false");
        packer.pack(cell == "true");
    } else {
        packBytes(packer, cell);
    }
}

// [the schema: an array of maps]
void packChildren(Packer& packer, const std::vector<Field>& fields, std::size_t firstIndex) {
    packer.pack_array(static_cast<std::uint32_t>(fields.size()));
    for (const Field& field : fields) {
        packer.pack_map(3);
        packText(packer, "name"), packText(packer, field.name);
        packText(packer, "type"), packer.pack(typeOfKind.at(field.kind));
        packText(packer, "index"), packer.pack(firstIndex++);
    }
}

void packSchema(Packer& packer, const Sample& sample) {
    packer.pack_array(static_cast<std::uint32_t>(sample.leaves.size() + 1));
    std::size_t index = 0;
    for (const Field& leaf : sample.leaves) {
        packer.pack_map(3);
        packText(packer, "name"), packText(packer, leaf.name);
        packText(packer, "type"), packer.pack(typeOfKind.at(leaf.kind));
        packText(packer, "index"), packer.pack(index++);
    }
    packer.pack_map(7);
    packText(packer, "name"), packText(packer, sample.table);
    packText(packer, "type"), packer.pack(tableType);
    packText(packer, "index"), packer.pack(index);
    packText(packer, "hashSort"), packer.pack(true);
    packText(packer, "hashColumns"), packer.pack_array(1), packText(packer, sample.columns[0].name);
    packText(packer, "column"), packChildren(packer, sample.columns, 0);
    packText(packer, "attributes"), packChildren(packer, sample.attributes, sample.columns.size());
}
// [end]

/// The payload and the offsets into it. A column is one array over all lines of the table.
struct Payload {
    msgpack::sbuffer bytes;
    vxJson::Value offsets;
};

Payload packPayload(const Sample& sample) {
    Payload payload;
    Packer packer(payload.bytes);
    const auto position = [&] { return static_cast<long long>(payload.bytes.size()); };

    for (const Field& leaf : sample.leaves) {
        payload.offsets.append(vxJson::Value()) = position();
        packCell(packer, leaf.kind, leaf.cells[0]);
    }
    vxJson::Value inner;
    for (const Field& column : sample.columns) {
        inner.append(vxJson::Value()) = position();
        packer.pack_array(static_cast<std::uint32_t>(column.cells.size()));
        for (const std::string& cell : column.cells) packCell(packer, column.kind, cell);
    }
    for (const Field& attribute : sample.attributes) {
        inner.append(vxJson::Value()) = position();
        packCell(packer, attribute.kind, attribute.cells[0]);
    }
    payload.offsets.append(inner);
    return payload;
}

std::string makeFrame(const example::Arguments& arguments) {
    const std::string& csv = arguments[0];
    const Sample sample = readSample(csv);

    msgpack::sbuffer header;
    Packer packer(header);
    packer.pack(1);  // the version
    packText(packer, sample.unit);
    packSchema(packer, sample);
    const Payload payload =
        example::explain(csv, "correct this cell", [&] { return packPayload(sample); });

    example::writeFile(arguments[1], std::string(header.data(), header.size()) +
                                         std::string(payload.bytes.data(), payload.bytes.size()));
    example::writeFile(arguments[2], payload.offsets.toString(false) + "\n");

    std::ostringstream report;
    report << sample.unit << ": " << sample.leaves.size() << " leaves, table " << sample.table
           << " of " << sample.columns.size() << " columns, " << sample.attributes.size()
           << " attributes and " << sample.columns[0].cells.size() << " lines\n"
           << "header " << header.size() << " bytes, payload " << payload.bytes.size()
           << " bytes\n";
    return report.str();
}

}  // namespace

int main(int argc, char** argv) {
    return example::run(argc, argv, usage, 3, 3, makeFrame);
}
