.pragma library

// Whether the user has turned to the keyboard: only then is it shown where it is.
var isUsed = false;

// Whether a key presses the control that has the focus.
function presses(event) {
    return event.key === Qt.Key_Return || event.key === Qt.Key_Enter || event.key === Qt.Key_Space;
}
