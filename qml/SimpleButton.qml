import QtQuick 2.15
import "colors.js" as Colors
import "keyboard.js" as Keyboard
import "theme.js" as Theme

// A small framed button. With "isToggle" each click switches "toggled"; the button looks pressed
// then and shows "altButtonText", if there is one. previewPress() comes before press().
Rectangle {
    id: root

    property bool activeButton: true
    property string buttonText
    property string altButtonText
    property bool toggled: false
    property int fontSize: 12
    property bool isToggle: false

    signal submit()
    signal press()
    signal previewPress()

    function click() {
        if (!activeButton)
            return;
        if (isToggle)
            toggled = !toggled;
        submit();
    }

    width: innerText.width + 20
    height: 30
    radius: 3
    gradient: Gradient {
        GradientStop { position: 0; color: Colors.secondary900 }
        GradientStop { position: 1; color: Theme.hovered }
    }
    border.width: 1
    border.color: mouse.containsMouse && root.activeButton ? Theme.outline : Theme.buttonEdge
    opacity: activeButton ? 1.0 : Theme.disabledOpacity
    activeFocusOnTab: true

    Accessible.role: Accessible.Button
    Accessible.name: innerText.text
    Accessible.checkable: isToggle
    Accessible.checked: toggled
    Accessible.focusable: true
    Accessible.onPressAction: click()

    Keys.onPressed: {
        if (Keyboard.presses(event)) {
            event.accepted = true;
            click();
        }
    }

    Rectangle {
        id: overlay

        anchors.fill: parent
        radius: 3
        color: Theme.toggled
        visible: root.toggled || (mouse.pressed && root.activeButton)
    }

    Text {
        id: innerText

        anchors.centerIn: parent
        color: Theme.text
        font.family: Theme.smallButtonFamily
        font.pixelSize: root.fontSize
        text: root.toggled && root.altButtonText !== "" ? root.altButtonText : root.buttonText
    }

    MouseArea {
        id: mouse

        anchors.fill: parent
        hoverEnabled: true
        onPressed: {
            if (root.activeButton) {
                root.previewPress();
                root.press();
            }
        }
        onClicked: root.click()
    }

    FocusRing {}
}
