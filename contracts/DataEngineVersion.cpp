#include "contracts/DataEngineVersion.h"

const char* DataEngineVersion() noexcept {
    return DATAENGINE_VERSION;
}
