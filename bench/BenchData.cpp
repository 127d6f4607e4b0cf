#include "bench/BenchData.h"

#include <array>
#include <cstdint>
#include <random>

#include "structure/CDEStructureDataHelper.h"
#include "structure/PackedFrameWriter.h"

namespace {

/// Random values like those that a device reports.
class Random {
  public:
    explicit Random(std::uint64_t seed) : engine_(seed) {}

    std::uint64_t Below(std::uint64_t bound) { return engine_() % bound; }
    std::string Number(std::uint64_t bound) { return std::to_string(Below(bound)); }

    std::string Address() {
        std::string text = "10." + Number(256);
        text += "." + Number(256);
        return text + "." + Number(256);
    }
    std::string Mac() {
        std::string text;
        for (int i = 0; i < 12; ++i) {
            if (i == 4 || i == 8) text += '.';
            text += "0123456789abcdef"[Below(16)];
        }
        return text;
    }
    double Rate() { return static_cast<double>(Below(std::uint64_t{1} << 53)) / 9e13; }
    std::uint64_t Counter() { return engine_() >> Below(60); }
    std::int64_t Negative(std::uint64_t bound) { return -static_cast<std::int64_t>(Below(bound)); }
    bool Flag() { return Below(2) == 0; }

  private:
    std::mt19937_64 engine_;
};

/// Appends the byte offsets of all values in order.
void AddOffsets(const vxJson::Value& offsets, std::vector<std::size_t>& values) {
    for (int i = 0; i < static_cast<int>(offsets.size()); ++i) {
        if (offsets[i].isArray())
            AddOffsets(offsets[i], values);
        else
            values.push_back(static_cast<std::size_t>(offsets[i].asInt()));
    }
}

Unit UnitOf(const dataengine::PackedFrameWriter& writer) {
    Unit unit;
    std::string name;
    int header = 0;
    const std::string frame = writer.Frame();
    CDEStructureDataHelper::GetBinaryDataInfo(frame, name, unit.schema, header);
    unit.header = frame.substr(0, static_cast<std::size_t>(header));
    unit.payload = frame.substr(static_cast<std::size_t>(header));
    unit.offsets = writer.Offsets();
    AddOffsets(unit.offsets, unit.values);
    return unit;
}

vxJson::Value Scalar(Random& random, int kind) {
    switch (kind % 8) {
        case 0:
            return "core-router-" + random.Number(1000);
        case 1:
            return random.Address();
        case 2:
            return random.Counter();
        case 3:
            return random.Rate();
        case 4:
            return random.Flag();
        case 5:
            return random.Below(9000);
        case 6:
            return "router software, release 17." + random.Number(13);
        default:
            return random.Negative(120);
    }
}

constexpr std::array kInterfaceColumns = {
    "ifName",    "ifAlias", "ifIndex", "adminStatus", "operStatus", "ipAddress", "macAddress",
    "mtu",       "speed",   "duplex",  "vlan",        "inOctets",   "outOctets", "inErrors",
    "outErrors", "inRate",  "outRate", "utilisation", "lastChange", "isTrunk"};

vxJson::Value InterfaceCell(Random& random, std::size_t column, int row) {
    switch (column) {
        case 0:
            return "GigabitEthernet1/0/" + std::to_string(row);
        case 1:
            return "uplink to access-switch-" + random.Number(400);
        case 2:
            return row + 10100;
        case 3:
        case 4:
            return random.Below(5) == 0 ? "down" : "up";
        case 5:
            return random.Address();
        case 6:
            return random.Mac();
        case 7:
            return 1500;
        case 8:
            return 1000000000;
        case 9:
            return "full";
        case 10:
            return random.Below(4094);
        case 11:
        case 12:
            return random.Counter();
        case 13:
        case 14:
            return random.Below(20);
        case 15:
        case 16:
        case 17:
            return random.Rate();
        case 18:
            return 1600000000000 + random.Below(100000000000);
        default:
            return random.Flag();
    }
}

vxJson::Value Route(Random& random) {
    constexpr const char* kProtocols[] = {"bgp", "ospf", "static", "connected"};
    vxJson::Value route;
    route["prefix"] = random.Address() + "/24";
    route["nextHop"] = random.Address();
    route["protocol"] = kProtocols[random.Below(4)];
    route["metric"] = random.Below(70000);
    route["interface"] = "GigabitEthernet1/0/" + random.Number(48);
    route["load"] = random.Rate();
    route["tag"];
    if (random.Below(3) == 0) route["tag"] = random.Below(200);
    return route;
}

/// A unit of one leaf, an array of `count` elements.
template <typename Element>
Unit OneArray(std::uint64_t seed, const std::string& name, int count, const Element& element) {
    Random random(seed);
    vxJson::Value array;
    for (int i = 0; i < count; ++i) array.append(vxJson::Value(element(random)));
    dataengine::PackedFrameWriter writer(name);
    writer.AddLeaf(name, 1, array);
    return UnitOf(writer);
}

}  // namespace

