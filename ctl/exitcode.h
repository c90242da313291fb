#pragma once

/// What vireonctl ends with; its help and its manual page tell the same.
enum ExitCode : int {
    ExitDone = 0,
    ExitUsage = 2,
    ExitNoController = 3,
    ExitNotInTime = 4,
    ExitMailboxOff = 5,
    ExitAnotherUsers = 6,
};
