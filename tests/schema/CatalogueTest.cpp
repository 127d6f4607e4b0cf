#include <gtest/gtest.h>

#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include "schema/DataEngineNames.h"
#include "schema/StoreNames.h"
#include "schema/VariableMappingNames.h"

namespace {

// Copied while this program is loaded: the names are there before anybody's static objects.
const std::string copied_at_load = StoreNames::Collection::ObjectTreeNodeDataCache_files;

using Texts = std::vector<std::string>;

Texts variable_mapping_texts() {
    Texts texts;
#define TEXT(id, text) texts.push_back(VariableMappingNames::id);
#include "schema/names/VariableMapping.def"
    return texts;
}

Texts data_engine_texts() {
    Texts texts;
#define BLOCK_BEGIN(block) \
    {                      \
        namespace in_block = DataEngineNames::block;
#define BLOCK_END(block) }
#define TEXT(id, text) texts.push_back(in_block::id);
#include "schema/names/DataEngine.def"
    return texts;
}

Texts store_texts() {
    Texts texts;
#define BLOCK_BEGIN(block) \
    {                      \
        namespace in_block = StoreNames::block;
#define BLOCK_END(block) }
#define TEXT(id, text) texts.push_back(in_block::id);
#include "schema/names/Store.def"
    return texts;
}

// FNV-1a over the texts, each followed by a newline, in hexadecimal digits.
std::string fingerprint(const Texts& texts) {
    std::uint64_t hash = 0xcbf29ce484222325;
    for (const std::string& text : texts) {
        for (const char c : text + '\n') {
            hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3;
        }
    }
    std::ostringstream digits;
    digits << std::hex << hash;
    return digits.str();
}

// What a stored document depends on. A new row changes the numbers of its group and nothing else;
// any other change of them breaks the stores in use.
TEST(Catalogue, HoldsEachGroupLetterForLetterInOrder) {
    const struct {
        const char* group;
        Texts texts;
        std::size_t count;
        const char* fingerprint;
    } groups[] = {
        {"variable mapping", variable_mapping_texts(), 26, "3ff0d970a6abf931"},
        {"data engine", data_engine_texts(), 53, "4de6a748b5cc3cae"},
        {"store", store_texts(), 1708, "55019d3018b5d4dd"},
    };
    for (const auto& group : groups) {
        EXPECT_EQ(group.texts.size(), group.count) << group.group;
        EXPECT_EQ(fingerprint(group.texts), group.fingerprint) << group.group;
    }
}

// The fingerprints don't see which name a text belongs to. These are the rows where it is easily
// the wrong one: texts that differ in a letter or its case, and texts that are no identifiers.
TEST(Catalogue, GivesNamesTheirTexts) {
    using namespace StoreNames;
    const struct {
        const char* text;
        const std::string& name;
    } rows[] = {
        {"$regex", Operator::regex},
        {"$REGEX", Operator::REGEX},
        {"$OID", Operator::OID},
        {"$and", Operator::and_},
        {"$or", Operator::or_},
        {"$i", Operator::i},
        {"GBObjectHistroy", Collection::GBObjectHistroy},
        {"gbobjecthistory", Collection::gbobjecthistory},
        {"GBObjectRule", Collection::GBObjectRule},
        {"gbobjectrule", Collection::gbobjectrule},
        {"Parsers", Collection::Parsers},
        {"parser", Collection::parser},
        {"parser", Collection::parser_2},
        {"Driver", Collection::Driver},
        {"driver", Collection::driver_2},
        {"option", Collection::option},
        {"Option", Collection::Option},
        {"VXSystem.Tenant", Collection::VXSystem_Tenant},
        {"ODDeviceData.InSite", Collection::ODDeviceData_InSite},
        {"isIPAccouting", Device::isIPAccouting},
        {"export", RouteTargetDirection::export_},
        {"import", RouteTargetDirection::import_},
        {"peer link", MCLAGLinkKind::peer_link},
        {"NAT Table", DeviceDataKind::NAT_Table},
        {"IPsec VPN Table", DeviceDataKind::IPsec_VPN_Table},
        {"Succeeded", DeviceDataSourceStatus::Succeeded},
        {"Succeeded with warnings", DeviceDataSourceStatus::Succeeded_with_warnings},
        {"", DeviceDataSourceStatus::empty},
        {"live path", DeviceDataSourceType::live_path},
        {"timeOut", NetworkServer::timeOut},
        {"timeout", NetworkServer::timeout},
        {"SSHKeyId", Jumpbox::SSHKeyId},
        {"sshKeyID", TelnetInfo::sshKeyID},
        {"L3_Topo_Type", TopoType::L3_Topo_Type_2},
        {"L2_Topo_Type", TopoType::L2_Topo_Type_2},
        {"f9915809-00ee-40ea-b90d-7eb7ed9a370b", TopoTypeGuid::guid2},
        {"f9915809-00ee-40ea-b90d-7eb7ed9a370b", RetrieveKey::guid2},
        {"3", RetrieveKey::key3},
        {"8", RetrieveKey::key8},
        {"Default Zone", ZoneName::Default_Zone},
        {"updateToBeseline", RetrieveOption::updateToBeseline},
        {"updateToBaseline", TesselRunRequest::updateToBaseline},
        {"Built-in", VariableMappingNames::Built_in},
        {"builtIn", VariableMappingNames::builtIn},
        {"order", VariableMappingNames::order},
        {"order", VariableMappingNames::order_2},
    };
    for (const auto& row : rows) EXPECT_EQ(row.name, row.text);
}

TEST(Catalogue, GivesEachRowAStringOfItsOwn) {
    EXPECT_NE(&VariableMappingNames::order, &VariableMappingNames::order_2);
    EXPECT_NE(&StoreNames::Device::vxPathSchema, &StoreNames::DeviceModule::vxPathSchema);
    EXPECT_NE(&StoreNames::TopoType::L3_Topo_Type, &StoreNames::TopoType::L3_Topo_Type_2);
}

TEST(Catalogue, IsThereBeforeStaticObjects) {
    EXPECT_EQ(copied_at_load, "ObjectTreeNodeDataCache.files");
}

}  // namespace
