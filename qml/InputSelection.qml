import QtQuick 2.15

// The panel that chooses between finger and pen. The engine is told by the numbers of its actions:
// a name of the enumeration is unknown here.
SelectionView {
    id: inputPanel

    readonly property int fingerAction: 10
    readonly property int stylusAction: 9

    function choose(finger, action) {
        isTouch = finger;
        sdk.trigger(action);
        hide();
    }

    title: qsTr("Select Input")
    content: Column {
        readonly property Item first: fingerRadio
        readonly property Item last: stylusRadio

        spacing: 10

        CRadioButton {
            id: fingerRadio

            canToggle: false
            isToggled: isTouch
            text: qsTr("Finger")
            KeyNavigation.tab: stylusRadio
            onClicked: inputPanel.choose(true, inputPanel.fingerAction)
        }

        CRadioButton {
            id: stylusRadio

            canToggle: false
            isToggled: !isTouch
            text: qsTr("Stylus")
            onClicked: inputPanel.choose(false, inputPanel.stylusAction)
        }
    }
}
