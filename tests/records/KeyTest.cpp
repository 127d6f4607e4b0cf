#include <gtest/gtest.h>

#include <thread>

#include "Devices.h"
#include "records/CDEDataConfigFile.h"
#include "records/CDEDataShowCommand.h"
#include "records/CDEDataStructureData.h"
#include "tests/support/Texts.h"

namespace {

// The stores hold these for years. Each is the 128-bit XXH3 of the text behind it.
TEST(Keys, StayAsStoresHoldThem) {
    CDeviceIdentifier device = Device("router1");
    CDEDataConfigFile file(device);
    file.SetData("hostname router1\n");
    // 0f1e2d3c-4b5a-6978-8796-a5b4c3d2e1f0config
    EXPECT_EQ(file.GetMetaMD5(), "25f1e04d68c29c6355913e57ce991a00");
    EXPECT_EQ(file.GetDataMD5(), "");

    CDEDataShowCommand command(device);
    command.SetCommand("show version");
    command.SetData(std::string("up\0time", 7));
    command.SetParam(Json(R"({"ignored":1})"));
    // 0f1e2d3c-4b5a-6978-8796-a5b4c3d2e1f0cmdshow version
    EXPECT_EQ(command.GetMetaMD5(), "1a0d67045f981bfec8153cd760f531b9");
    EXPECT_EQ(command.GetDataMD5(), "39037af2199be66dd805b26abbd2eb59");  // up\0time

    CDEDataStructureData structure(device, DEDataTypeParser);
    structure.SetLocation("path/bgp");
    // 0f1e2d3c-4b5a-6978-8796-a5b4c3d2e1f0parserpath/bgpnull
    EXPECT_EQ(structure.GetMetaMD5(), "dc084ed024a9079e9b860fb2e1b9ab9e");
    structure.SetParam(Json(R"({"vrf":"red","n":[1,-2]})"));
    // 0f1e2d3c-4b5a-6978-8796-a5b4c3d2e1f0parserpath/bgp{"n":[1,-2],"vrf":"red"}
    EXPECT_EQ(structure.GetMetaMD5(), "e7815b292fdb1172fce1a298b5f2879b");
    EXPECT_EQ(structure.GetDataMD5(), "99aa06d3014798d86001c324468d497f");  // of no bytes
}

TEST(Keys, OnlyThatOfAStructureTellsNodesApart) {
    CDeviceIdentifier one = Node("N:abc:def");
    CDeviceIdentifier other = Node("N:abc:xyz");
    EXPECT_EQ(CDEDataShowCommand(one).GetMetaMD5(), CDEDataShowCommand(other).GetMetaMD5());
    EXPECT_NE(CDEDataStructureData(one, DEDataTypeRaw).GetMetaMD5(),
              CDEDataStructureData(other, DEDataTypeRaw).GetMetaMD5());
}

TEST(DataKey, IsSetFromOutsideForTables) {
    for (int type = -1; type <= 8; ++type) {
        SCOPED_TRACE(type);
        CDEDataBase record(Device(""), static_cast<EnumDEDataType>(type));
        record.SetData("data");
        const bool isTable = type == 3 || type == 4;
        const std::string computed = record.GetDataMD5();
        EXPECT_EQ(computed.empty(), isTable);
        record.SetDataMD5CA("given");
        record.SetDataMD5CA(record.GetDataMD5CA());
        EXPECT_EQ(record.GetDataMD5CA(), "given");
        EXPECT_EQ(record.GetDataMD5(), isTable ? "given" : computed);
    }
}

TEST(DataKey, OfAConfigurationFileIsNeverComputed) {
    CDEDataConfigFile file(Device(""));
    file.SetData("data");
    file.SetType(DEDataTypeSysTable);
    file.SetDataMD5CA("given");
    EXPECT_EQ(file.GetDataMD5(), "");
    file.SetDataMD5("checksum");
    EXPECT_EQ(file.GetDataMD5(), "checksum");
    EXPECT_EQ(file.GetODJson()["md5"].asString(), "checksum");
}

TEST(DataKey, MayBeSetWhileAViewIsTaken) {
    CDEDataBase record(Device(""), DEDataTypeNctTable);
    const std::string values[] = {std::string(100, 'a'), std::string(5000, 'b')};
    record.SetDataMD5CA(values[0]);
    std::thread writer([&] {
        for (int i = 0; i < 500; ++i) record.SetDataMD5CA(values[i % 2]);
    });
    for (int i = 0; i < 500; ++i) {
        const std::string seen = record.GetODJson()["md5"].asString();
        ASSERT_TRUE(seen == values[0] || seen == values[1]) << seen;
    }
    writer.join();
}

}  // namespace
