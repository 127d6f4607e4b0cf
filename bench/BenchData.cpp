#include "bench/BenchData.h"

#include <array>
#include <cstdint>
#include <msgpack.hpp>
#include <random>

namespace {

/// Packs values that look like a device's.
class Packer {
  public:
    explicit Packer(std::uint64_t seed) : engine_(seed), packer_(buffer_) {}

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

    void Text(const std::string& text) { packer_.pack(text); }
    void Unsigned(std::uint64_t number) { packer_.pack(number); }
    void Signed(std::int64_t number) { packer_.pack(number); }
    void Float(double number) { packer_.pack(number); }
    void Flag(bool flag) { packer_.pack(flag); }
    void Nil() { packer_.pack_nil(); }
    void Array(std::uint32_t count) { packer_.pack_array(count); }
    void Map(std::uint32_t count) { packer_.pack_map(count); }

    std::size_t Size() const { return buffer_.size(); }
    std::string Bytes() const { return std::string(buffer_.data(), buffer_.size()); }

  private:
    std::mt19937_64 engine_;
    msgpack::sbuffer buffer_;
    msgpack::packer<msgpack::sbuffer> packer_;
};

vxJson::Value Item(const std::string& name, int type, int index) {
    vxJson::Value item;
    item["name"] = name;
    item["type"] = type;
    item["index"] = index;
    return item;
}

/// Tells a unit that its next value begins where `packer` stands.
void BeginLeaf(Unit& unit, const Packer& packer, const std::string& name) {
    unit.schema.append(Item(name, 1, static_cast<int>(unit.values.size())));
    unit.offsets.append(vxJson::Value(static_cast<int>(packer.Size())));
    unit.values.push_back(packer.Size());
}

void PackScalar(Packer& packer, int kind) {
    switch (kind % 8) {
        case 0:
            return packer.Text("core-router-" + packer.Number(1000));
        case 1:
            return packer.Text(packer.Address());
        case 2:
            return packer.Unsigned(packer.Counter());
        case 3:
            return packer.Float(packer.Rate());
        case 4:
            return packer.Flag(packer.Below(2) == 0);
        case 5:
            return packer.Unsigned(packer.Below(9000));
        case 6:
            return packer.Text("IOS-XE Software, Version 17." + packer.Number(13));
        default:
            return packer.Signed(-static_cast<std::int64_t>(packer.Below(120)));
    }
}

constexpr std::array kInterfaceColumns = {
    "ifName",    "ifAlias", "ifIndex", "adminStatus", "operStatus", "ipAddress", "macAddress",
    "mtu",       "speed",   "duplex",  "vlan",        "inOctets",   "outOctets", "inErrors",
    "outErrors", "inRate",  "outRate", "utilisation", "lastChange", "isTrunk"};

void PackInterfaceCell(Packer& packer, std::size_t column, int row) {
    switch (column) {
        case 0:
            return packer.Text("GigabitEthernet1/0/" + std::to_string(row));
        case 1:
            return packer.Text("uplink to access-switch-" + packer.Number(400));
        case 2:
            return packer.Unsigned(static_cast<std::uint64_t>(row) + 10100);
        case 3:
        case 4:
            return packer.Text(packer.Below(5) == 0 ? "down" : "up");
        case 5:
            return packer.Text(packer.Address());
        case 6:
            return packer.Text(packer.Mac());
        case 7:
            return packer.Unsigned(1500);
        case 8:
            return packer.Unsigned(1000000000);
        case 9:
            return packer.Text("full");
        case 10:
            return packer.Unsigned(packer.Below(4094));
        case 11:
        case 12:
            return packer.Unsigned(packer.Counter());
        case 13:
        case 14:
            return packer.Unsigned(packer.Below(20));
        case 15:
        case 16:
        case 17:
            return packer.Float(packer.Rate());
        case 18:
            return packer.Unsigned(1600000000000 + packer.Below(100000000000));
        default:
            return packer.Flag(packer.Below(2) == 0);
    }
}

template <typename PackElement>
Unit OneArray(std::uint64_t seed, const std::string& name, int count,
              const PackElement& packElement) {
    Unit unit;
    Packer packer(seed);
    BeginLeaf(unit, packer, name);
    packer.Array(static_cast<std::uint32_t>(count));
    for (int i = 0; i < count; ++i) packElement(packer);
    unit.payload = packer.Bytes();
    return unit;
}

void PackRoute(Packer& packer) {
    constexpr const char* kProtocols[] = {"bgp", "ospf", "static", "connected"};
    packer.Map(7);
    packer.Text("prefix");
    packer.Text(packer.Address() + "/24");
    packer.Text("nextHop");
    packer.Text(packer.Address());
    packer.Text("protocol");
    packer.Text(kProtocols[packer.Below(4)]);
    packer.Text("metric");
    packer.Unsigned(packer.Below(70000));
    packer.Text("interface");
    packer.Text("GigabitEthernet1/0/" + packer.Number(48));
    packer.Text("load");
    packer.Float(packer.Rate());
    packer.Text("tag");
    if (packer.Below(3) == 0)
        packer.Unsigned(packer.Below(200));
    else
        packer.Nil();
}

void PackSchemaItem(Packer& packer, const std::string& name, int type, int index,
                    std::uint32_t more) {
    packer.Map(3 + more);
    packer.Text("name");
    packer.Text(name);
    packer.Text("type");
    packer.Signed(type);
    packer.Text("index");
    packer.Signed(index);
}

}  // namespace