Unit ScalarLeaves(int count) {
    Random random(1);
    dataengine::PackedFrameWriter writer("scalars");
    for (int i = 0; i < count; ++i)
        writer.AddLeaf("variable" + std::to_string(i), 1, Scalar(random, i));
    return UnitOf(writer);
}

Unit InterfaceTable(int rows, std::size_t columnCount) {
    Random random(2);
    dataengine::PackedFrameWriter writer("interfaces");
    auto table = writer.AddTable("ifTable", false, {});
    for (std::size_t column = 0; column < columnCount; ++column) {
        vxJson::Value cells;
        for (int row = 0; row < rows; ++row) cells.append(InterfaceCell(random, column, row));
        table.AddColumn(kInterfaceColumns.at(column), 1, cells);
    }
    return UnitOf(writer);
}

Unit DeviceOverview(const std::string& name) {
    dataengine::PackedFrameWriter writer(name);
    for (const Unit& unit : {ScalarLeaves(12), InterfaceTable(48, 11)}) {
        rapidjson::Document document;
        CDEStructureDataHelper::ParseBinaryDataToJson(unit.payload.data(), unit.Length(),
                                                      unit.schema, unit.offsets, vxJson::Value(),
                                                      document);
        writer.AddItems(document);
    }
    return UnitOf(writer);
}

Unit RouteTable(int routes) {
    return OneArray(3, "routes", routes, Route);
}

Unit Integers(int count) {
    return OneArray(4, "counters", count, [](Random& random) -> vxJson::Value {
        if (random.Below(8) == 0) return random.Negative(100000);
        return random.Counter();
    });
}

Unit Integers32(int count) {
    return OneArray(10, "counters32", count, [](Random& random) {
        return (std::uint64_t{1} << 31) | random.Below(std::uint64_t{1} << 32);
    });
}

Unit Floats(int count) {
    return OneArray(5, "rates", count, [](Random& random) {
        // Every fourth is a reading with one decimal.
        return random.Below(4) == 0 ? static_cast<double>(random.Below(10000)) / 10 : random.Rate();
    });
}

Unit ThreeDecimals(int count) {
    return OneArray(5, "latencies", count, [](Random& random) {
        return static_cast<double>(random.Below(10000000)) / 1000;
    });
}

Unit ConfigurationLeaf(std::size_t bytes) {
    dataengine::PackedFrameWriter writer("configuration");
    writer.AddLeaf("runningConfig", 1, ConfigurationText(bytes));
    return UnitOf(writer);
}

std::string ConfigurationText(std::size_t bytes) {
    Random random(7);
    std::string text;
    while (text.size() < bytes) {
        text += "interface GigabitEthernet1/0/" + random.Number(48) + "\n";
        text += " description \"uplink to access-switch-" + random.Number(400) + "\"\n";
        text += " ip address " + random.Address() + " 255.255.255.0\n";
        text += " service-policy input QOS-MARK-IN\n spanning-tree portfast\n no shutdown\n!\n";
    }
    text.resize(bytes);
    return text;
}

std::string HeaderOf40Items() {
    constexpr int kLeaves = 32, kTables = 8, kColumns = 10;
    dataengine::PackedFrameWriter writer("device overview");
    for (int i = 0; i < kLeaves; ++i)
        writer.AddLeaf("variable" + std::to_string(i), 1 + i % 4, vxJson::Value());
    for (int i = 0; i < kTables; ++i) {
        auto table = writer.AddTable("table" + std::to_string(i), true, {"column0"});
        for (int column = 0; column < kColumns; ++column)
            table.AddColumn("column" + std::to_string(column), 1, vxJson::Value());
    }
    return writer.Frame().substr(0, static_cast<std::size_t>(writer.HeaderLength()));
}

std::string InterfacesJson(std::size_t bytes) {
    Random random(9);
    std::string text = "[";
    for (int row = 0; text.size() < bytes; ++row) {
        if (row > 0) text += ",";
        text += "{\"ifName\":\"GigabitEthernet1/0/" + std::to_string(row) + "\"";
        text += ",\"ifAlias\":\"uplink to access-switch-" + random.Number(400) + "\"";
        text += ",\"ipAddress\":\"" + random.Address() + "\",\"macAddress\":\"" + random.Mac();
        text += "\",\"mtu\":1500,\"inOctets\":" + std::to_string(random.Counter());
        text +=
            ",\"utilisation\":" + random.Number(100) + "." + std::to_string(random.Below(90) + 10);
        text += ",\"isTrunk\":true,\"vlans\":[" + random.Number(4094) + "," + random.Number(4094) +
                "]}";
    }
    return text + "]";
}
