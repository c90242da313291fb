import QtQuick 2.15
import QtQuick.Window 2.15
import "theme.js" as Theme

// A growing text that can only be read. The controller calls the functions by name.
Window {
    id: window

    width: 800
    height: 400
    maximumWidth: width
    maximumHeight: height
    minimumWidth: width
    minimumHeight: height
    title: "Log Window"
    visibility: Window.Hidden
    flags: Qt.Tool
    color: Theme.surface

    function appendText(text) {
        // Not an assignment of the whole text, which costs more with every line.
        logText.insert(logText.length, text + "\n");
    }

    function show() {
        visibility = Window.Windowed;
    }

    function hide() {
        visibility = Window.Hidden;
    }

    function isVisible() {
        return visibility !== Window.Hidden;
    }

    Flickable {
        anchors.fill: parent
        contentWidth: logText.contentWidth
        contentHeight: logText.contentHeight

        TextEdit {
            id: logText

            readOnly: true
            width: parent.width
            color: Theme.text
        }
    }
}
