import QtQuick 2.15
import QtQuick.Window 2.15
import "status.js" as Status

// The content of the main window. The controller writes the root's properties and calls its
// functions by name; the view calls back through "mainwindow" and "sdk".
Rectangle {
    id: root

    property int baseWidth: 640
    property int baseHeight: 240
    property real basePixelDensity: 3.7795275590551185 // pixels per millimetre at 96 dpi
    property real logicalPixelDensity: Screen.logicalPixelDensity
    property real factor: logicalPixelDensity / basePixelDensity
    property bool finishedLoading: false
    property int margin: 10
    property string fontfamily: "Helvetica"
    property bool isLoading: false
    property int markerMargin: 5
    property bool isTouch: true
    property bool buttonsDisabled: isLoading || (engine.hasReported && !isReady)
    property bool isGreaterEqualsWin8: false
    property bool aspectRatioWarningShown: false
    property string loadingText: qsTr("Loading...")
    property string versionText: ""
    property string statusText: textOf(Status.startingUp.text)
    property bool isReady: engine.hasReported && Status.report(status, mainwindow.brand()).ready
    property int status: -99
    property bool settingsVisible: false
    property bool isAutoStart: true
    property bool isKeepACpuRunning: false
    property bool pauseCalib: false

    signal windowClosing()

    function textOf(source) {
        return qsTranslate("status", source).replace("%1", mainwindow.appName());
    }

    // Called for every report, also for one that equals the last. What is written before the
    // view is complete is no report.
    onStatusChanged: {
        if (!finishedLoading)
            return;
        engine.hasReported = true;
        statusText = textOf(Status.report(status, mainwindow.brand()).text);
        isLoading = status === Status.calibrating;
        if (isLoading)
            loadingLimit.restart();
    }

    width: baseWidth * factor
    height: baseHeight * factor
    color: "#1d2733"
    // Everything below is laid out in the base size and scaled as a whole.
    transform: Scale { xScale: root.factor; yScale: root.factor }

    QtObject {
        id: engine

        property bool hasReported: false
    }

    // The tool's 30 s and as much again: an engine that says nothing must not leave the view
    // loading for good.
    Timer {
        id: loadingLimit

        interval: 60000
        running: root.isLoading
        onTriggered: {
            root.isLoading = false;
            root.statusText = root.textOf(Status.lastActionFailed);
        }
    }

    FontLoader {
        id: fontAwesome

        source: "qrc:///fontawesome-webfont.ttf"
    }

    Rectangle {
        id: mainRect

        width: root.baseWidth
        height: root.baseHeight
        color: "transparent"
        focus: true

        Text {
            anchors { top: parent.top; right: parent.right; margins: 10 }
            color: "white"
            font.family: "Helvetica Neue"
            font.pixelSize: 12
            text: root.versionText

            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }

        Column {
            anchors.centerIn: parent
            spacing: 25

            Rectangle {
                width: mainRect.width
                height: 40
                color: "transparent"

                Text {
                    id: statusLine

                    anchors.centerIn: parent
                    color: "white"
                    font.family: "Helvetica Neue"
                    font.pixelSize: 20
                    horizontalAlignment: Text.AlignHCenter
                    lineHeight: 1.2
                    visible: !root.isLoading
                    text: root.statusText

                    Accessible.role: Accessible.StaticText
                    Accessible.name: text
                }

                LoadingIndicator {
                    id: loadingIndicator

                    anchors.centerIn: parent
                }
            }

            Row {
                id: btnRow

                anchors.horizontalCenter: parent.horizontalCenter
                spacing: 10

                CButton {
                    id: manualBtn

                    icon: "\uf05b"
                    btnText: qsTr("Manual Calibration")
                    nextTab: calibrateTouchBtn
                    prevTab: autoBtn
                    focus: true
                    onSubmit: mainwindow.startManualCalibration()
                }

                CButton {
                    id: calibrateTouchBtn

                    icon: "\uf25a"
                    btnText: qsTr("Touch Calibration")
                    nextTab: autoBtn
                    prevTab: manualBtn
                    onSubmit: mainwindow.startTouchCalibration()
                }

                CButton {
                    id: autoBtn

                    icon: "\uf140"
                    btnText: qsTr("Auto Calibration")
                    nextTab: manualBtn
                    prevTab: calibrateTouchBtn
                    onSubmit: mainwindow.startAutoCalibration()
                }
            }
        }
    }
}
