import QtQuick 2.15
import "keyboard.js" as Keyboard
import "theme.js" as Theme

// One of several choices. A click switches it on, unless "canToggle" is false: its user decides
// then what the click does to "isToggled".
Rectangle {
    id: root

    property bool isToggled: false
    property bool isDisabled: buttonsDisabled
    property bool canToggle: true
    property alias text: btnText.text

    signal clicked()

    function click() {
        if (isDisabled || !Keyboard.isWithinReach(root))
            return;
        if (canToggle)
            isToggled = true;
        clicked();
    }

    color: Theme.glass
    height: 35
    width: Math.ceil(buttonContent.width) + 20
    opacity: isDisabled ? Theme.disabledOpacity : 1.0
    activeFocusOnTab: true

    Accessible.role: Accessible.RadioButton
    Accessible.name: text
    // Qt has no accessible state for it.
    Accessible.description: isDisabled ? qsTranslate("controls", "Not available now.") : ""
    Accessible.checkable: true
    Accessible.checked: isToggled
    Accessible.focusable: true
    Accessible.onPressAction: click()
    Accessible.onToggleAction: click()

    Keys.onPressed: {
        if (Keyboard.presses(event)) {
            event.accepted = true;
            click();
        }
    }

    Rectangle {
        id: whiteHover

        anchors.fill: parent
        anchors.margins: -3
        radius: 3
        color: Theme.gloss
        opacity: buttonMouse.pressed ? 0.1 : 0.2
        visible: false
    }

    Row {
        id: buttonContent

        anchors.verticalCenter: parent.verticalCenter
        x: 10
        spacing: 5

        Text {
            anchors.baseline: btnText.baseline
            width: 20
            color: Theme.text
            font.family: fontAwesome.name
            font.pixelSize: 22
            text: root.isToggled ? "\uf192" : "\uf10c"
        }

        Text {
            id: btnText

            color: Theme.text
            font.family: fontfamily
            font.pixelSize: 18
        }
    }

    MouseArea {
        id: buttonMouse

        anchors.fill: parent
        hoverEnabled: true
        onEntered: whiteHover.visible = !root.isDisabled
        onExited: whiteHover.visible = false
        // A finger that is lifted leaves no hover behind.
        onReleased: whiteHover.visible = containsMouse && !root.isDisabled
        onClicked: root.click()
    }

    FocusRing {
        anchors.margins: -5
    }
}
