// Asks the store two questions and reads its answers. Both sides exchange JSON text in files.
#include <VxUtil/CDeviceIdentifier.h>
#include <VxUtil/TimerHelper.h>
#include <VxUtil/VX128Guid.h>
#include <VxUtil/vxJson.h>

#include <climits>

#include "examples/Example.h"
#include "query/CDEDeviceDataQueryInfo.h"
#include "query/CDEQueryResultRawDataPlusMetaData.h"
#include "query/CDEQueryResultStructureData.h"
#include "query/CDEStructureQueryInfo.h"
#include "records/CDEDataShowCommand.h"
#include "structure/CDEStructureDataHelper.h"

namespace {

const char usage[] = R"(usage: query_and_result OUTPUT FRAME OFFSETS DIRECTORY

Plays a caller and a store. The caller asks for the output of a command and for two columns of a
table; the store answers from OUTPUT and from the packed FRAME with its OFFSETS; the caller prints the
answers. The four JSON texts that pass between them are left in DIRECTORY.
make_sample_frame writes a FRAME and its OFFSETS.
)";

const char device[] = "N:router:edge-r1";
const long long collected = 1740982361000;  // 2025-03-03 06:12:41 UTC, in milliseconds
const int switchType = 2001;

/// Sends a query or an answer: its JSON form as text, through a file.
void send(const IJsonSerialize& message, const std::string& path) {
    vxJson::Value json;
    message.SaveToJson(json);
    example::writeFile(path, json.toString(false) + "\n");
}

void receive(const std::string& path, IJsonSerialize& message) {
    const vxJson::Value json = example::readJson(path);
    example::explain(path, "send it again", [&] { message.LoadFromJson(json); });
}

// The caller asks.

void askForOutput(const std::string& path) {
    CDEDeviceDataQueryInfo query;
    query.SetDeviceId("edge-r1");
    query.SetType(CDEDataBase::TypeInt2Str(DEDataTypeCmd));
    query.SetName("show interfaces");
    send(query, path);
}

void askForTable(const std::string& path) {
    vxJson::Value table;
    table["table"] = "ifTable";
    table["column"].append("ifName");
    table["column"].append("utilization");
    table["attributes"].append("vrf");

    CDEStructureQueryInfo query;
    query.SetLocation("inventory/interfaces");
    query.GetRtnFields().append("hostname");
    query.GetRtnFields().append(table);
    query.SetDevTypes({switchType});
    send(query, path);
}

// The store answers.

void answerOutput(const std::string& queryPath, const std::string& outputPath,
                  const std::string& answerPath) {
    CDEDeviceDataQueryInfo query;
    receive(queryPath, query);

    CDEDataShowCommand record(CDeviceIdentifier(VX128Guid(), device));
    record.SetCommand(query.GetName());
    record.SetData(example::readFile(outputPath));
    record.SetTime(collected);

    CDEQueryResultRawDataPlusMetaData answer;
    CDEQueryResultMetaDataOnly& which = answer.Get_mutable_ResultMetaDataOnly();
    which.SetDay(record.GetDay());
    which.SetDeviceId(query.GetDeviceId());
    which.SetType(query.GetType());
    which.SetName(query.GetName());
    which.SetParam(query.GetParam());
    answer.Get_mutable_ResultRawData().LoadFromJson(record.GetODJson());
    send(answer, answerPath);
}

void answerTable(const std::string& queryPath, const std::string& framePath,
                 const std::string& offsetsPath, const std::string& answerPath) {
    CDEStructureQueryInfo query;
    receive(queryPath, query);
    const std::string frame = example::readFile(framePath);
    const vxJson::Value offsets = example::readJson(offsetsPath);
    if (frame.size() > INT_MAX)
        throw example::Failure(framePath + ": is 2 GiB or larger; a frame is smaller than that");

    CDEQueryResultStructureData answer;
    const bool answered = example::explain(
        framePath, "see that it is a packed frame, and that " + offsetsPath + " belongs to it",
        [&] {
            std::string name;
            vxJson::Value schema;
            int header = 0;
            return CDEStructureDataHelper::GetBinaryDataInfo(frame, name, schema, header) &&
                   query.GetLocation() == name && query.IsDevTypeMatch(switchType) &&
                   CDEStructureDataHelper::ParseBinaryDataToJson(
                       frame.data() + header, static_cast<int>(frame.size()) - header, schema,
                       offsets, query.GetRtnFields(), answer.GetData());
        });
    if (!answered)
        throw example::Failure(framePath +
                               ": has another version or location than the one asked for, or " +
                               offsetsPath + " is no array; use the files of make_sample_frame");

    answer.SetTime(collected);
    answer.Get_mutable_ResultMetaDataOnly().SetDay(TimerHelper::Time2UTCTm(collected).tm_mday);
    answer.Get_mutable_ResultMetaDataOnly().SetDeviceId("acc-sw-17");
    answer.Get_mutable_ResultMetaDataOnly().SetType(CDEDataBase::TypeInt2Str(DEDataTypeParser));
    answer.Get_mutable_ResultMetaDataOnly().SetName(query.GetLocation());
    send(answer, answerPath);
}

// The caller reads.

std::string readOutput(const std::string& path) {
    CDEQueryResultRawDataPlusMetaData answer;
    receive(path, answer);
    const CDEQueryResultRawData& raw = answer.GetResultRawData();
    std::ostringstream out;
    out << answer.GetResultMetaDataOnly().toPrintString() << "time=" << raw.GetTime() << "\n"
        << raw.GetData().size() << " bytes, from \""
        << raw.GetData().substr(0, raw.GetData().find_first_of("\r\n")) << "\" on\n";
    return out.str();
}

std::string readTable(const std::string& path) {
    CDEQueryResultStructureData answer;
    receive(path, answer);
    if (answer.GetData_RO().HasParseError())
        throw example::Failure(path + ": carries no document; ask again");

    // The document of the answer is the one that the decoder filled, and can be processed further.
    const std::string& parserPath = answer.GetResultMetaDataOnly().GetName();
    const std::map<DDKey, DDKey> wanted = {
        {DDKey("", "Interfaces.name"), DDKey(parserPath, "ifTable.ifName")},
        {DDKey("", "Interfaces.load"), DDKey(parserPath, "ifTable.utilization")}};
    std::vector<std::string> lines;
    CDEStructureDataHelper::PostDataProcessing(wanted, parserPath, answer.GetData(), lines);

    std::ostringstream out;
    out << answer.GetResultMetaDataOnly().toPrintString() << "time=" << answer.GetTime() << "\n";
    for (const std::string& line : lines) out << line << "\n";
    return out.str();
}

std::string queryAndResult(const example::Arguments& arguments) {
    const std::string& directory = arguments[3];
    const std::string outputQuery = directory + "/output-query.json";
    const std::string outputAnswer = directory + "/output-answer.json";
    const std::string tableQuery = directory + "/table-query.json";
    const std::string tableAnswer = directory + "/table-answer.json";

    askForOutput(outputQuery);
    answerOutput(outputQuery, arguments[0], outputAnswer);
    askForTable(tableQuery);
    answerTable(tableQuery, arguments[1], arguments[2], tableAnswer);

    return "query\n" + example::readFile(outputQuery) + "answer\n" + readOutput(outputAnswer) +
           "\nquery\n" + example::readFile(tableQuery) + "answer\n" + readTable(tableAnswer);
}

}  // namespace

int main(int argc, char** argv) {
    return example::run(argc, argv, usage, 4, 4, queryAndResult);
}
