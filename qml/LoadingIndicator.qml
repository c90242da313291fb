import QtQuick 2.15
import QtQuick.Window 2.15
import "theme.js" as Theme

// A turning glyph and a text, shown while the main view is loading.
Rectangle {
    id: indicator

    color: "transparent"
    opacity: isLoading ? 1 : 0
    visible: opacity > 0
    width: content.width
    height: content.height

    Behavior on opacity {
        NumberAnimation { duration: 100 }
    }

    Row {
        id: content

        anchors.centerIn: parent
        spacing: 10

        Label {
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.text
            font.family: fontAwesome.name
            font.pixelSize: 24
            text: "\uf110"

            NumberAnimation on rotation {
                from: 0
                to: 360
                duration: 800
                loops: Animation.Infinite
                running: isLoading && indicator.Window.visibility !== Window.Hidden
            }
        }

        Label {
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.text
            font.family: fontfamily
            font.pixelSize: 20
            text: loadingText

            Accessible.role: Accessible.Notification
            Accessible.name: text
        }
    }
}
