import QtQuick 2.15
import QtQuick.Window 2.15

// Puts a layer that opens above its siblings, and the keyboard back to where it was when the layer
// closes.
QtObject {
    property Item previous: null

    // To be called before the layer is shown: what it covers loses the focus then.
    function raise(layer) {
        previous = layer.Window.activeFocusItem;
        var siblings = layer.parent.children;
        for (var i = 0; i < siblings.length; ++i) {
            if (siblings[i] !== layer)
                layer.z = Math.max(layer.z, siblings[i].z + 1);
        }
    }

    function giveBack() {
        // None of the window's items had it if the window was not active.
        (previous || mainRect).forceActiveFocus();
        previous = null;
    }
}
