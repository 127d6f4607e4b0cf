#include <gtest/gtest.h>

#include <cstdlib>
#include <iterator>
#include <sstream>

#include "tests/support/Rows.h"

namespace {

class Example : public testing::TestWithParam<std::string> {};

TEST_P(Example, PrintsItsGoldenOutput) {
    const std::string output = SCRATCH_DIRECTORY "/" + GetParam() + ".txt";
    const std::string command = "'" PROGRAM_DIRECTORY "/" + GetParam() + "' >'" + output + "' 2>&1";
    EXPECT_EQ(std::system(command.c_str()), 0);
    EXPECT_EQ(FileText(output), FileText(TEST_DATA "/golden/" + GetParam() + ".txt"));
}

std::vector<std::string> Names() {
    std::istringstream names(EXAMPLES);
    return {std::istream_iterator<std::string>(names), {}};
}

INSTANTIATE_TEST_SUITE_P(Programs, Example, testing::ValuesIn(Names()));

}  // namespace
