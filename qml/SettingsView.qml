import QtQuick 2.15
import "theme.js" as Theme

// The panel of the settings. Check boxes show the main view's properties, which the controller
// writes after each click.
SelectionView {
    id: settings

    title: qsTr("Settings")
    content: Column {
        readonly property Item first: isAutoStartBtn
        readonly property Item last: calibCorrection
        // The marks stand at the same edge as the buttons; what shows the hover reaches beyond it.
        readonly property int boxMargin: 10

        spacing: 5

        Checkbox {
            id: isAutoStartBtn

            x: -boxMargin
            text: qsTr("Autostart")
            isToggled: isAutoStart
            KeyNavigation.tab: isKeepACpuRunningBtn
            onSubmit: mainwindow.toggleAutoStart()
        }

        Item {
            x: -boxMargin
            width: isKeepACpuRunningBtn.width
            height: isKeepACpuRunningBtn.height
            z: 1

            Checkbox {
                id: isKeepACpuRunningBtn

                text: qsTr("Optimize USB bandwidth")
                isToggled: isKeepACpuRunning
                isHovered: mouseArea.containsMouse
                isPressed: mouseArea.pressed
                Accessible.description: explanation.text
                KeyNavigation.tab: sensorViewerBtn
                onSubmit: mainwindow.toggleKeepACpuAwake()
            }

            MouseArea {
                id: mouseArea

                anchors.fill: parent
                hoverEnabled: true
                onPressed: isKeepACpuRunningBtn.forgetKeyboard()
                acceptedButtons: Qt.LeftButton | Qt.RightButton
                onClicked: {
                    if (mouse.button === Qt.LeftButton)
                        isKeepACpuRunningBtn.click();
                }
            }

            Image {
                id: tooltip

                // Where nothing can be pressed.
                anchors { left: parent.right; bottom: parent.bottom; bottomMargin: -5 }
                width: 240
                height: 96
                source: "qrc:///qml/tooltip2.png"
                opacity: mouseArea.containsMouse ? 1 : 0
                visible: opacity > 0

                Behavior on opacity {
                    NumberAnimation { duration: 100 }
                }

                Label {
                    id: explanation

                    anchors { fill: parent; topMargin: 8; bottomMargin: 8; leftMargin: 22; rightMargin: 15 }
                    verticalAlignment: Text.AlignVCenter
                    wrapMode: Text.WordWrap
                    color: Theme.text
                    font.family: fontfamily
                    font.pixelSize: 13
                    text: qsTr("Keeps a processor awake so that no picture of the sensor is lost. Uses more power.")
                }
            }
        }

        Row {
            id: sensorViewerBtnRow

            topPadding: 15

            CSelectionButton {
                id: sensorViewerBtn

                showDirection: false
                text: qsTr("Sensor Viewer")
                KeyNavigation.tab: calibCorrection
                onClicked: mainwindow.openSensorViewer()
            }

            CSelectionButton {
                id: sensorViewerBtn2

                activeFocusOnTab: false
                btnColor2: "transparent"
                enabled: false
                showDirection: false
                text: "        "
                Accessible.ignored: true
            }

            CSelectionButton {
                id: calibCorrection

                showDirection: false
                text: qsTr("Correct Offset")
                onClicked: mainwindow.offsetCorrection()
            }
        }
    }
}
