import QtQuick 2.15

// Which layers are open over the main view, and where the keyboard is: in the uppermost one, always,
// and in "ground" while none is open. Each of them is a focus scope, which remembers the control
// that had the keyboard, also while the window is not active.
QtObject {
    id: stack

    property Item ground
    property var layers: [] // the uppermost last
    readonly property Item top: layers.length > 0 ? layers[layers.length - 1] : null

    function put(layer) {
        layers = layers.concat(layer);
    }

    function take(layer) {
        layers = layers.filter(function(other) { return other !== layer; });
    }

    onTopChanged: (top ? top.focusScope : ground).forceActiveFocus()
}
