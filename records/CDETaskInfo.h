#pragma once

#include <string>

/// One task that took part in producing a record's data. A plain value.
struct CDETaskInfo {
    std::string taskId;
    int taskIndex = 0;
    bool isOnDemand = false;  ///< True for an on-demand task, false for a shared one.
    std::string extraId;
};
