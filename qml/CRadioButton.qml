import QtQuick 2.15
import "theme.js" as Theme

// One of several choices. A click switches it on, unless "canToggle" is false: its user decides
// then what the click does to "isToggled".
Pressable {
    id: root

    property bool isToggled: false
    property bool isDisabled: buttonsDisabled
    property bool canToggle: true
    property alias text: btnText.text

    signal clicked()

    isBlocked: isDisabled
    ringReach: 5
    color: Theme.glass
    height: 35
    width: Math.ceil(buttonContent.width) + 20

    Accessible.role: Accessible.RadioButton
    Accessible.name: text
    Accessible.checkable: true
    Accessible.checked: isToggled
    Accessible.onToggleAction: click()

    onActivated: {
        if (canToggle)
            isToggled = true;
        clicked();
    }

    Plate {
        id: whiteHover

        reach: 3
        rounding: 3
        color: Theme.gloss
        opacity: buttonMouse.isDown ? 0.1 : 0.2
        visible: buttonMouse.isOver
    }

    Row {
        id: buttonContent

        anchors.verticalCenter: parent.verticalCenter
        x: 10
        spacing: 5

        Label {
            anchors.baseline: btnText.baseline
            width: 20
            color: Theme.text
            font.family: fontAwesome.name
            font.pixelSize: 22
            text: root.isToggled ? "\uf192" : "\uf10c"
        }

        Label {
            id: btnText

            color: Theme.text
            font.family: fontfamily
            font.pixelSize: 18
        }
    }

    PressArea {
        id: buttonMouse
    }
}
