#pragma once

#include <string>

/// A task that took part in producing a record's data. The library does not interpret it.
///
/// Thread safety: not safe for concurrent use.
struct CDETaskInfo {
    std::string taskId;       ///< The task's identifier.
    int taskIndex = 0;        ///< The task's index.
    bool isOnDemand = false;  ///< True for an on-demand task, false for a shared one.
    std::string extraId;      ///< A further identifier of the task.
};
