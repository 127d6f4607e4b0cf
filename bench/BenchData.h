#pragma once

#include <VxUtil/vxJson.h>

#include <cstddef>
#include <string>
#include <vector>

/// The arguments of a decoding, and the offsets of the values for contenders that use no schema.
/// Generated from a fixed seed.
struct Unit {
    std::string header, payload;
    vxJson::Value schema, offsets;
    std::vector<std::size_t> values;  // the byte offset of each value

    int Length() const { return static_cast<int>(payload.size()); }
    std::string Frame() const { return header + payload; }
};

/// Host names, addresses, counters, rates and flags, one leaf each.
Unit ScalarLeaves(int count);

/// Interfaces: up to 20 columns, from names and addresses to octet counters and utilisation.
Unit InterfaceTable(int rows, std::size_t columnCount = 20);

/// A whole device, as most frames are: 12 leaves and an interface table of 11 columns by 48 rows.
Unit DeviceOverview(const std::string& name = "device overview");

/// One leaf with an array of routes, each of which is a map.
Unit RouteTable(int routes);

/// One leaf with an array of counters of all magnitudes.
Unit Integers(int count);

/// One leaf with an array of counters that need all 32 bits.
Unit Integers32(int count);

/// One leaf with an array of measured rates, most of them with a full mantissa.
Unit Floats(int count);
Unit ThreeDecimals(int count);

/// One leaf with the text of a device configuration.
Unit ConfigurationLeaf(std::size_t bytes);

/// A header with 32 leaves and 8 tables of 10 columns, without a payload.
std::string HeaderOf40Items();

std::string ConfigurationText(std::size_t bytes);

/// About `bytes` of JSON text: an array of interfaces.
std::string InterfacesJson(std::size_t bytes);
