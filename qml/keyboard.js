.pragma library

// Whether a key presses the control that has the focus. A key that is held presses once.
function presses(event) {
    return !event.isAutoRepeat
        && (event.key === Qt.Key_Return || event.key === Qt.Key_Enter || event.key === Qt.Key_Space);
}
