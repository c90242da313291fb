import QtQuick 2.15
import QtQuick.Window 2.15
import "theme.js" as Theme

// Tells that the display's refresh rate is too low to write on, and shows what that looks like. The
// animations are in memory only while it is open, one picture of each at a time.
Dialog {
    id: root

    readonly property bool isPlaying: visible && Window.visibility !== Window.Hidden

    function show() {
        open();
        console.log("show freq warning popup width: " + popup.width + " ht: " + popup.height);
    }

    title: qsTr("Refresh Rate")
    first: okControl

    Accessible.name: message.text

    onEscaped: close()

    Rectangle {
        id: popup

        anchors { fill: parent; topMargin: 20; bottomMargin: root.contentBottom; leftMargin: 20; rightMargin: 20 }
        color: "transparent"

        Row {
            id: rates

            anchors { top: parent.top; horizontalCenter: parent.horizontalCenter }
            spacing: 25

            Column {
                spacing: 5

                AnimatedImage {
                    id: thirtyHz

                    anchors.horizontalCenter: parent.horizontalCenter
                    height: 80
                    cache: false
                    fillMode: Image.PreserveAspectFit
                    playing: root.isPlaying
                    source: root.isOpen ? "qrc:///qml/30hz.gif" : ""
                }

                Label {
                    anchors.horizontalCenter: parent.horizontalCenter
                    horizontalAlignment: Text.AlignHCenter
                    color: Theme.text
                    font.family: Theme.messageFamily
                    font.pixelSize: 14
                    text: qsTr("Slow writing\nspeed at 30Hz")

                    Accessible.role: Accessible.StaticText
                    Accessible.name: text
                }
            }

            Column {
                spacing: 5

                AnimatedImage {
                    id: sixtyHz

                    anchors.horizontalCenter: parent.horizontalCenter
                    height: 80
                    cache: false
                    fillMode: Image.PreserveAspectFit
                    playing: root.isPlaying
                    source: root.isOpen ? "qrc:///qml/60hz.gif" : ""
                }

                Label {
                    anchors.horizontalCenter: parent.horizontalCenter
                    horizontalAlignment: Text.AlignHCenter
                    color: Theme.text
                    font.family: Theme.messageFamily
                    font.pixelSize: 14
                    text: qsTr("Fast writing\nspeed at 60Hz")

                    Accessible.role: Accessible.StaticText
                    Accessible.name: text
                }
            }
        }

        Row {
            id: notice

            anchors { bottom: parent.bottom; left: parent.left }
            spacing: 20

            Image {
                id: name

                anchors.verticalCenter: parent.verticalCenter
                width: 40
                height: 40
                source: root.isOpen ? "qrc:///qml/alert.png" : ""
            }

            Label {
                id: message

                anchors.verticalCenter: parent.verticalCenter
                color: Theme.text
                font.family: Theme.messageFamily
                font.pixelSize: 14
                text: qsTr("To get real-time writing experience, please make\nsure that your external display is running\nat 60Hz refresh rate or more.")

                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
        }

        Image {
            id: okBtn

            anchors { bottom: parent.bottom; right: parent.right }
            width: 80
            height: 35
            source: root.isOpen ? "qrc:///qml/okbtn.png" : ""

            CButton {
                id: okControl

                anchors.fill: parent
                isDisabled: false
                btnText: qsTr("OK")
                nextTab: okControl
                prevTab: okControl
                onSubmit: {
                    console.log("Settings Button clicked");
                    root.close();
                }
            }
        }
    }
}
