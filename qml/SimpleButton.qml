import QtQuick 2.15
import "colors.js" as Colors
import "theme.js" as Theme

// A small framed button. With "isToggle" each click switches "toggled"; the button looks pressed
// then and shows "altButtonText", if there is one. previewPress() comes before press().
Pressable {
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

    isBlocked: !activeButton
    width: innerText.width + 20
    height: 30
    radius: 3
    gradient: Gradient {
        GradientStop { position: 0; color: Colors.secondary900 }
        GradientStop { position: 1; color: Theme.hovered }
    }
    border.width: 1
    border.color: Theme.buttonEdge

    Accessible.role: Accessible.Button
    Accessible.name: innerText.text
    Accessible.checkable: isToggle
    Accessible.checked: toggled

    onActivated: {
        if (isToggle)
            toggled = !toggled;
        submit();
    }

    Rectangle {
        id: overlay

        anchors.fill: parent
        radius: 3
        color: Theme.toggled
        visible: root.toggled || mouse.isDown
    }

    Rectangle {
        anchors.fill: parent
        radius: 3
        color: Theme.gloss
        opacity: 0.2
        visible: mouse.isOver && !mouse.isDown
    }

    Label {
        id: innerText

        anchors.centerIn: parent
        color: Theme.text
        font.family: Theme.smallButtonFamily
        font.pixelSize: root.fontSize
        text: root.toggled && root.altButtonText !== "" ? root.altButtonText : root.buttonText
    }

    PressArea {
        id: mouse

        onIsDownChanged: {
            if (isDown) {
                root.previewPress();
                root.press();
            }
        }
    }
}
