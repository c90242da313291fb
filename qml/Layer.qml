import QtQuick 2.15

// What covers the main view while it is open. It lies above all that was open before; as long as it
// is the uppermost of its "stack", it alone can be pressed and has the keyboard, which begins at
// the control "first". What is below it does not feel the mouse. Escape tells the layer to close.
Rectangle {
    id: layer

    property LayerStack stack: null
    property Item first: null
    property bool isOpen: false
    readonly property Item focusScope: scope
    default property alias body: scope.data

    signal escaped()

    function open() {
        if (isOpen)
            return;
        isOpen = true;
        if (stack)
            stack.put(layer);
        first.forceActiveFocus();
    }

    function close() {
        if (!isOpen)
            return;
        isOpen = false;
        if (stack)
            stack.take(layer);
    }

    enabled: !stack || stack.top === layer
    visible: isOpen
    z: stack ? stack.layers.indexOf(layer) + 1 : 0

    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
        hoverEnabled: true
    }

    FocusScope {
        id: scope

        anchors.fill: parent
        // A key that is held closes one layer, and not the next one, too.
        Keys.onEscapePressed: {
            if (!event.isAutoRepeat)
                layer.escaped();
        }
    }
}
