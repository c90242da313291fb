#pragma once

#include "ctl/exitcode.h"

#include <QString>

class ControllerProbe;

// What vireonctl can wait for. Each returns what the program ends with.

/// Until the engine takes commands ("ready") or is calibrated, too ("calibrated"), and has been so
/// for a second: a command that was just sent may still be on its way to the engine. A controller
/// that does not run yet is waited for as well; without one at the end, that is told.
ExitCode waitForState(ControllerProbe& probe, bool calibrated, int limitMs);

/// Until no controller runs, another user's neither. Needs the application object; a second passes
/// at least when one does.
ExitCode waitUntilGone(ControllerProbe& probe, int limitMs);

/// Prints each change of the state, with its time, until the controller has gone.
ExitCode follow(ControllerProbe& probe, bool json);
