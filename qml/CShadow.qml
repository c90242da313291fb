import QtQuick 2.15

// The shadow of another item, which must be its sibling or parent. It sinks while "isPressed".
// The margins reach beyond the item by the picture's border of 12 px less the 6 px below the item.
BorderImage {
    property var itemId
    property bool isPressed: false
    property int bw: 12
    property int amt: -6
    property int am: isPressed ? -3 : -6
    property int amb: am

    Behavior on am {
        NumberAnimation { duration: 150 }
    }

    anchors {
        top: itemId ? itemId.top : undefined
        left: itemId ? itemId.left : undefined
        right: itemId ? itemId.right : undefined
        bottom: itemId ? itemId.bottom : undefined
        topMargin: amt
        leftMargin: am
        rightMargin: am
        bottomMargin: amb
    }
    border { left: bw; top: bw; right: bw; bottom: bw }
    smooth: true
    source: "qrc:///qml/shadow.png"
}
