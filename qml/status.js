.pragma library

// What the main view says of each status code of the engine, and whether the engine takes
// commands then. "%1" is the name of the application.
var startingUp = { text: QT_TR_NOOP("Starting up..."), ready: false };
var calibrating = 2; // reported while a calibration runs: the view goes on loading
var lastActionFailed = QT_TR_NOOP("Last action failed please try again.");

var reports = {
    "-1": { text: QT_TR_NOOP("Not connected to %1.<br>Please connect the USB cable."), ready: false },
    "-2": { text: QT_TR_NOOP("Light disturbance detected."), ready: true },
    "-3": { text: QT_TR_NOOP("Calibration aborted."), ready: true },
    "-4": { text: QT_TR_NOOP("Calibration failed, please try again."), ready: true },
    "-5": { text: lastActionFailed, ready: true },
    "-6": { text: QT_TR_NOOP("Started, %1 not calibrated."), ready: true },
    "-14": { text: QT_TR_NOOP("Started, %1 not calibrated."), ready: true },
    "-12": { text: QT_TR_NOOP("A problem occured, please restart %1."), ready: false },
    "-99": startingUp
};
var otherPositive = { text: QT_TR_NOOP("Started and ready"), ready: true };
var otherNegative = { text: QT_TR_NOOP("A problem occured, please wait..."), ready: false };

// The remote-pen product ("tal") tells more about what to connect.
var remotePenNotConnected = {
    text: QT_TR_NOOP("%1 not connected! <br>Please connect the USB cable and check the box<br> to enable the setting for Remote Pen"),
    ready: false
};

function report(code, brand) {
    if (code === -1 && brand === "tal")
        return remotePenNotConnected;
    return reports[code] || (code < 0 ? otherNegative : otherPositive);
}
