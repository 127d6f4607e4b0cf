#include <VxUtil/CVXNonCryptographicChecksum.h>
#include <gtest/gtest.h>

#include <map>

#include "records/CDEDataStructureData.h"
#include "tests/structure/Decode.h"
#include "tests/support/RandomPacked.h"
#include "tests/support/RandomValue.h"
#include "tests/support/RoundTrip.h"
#include "tests/support/Rows.h"

#ifdef DATAENGINE_TEST_BSON
#include "bson/Bson.h"
#endif

namespace {

constexpr int kCount = 20000;

/// A checksum over any number of results, by kind.
class Checksums {
  public:
    void Add(const std::string& kind, const std::string& result) {
        std::string& sum = sums_[kind];
        sum += result;
        sum = CVXNonCryptographicChecksum::GetChecksum(
            reinterpret_cast<const unsigned char*>(sum.data()), static_cast<int>(sum.size()));
    }
    const std::map<std::string, std::string>& Get() const { return sums_; }

  private:
    std::map<std::string, std::string> sums_;
};

std::string RecordText(const std::string& text, const vxJson::Value& param) {
    CDeviceIdentifier id(VX128Guid(), text);
    CDEDataStructureData record(id, DEDataTypeParser);
    record.SetLocation(text);
    record.SetParam(param);
    return record.GetMetaMD5() + record.GetDataMD5() + record.GetODJson().toString(false);
}

// Every machine computes the same from the same numbers, which the seeds decide.
TEST(Machines, ComputeTheSame) {
    Checksums sums;
    std::mt19937_64 random(1);
    RandomPacked packed(1);
    const auto text = [&random] {
        std::string bytes(random() % 30, '\0');
        for (char& byte : bytes)
            byte = static_cast<char>(random() % 2 == 0 ? 'a' : 1 + random() % 127);
        return bytes;
    };
    for (int i = 0; i < kCount; ++i) {
        vxJson::Value value(vxJson::objectKind, false);
        value["value"] = RandomValue(random, 3, text);
        sums.Add("texts", value.toString(false) + Json(value.toString(false)).toStyledString());
        sums.Add("records", RecordText(text(), value));
#ifdef DATAENGINE_TEST_BSON
        sums.Add("bson", dataengine::bson::Encode(value));
#endif
        rapidjson::Document document;
        sums.Add("endings", DecodeLeaf(packed.Value(), document));
        sums.Add("documents", Text(document));
        dataengine::PackedFrameWriter writer("unit");
        writer.AddItems(document);
        sums.Add("frames", writer.Frame() + writer.Offsets().toString(false));
    }
    for (const auto& row : RowsOf(TEST_DATA "/checksums.txt")) {
        const auto sum = sums.Get().find(row[0]);
        if (sum == sums.Get().end()) continue;  // BSON may be left out
        EXPECT_EQ(sum->second, row[1]) << row[0];
    }
}

}  // namespace
