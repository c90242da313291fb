import QtQuick 2.15
import "colors.js" as Colors
import "theme.js" as Theme

// The main view's status text with a glyph before it, both centred as a pair. "tone" colours the
// glyph: "good", "neutral", "warning" or "failure". Hidden while the view is loading: what its user puts in here takes the place then.
Rectangle {
    property string glyph
    property string tone: "neutral"
    readonly property var colours: ({ good: Colors.secondary500, neutral: Theme.text,
                                      warning: Theme.warning, failure: Theme.failure })

    height: 40
    color: "transparent"

    // As large as the place between version and buttons allows. It ends at the same distance from
    // the buttons, however many lines it has.
    Label {
        id: message

        objectName: "status" // the controller tells screen readers of what it says
        readonly property int below: 4 // px that it may reach below the line
        readonly property real leading: contentHeight / lineCount * (1 - 1 / lineHeight) // of the last line

        anchors.centerIn: parent
        anchors.horizontalCenterOffset: mark.width / 2
        anchors.verticalCenterOffset: below + (parent.height - contentHeight) / 2 + leading
        width: parent.width - 2 * margin - 3 * mark.width
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

        Accessible.role: Accessible.Notification
        Accessible.name: text.replace(/ ?<br> ?/g, " ")
    }

    Label {
        id: mark

        anchors { right: message.left; rightMargin: (message.contentWidth - message.width) / 2; verticalCenter: message.verticalCenter }
        rightPadding: 12
        color: colours[tone]
        font.family: fontAwesome.name
        font.pixelSize: 32
        visible: message.visible
        text: glyph
    }
}
