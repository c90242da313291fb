import QtQuick 2.15
import QtQuick.Window 2.15
import "theme.js" as Theme

// A growing text that can only be read. The controller calls the functions by name. Where it shows
// a long log page by page, the keys and the wheel ask it for another page.
Window {
    id: window

    readonly property int rows: Math.floor(height / metrics.lineSpacing) - 1
    property string note // beside the search, until the next key

    signal scrolled(int lines) // up when negative
    signal jumped(bool toTheEnd)
    signal searched(string text)
    signal copied()
    signal saved()

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

    // In place of all that is there, with a part of it marked.
    function showPage(text, begin, length) {
        logText.text = text;
        if (begin >= 0)
            logText.select(begin, begin + length);
    }

    function takeKey(event) {
        var control = event.modifiers & Qt.ControlModifier;
        var step = ({});
        step[Qt.Key_Up] = -1;
        step[Qt.Key_Down] = 1;
        step[Qt.Key_PageUp] = -rows;
        step[Qt.Key_PageDown] = rows;
        note = "";
        event.accepted = true;
        if (step[event.key])
            scrolled(step[event.key]);
        else if (event.key === Qt.Key_Home || event.key === Qt.Key_End)
            jumped(event.key === Qt.Key_End);
        else if (event.key === Qt.Key_F && control)
            searchText.forceActiveFocus();
        else if (event.key === Qt.Key_F3)
            searched(searchText.text);
        else if (event.key === Qt.Key_S && control)
            saved();
        else if (event.key === Qt.Key_C && control && logText.selectedText === "")
            copied();
        else if (event.key === Qt.Key_Escape)
            hide();
        else
            event.accepted = false;
    }

    FontMetrics {
        id: metrics

        font: logText.font
    }

    Flickable {
        anchors.fill: parent
        contentWidth: logText.contentWidth
        contentHeight: logText.contentHeight

        TextEdit {
            id: logText

            readOnly: true
            selectByMouse: true
            selectByKeyboard: true
            focus: true
            width: parent.width
            color: Theme.text
            selectionColor: Theme.hovered
            Accessible.role: Accessible.StaticText
            Accessible.name: text
            Keys.onPressed: window.takeKey(event)
        }
    }

    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.NoButton
        onWheel: window.scrolled(wheel.angleDelta.y > 0 ? -3 : 3)
    }

    Rectangle {
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
        height: metrics.lineSpacing + 4
        color: Theme.raised
        visible: searchText.activeFocus || window.note !== ""

        TextInput {
            id: searchText

            anchors { left: parent.left; leftMargin: 5; verticalCenter: parent.verticalCenter }
            width: parent.width / 2
            clip: true
            color: Theme.text
            selectionColor: Theme.hovered
            onAccepted: window.searched(text)
            Keys.onEscapePressed: logText.forceActiveFocus()
            Keys.onPressed: {
                if (event.key === Qt.Key_F3)
                    window.searched(text);
            }
        }

        Text {
            anchors { right: parent.right; rightMargin: 5; verticalCenter: parent.verticalCenter }
            text: window.note
            color: Theme.text
        }
    }
}
