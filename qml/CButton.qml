import QtQuick 2.15
import "colors.js" as Colors
import "theme.js" as Theme

// A push button with an optional glyph of the icon font before its label. "nextTab" and "prevTab"
// are where Tab and Shift+Tab lead. Unless told otherwise it follows the main view's
// "buttonsDisabled".
Pressable {
    id: root

    property string btnText
    property bool isDisabled: buttonsDisabled
    property string icon: ""
    property bool isSmall: false
    property var nextTab
    property var prevTab

    signal submit()

    isBlocked: isDisabled
    height: 35
    width: Math.ceil(content.width) + (isSmall ? 20 : 40)

    Accessible.role: Accessible.Button
    Accessible.name: btnText.trim()

    KeyNavigation.tab: nextTab ? nextTab : null
    KeyNavigation.backtab: prevTab ? prevTab : null

    onActivated: submit()

    Plate {
        id: btn

        rounding: 3
        clip: true
        color: mouseArea.isDown ? Theme.pressed
             : mouseArea.isOver ? Theme.hovered
             : Colors.secondary900
    }

    Plate {
        id: overlay

        rounding: 3
        color: Theme.gloss
        opacity: 0.2
        visible: mouseArea.isOver && !mouseArea.isDown
    }

    Row {
        id: content

        anchors.centerIn: parent
        spacing: 8

        Label {
            anchors.baseline: label.baseline
            visible: root.icon !== ""
            color: Theme.text
            font.family: fontAwesome.name
            font.pixelSize: root.isSmall ? 14 : 17
            text: root.icon
        }

        Label {
            id: label

            color: Theme.text
            font.family: fontfamily
            font.pixelSize: root.isSmall ? 14 : 16
            text: root.btnText
        }
    }

    PressArea {
        id: mouseArea
    }
}
