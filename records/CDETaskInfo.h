#pragma once

#include <string>

/// One task that took part in producing a record's data. A plain value, which the library only
/// carries.
///
/// Thread rule: an object belongs to one thread at a time.
struct CDETaskInfo {
    std::string taskId;       ///< The task's identifier.
    int taskIndex = 0;        ///< The task's index.
    bool isOnDemand = false;  ///< True for an on-demand task, false for a shared one.
    std::string extraId;      ///< A further identifier of the task.
};
