import QtQuick 2.15
import "theme.js" as Theme

// Shows where the keyboard is: a line around the Pressable whose child it is.
Plate {
    visible: parent.isMarked
    color: "transparent"
    line: 2
    border.color: Theme.outline
}
