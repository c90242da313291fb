#pragma once

/**
 * Status codes of the engine. An engine may report any other value too; it is passed on unchanged.
 * docs/engine-contract.md tells what each means to an engine, qml/status.js what the view says.
 */
enum EngineStatus : int {
    StatusUnknown = -99, ///< no report yet; commands wait
    StatusNotCalibrated2 = -14, ///< treated like StatusNotCalibrated
    StatusEngineGaveUp = -12, ///< the engine exited too often and is not started again
    StatusEngineRestarting = -10, ///< the engine exited and is being started again; commands wait
    StatusNotCalibrated = -6,
    StatusLastActionFailed = -5,
    StatusCalibrationFailed = -4,
    StatusCalibrationAborted = -3,
    StatusLightDisturbance = -2,
    StatusNotReady = -1, ///< commands wait; kept through an exit of the engine
    StatusReady = 0,
    StatusStarted = 1, ///< as StatusReady
    StatusCalibrating = 2,
};
