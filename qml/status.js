.pragma library

// What the main view says of each status code of the engine, the glyph of the icon font that goes
// with it, how good or bad it is, and whether the engine takes commands then. "%1" is the name of the application.
var startingUp = { text: QT_TR_NOOP("Starting up..."), glyph: "\uf252", tone: "neutral", ready: false };
var calibrating = 2; // reported while a calibration runs: the view goes on loading
var lastActionFailed = { text: QT_TR_NOOP("Last action failed please try again."), glyph: "\uf071", tone: "failure", ready: true };
var notCalibrated = { text: QT_TR_NOOP("Started, %1 not calibrated."), glyph: "\uf05b", tone: "warning", ready: true };

var reports = {
    "-1": { text: QT_TR_NOOP("Not connected to %1.<br>Please connect the USB cable."), glyph: "\uf1e6", tone: "warning", ready: false },
    "-2": { text: QT_TR_NOOP("Light disturbance detected."), glyph: "\uf0eb", tone: "warning", ready: true },
    "-3": { text: QT_TR_NOOP("Calibration aborted."), glyph: "\uf05e", tone: "warning", ready: true },
    "-4": { text: QT_TR_NOOP("Calibration failed, please try again."), glyph: "\uf071", tone: "failure", ready: true },
    "-5": lastActionFailed,
    "-6": notCalibrated,
    "-14": notCalibrated,
    "-12": { text: QT_TR_NOOP("A problem occured, please restart %1."), glyph: "\uf057", tone: "failure", ready: false },
    "-99": startingUp,
    "2": { ready: false } // calibrating: it shows that it is loading instead
};
var otherPositive = { text: QT_TR_NOOP("Started and ready"), glyph: "\uf058", tone: "good", ready: true };
var otherNegative = { text: QT_TR_NOOP("A problem occured, please wait..."), glyph: "\uf252", tone: "warning", ready: false };

// The remote-pen product ("tal") tells more about what to connect.
var remotePenNotConnected = {
    text: QT_TR_NOOP("%1 not connected! <br>Please connect the USB cable and check the box<br> to enable the setting for Remote Pen"),
    glyph: "\uf1e6",
    tone: "warning",
    ready: false
};

function report(code, brand) {
    if (code === -1 && brand === "tal")
        return remotePenNotConnected;
    return reports[code] || (code < 0 ? otherNegative : otherPositive);
}
