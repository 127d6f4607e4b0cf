#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>

#include "tests/examples/Files.h"

namespace {

struct Outcome {
    int status;
    std::string out;
    std::string err;
};

/// Runs the example programs in a directory of this test's own, where the sample frame lies beside
/// the files that are broken one way each. `data` is the folder of the sample data.
class Programs : public testing::Test {
  protected:
    void SetUp() override {
        const testing::TestInfo& info = *testing::UnitTest::GetInstance()->current_test_info();
        directory_ = std::string(SCRATCH_DIRECTORY "/") + info.name();
        std::filesystem::remove_all(directory_);
        std::filesystem::create_directories(directory_);
        std::filesystem::create_symlink(SOURCE_DIRECTORY "/examples/data", directory_ + "/data");
        const Outcome made = Run("make_sample_frame data/interfaces.csv frame offsets");
        ASSERT_EQ(made.status, 0) << made.err;
    }
    void TearDown() override {
        if (!HasFailure()) std::filesystem::remove_all(directory_);
    }

    Outcome Run(const std::string& command) {
        const int result = std::system(
            ("cd '" + directory_ + "' && '" PROGRAM_DIRECTORY "/'" + command + " >stdout 2>stderr")
                .c_str());
        return {WEXITSTATUS(result), Read("stdout"), Read("stderr")};
    }
    std::string Read(const std::string& name) { return readFile(directory_ + "/" + name); }
    void Write(const std::string& name, const std::string& bytes) {
        writeFile(directory_ + "/" + name, bytes);
    }

  private:
    std::string directory_;
};

TEST_F(Programs, PrintTheirUsage) {
    for (const std::string program : {"record_to_store", "make_sample_frame", "answer_from_store",
                                      "query_and_result", "list_catalogue"}) {
        const Outcome outcome = Run(program + " --help");
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.out.find("usage: " + program + " "), 0u) << outcome.out;
        EXPECT_EQ(outcome.err, "");
    }
}

// What the programs print on the sample data, whole. A changed key, view or document shows here.
TEST_F(Programs, PrintWhatTheSampleDataGives) {
    const struct {
        std::string golden;
        std::string command;
    } rows[] = {
        {"config",
         "record_to_store 6f1c2d3e-4b5a-4978-8695-a4b3c2d1e0f9 config running-config "
         "data/edge-r1.cfg 1740982361000"},
        {"cmd",
         "record_to_store N:router:edge-r1 cmd 'show interfaces' "
         "data/edge-r1-show-interfaces.txt 1740982361000"},
        {"structured",
         "record_to_store N:switch:acc-sw-17 structured inventory/interfaces frame "
         "1740982361000"},
        {"frame", "make_sample_frame data/interfaces.csv frame offsets"},
        {"everything", "answer_from_store frame offsets"},
        {"selected", "answer_from_store frame offsets data/selection.json data/mapping.json"},
        {"names", "list_catalogue localIntf"},
        {"queries", "query_and_result data/edge-r1-show-interfaces.txt frame offsets ."},
    };
    for (const auto& row : rows) {
        const Outcome outcome = Run(row.command);
        EXPECT_EQ(outcome.status, 0) << row.command;
        EXPECT_EQ(outcome.err, "") << row.command;
        EXPECT_EQ(outcome.out,
                  readFile(SOURCE_DIRECTORY "/tests/examples/golden/" + row.golden + ".txt"))
            << row.command;
    }
}

