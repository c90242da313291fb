import QtQuick 2.15
import "colors.js" as Colors
import "theme.js" as Theme

// The main view's status text with a glyph before it, coloured when the engine is ready. Hidden
// while the view is loading: what its user puts in here takes the place then.
Rectangle {
    property string glyph

    height: 40
    color: "transparent"

    // As large as the place between version and buttons allows.
    Text {
        id: message

        anchors.centerIn: parent
        anchors.verticalCenterOffset: lineCount > 1 ? -6 : 0
        width: parent.width - 2 * (margin + mark.width)
        height: 70
        color: Theme.text
        font.family: Theme.messageFamily
        font.pixelSize: 28
        fontSizeMode: Text.Fit
        minimumPixelSize: 16
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        lineHeight: 1.2
        wrapMode: Text.WordWrap
        visible: !isLoading
        text: statusText

        Accessible.role: Accessible.StaticText
        Accessible.name: text.replace(/ ?<br> ?/g, " ")
    }

    Text {
        id: mark

        anchors { right: message.left; rightMargin: (message.contentWidth - message.width) / 2; verticalCenter: message.verticalCenter }
        width: 45
        rightPadding: 12
        horizontalAlignment: Text.AlignRight
        color: isReady ? Colors.secondary500 : Theme.text
        font.family: fontAwesome.name
        font.pixelSize: 32
        visible: message.visible
        text: glyph
    }
}
