import QtQuick 2.15
import "colors.js" as Colors
import "keyboard.js" as Keyboard
import "theme.js" as Theme

// A push button with an optional glyph of the icon font before its label. "nextTab" and "prevTab"
// are where Tab and Shift+Tab lead. Unless told otherwise it follows the main view's
// "buttonsDisabled".
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
        if (Keyboard.isWithinReach(root) && !isDisabled)
            submit();
    }

    color: "transparent"
    height: 35
    width: Math.ceil(content.width) + (isSmall ? 20 : 40)
    opacity: isDisabled ? Theme.disabledOpacity : 1.0
    activeFocusOnTab: true

    Accessible.role: Accessible.Button
    Accessible.name: btnText.trim()
    // Qt has no accessible state for it.
    Accessible.description: isDisabled ? qsTranslate("controls", "Not available now.") : ""
    Accessible.focusable: true
    Accessible.onPressAction: click()

    KeyNavigation.tab: nextTab ? nextTab : null
    KeyNavigation.backtab: prevTab ? prevTab : null
    Keys.onPressed: {
        if (Keyboard.presses(event)) {
            event.accepted = true;
            click();
        }
    }

    Rectangle {
        id: btn

        anchors.fill: parent
        radius: 3
        clip: true
        color: root.isDisabled ? Colors.primary500
             : mouseArea.pressed ? Theme.pressed
             : mouseArea.containsMouse ? Theme.hovered
             : Colors.secondary900
        border.width: overlay.visible ? 1 : 0
        border.color: Theme.outline

        Rectangle {
            id: overlay

            anchors.fill: parent
            radius: btn.radius
            color: Theme.gloss
            opacity: 0.2
            visible: mouseArea.containsMouse && !mouseArea.pressed && !root.isDisabled
        }

        Row {
            id: content

            anchors.centerIn: parent
            spacing: 8

            Text {
                anchors.baseline: label.baseline
                visible: root.icon !== ""
                color: Theme.text
                font.family: fontAwesome.name
                font.pixelSize: root.isSmall ? 14 : 17
                text: root.icon
            }

            Text {
                id: label

                color: Theme.text
                font.family: fontfamily
                font.pixelSize: root.isSmall ? 14 : 16
                text: root.btnText
            }
        }

        MouseArea {
            id: mouseArea

            anchors.fill: parent
            hoverEnabled: true
            onClicked: root.click()
        }
    }

    FocusRing {}
}
