import QtQuick 2.15
import "theme.js" as Theme

// Shows where the keyboard is: a line around the Pressable whose child it is.
Rectangle {
    anchors.fill: parent
    anchors.margins: -3
    visible: parent.isMarked
    color: "transparent"
    radius: 5
    border.width: 2
    border.color: Theme.outline
}
