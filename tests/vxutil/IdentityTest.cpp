#include <VxUtil/CDeviceIdentifier.h>
#include <VxUtil/CVXNonCryptographicChecksum.h>
#include <VxUtil/NodeIdentify.h>
#include <VxUtil/TimerHelper.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <memory>
#include <ostream>
#include <random>
#include <stdexcept>
#include <vector>

static void PrintTo(const VX128Guid& guid, std::ostream* output) {
    *output << guid.ToUUIDString(true);
}

namespace {

const std::string guidText = "01234567-89ab-cdef-fedc-ba9876543210";
const std::string noGuidText = "00000000-0000-0000-0000-000000000000";

TEST(VX128Guid, PrintsWhatItRead) {
    for (const std::string& text : {guidText, std::string("01234567-89AB-CDEF-FEDC-BA9876543210")})
        EXPECT_EQ(VX128Guid(text).ToUUIDString(true), guidText);
    EXPECT_EQ(VX128Guid(guidText).ToUUIDString(false), "0123456789abcdeffedcba9876543210");
    EXPECT_EQ(VX128Guid().ToUUIDString(true), noGuidText);
    EXPECT_FALSE(VX128Guid(noGuidText).IsValid());
}

TEST(VX128Guid, ReadsDigitsAndHyphensAtTheirPositions) {
    VX128Guid last;
    for (std::size_t i = guidText.size(); i-- > 0;) {
        std::string text = guidText;
        for (const char wrong : {text[i] == '-' ? '0' : '-', 'g', '\0'}) {
            text[i] = wrong;
            EXPECT_THROW(VX128Guid{text}, std::invalid_argument) << text;
        }
        if (guidText[i] == '-') continue;
        text = noGuidText;
        text[i] = '1';
        const VX128Guid guid(text);
        EXPECT_TRUE(guid.IsValid() && last < guid && !(guid < last) && last != guid) << text;
        last = guid;
    }
    for (const std::string& text : {std::string(), guidText + "0", guidText.substr(1)})
        EXPECT_THROW(VX128Guid{text}, std::invalid_argument) << text;
}

TEST(CDeviceIdentifier, HoldsItsThreeParts) {
    CDeviceIdentifier device{VX128Guid(guidText), "R1", CVXDomain(std::string("db"))};
    const CDeviceIdentifier copy = device;
    device.SetHostName("");
    device.SetDomain(CVXDomain());
    EXPECT_EQ(device.GetHostName() + device.GetDomain().GetDomainDBName(), "");
    EXPECT_EQ(copy.GetHostName() + copy.GetDomain().GetDomainDBName(), "R1db");
    EXPECT_EQ(copy.GetDeviceId(), VX128Guid(guidText));
    EXPECT_EQ(NodeIdentify().nodeType + NodeIdentify().nodeId, "");
}

TEST(TimerHelper, AgreesWithTheSystem) {
    const auto text = [](const std::tm& calendar) {
        char bytes[64];
        return std::string(bytes, std::strftime(bytes, sizeof bytes, "%F %T %w %j", &calendar));
    };
    using Limits = std::numeric_limits<long long>;
    std::vector<long long> times = {Limits::min(), Limits::max(), -1, 0, 1,
                                    951782400000,  4107542400000};
    std::mt19937_64 random(7);
    while (times.size() < 100000)
        times.push_back(static_cast<long long>(random()) >> (random() % 40));
    for (const long long time : times) {
        const std::time_t second = time / 1000 - (time % 1000 < 0 ? 1 : 0);
        std::tm expected{};
        gmtime_r(&second, &expected);
        ASSERT_EQ(text(TimerHelper::Time2UTCTm(time)), text(expected)) << time;
    }
}

TEST(CVXNonCryptographicChecksum, IsTheKeyOfStoredData) {
    const auto& checksum = CVXNonCryptographicChecksum::GetChecksum;
    const unsigned char text[] = "hostname R1\n!\ninterface Gi0/0\0";
    EXPECT_EQ(checksum(nullptr, 0), "99aa06d3014798d86001c324468d497f");
    EXPECT_EQ(checksum(text, 30), "71a8563365ae66be3c7286c89e2f2f90");

    // The low 32 bits of this size are a negative int.
    constexpr unsigned size = 1u << 31;
    const std::unique_ptr<void, decltype(&std::free)> zeros(std::calloc(size, 1), std::free);
    ASSERT_TRUE(zeros);
    EXPECT_EQ(checksum(static_cast<unsigned char*>(zeros.get()), static_cast<int>(size)),
              "03da2bd073da109930304d04a68a17e3");
}

}  // namespace
