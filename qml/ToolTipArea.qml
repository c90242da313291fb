import QtQuick 2.15
import "theme.js" as Theme

// A short explanation below the item whose child it is.
Item {
    property string toolTipTxt
    property bool showToolTip: false

    anchors.fill: parent

    Rectangle {
        id: toolTipRectangle

        anchors.top: parent.bottom
        anchors.topMargin: 5
        anchors.horizontalCenter: parent.horizontalCenter
        width: toolTipText.width + 10
        height: toolTipText.height + 10
        z: 200
        color: Theme.tooltip
        border.color: Theme.tooltipEdge
        visible: showToolTip

        Label {
            id: toolTipText

            anchors.centerIn: parent
            color: Theme.tooltipText
            font.family: fontfamily
            font.pixelSize: 13
            text: toolTipTxt
        }
    }
}
