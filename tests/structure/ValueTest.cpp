#include <cstring>

#include "tests/structure/Decode.h"
#include "tests/support/BothDecoders.h"
#include "tests/support/Rows.h"

namespace {

TEST(Value, BecomesWhatItsTextIs) {
    for (const auto& row : RowsOf(TEST_DATA "/values.txt")) {
        rapidjson::Document document;
        const std::string ending = DecodeLeaf(Hex(row[1]), document);
        EXPECT_EQ(ending == "true" ? Text(document[0]["value"]) : ending, row[2])
            << row[0] << ": " << row[1];
    }
}

TEST(Value, RoundsAtTheEdgesOfExactScalingAsTextDoes) {
    const double edges[] = {1,
                            64,
                            17592186044416.0,
                            90071992547409.92,
                            900719925474099.1,
                            900719925474099.25,
                            4503599627370496.5,
                            9007199254740991.0,
                            1e15,
                            1e17,
                            1e22,
                            1e300};
    for (const double edge : edges) {
        std::uint64_t bits;
        std::memcpy(&bits, &edge, sizeof bits);
        for (const std::uint64_t sign : {std::uint64_t{0}, std::uint64_t{1} << 63}) {
            for (std::uint64_t near = bits - 1; near <= bits + 1; ++near)
                EXPECT_TRUE(SameValueOnBothDecoders("\xcb" + BigEndian(sign | near, 8))) << edge;
        }
    }
}

}  // namespace
