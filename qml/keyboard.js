.pragma library

// Whether a control can be pressed at all. A screen reader, and a key that still goes to what was
// hidden, ask also those that nobody sees or that a dialog covers.
function isWithinReach(item) {
    return item.visible && item.enabled;
}

// Whether a key presses the control that has the focus. A key that is held presses once.
function presses(event) {
    return !event.isAutoRepeat
        && (event.key === Qt.Key_Return || event.key === Qt.Key_Enter || event.key === Qt.Key_Space);
}
