import QtQuick 2.15
import "colors.js" as Colors

// A push button with an optional glyph of the icon font before its label.
Rectangle {
    id: root

    property string btnText
    property bool isDisabled: buttonsDisabled
    property string icon: ""
    property bool isSmall: false
    property var nextTab
    property var prevTab

    signal submit()

    function click() {
        if (!isDisabled)
            submit();
    }

    color: "transparent"
    height: 35
    width: content.width + (isSmall ? 20 : 32)
    opacity: isDisabled ? 0.45 : 1.0
    activeFocusOnTab: true

    Accessible.role: Accessible.Button
    Accessible.name: btnText
    Accessible.focusable: true
    Accessible.onPressAction: root.click()

    KeyNavigation.tab: nextTab ? nextTab : null
    KeyNavigation.backtab: prevTab ? prevTab : null
    Keys.onReturnPressed: root.click()
    Keys.onEnterPressed: root.click()
    Keys.onSpacePressed: root.click()

    Rectangle {
        id: btn

        anchors.fill: parent
        radius: 3
        clip: true
        color: mouseArea.pressed && !root.isDisabled ? Colors.secondary500 : Colors.secondary900
        border.width: root.activeFocus ? 2 : 0
        border.color: "white"

        Row {
            id: content

            anchors.centerIn: parent
            spacing: 8

            Text {
                anchors.verticalCenter: parent.verticalCenter
                visible: root.icon !== ""
                color: "white"
                font.family: fontAwesome.name
                font.pixelSize: 16
                text: root.icon
            }

            Text {
                anchors.verticalCenter: parent.verticalCenter
                color: "white"
                font.family: fontfamily
                font.pixelSize: root.isSmall ? 13 : 15
                text: root.btnText
            }
        }

        Rectangle {
            id: overlay

            anchors.fill: parent
            color: "white"
            opacity: 0.2
            visible: mouseArea.containsMouse && !root.isDisabled
        }

        MouseArea {
            id: mouseArea

            anchors.fill: parent
            hoverEnabled: true
            onClicked: root.click()
        }
    }
}
