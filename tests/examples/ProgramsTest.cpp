#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "tests/support/Rows.h"

namespace {

struct Outcome {
    int status;
    std::string out;
    std::string err;
};

/// Runs the example programs in a directory of this test's own, where the sample frame lies beside
/// `data`, the folder of the sample data, and `broken`, that of files that are broken one way each.
class Programs : public testing::Test {
  protected:
    void SetUp() override {
        const testing::TestInfo& info = *testing::UnitTest::GetInstance()->current_test_info();
        directory_ = std::string(SCRATCH_DIRECTORY "/") + info.name();
        std::filesystem::remove_all(directory_);
        std::filesystem::create_directories(directory_);
        std::filesystem::create_symlink(SOURCE_DIRECTORY "/examples/data", directory_ + "/data");
        std::filesystem::create_symlink(TEST_DATA "/broken", directory_ + "/broken");
        ASSERT_EQ(Run("make_sample_frame data/interfaces.csv frame offsets").status, 0);
    }

    Outcome Run(const std::string& command) {
        const std::string program = "'" PROGRAM_DIRECTORY "/'" + command;
        const int result =
            std::system(("cd '" + directory_ + "' && " + program + " >stdout 2>stderr").c_str());
        return {WEXITSTATUS(result), Read("stdout"), Read("stderr")};
    }
    std::string Read(const std::string& name) { return FileText(directory_ + "/" + name); }
    void Write(const std::string& name, const std::string& bytes) {
        std::ofstream(directory_ + "/" + name, std::ios::binary) << bytes;
    }

  private:
    std::string directory_;
};

// What the programs print on the sample data, whole. A changed key, view or document shows here.
TEST_F(Programs, PrintWhatTheSampleDataGives) {
    for (const auto& row : RowsOf(TEST_DATA "/outputs.txt")) {
        const Outcome outcome = Run(row[1]);
        EXPECT_EQ(outcome.status, 0) << row[1];
        EXPECT_EQ(outcome.err, "") << row[1];
        EXPECT_EQ(outcome.out, FileText(TEST_DATA "/golden/" + row[0] + ".txt")) << row[1];

        const std::string program = row[1].substr(0, row[1].find(' '));
        const Outcome help = Run(program + " --help");
        EXPECT_EQ(help.status, 0) << program;
        EXPECT_EQ(help.out.find("usage: " + program + " "), 0u) << help.out;
    }
}

TEST_F(Programs, SayInOneLineWhatIsWrong) {
    const std::string frame = Read("frame");
    Write("cut-header", frame.substr(0, 100));
    Write("cut-payload", frame.substr(0, frame.size() - 100));
    Write("version-2", "\x02" + frame.substr(1));
    Write("version-text", "\xa1\x31" + frame.substr(1));
    Write("no-schema", "\x01\xa1n\x01");
    Write("unnamed", "\x01\xa1n\x90");
    Write("other-unit", "\x01\xa1n" + frame.substr(frame.find('\x96')));

    for (const auto& row : RowsOf(TEST_DATA "/complaints.txt")) {
        const std::string& command = row[0];
        const Outcome outcome = Run(command);
        SCOPED_TRACE(command + ": " + outcome.err);
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.out, "");
        EXPECT_NE(outcome.err.find(row[1]), std::string::npos);
        EXPECT_EQ(outcome.err.find('\n'), outcome.err.size() - 1);
        EXPECT_EQ(outcome.err.find(command.substr(0, command.find(' ')) + ": "), 0u);
    }
}

}  // namespace