Unit ScalarLeaves(int count) {
    Unit unit;
    Packer packer(1);
    for (int i = 0; i < count; ++i) {
        BeginLeaf(unit, packer, "variable" + std::to_string(i));
        PackScalar(packer, i);
    }
    unit.payload = packer.Bytes();
    return unit;
}

Unit InterfaceTable(int rows) {
    Unit unit;
    Packer packer(2);
    vxJson::Value columns, inner;
    for (std::size_t column = 0; column < kInterfaceColumns.size(); ++column) {
        columns.append(Item(kInterfaceColumns[column], 1, static_cast<int>(column)));
        inner.append(vxJson::Value(static_cast<int>(packer.Size())));
        unit.values.push_back(packer.Size());
        packer.Array(static_cast<std::uint32_t>(rows));
        for (int row = 0; row < rows; ++row) PackInterfaceCell(packer, column, row);
    }
    vxJson::Value table = Item("ifTable", 11, 0);
    table["column"] = columns;
    unit.schema.append(table);
    unit.offsets.append(inner);
    unit.payload = packer.Bytes();
    return unit;
}

Unit RouteTable(int routes) {
    return OneArray(3, "routes", routes, PackRoute);
}

Unit Integers(int count) {
    return OneArray(4, "counters", count, [](Packer& packer) {
        if (packer.Below(8) == 0)
            packer.Signed(-static_cast<std::int64_t>(packer.Below(100000)));
        else
            packer.Unsigned(packer.Counter());
    });
}

Unit Integers32(int count) {
    return OneArray(10, "counters32", count, [](Packer& packer) {
        packer.Unsigned((std::uint64_t{1} << 31) | packer.Below(std::uint64_t{1} << 32));
    });
}

Unit Floats(int count) {
    return OneArray(5, "rates", count, [](Packer& packer) {
        // Every fourth is a reading that had few decimals to begin with.
        if (packer.Below(4) == 0)
            packer.Float(static_cast<double>(packer.Below(10000)) / 10);
        else
            packer.Float(packer.Rate());
    });
}

Unit ConfigurationLeaf(std::size_t bytes) {
    Unit unit;
    Packer packer(6);
    BeginLeaf(unit, packer, "runningConfig");
    packer.Text(ConfigurationText(bytes));
    unit.payload = packer.Bytes();
    return unit;
}

std::string ConfigurationText(std::size_t bytes) {
    Packer random(7);
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
    Packer packer(8);
    packer.Signed(1);
    packer.Text("device overview");
    packer.Array(kLeaves + kTables);
    for (int i = 0; i < kLeaves; ++i)
        PackSchemaItem(packer, "variable" + std::to_string(i), 1 + i % 4, i, 0);
    for (int i = 0; i < kTables; ++i) {
        PackSchemaItem(packer, "table" + std::to_string(i), 11, kLeaves + i, 3);
        packer.Text("hashSort");
        packer.Flag(true);
        packer.Text("hashColumns");
        packer.Array(1);
        packer.Text("column0");
        packer.Text("column");
        packer.Array(kColumns);
        for (int column = 0; column < kColumns; ++column)
            PackSchemaItem(packer, "column" + std::to_string(column), 1, column, 0);
    }
    return packer.Bytes();
}

std::string InterfacesJson(std::size_t bytes) {
    Packer random(9);
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
