import QtQuick 2.15
import "theme.js" as Theme

// The program's version, at the top right of its parent.
Label {
    anchors { top: parent.top; right: parent.right; margins: 10 }
    color: Theme.text
    font.family: Theme.messageFamily
    font.pixelSize: 12
    text: versionText

    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
