#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

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

/// Runs command lines in a new directory, which prepare.sh fills and a test that passes removes.
class Tool : public testing::Test {
  protected:
    void SetUp() override {
        const testing::TestInfo& info = *testing::UnitTest::GetInstance()->current_test_info();
        directory_ = std::string(SCRATCH_DIRECTORY "/") + info.name() + std::to_string(getpid());
        std::filesystem::remove_all(directory_);
        std::filesystem::create_directories(directory_);
        setenv("PATH", (PROGRAM_DIRECTORY ":" + std::string(getenv("PATH"))).c_str(), 1);
        for (const char* variable : {"COLUMNS", "NO_COLOR"}) unsetenv(variable);
        const Outcome prepared = Run("sh '" TEST_DATA "/prepare.sh' '" SOURCE_DIRECTORY "'");
        ASSERT_EQ(prepared.status, 0) << prepared.err;
    }

    void TearDown() override {
        if (!HasFailure()) std::filesystem::remove_all(directory_);
    }

    /// Runs the commands from a file, so that they may contain any quotation marks.
    Outcome Run(const std::string& commands) const {
        std::ofstream(directory_ + "/commands") << commands << "\n";
        const std::string shell = "cd '" + directory_ + "' && sh commands >stdout 2>stderr";
        const int result = std::system(shell.c_str());
        return {WEXITSTATUS(result), FileText(directory_ + "/stdout"),
                FileText(directory_ + "/stderr")};
    }

    /// Compares each row's output with its golden file. If UPDATE_GOLDEN is set, rewrites the
    /// files; review the difference before committing.
    void CheckGoldenOutputs(const std::string& table) const {
        for (const auto& row : RowsOf(TEST_DATA "/" + table)) {
            const Outcome outcome = Run(row[1]);
            std::string text = outcome.out + outcome.err;
            if (outcome.status != 0) text += "exit " + std::to_string(outcome.status) + "\n";
            const std::string golden = TEST_DATA "/golden/" + row[0] + ".txt";
            if (getenv("UPDATE_GOLDEN") != nullptr) std::ofstream(golden) << text;
            EXPECT_EQ(text, FileText(golden)) << row[1];
        }
    }

  private:
    std::string directory_;
};

TEST_F(Tool, PrintsTheGoldenOutputs) {
    CheckGoldenOutputs("commands.txt");
}

TEST_F(Tool, PrintsToATerminal) {
    if (Run("script -qec true /dev/null </dev/null").status != 0)
        GTEST_SKIP() << "no pseudo-terminal";
    CheckGoldenOutputs("terminal.txt");
}

#ifdef DATAENGINE_TOOL_BSON
TEST_F(Tool, PrintsBson) {
    CheckGoldenOutputs("bson.txt");
}
#endif

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
TEST_F(Tool, NeedsLittleMemory) {
    CheckGoldenOutputs("memory.txt");
}
#endif

TEST_F(Tool, ReportsErrorsOnOneLine) {
    for (const auto& row : RowsOf(TEST_DATA "/errors.txt")) {
#ifndef DATAENGINE_TOOL_BSON
        if (row[1].find("bson") != std::string::npos) continue;
#endif
        const Outcome outcome = Run(row[1]);
        SCOPED_TRACE(row[1]);
        EXPECT_EQ(outcome.status, std::stoi(row[0]));
        EXPECT_EQ(outcome.out, "");
        const std::string wanted = "dataengine: " + row[2];
        EXPECT_EQ(outcome.err.substr(0, wanted.size()), wanted) << outcome.err;
        EXPECT_EQ(outcome.err.find('\n') + 1, outcome.err.size()) << outcome.err;
    }
}

}  // namespace
