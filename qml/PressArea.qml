import QtQuick 2.15

// The mouse on a control, and the finger. "isOver" and "isDown" say what the control should show:
// nothing while it cannot be pressed.
MouseArea {
    id: area

    property Pressable control: parent
    readonly property bool isOver: containsMouse && !control.isBlocked
    readonly property bool isDown: pressed && !control.isBlocked

    anchors.fill: parent
    hoverEnabled: true
    onPressed: control.forgetKeyboard()
    onClicked: control.click()
}
