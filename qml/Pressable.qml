import QtQuick 2.15
import QtQuick.Window 2.15
import "keyboard.js" as Keyboard
import "theme.js" as Theme

// What all controls have in common: what presses them and when, what a screen reader is told, how
// they look while they cannot be used, and the mark of the keyboard. A control's file holds what it
// looks like; it binds "isBlocked", puts a PressArea over itself and does its work on activated().
Rectangle {
    id: pressable

    property bool isBlocked: false
    property int ringReach: 3 // px of the mark beyond the control
    property bool isMarked: false // where the keyboard is, once a key was pressed

    signal activated()

    // Does nothing where the control cannot be pressed. A screen reader, and a key that still goes
    // to what was hidden, ask also those that nobody sees or that a dialog covers.
    function click() {
        if (visible && enabled && !isBlocked)
            activated();
    }

    // To be called when something that lies over the control was pressed by mouse or finger.
    function forgetKeyboard() {
        Keyboard.isUsed = false;
        var focused = Window.activeFocusItem;
        if (focused && focused.isMarked)
            focused.isMarked = false;
    }

    color: "transparent"
    opacity: isBlocked ? Theme.disabledOpacity : 1.0
    activeFocusOnTab: true

    // Qt has no accessible state for it.
    Accessible.description: isBlocked ? qsTranslate("controls", "Not available now.") : ""
    Accessible.focusable: true
    Accessible.onPressAction: click()

    Keys.onShortcutOverride: {
        Keyboard.isUsed = true;
        isMarked = true;
        event.accepted = false;
    }
    // A key that is held presses once.
    Keys.onPressed: {
        if (Keyboard.presses(event)) {
            event.accepted = true;
            if (!event.isAutoRepeat)
                click();
        }
    }
    onActiveFocusChanged: isMarked = activeFocus && Keyboard.isUsed

    FocusRing {
        reach: pressable.ringReach
        z: 1
    }
}
