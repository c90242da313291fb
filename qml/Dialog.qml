import QtQuick 2.15
import "theme.js" as Theme

// A layer that tells or asks something: a card with a title line, and room for what is said from
// "contentTop" down and for a row of buttons that ends at "contentBottom".
Layer {
    id: dialog

    property string title
    readonly property int contentTop: 30 // px from the upper edge
    readonly property int contentBottom: 15 // px from the lower edge

    color: Theme.surface

    Accessible.role: Accessible.Dialog

    Plate {
        reach: -5
        color: Theme.raised
    }

    Label {
        anchors { left: parent.left; leftMargin: 20; top: parent.top; topMargin: 9 }
        color: Theme.dimmed
        font.family: fontfamily
        font.pixelSize: 13
        text: dialog.title

        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
}
