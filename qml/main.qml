import QtQuick 2.15
import QtQuick.Window 2.15
import "keyboard.js" as Keyboard
import "status.js" as Status
import "theme.js" as Theme

// The content of the main window. The controller writes the root's properties and calls its
// functions by name; the view calls back through "mainwindow" and "sdk".
Rectangle {
    id: root

    // As wide as the buttons with the longest labels need it.
    property int baseWidth: Math.max(Qt.locale().name === "ja_JP" ? 720 : 680,
                                     btnRow.width + 2 * margin)
    property int baseHeight: 240
    property real basePixelDensity: 3.7795275590551185 // pixels per millimetre at 96 dpi
    property real logicalPixelDensity: Screen.logicalPixelDensity
    property real factor: logicalPixelDensity / basePixelDensity
    property bool finishedLoading: false
    // From the window's edges; the frame that Windows draws counts as a part of it.
    property int margin: operatingSystem === "win" ? 15 : 20
    property string fontfamily: Theme.controlFamily
    property bool isLoading: false
    property int markerMargin: 5
    property bool isTouch: true
    property bool buttonsDisabled: isLoading || (firstReport.hasCome && !isReady)
    property bool isGreaterEqualsWin8: false
    property bool aspectRatioWarningShown: false
    property string loadingText: qsTr("Loading...")
    property string versionText: ""
    property string statusText: textOf(Status.startingUp.text)
    property bool isReady: firstReport.hasCome && Status.report(status, mainwindow.brand()).ready
    property int status: -99
    property bool settingsVisible: false
    property bool isAutoStart: true
    property bool isKeepACpuRunning: false
    property bool pauseCalib: false

    signal windowClosing()

    // Warns of a screen that is not 16:9: once, and not after a calibration in this run.
    function checkAspectRatio() {
        var ratio = display.width / display.height;
        console.log("aspect ratio changed to: " + ratio
                    + " (" + display.width + "x" + display.height + ")");
        if (Math.abs(ratio - 16 / 9) < display.tolerance)
            return;
        console.log("Ratio is not 16:9, it is " + ratio + " show warning, if not done so already!");
        if (aspectRatioWarningShown || mainwindow.aspectRatioWarningShown())
            return;
        aspectRatioWarningShown = true;
        aspectRatioWarning.show();
        mainwindow.setAspectRatioWarningShown(true);
    }

    function show() {
        mainRect.visible = true;
    }

    function hide() {
        mainRect.visible = false;
    }

    function showPopUp() {
        hide();
        acPopUp.open();
    }

    function hidePopUp() {
        acPopUp.close();
        show();
    }

    function showFreqPopup() {
        freqWarning.show();
    }

    function disableAcPopUp() {
        acPopUp.isDisabled = true;
    }

    function textOf(source) {
        return qsTranslate("status", source).replace("%1", mainwindow.appName());
    }

    function tell(report) {
        statusText = textOf(report.text);
        statusLine.glyph = report.glyph;
        statusLine.tone = report.tone;
    }

    // Called for every report, also for one that equals the last. What is written before the
    // view is complete is no report.
    onStatusChanged: {
        if (!finishedLoading)
            return;
        firstReport.hasCome = true;
        isLoading = status === Status.calibrating;
        if (!isLoading)
            tell(Status.report(status, mainwindow.brand()));
    }
    onButtonsDisabledChanged: console.log("buttons disabled: " + buttonsDisabled)
    onFinishedLoadingChanged: {
        mainScope.forceActiveFocus();
        updateWindowTimer.restart();
    }
    onLogicalPixelDensityChanged: updateWindowTimer.restart()

    width: baseWidth * factor
    height: baseHeight * factor
    color: Theme.surface
    // Everything below is laid out in the base size and scaled as a whole.
    transform: Scale { origin.x: 0; origin.y: 0; xScale: root.factor; yScale: root.factor }

    // A change of the density comes in several steps: the window is told when they are over.
    Timer {
        id: updateWindowTimer

        interval: 500
        onTriggered: mainwindow.adaptWindowSize(root.width, root.height, root.factor)
    }

    FontLoader {
        id: fontAwesome

        source: "qrc:///fontawesome-webfont.ttf"
    }

    // Of the engine. Until then the buttons can be used: a command waits for it.
    QtObject {
        id: firstReport

        property bool hasCome: false
    }

    QtObject {
        id: display

        property real tolerance: 0.01 // 1360x768 and 1366x768 count as 16:9
        property int width: Screen.width
        property int height: Screen.height
    }

    // Of a loading that a button began, the tool's 30 s and as much again: an engine that says
    // nothing must not leave the view loading for good. A calibration that the engine has reported
    // takes as long as it takes.
    Timer {
        id: loadingLimit

        interval: 60000
        running: root.isLoading && root.status !== Status.calibrating
        onTriggered: {
            root.isLoading = false;
            root.tell(Status.lastActionFailed);
        }
    }

    LayerStack {
        id: layers

        ground: mainScope
    }

    AdvicePopUp {
        id: acPopUp

        property bool isDisabled: false

        function leave() {
            console.log("checked: " + dntShowMsg.isToggled);
            if (dntShowMsg.isToggled) {
                isDisabled = true;
                mainwindow.setAcPopUpDisabled();
            }
            root.hidePopUp();
        }

        width: root.baseWidth
        height: root.baseHeight
        focus: true
        stack: layers
        first: manualBtn2

        onEscaped: leave()

        choice: Checkbox {
            id: dntShowMsg

            anchors.verticalCenter: parent.verticalCenter
            autoToggle: true
            isToggled: true
            text: qsTr("<b><font color=\"white\" family= \"Poppins\">Don't show this message again.</font></b>")
            KeyNavigation.tab: cancelBtn
            KeyNavigation.backtab: manualBtn2
        }

        CSelectionButton {
            id: cancelBtn

            isDisabled: false
            showDirection: false
            text: qsTr("Cancel")
            KeyNavigation.tab: manualBtn2
            onClicked: acPopUp.leave()
        }

        CButton {
            id: manualBtn2

            btnText: qsTr("    Continue    ")
            visible: acPopUp.isOpen
            nextTab: dntShowMsg
            prevTab: cancelBtn
            onSubmit: {
                acPopUp.leave();
                mainwindow.startAutoCalibration();
            }
        }
    }

    Rectangle {
        id: mainRect

        width: root.baseWidth
        height: root.baseHeight
        color: "transparent"
        visible: true
        focus: true
        enabled: !layers.top || layers.top.parent === mainRect

        Keys.onPressed: {
            if (event.key === Qt.Key_F && event.modifiers === Qt.ControlModifier) {
                event.accepted = true;
                mainwindow.openLogWindow();
            }
        }

        Rectangle {
            id: mainView

            function show() {
                anchors.leftMargin = 0;
            }

            // To the left, as far as a panel comes in from the right.
            function hide() {
                anchors.leftMargin = -width;
            }

            anchors { top: parent.top; bottom: parent.bottom; left: parent.left }
            width: parent.width
            color: "transparent"
            enabled: !layers.top
            visible: anchors.leftMargin > -width

            Behavior on anchors.leftMargin {
                NumberAnimation { duration: 200; easing.type: Easing.InOutCubic }
            }

            FocusScope {
                id: mainScope

                anchors.fill: parent
                focus: true
                KeyNavigation.tab: manualBtn
                // It has the keyboard until the first Tab.
                Keys.onShortcutOverride: {
                    Keyboard.isUsed = true;
                    event.accepted = false;
                }

                VersionLabel {}

                Column {
                    anchors.centerIn: parent
                    spacing: 25

                    StatusLine {
                        id: statusLine

                        width: mainView.width
                        glyph: Status.startingUp.glyph

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
                            prevTab: settingsBtn
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
                            nextTab: inputBtn
                            prevTab: calibrateTouchBtn
                            onSubmit: {
                                if (acPopUp.isDisabled)
                                    mainwindow.startAutoCalibration();
                                else
                                    root.showPopUp();
                            }
                        }
                    }

                    Row {
                        anchors.horizontalCenter: parent.horizontalCenter
                        spacing: 20

                        CSelectionButton {
                            id: inputBtn

                            textIcon: root.isTouch ? "\uf25a" : "\uf040"
                            text: root.isTouch ? qsTr("Finger") : qsTr("Stylus")
                            isVisible: !mainwindow.stylusOnly()
                            KeyNavigation.tab: settingsBtn
                            KeyNavigation.backtab: autoBtn
                            onClicked: inputSelection.show()
                        }

                        CSelectionButton {
                            id: settingsBtn

                            isDisabled: false
                            textIcon: "\uf013"
                            text: qsTr("Settings")
                            KeyNavigation.tab: manualBtn
                            KeyNavigation.backtab: inputBtn
                            onClicked: settingsView.show()
                        }
                    }
                }
            }
        }

        InputSelection {
            id: inputSelection

            stack: layers
            onIsOpenChanged: isOpen ? mainView.hide() : mainView.show()
        }

        SettingsView {
            id: settingsView

            stack: layers
            onIsOpenChanged: {
                root.settingsVisible = isOpen;
                isOpen ? mainView.hide() : mainView.show();
            }
        }
    }

    AspectRatioWarningView {
        id: aspectRatioWarning

        width: root.baseWidth
        height: root.baseHeight
        stack: layers
    }

    FreqWarning {
        id: freqWarning

        width: root.baseWidth
        height: root.baseHeight
        stack: layers
    }
}
