#include "variables/ParserPriorityDAO.h"

#include "schema/VariableMappingNames.h"

namespace keys = VariableMappingNames;

bool ParserPriorityDAO::LoadFromJson(const vxJson::Value& source) {
    devType_ = source[keys::devType].asInt();
    parserPath_ = source[keys::path].asString();
    timeStamp_ = source[keys::ts].asInt();
    // -1 is the last position.
    order_ = static_cast<std::uint32_t>(source[keys::order_2].asInt());
    return true;
}
