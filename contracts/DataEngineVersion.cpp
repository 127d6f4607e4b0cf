#include "contracts/DataEngineVersion.h"

const char* dataengine::Version() noexcept {
    return DATAENGINE_VERSION;
}
