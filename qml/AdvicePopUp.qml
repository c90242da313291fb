import QtQuick 2.15
import "theme.js" as Theme

// The advice before an auto calibration. Its user puts a check box into "choice" and declares the
// buttons, which stand in a row below it.
Dialog {
    id: popUp

    property alias choice: choiceRow.data
    default property alias buttons: buttonRow.data

    title: qsTr("Auto Calibration")
    color: "transparent"

    Accessible.name: advice.text

    VersionLabel {}

    Column {
        anchors { top: parent.top; topMargin: 30; right: parent.right; rightMargin: 10 }
        width: parent.width - 20
        spacing: 25

        Column {
            width: parent.width
            spacing: 75

            Rectangle {
                width: parent.width
                height: 40
                color: "transparent"

                Image {
                    id: warningIcon

                    anchors { left: parent.left; leftMargin: 10 }
                    width: 40
                    height: 40
                    source: popUp.isOpen ? "qrc:///qml/warningIcon.png" : ""
                }

                Label {
                    id: advice

                    anchors { left: warningIcon.right; leftMargin: 20; right: parent.right; rightMargin: 20 }
                    color: Theme.text
                    font.family: Theme.adviceFamily
                    font.bold: true
                    font.pixelSize: 14
                    lineHeight: 1.2
                    wrapMode: Text.WordWrap
                    text: qsTr("Auto calibration depends on the type of your screen and ambient lighting conditions. If you do not see accurate performance post auto calibration, perform a manual calibration again which is robust for all scenarios.")

                    Accessible.role: Accessible.StaticText
                    Accessible.name: text
                }
            }

            Row {
                id: choiceRow

                anchors.horizontalCenter: parent.horizontalCenter
                anchors.horizontalCenterOffset: 80
                height: 20
            }
        }

        Row {
            id: buttonRow

            anchors.horizontalCenter: parent.horizontalCenter
            anchors.horizontalCenterOffset: 60
            height: 40
            spacing: 100
        }
    }
}