TEST_F(Programs, SayInOneLineWhatIsWrong) {
    const std::string frame = Read("frame");
    const std::string offsets = Read("offsets");
    const std::string csv = Read("data/interfaces.csv");
    Write("empty", "");
    Write("cut-header", frame.substr(0, 100));
    Write("cut-payload", frame.substr(0, frame.size() - 100));
    Write("version-2", "\x02" + frame.substr(1));
    Write("version-text", "\xa1\x31" + frame.substr(1));
    Write("no-schema", "\x01\xa1n\x01");
    Write("unnamed", "\x01\xa1n\x90");
    Write("other-unit", "\x01\xa1n" + frame.substr(frame.find('\x96')));
    Write("half.json", "[1, 2");
    Write("object.json", "{}");
    Write("far.json", "[99999999]");
    Write("text.json", "[\"one\"]");
    Write("table-as-text.json", "[\"ifTable\"]");
    Write("number-mapping.json", "{\"wanted\": 1}");
    Write("no-table.csv", "unit,u\n");
    Write("kind.csv", "unit,u\nleaf,colour,l,red\n");
    Write("integer.csv", csv + "Gi1/0/49,,true,true,many,,,0,0,0,\n");
    Write("cells.csv", csv + "Gi1/0/49,up\n");
    Write("quote.csv", csv + "\"Gi1/0/49\n");

    const struct {
        std::string command;
        std::string complaint;
    } rows[] = {
        {"record_to_store", "takes 4 to 5 arguments; see record_to_store --help"},
        {"record_to_store d cmd n gone", "gone: can't be read (No such file or directory)"},
        {"record_to_store d cmd n .", ".: can't be read (Is a directory)"},
        {"record_to_store d table n frame", "KIND \"table\" is unknown"},
        {"record_to_store d cmd n frame soon", "TIME \"soon\" is no number"},
        {"record_to_store d cmd n frame 1 2", "arguments"},
        {"list_catalogue one two", "takes 0 to 1 arguments"},
        {"make_sample_frame data/interfaces.csv f", "takes 3 arguments"},
        {"make_sample_frame gone f o", "gone: can't be read"},
        {"make_sample_frame no-table.csv f o", "no-table.csv: has no unit or no table"},
        {"make_sample_frame kind.csv f o", "kind.csv:2: \"colour\" is no kind"},
        {"make_sample_frame integer.csv f o", "integer.csv: \"many\" is no integer"},
        {"make_sample_frame cells.csv f o", "cells.csv:63: has 2 cells for 11 columns"},
        {"make_sample_frame quote.csv f o", "quote.csv:63: a quotation mark is not closed"},
        {"make_sample_frame data/interfaces.csv gone/f o", "gone/f: can't be written"},
        {"answer_from_store frame", "takes 2 to 4 arguments"},
        {"answer_from_store gone offsets", "gone: can't be read"},
        {"answer_from_store empty offsets", "empty: insufficient bytes; it is cut off"},
        {"answer_from_store cut-header offsets", "cut-header: insufficient bytes; it is cut off"},
        {"answer_from_store cut-payload offsets",
         "cut-payload: insufficient bytes; see that offsets"},
        {"answer_from_store version-2 offsets", "version-2: has a version other than 1"},
        {"answer_from_store version-text offsets", "version-text: bad cast; it is cut off or no"},
        {"answer_from_store no-schema offsets", "no-schema: its schema is no array"},
        {"answer_from_store unnamed offsets", "unnamed: its schema names nothing"},
        {"answer_from_store frame half.json", "half.json: is not JSON at byte 5 (Missing a comma"},
        {"answer_from_store frame empty", "empty: is not JSON at byte 0 (The document is empty"},
        {"answer_from_store frame object.json", "object.json: is no array"},
        {"answer_from_store frame far.json",
         "frame: insufficient bytes; see that far.json belongs"},
        {"answer_from_store frame text.json", "see that text.json belongs to it"},
        {"answer_from_store frame offsets half.json", "half.json: is not JSON"},
        {"answer_from_store frame offsets object.json",
         "object.json: is neither an array nor null"},
        {"answer_from_store frame offsets table-as-text.json", "names tables as objects"},
        {"answer_from_store frame offsets data/selection.json half.json", "half.json: is not JSON"},
        {"answer_from_store frame offsets data/selection.json text.json",
         "text.json: is no object"},
        {"answer_from_store frame offsets data/selection.json number-mapping.json",
         "number-mapping.json: \"wanted\" is no text"},
        {"query_and_result frame frame offsets gone", "gone/output-query.json: can't be written"},
        {"query_and_result gone frame offsets .", "gone: can't be read"},
        {"query_and_result frame cut-header offsets .", "cut-header: insufficient bytes"},
        {"query_and_result frame other-unit offsets .",
         "other-unit: has another version or location"},
        {"query_and_result frame frame half.json .", "half.json: is not JSON"},
    };
    for (const auto& row : rows) {
        const Outcome outcome = Run(row.command);
        EXPECT_EQ(outcome.status, 1) << row.command;
        EXPECT_EQ(outcome.out, "") << row.command;
        EXPECT_NE(outcome.err.find(row.complaint), std::string::npos)
            << row.command << ": " << outcome.err;
        EXPECT_EQ(outcome.err.find('\n'), outcome.err.size() - 1)
            << row.command << ": " << outcome.err;
        EXPECT_EQ(outcome.err.find(row.command.substr(0, row.command.find(' ')) + ": "), 0u)
            << outcome.err;
    }
}

}  // namespace
