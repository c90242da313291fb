#include "ctl/controllerstate.h"

#include "base/attachedsegment.h"
#include "engine/enginestatus.h"
#include "engine/statusreport.h"
#include "settings/brand.h"
#include "settings/globalsettings.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <unistd.h>

namespace {

/// What the view says of a status; the table of qml/status.js, whose texts these are.
struct StatusText
{
    const char* text;
    int code;
    bool ready;
};

const StatusText texts[] = {
    {QT_TRANSLATE_NOOP("status", "Starting up..."), StatusUnknown, false},
    {QT_TRANSLATE_NOOP("status", "Not connected to %1.<br>Please connect the USB cable."),
     StatusNotReady, false},
    {QT_TRANSLATE_NOOP("status", "Light disturbance detected."), StatusLightDisturbance, true},
    {QT_TRANSLATE_NOOP("status", "Calibration aborted."), StatusCalibrationAborted, true},
    {QT_TRANSLATE_NOOP("status", "Calibration failed, please try again."), StatusCalibrationFailed,
     true},
    {QT_TRANSLATE_NOOP("status", "Last action failed please try again."), StatusLastActionFailed,
     true},
    {QT_TRANSLATE_NOOP("status", "Started, %1 not calibrated."), StatusNotCalibrated, true},
    {QT_TRANSLATE_NOOP("status", "Started, %1 not calibrated."), StatusNotCalibrated2, true},
    {QT_TRANSLATE_NOOP("status", "A problem occured, please restart %1."), StatusEngineGaveUp,
     false},
};
const StatusText otherPositive {QT_TRANSLATE_NOOP("status", "Started and ready"), 0, true};
const StatusText otherNegative {QT_TRANSLATE_NOOP("status", "A problem occured, please wait..."), 0,
                                false};
const StatusText remotePenNotConnected {
    QT_TRANSLATE_NOOP("status",
                      "%1 not connected! <br>Please connect the USB cable and check the box<br> to "
                      "enable the setting for Remote Pen"),
    StatusNotReady, false};

const StatusText& textOf(int code)
{
    if (code == StatusNotReady && isBrand(GS::instance()->brand, Brand::Tal))
        return remotePenNotConnected;
    const auto* const found =
        std::find_if(std::begin(texts), std::end(texts),
                     [code](const StatusText& row) { return row.code == code; });
    if (found != std::end(texts))
        return *found;
    return code < 0 ? otherNegative : otherPositive;
}

} // namespace

QString ControllerState::text() const
{
    if (isAnotherUsers)
        return QCoreApplication::translate("vireonctl", "Vireon is running for another user.");
    if (!running)
        return QCoreApplication::translate("vireonctl", "Vireon is not running.");
    if (status == StatusCalibrating)
        return QCoreApplication::translate("main", "Loading...");
    return QCoreApplication::translate("status", textOf(status).text)
        .replace(QLatin1String("%1"), QLatin1String("Vireon"))
        .replace(QLatin1String("<br>"), QLatin1String(" "))
        .simplified();
}

bool ControllerState::isReady() const
{
    return running && status != StatusCalibrating && textOf(status).ready;
}

bool ControllerState::isCalibrated() const
{
    return isReady() && status >= StatusReady;
}

ExitCode ControllerState::exitCode() const
{
    if (running)
        return ExitDone;
    return isAnotherUsers ? ExitAnotherUsers : ExitNoController;
}

QByteArray ControllerState::toJson() const
{
    QJsonObject object {{"running", running}, {"text", text()}};
    if (isAnotherUsers)
        object.insert("anotherUsers", true);
    if (running) {
        object.insert("status", status);
        object.insert("ready", isReady());
        object.insert("calibrated", isCalibrated());
    }
    if (running && firmware)
        object.insert("firmware", *firmware);
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

bool ControllerState::operator==(const ControllerState& other) const
{
    return running == other.running && isAnotherUsers == other.isAnotherUsers
        && status == other.status && firmware == other.firmware;
}

ControllerProbe::ControllerProbe()
    : guard(GS::instance()->appName)
{
}

ControllerState ControllerProbe::look()
{
    ControllerState state;
    const std::optional<AttachedSegment> marker = guard.findAnother();
    state.isAnotherUsers = marker && marker->creator != geteuid();
    state.running = marker && !state.isAnotherUsers;
    if (!state.running) {
        statusSeen = false;
        return state;
    }
    state.process = marker->creatorPid;
    const auto report =
        StatusReport::fromFile(QString::fromStdString(GS::instance()->penSettingsPath));
    state.status = statusSeen ? StatusEngineRestarting : StatusUnknown;
    if (report && report->status) {
        state.status = *report->status;
        state.firmware = report->firmware;
        statusSeen = true;
    }
    return state;
}
