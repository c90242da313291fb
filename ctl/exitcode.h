#pragma once

/// What vireonctl ends with; its help and its manual page tell the same.
enum ExitCode : int {
    ExitDone = 0,
    ExitFailed = 1, ///< the report cannot be written
    ExitUsage = 2,
    ExitNoController = 3,
    ExitNotInTime = 4,
    ExitMailboxOff = 5,
    ExitAnotherUsers = 6,
};
