import QtQuick 2.15
import "colors.js" as Colors
import "theme.js" as Theme

// A quiet button that leads somewhere: its chevron points to the right, or to the left where it
// leads back. "btnColor2" is its colour at rest, "btnColor" the present one.
Pressable {
    id: root

    property string text
    property bool isDisabled: buttonsDisabled
    property bool isLeft: false
    property bool showDirection: true
    property color btnColor: buttonMouse.isDown ? Colors.primary500 : btnColor2
    property int fontSize: 16
    property bool isVisible: true
    property string textIcon: ""
    property color btnColor2: Theme.veil

    signal clicked()

    isBlocked: isDisabled
    height: 35
    width: Math.ceil(buttonContent.width) + 30
    visible: isVisible

    Accessible.role: Accessible.Button
    Accessible.name: text.trim()

    onActivated: clicked()

    Plate {
        smooth: true
        color: root.btnColor
    }

    Plate {
        id: whiteHover

        color: Theme.gloss
        opacity: 0.2
        visible: buttonMouse.isOver && !buttonMouse.isDown
    }

    Row {
        id: buttonContent

        anchors.centerIn: parent
        spacing: 5

        Label {
            id: iconLeft

            anchors.verticalCenter: parent.verticalCenter
            anchors.verticalCenterOffset: 2
            visible: root.isLeft && root.showDirection
            color: Theme.text
            font.family: fontAwesome.name
            font.pixelSize: 16
            text: "\uf053"
        }

        Label {
            anchors.baseline: label.baseline
            visible: root.textIcon !== ""
            color: Theme.text
            font.family: fontAwesome.name
            font.pixelSize: root.fontSize
            text: root.textIcon
        }

        Label {
            id: label

            visible: !root.isLeft || !root.showDirection || text.trim() !== ""
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.text
            font.family: fontfamily
            font.pixelSize: root.fontSize
            text: root.text
        }

        Label {
            anchors.verticalCenter: parent.verticalCenter
            anchors.verticalCenterOffset: 2
            visible: !root.isLeft && root.showDirection
            color: Theme.text
            font.family: fontAwesome.name
            font.pixelSize: 16
            text: "\uf054"
        }
    }

    PressArea {
        id: buttonMouse
    }
}
