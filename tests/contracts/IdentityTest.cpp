#include <VxUtil/CDeviceIdentifier.h>
#include <VxUtil/CVXNonCryptographicChecksum.h>
#include <VxUtil/NodeIdentify.h>
#include <VxUtil/TimerHelper.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <memory>
#include <random>
#include <stdexcept>
#include <tuple>

#include "tests/support/Printers.h"

namespace {

const char guidText[] = "01234567-89ab-cdef-fedc-ba9876543210";

TEST(VX128Guid, PrintsWhatItRead) {
    for (const char* text : {guidText, "01234567-89AB-CDEF-FEDC-BA9876543210"}) {
        const VX128Guid guid{std::string(text)};
        EXPECT_TRUE(guid.IsValid());
        EXPECT_EQ(guid.ToUUIDString(true), guidText);
        EXPECT_EQ(guid.ToUUIDString(false), "0123456789abcdeffedcba9876543210");
    }
    const VX128Guid invalid;
    EXPECT_FALSE(invalid.IsValid());
    EXPECT_EQ(invalid.ToUUIDString(true), "00000000-0000-0000-0000-000000000000");
    EXPECT_EQ(VX128Guid(invalid.ToUUIDString(true)), invalid);
}

TEST(VX128Guid, OneBitMakesItValidAndOrdersIt) {
    VX128Guid last;
    for (std::size_t i = 36; i-- > 0;) {
        std::string text = VX128Guid().ToUUIDString(true);
        if (text[i] == '-') continue;
        text[i] = '1';
        const VX128Guid guid(text);
        EXPECT_TRUE(guid.IsValid()) << text;
        EXPECT_TRUE(last < guid && !(guid < last) && last != guid) << text;
        last = guid;
    }
}

TEST(VX128Guid, RejectsEveryOtherText) {
    const std::string good = guidText;
    std::vector<std::string> texts = {"", "{" + good + "}", good + "0", good.substr(1), " " + good};
    for (std::size_t i = 0; i < good.size(); ++i) {
        texts.push_back(good);
        texts.back()[i] = good[i] == '-' ? '0' : (i % 2 == 0 ? '-' : 'g');
    }
    texts.push_back(good);
    texts.back()[5] = '\0';
    for (const std::string& text : texts) {
        EXPECT_THROW(VX128Guid{text}, std::invalid_argument) << text;
    }
}

TEST(CDeviceIdentifier, HoldsItsThreeParts) {
    CDeviceIdentifier device{VX128Guid(std::string(guidText)), "R1", CVXDomain(std::string("db"))};
    const CDeviceIdentifier copy = device;
    device.SetHostName("");
    device.SetDomain(CVXDomain());
    EXPECT_EQ(device.GetHostName(), "");
    EXPECT_EQ(device.GetDomain().GetDomainDBName(), "");
    EXPECT_EQ(copy.GetHostName(), "R1");
    EXPECT_EQ(copy.GetDomain().GetDomainDBName(), "db");
    EXPECT_EQ(copy.GetDeviceId(), device.GetDeviceId());
    device = CDeviceIdentifier();
    EXPECT_FALSE(device.GetDeviceId().IsValid());
}

TEST(TimerHelper, GivesTheCalendarOfEveryTime) {
    struct {
        long long time;
        const char* calendar;
    } const rows[] = {
        {0, "1970-01-01 00:00:00 wday 4 yday 0"},
        {999, "1970-01-01 00:00:00 wday 4 yday 0"},
        {-1, "1969-12-31 23:59:59 wday 3 yday 364"},
        {951782400000, "2000-02-29 00:00:00 wday 2 yday 59"},
        {1709251199999, "2024-02-29 23:59:59 wday 4 yday 59"},
        {1735603200000, "2024-12-31 00:00:00 wday 2 yday 365"},
        {4107542400000, "2100-03-01 00:00:00 wday 1 yday 59"},
        {-62167219200000, "0-01-01 00:00:00 wday 6 yday 0"},
        {std::numeric_limits<long long>::max(), "292278994-08-17 07:12:55 wday 0 yday 228"},
        {std::numeric_limits<long long>::min(), "-292275055-05-16 16:47:04 wday 0 yday 135"},
    };
    for (const auto& row : rows) {
        const std::tm calendar = TimerHelper::Time2UTCTm(row.time);
        char text[64];
        std::snprintf(text, sizeof text, "%d-%02d-%02d %02d:%02d:%02d wday %d yday %d",
                      calendar.tm_year + 1900, calendar.tm_mon + 1, calendar.tm_mday,
                      calendar.tm_hour, calendar.tm_min, calendar.tm_sec, calendar.tm_wday,
                      calendar.tm_yday);
        EXPECT_STREQ(text, row.calendar) << row.time;
        EXPECT_EQ(calendar.tm_isdst, 0);
    }
}

TEST(TimerHelper, AgreesWithTheSystem) {
    const auto fields = [](const std::tm& calendar) {
        return std::tuple(calendar.tm_year, calendar.tm_mon, calendar.tm_mday, calendar.tm_hour,
                          calendar.tm_min, calendar.tm_sec, calendar.tm_wday, calendar.tm_yday);
    };
    std::mt19937_64 random(7);
    for (int i = 0; i < 100000; ++i) {
        const long long time = static_cast<long long>(random()) >> (random() % 40);
        const std::time_t second = (time - ((time % 1000) + 1000) % 1000) / 1000;
        std::tm expected{};
        gmtime_r(&second, &expected);
        ASSERT_EQ(fields(TimerHelper::Time2UTCTm(time)), fields(expected)) << time;
    }
}

TEST(CVXNonCryptographicChecksum, IsTheKeyOfStoredData) {
    std::string run;
    for (int i = 0; i < 1000; ++i) run.push_back(static_cast<char>(i % 256));
    const std::pair<std::string, const char*> rows[] = {
        {"", "99aa06d3014798d86001c324468d497f"},
        {"The quick brown fox jumps over the lazy dog", "ddd650205ca3e7fa24a1cc2e3a8a7651"},
        {std::string("hostname R1\n!\ninterface Gi0/0\0", 30), "71a8563365ae66be3c7286c89e2f2f90"},
        {run, "076f7e02b7120d2ad33dd80b46f60e50"},
    };
    for (const auto& [text, checksum] : rows) {
        const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
        EXPECT_EQ(CVXNonCryptographicChecksum::GetChecksum(bytes, static_cast<int>(text.size())),
                  checksum)
            << text.size() << " bytes";
    }
    EXPECT_EQ(CVXNonCryptographicChecksum::GetChecksum(nullptr, 0), rows[0].second);
}

// The low 32 bits of such a size are a negative int.
TEST(CVXNonCryptographicChecksum, TakesLengthsAsUnsigned) {
    const std::unique_ptr<void, decltype(&std::free)> zeros(std::calloc(1u << 31, 1), std::free);
    ASSERT_TRUE(zeros);
    EXPECT_EQ(CVXNonCryptographicChecksum::GetChecksum(
                  static_cast<const unsigned char*>(zeros.get()), static_cast<int>(1u << 31)),
              "03da2bd073da109930304d04a68a17e3");
}

}  // namespace
