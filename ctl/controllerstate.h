#pragma once

#include "ctl/exitcode.h"
#include "ipc/runguard.h"

#include <QString>

#include <optional>

/**
 * The controller from outside: whether it runs, and the engine's status as its window tells it.
 *
 * The status is the one in the status file. The controller takes that file away when it starts the
 * engine anew: a missing one is StatusUnknown or, once there was one, StatusEngineRestarting.
 *
 * One copy runs per machine: where it is another user's, there is no state of this one's.
 */
struct ControllerState
{
    bool running = false;
    int status = 0; ///< see EngineStatus
    std::optional<int> firmware;
    bool isAnotherUsers = false; ///< not running, and cannot: another user's does
    pid_t process = 0; ///< the running one's number

    /// What the window says of it, in one line and in the language of the translator installed.
    QString text() const;

    /// Whether the engine takes commands.
    bool isReady() const;

    /// Whether it is ready, and calibrated.
    bool isCalibrated() const;

    /// ExitDone while it runs, else what vireonctl ends with for want of it.
    ExitCode exitCode() const;

    /// One object of JSON, without a line break.
    QByteArray toJson() const;

    /// Whether both tell the same.
    bool operator==(const ControllerState& other) const;
};

/// Looks at the controller whose settings are GS.
class ControllerProbe
{
public:
    ControllerProbe();

    ControllerState look();

private:
    RunGuard guard;
    bool statusSeen = false;
};
