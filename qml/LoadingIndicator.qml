import QtQuick 2.15

// A turning glyph and a text, shown while the main view is loading.
Rectangle {
    color: "transparent"
    opacity: isLoading ? 1 : 0
    visible: opacity > 0

    Behavior on opacity {
        NumberAnimation { duration: 100 }
    }

    Row {
        anchors.centerIn: parent
        spacing: 10

        Text {
            anchors.verticalCenter: parent.verticalCenter
            color: "white"
            font.family: fontAwesome.name
            font.pixelSize: 24
            text: "\uf110"

            NumberAnimation on rotation {
                from: 0
                to: 360
                duration: 800
                loops: Animation.Infinite
                running: isLoading
            }
        }

        Text {
            anchors.verticalCenter: parent.verticalCenter
            color: "white"
            font.family: fontfamily
            font.pixelSize: 20
            text: loadingText

            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }
}
