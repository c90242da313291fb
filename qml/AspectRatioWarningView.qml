import QtQuick 2.15
import "theme.js" as Theme

// Tells that the screen is not 16:9 and offers what to do about it: at once on the first screen, in
// the settings of the graphics card on the second. Rich text is laid out even where nobody sees it,
// at a price: there is none while this is closed.
Dialog {
    id: root

    function show() {
        if (isOpen)
            return;
        open();
        showFirstScreen();
    }

    function hide() {
        close();
    }

    function showFirstScreen() {
        graphicsSettingsScreen.visible = false;
        firstScreen.visible = true;
        ignoreBtn.forceActiveFocus();
    }

    function showGraphicsSettings() {
        firstScreen.visible = false;
        graphicsSettingsScreen.visible = true;
        backBtn.forceActiveFocus();
    }

    title: qsTr("Aspect Ratio")
    first: ignoreBtn

    Accessible.name: firstText.plainText

    onEscaped: hide()

    Image {
        id: icon

        anchors { left: parent.left; leftMargin: 20; top: parent.top; topMargin: root.contentTop }
        width: 40
        height: 40
        source: root.isOpen ? "qrc:///qml/warningIcon.png" : ""
    }

    Item {
        id: firstScreen

        anchors { fill: parent; leftMargin: 80; rightMargin: 20; topMargin: root.contentTop; bottomMargin: root.contentBottom }

        Label {
            id: firstText

            readonly property string plainText: text.replace(/<[^>]*>/g, " ").replace(/\s+/g, " ")

            anchors { left: parent.left; right: parent.right; top: parent.top; bottom: btnRow.top; bottomMargin: 10 }
            wrapMode: Text.WordWrap
            textFormat: Text.RichText
            color: Theme.softText
            font.family: fontfamily
            font.pixelSize: 17
            text: root.isOpen ? qsTr("This Screen is not set to a widescreen (16:9) resolution.<br><br>                   If the touch accuracy is not satisfactory, <b>choose one of the following options or ignore:</b>")
                              : ""

            Accessible.role: Accessible.StaticText
            Accessible.name: plainText
        }

        Row {
            id: btnRow

            anchors { bottom: parent.bottom; right: parent.right }
            spacing: 10

            CButton {
                id: ignoreBtn

                isSmall: true
                isDisabled: false
                btnText: qsTr("Ignore")
                nextTab: offsetBtn
                prevTab: graphicsBtn
                onSubmit: root.hide()
            }

            CButton {
                id: offsetBtn

                isSmall: true
                btnText: qsTr("Correct Offset")
                nextTab: graphicsBtn
                prevTab: ignoreBtn
                onSubmit: {
                    mainwindow.offsetCorrection();
                    root.hide();
                }
            }

            CButton {
                id: graphicsBtn

                isSmall: true
                isDisabled: false
                btnText: qsTr("Change graphics settings")
                nextTab: ignoreBtn
                prevTab: offsetBtn
                onSubmit: root.showGraphicsSettings()
            }
        }
    }

    Item {
        id: graphicsSettingsScreen

        anchors.fill: firstScreen
        visible: false

        Label {
            anchors { left: parent.left; right: parent.right; top: parent.top; bottom: btnRow2.top; bottomMargin: 10 }
            wrapMode: Text.WordWrap
            textFormat: Text.RichText
            color: Theme.softText
            font.family: fontfamily
            font.pixelSize: 15
            text: !root.isOpen ? ""
                : qsTr("Apply one of the following changes to achieve better touch accuracy:")
                  + "<ol type=\"A\"><li>"
                  + qsTr("Change your graphics scaling to \"Scale Fullscreen\" or \"Maintain Display Scaling\"                      inside the Graphics Control Panel of you graphics card.")
                  + "</li><li>"
                  + qsTr("Set a 16:9 resolution such as 1360x768, 1600x900 or 1920x1080.")
                  + "</li></ol>"

            Accessible.role: Accessible.StaticText
            Accessible.name: text.replace(/<[^>]*>/g, " ").replace(/\s+/g, " ")
        }

        Row {
            id: btnRow2

            anchors { bottom: parent.bottom; right: parent.right }
            spacing: 10

            CButton {
                id: backBtn

                isSmall: true
                isDisabled: false
                icon: "\uf053"
                btnText: qsTr("Go back")
                nextTab: closeBtn
                prevTab: closeBtn
                onSubmit: root.showFirstScreen()
            }

            CButton {
                id: closeBtn

                isSmall: true
                isDisabled: false
                icon: "\uf00d"
                btnText: qsTr("Close this dialog")
                nextTab: backBtn
                prevTab: backBtn
                onSubmit: root.hide()
            }
        }
    }
}
