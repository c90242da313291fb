import QtQuick 2.15
import "theme.js" as Theme

// A mark with a label. With "autoToggle" a click switches the mark itself; otherwise the mark shows
// what "isToggled" is bound to, and the click only emits submit().
Pressable {
    id: checkbox

    property bool isToggled: true
    property bool autoToggle: false
    property string text: "high"
    property string checkMark: "✔"
    property string toolTipText
    // Where something else lies over the check box and has the mouse, it tells so here.
    property bool isHovered: mouse.isOver
    property bool isPressed: mouse.isDown

    signal submit()

    height: 35
    width: Math.ceil(box.width) + 20

    Accessible.role: Accessible.CheckBox
    Accessible.name: text.replace(/<[^>]*>/g, "")
    Accessible.checkable: true
    Accessible.checked: isToggled
    Accessible.onToggleAction: click()

    onActivated: {
        if (autoToggle)
            isToggled = !isToggled;
        submit();
    }

    ToolTipArea {
        id: toolTip

        showToolTip: checkbox.toolTipText !== "" && checkbox.isHovered
        toolTipTxt: checkbox.toolTipText
    }

    Plate {
        id: whiteHover

        color: Theme.gloss
        opacity: checkbox.isPressed ? 0.1 : 0.2
        visible: checkbox.isHovered
    }

    Row {
        id: box

        anchors.centerIn: parent
        spacing: 5

        Label {
            anchors.verticalCenter: parent.verticalCenter
            width: 20
            height: 20
            horizontalAlignment: Text.AlignHCenter
            verticalAlignment: Text.AlignVCenter
            color: Theme.text
            font.pixelSize: 16
            text: checkbox.isToggled ? checkbox.checkMark : ""

            Plate {
                rounding: 3
                color: "transparent"
                line: 2
                border.color: Theme.outline
            }
        }

        Label {
            anchors.verticalCenter: parent.verticalCenter
            width: Math.ceil(implicitWidth) // so that the marks of two boxes line up
            color: Theme.text
            font.family: fontfamily
            font.pixelSize: 16
            text: checkbox.text
        }
    }

    PressArea {
        id: mouse
    }
}
