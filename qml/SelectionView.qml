import QtQuick 2.15
import "theme.js" as Theme

// A panel that slides in from the right and covers the main view. Escape and the chevron in its
// title bar close it. "content" is a Component with the panel's body, which is made when the panel
// opens for the first time; its root item has the properties "first" and "last", the controls between
// which Tab leads through it.
Layer {
    id: panel

    property string title
    property alias content: loader.sourceComponent

    function show() {
        open();
    }

    function hide() {
        close();
    }

    anchors {
        top: parent.top
        bottom: parent.bottom
        right: parent.right
        rightMargin: isOpen ? 0 : -width
    }
    width: parent.width
    color: Theme.surface
    visible: isOpen || anchors.rightMargin > -width
    first: backBtn

    onEscaped: hide()
    onIsOpenChanged: loader.active = true

    Behavior on anchors.rightMargin {
        NumberAnimation { duration: 200; easing.type: Easing.InOutCubic }
    }

    Rectangle {
        id: titlebar

        anchors { top: parent.top; left: parent.left; right: parent.right }
        height: 45
        color: Theme.veil

        CSelectionButton {
            id: backBtn

            anchors { left: parent.left; leftMargin: 5; verticalCenter: parent.verticalCenter }
            text: "   "
            isLeft: true
            isDisabled: false
            btnColor2: "transparent"
            Accessible.name: qsTr("Back")
            KeyNavigation.tab: loader.item ? loader.item.first : null
            KeyNavigation.backtab: loader.item ? loader.item.last : null
            onClicked: panel.hide()
        }

        Label {
            anchors { left: backBtn.right; leftMargin: 10; verticalCenter: parent.verticalCenter }
            color: Theme.softText
            font.family: fontfamily
            font.pixelSize: 18
            text: panel.title

            Accessible.role: Accessible.Heading
            Accessible.name: text
        }
    }

    Loader {
        id: loader

        active: false
        // In the middle of what is to be seen below the title bar.
        anchors.centerIn: parent
        anchors.verticalCenterOffset: titlebar.height / 2
    }
}
