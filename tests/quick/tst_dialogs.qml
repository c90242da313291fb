import QtQuick 2.15
import QtQuick.Window 2.15

// The dialogs and panels, in the main view that they belong to.
ViewTestCase {
    id: testCase

    property var view

    name: "Dialogs"

    function init() {
        language.choose("en_US");
        view = createMain();
        report(view, 0);
        testLog.takeLines();
    }

    function openSettings() {
        mouseClick(control(view, "Settings"));
        return opened("Settings");
    }

    function openInput() {
        mouseClick(control(view, view.isTouch ? "Finger" : "Stylus"));
        return opened("Select Input");
    }

    function panelOf(title) {
        return find(view, function(item) { return item.title === title; });
    }

    function opened(title) {
        var panel = panelOf(title);
        compare(panel.isOpen, true);
        tryCompare(panel.anchors, "rightMargin", 0);
        return panel;
    }

    function closed(panel) {
        compare(panel.isOpen, false);
        tryCompare(panel, "visible", false);
    }

    // It has slid in to where it was.
    function mainViewIsBack() {
        tryVerify(function() { return control(view, "Settings").mapToItem(view, 0, 0).x > 0; });
        tryCompare(mainView().anchors, "leftMargin", 0);
    }

    function mainView() {
        return itemOf("mainView");
    }

    function itemOf(id) {
        return find(view, function(item) { return source.idsOf(item).indexOf(id) >= 0; });
    }

    function focusedText() {
        var item = find(view, function(candidate) { return candidate.activeFocus && candidate.activeFocusOnTab; });
        return item ? item.Accessible.name : "";
    }

    // --- The keyboard -------------------------------------------------------------------------

    // To another program's window, as far as the view can tell.
    function leaveWindow() {
        verify(keyboard.leave(testCase));
        compare(testCase.Window.activeFocusItem, null);
    }

    function comeBack() {
        verify(keyboard.comeBack(testCase));
    }

    function cleanupTestCase() {
        comeBack();
    }

    // What opens over the main view, how, and where the keyboard begins.
    readonly property var openings: [
        { tag: "settings", open: function() { control(view, "Settings").click(); }, first: "Back" },
        { tag: "input", open: function() { control(view, "Finger").click(); }, first: "Back" },
        { tag: "advice", open: function() { control(view, "Auto Calibration").click(); }, first: "Continue" },
        { tag: "ratio", open: function() { warnOfRatio(); }, first: "Ignore" }
    ]

    function test_topHasTheKeyboardAfterTheWindowWasLeft_data() {
        return openings;
    }

    function test_topHasTheKeyboardAfterTheWindowWasLeft(row) {
        row.open();
        tryVerify(function() { return focusedText() === row.first; });
        keyClick(Qt.Key_Tab);
        var chosen = focusedText();
        verify(chosen !== row.first);
        leaveWindow();
        view.showFreqPopup();
        mouseClick(okButton());
        comeBack();
        compare(focusedText(), chosen);
        keyClick(Qt.Key_Tab);
        verify(focusedText() !== chosen && focusedText() !== "");
        keyClick(Qt.Key_Escape);
        tryVerify(function() { return isShown(control(view, "Manual Calibration")); });
        compare(focusedText(), "");
        keyClick(Qt.Key_Tab);
        compare(focusedText(), "Manual Calibration");
    }

    function test_opensWhileTheWindowIsNotActive_data() {
        return openings;
    }

    function test_opensWhileTheWindowIsNotActive(row) {
        var before = control(view, "Touch Calibration");
        before.forceActiveFocus();
        leaveWindow();
        row.open();
        comeBack();
        compare(focusedText(), row.first);
        keyClick(Qt.Key_Escape);
        verify(before.activeFocus);
    }

    function test_topHasTheKeyboardAfterTheWindowWasHidden() {
        openings[0].open();
        view.showFreqPopup();
        var window = testCase.Window.window;
        window.hide();
        window.show();
        comeBack();
        compare(focusedText(), "OK");
        keyClick(Qt.Key_Escape);
        compare(focusedText(), "Back");
    }

    // By mouse or finger no mark; with the first key it shows where the keyboard is.
    function test_markOnlyAfterAKey() {
        var marks = function() {
            return findAll(view, function(item) { return item.isMarked === true; })
                .map(function(item) { return item.Accessible.name; }).join();
        };
        openSettings();
        compare(focusedText(), "Back");
        compare(marks(), "");
        keyClick(Qt.Key_Tab);
        compare(marks(), "Autostart");
        mouseClick(control(panelOf("Settings"), "   "));
        compare(marks(), "");
        closed(panelOf("Settings"));
        mainViewIsBack();
        openSettings();
        compare(marks(), "", "it was opened by the mouse");
        panelOf("Settings").hide();
        closed(panelOf("Settings"));
        keyClick(Qt.Key_Tab);
        compare(marks(), focusedText());
        verify(marks() !== "");
    }

    // Two warnings and what they cover: whichever is left, the keyboard is in what comes to light.
    function test_keyboardFollowsTheOrderOfTheLayers() {
        openings[0].open();
        view.showFreqPopup();
        warnOfRatio();
        compare(focusedText(), "Ignore");
        keyClick(Qt.Key_Escape);
        compare(focusedText(), "OK");
        keyClick(Qt.Key_Escape);
        compare(focusedText(), "Back");
    }

    // A held Escape would else close what lies below, and answer it.
    function test_heldEscapeClosesOneLayer_data() {
        return openings;
    }

    function test_heldEscapeClosesOneLayer(row) {
        row.open();
        view.showFreqPopup();
        mainwindow.calls = [];
        keyPress(Qt.Key_Escape);
        keyboard.repeat(view, Qt.Key_Escape);
        keyboard.repeat(view, Qt.Key_Escape);
        keyRelease(Qt.Key_Escape);
        compare(focusedText(), row.first);
        compare(mainwindow.calls.length, 0);
    }

    // --- Panels -------------------------------------------------------------------------------

    function test_panelSlidesOverTheMainView() {
        var panel = panelOf("Settings");
        var margin = panel.anchors.rightMargin;
        compare(margin, -panel.width);
        compare(panel.visible, false);
        openSettings();
        compare(view.settingsVisible, true);
        tryVerify(function() { return !isShown(find(view, function(item) { return item.btnText === "Manual Calibration"; })); });
        verify(shownText(panel, "Settings"));
        verify(Qt.colorEqual(shownText(panel, "Settings").color, "#eee"));
        verify(find(panel, function(item) { return item.color !== undefined && Qt.colorEqual(item.color, "#33ffffff")
                                                   && item.width === panel.width; }));
        panel.hide();
        verify(panel.anchors.rightMargin > -panel.width, "it slides");
        closed(panel);
        compare(view.settingsVisible, false);
        tryVerify(function() { return isShown(control(view, "Manual Calibration")); });
    }

    function test_panelCloses_data() {
        return [
            { tag: "chevron", close: function(panel) { mouseClick(control(panel, "   ")); } },
            { tag: "Escape", close: function() { keyClick(Qt.Key_Escape); } },
            { tag: "Space on the chevron", close: function() { keyClick(Qt.Key_Space); } }
        ];
    }

    function test_panelCloses(row) {
        [openSettings, openInput].forEach(function(open) {
            var panel = open();
            compare(focusedText(), "Back");
            compare(glyphs(control(panel, "   ")), "\uf053");
            row.close(panel);
            closed(panel);
            mainViewIsBack();
        });
    }

    function test_keyboardComesBackToWhereItWas() {
        var button = control(view, "Settings");
        button.forceActiveFocus();
        keyClick(Qt.Key_Return);
        var panel = opened("Settings");
        compare(focusedText(), "Back");
        keyClick(Qt.Key_Escape);
        closed(panel);
        verify(button.activeFocus);
    }

    function test_panelsKeepTheKeyboardWithin() {
        var panel = openSettings();
        var order = [];
        for (var i = 0; i < 5; ++i) {
            keyClick(Qt.Key_Tab);
            order.push(focusedText());
        }
        compare(order.join(), "Autostart,Optimize USB bandwidth,Sensor Viewer,Correct Offset,Back");
        keyClick(Qt.Key_Backtab);
        compare(focusedText(), "Correct Offset");
        panel.hide();
        closed(panel);
        mainViewIsBack();
        openInput();
        order = [];
        for (i = 0; i < 3; ++i) {
            keyClick(Qt.Key_Tab);
            order.push(focusedText());
        }
        compare(order.join(), "Finger,Stylus,Back");
        keyClick(Qt.Key_Backtab);
        compare(focusedText(), "Stylus");
    }

    // --- Settings -----------------------------------------------------------------------------

    function test_settingsShowTheStateAndCallTheController_data() {
        return [
            { tag: "Autostart", property: "isAutoStart", call: "autostart" },
            { tag: "Optimize USB bandwidth", property: "isKeepACpuRunning", call: "keep awake" }
        ];
    }

    function test_settingsShowTheStateAndCallTheController(row) {
        openSettings();
        var box = control(view, row.tag);
        [false, true, false].forEach(function(value) {
            view[row.property] = value;
            compare(box.isToggled, value);
            compare(box.Accessible.checked, value);
        });
        mouseClick(box);
        compare(mainwindow.calls.toString(), row.call);
        compare(box.isToggled, false, "the controller decides");
        mouseClick(box, 5, 5, Qt.RightButton);
        compare(mainwindow.calls.length, 1);
        box.forceActiveFocus();
        keyClick(Qt.Key_Space);
        var touch = touchEvent(box);
        touch.press(0, box).commit();
        touch.release(0, box).commit();
        compare(mainwindow.calls.toString(), [row.call, row.call, row.call].toString());
        view[row.property] = true;
        compare(box.isToggled, true);
    }

    function test_settingsCommands_data() {
        return [
            { tag: "Sensor Viewer", call: "sensor viewer" },
            { tag: "Correct Offset", call: "offset" }
        ];
    }

    function test_settingsCommands(row) {
        openSettings();
        var button = control(view, row.tag);
        compare(glyphs(button), "");
        mouseClick(button);
        compare(mainwindow.calls.toString(), row.call);
        report(view, -10);
        compare(button.isDisabled, true);
        mouseClick(button);
        compare(mainwindow.calls.length, 1);
    }

    function test_spacerIsNoButton() {
        openSettings();
        var spacer = find(view, function(item) { return item.text === "        " && item.btnColor2 !== undefined; });
        verify(spacer);
        verify(Qt.colorEqual(spacer.btnColor2, "transparent"));
        compare(spacer.enabled, false);
        compare(spacer.activeFocusOnTab, false);
        compare(spacer.Accessible.ignored, true);
    }

    function test_tooltip() {
        openSettings();
        var tooltip = find(view, function(item) { return item.source !== undefined
                                                  && item.source.toString() === "qrc:///qml/tooltip2.png"; });
        compare(tooltip.opacity, 0);
        compare(tooltip.visible, false);
        mouseMove(control(view, "Optimize USB bandwidth"), 20, 10);
        tryCompare(tooltip, "opacity", 1);
        verify(hoverFill(control(view, "Optimize USB bandwidth")).visible);
        mouseMove(control(view, "Autostart"), 5, 5);
        tryCompare(tooltip, "opacity", 0);
        var box = control(view, "Optimize USB bandwidth");
        keyClick(Qt.Key_Tab);
        keyClick(Qt.Key_Tab);
        compare(box.activeFocus, true);
        // An animation would begin with the next frame.
        arrange();
        arrange();
        compare(tooltip.opacity, 0, "not on mere Tab");
        compare(tooltip.status, Image.Ready);
    }

    // --- Input --------------------------------------------------------------------------------

    function test_inputIsSentAndShown_data() {
        return [
            { tag: "Finger", before: false, action: 10, after: true },
            { tag: "Stylus", before: true, action: 9, after: false }
        ];
    }

    function test_inputIsSentAndShown(row) {
        view.isTouch = row.before;
        var panel = openInput();
        var other = row.tag === "Finger" ? "Stylus" : "Finger";
        compare(control(panel, row.tag).isToggled, false);
        compare(control(panel, other).isToggled, true);
        mouseClick(control(panel, row.tag));
        compare(sdk.actions.length, 1);
        compare(sdk.actions[0], row.action);
        compare(view.isTouch, row.after);
        compare(panel.isOpen, false);
        closed(panel);
        verify(control(view, row.tag));
        view.isTouch = row.before;
        var radios = findAll(panel, function(item) { return item.canToggle !== undefined; });
        compare(radios[0].isToggled, row.before);
        compare(radios[1].isToggled, !row.before);
    }

    function test_inputIsDisabledWithTheButtons() {
        var panel = openInput();
        report(view, -1);
        compare(control(panel, "Finger").isDisabled, true);
        mouseClick(control(panel, "Stylus"));
        compare(sdk.actions.length, 0);
        compare(panel.isOpen, true);
        report(view, 0);
        mouseClick(control(panel, "Stylus"));
        compare(sdk.actions.length, 1);
    }

    // --- Rate warning -------------------------------------------------------------------------

    function okButton() {
        var picture = find(view, function(item) { return source.idsOf(item).indexOf("okBtn") >= 0; });
        return find(picture, function(item) { return item.activeFocusOnTab; });
    }

    function animations() {
        return findAll(view, function(item) { return item.playing !== undefined && item.frameCount !== undefined; });
    }

    function test_rateWarning() {
        compare(isShown(okButton()), false);
        animations().forEach(function(item) { compare(item.playing, false); });
        view.showFreqPopup();
        verify(isShown(okButton()));
        var lines = testLog.takeLines().join("\n");
        verify(/show freq warning popup width: [1-9]\d* ht: [1-9]\d*/.test(lines), lines);
        compare(animations().map(function(item) { return item.source.toString(); }).join(),
                "qrc:///qml/30hz.gif,qrc:///qml/60hz.gif");
        animations().forEach(function(item) {
            compare(item.playing, true);
            compare(item.fillMode, Image.PreserveAspectFit);
            compare(item.status, AnimatedImage.Ready);
            compare(item.cache, false, "all pictures at once take 70 MB");
        });
        ["Slow writing\nspeed at 30Hz", "Fast writing\nspeed at 60Hz",
         "To get real-time writing experience, please make\nsure that your external display is running\nat 60Hz refresh rate or more."
        ].forEach(function(text) {
            compare(shownText(view, text).font.family, "Helvetica Neue");
        });
        compare(okButton().parent.source.toString(), "qrc:///qml/okbtn.png");
        verify(find(view, function(item) { return item.source !== undefined
                                           && item.source.toString() === "qrc:///qml/alert.png"; }));
    }

    function test_rateWarningsButtonStatesDiffer() {
        view.showFreqPopup();
        arrange();
        var states = [];
        mouseMove(view, 2, 2);
        states.push(camera.take(okButton()));
        mouseMove(okButton(), 5, 5);
        states.push(camera.take(okButton()));
        mousePress(okButton(), 5, 5);
        states.push(camera.take(okButton()));
        mouseMove(view, 2, 2);
        mouseRelease(view, 2, 2);
        verify(!states[0].equals(states[1]) && !states[0].equals(states[2]) && !states[1].equals(states[2]));
        var ring = find(okButton(), function(item) { return item.border !== undefined && item.border.width === 2; });
        compare(ring.visible, false);
        keyClick(Qt.Key_Tab);
        compare(ring.visible, true);
    }

    function test_rateWarningCloses_data() {
        return [
            { tag: "mouse", close: function() { mouseClick(okButton()); }, logs: true },
            { tag: "Return", close: function() { keyClick(Qt.Key_Return); }, logs: true },
            { tag: "Space", close: function() { keyClick(Qt.Key_Space); }, logs: true },
            { tag: "screen reader", close: function() { okButton().Accessible.pressAction(); }, logs: true },
            { tag: "Escape", close: function() { keyClick(Qt.Key_Escape); }, logs: false }
        ];
    }

    function test_rateWarningCloses(row) {
        var before = control(view, "Touch Calibration");
        before.forceActiveFocus();
        view.showFreqPopup();
        verify(okButton().activeFocus);
        keyClick(Qt.Key_Tab);
        verify(okButton().activeFocus);
        mouseClick(view, 5, 5);
        row.close();
        compare(isShown(okButton()), false);
        compare(testLog.takeLines().indexOf("Settings Button clicked") >= 0, row.logs);
        animations().forEach(function(item) {
            compare(item.playing, false);
            compare(item.source.toString(), "", "nothing is kept of it");
        });
        verify(before.activeFocus);
        compare(mainwindow.calls.length, 0);
    }

    MouseArea {
        id: below

        width: 680
        height: 240
        acceptedButtons: Qt.AllButtons
        hoverEnabled: true
    }

    function test_layersDoNotLetTheMouseThrough_data() {
        return [{ tag: "AspectRatioWarningView" }, { tag: "FreqWarning" }, { tag: "AdvicePopUp" }];
    }

    function test_layersDoNotLetTheMouseThrough(row) {
        view.destroy();
        arrange();
        var clicks = listen(below, "clicked");
        mouseClick(below, 3, 3);
        compare(clicks.count, 1);
        mouseMove(below, 6, 6);
        compare(below.containsMouse, true);
        var layer = create(row.tag, { width: 680, height: 240, visible: true, z: 5 });
        mouseClick(below, 3, 3);
        mouseClick(below, 3, 3, Qt.RightButton);
        mouseClick(below, 3, 3, Qt.MiddleButton);
        compare(clicks.count, 1);
        mouseMove(below, 9, 9);
        compare(below.containsMouse, false, "it does not feel the mouse");
    }

    // What is covered can neither be pressed nor reached by the keyboard, each layer for itself.
    function test_coveredLayersAreDisabled() {
        var settings = panelOf("Settings");
        var states = function() {
            return [itemOf("mainRect").enabled, mainView().enabled, settings.enabled];
        };
        compare(states().join(), "true,true,false");
        openSettings();
        compare(states().join(), "true,false,true");
        view.showFreqPopup();
        compare(states().join(), "false,false,false");
        compare(itemOf("freqWarning").enabled, true);
        keyClick(Qt.Key_Escape);
        compare(states().join(), "true,false,true");
        keyClick(Qt.Key_Escape);
        compare(states().join(), "true,true,false");
    }

    function test_movements_data() {
        return [
            { tag: "mainView", group: "anchors", movement: "200 ms, InOutCubic", begin: openSettings },
            { tag: "settingsView", group: "anchors", movement: "200 ms, InOutCubic", begin: openSettings },
            { tag: "inputSelection", group: "anchors", movement: "200 ms, InOutCubic", begin: openInput },
            { tag: "tooltip", group: "", movement: "100 ms, Linear", begin: function() {
                openSettings();
                mouseMove(control(view, "Optimize USB bandwidth"), 20, 10);
            } },
            { tag: "loadingIndicator", group: "", movement: "100 ms, Linear", begin: function() {
                view.isLoading = true;
            } }
        ];
    }

    function test_movements(row) {
        row.begin();
        compare(source.behaviorsOf(itemOf(row.tag), row.group).join(), row.movement);
    }

    // The right one, too, ends here, and does not go through to what lies below.
    function test_tooltipsAreaTakesBothButtons() {
        openSettings();
        var area = find(panelOf("Settings"), function(item) {
            return source.idsOf(item).indexOf("mouseArea") >= 0;
        });
        compare(area.acceptedButtons, Qt.LeftButton | Qt.RightButton);
        mouseClick(area, 5, 5, Qt.RightButton);
        compare(mainwindow.calls.length, 0);
        mouseClick(area, 5, 5);
        compare(mainwindow.calls.length, 1);
    }

    // --- One family ---------------------------------------------------------------------------

    function dialogOf(title) {
        return find(view, function(item) { return item.title === title && item.contentTop !== undefined; });
    }

    function openDialog(name) {
        ({ "advice": view.showPopUp, "rate": view.showFreqPopup, "ratio": warnOfRatio })[name]();
        arrange();
        return find(view, function(item) { return item.isOpen === true; });
    }

    function test_dialogsAreOfOneFamily_data() {
        return [
            { tag: "advice", title: "Auto Calibration", covers: "transparent" },
            { tag: "rate", title: "Refresh Rate", covers: "#1d2733" },
            { tag: "ratio", title: "Aspect Ratio", covers: "#1d2733" }
        ];
    }

    function test_dialogsAreOfOneFamily(row) {
        var dialog = openDialog(row.tag);
        compareValues(dialog, { width: view.baseWidth, height: 240, title: row.title });
        // No edge below the menu bar, which has the same colour, and nothing of what is covered.
        verify(Qt.colorEqual(dialog.color, row.covers));
        verify(row.covers !== "transparent" || !control(view, "Cancel").parent.visible
               || !isShown(find(view, function(item) { return item.btnText === "Manual Calibration"; })));
        var card = find(dialog, function(item) { return item.rounding === 5 && item.reach === -5; });
        verify(Qt.colorEqual(card.color, "#2c3d50"));
        compareValues(card, { x: 5, y: 5, width: Math.round((view.baseWidth - 10) * view.factor),
                              height: Math.round(230 * view.factor) });
        var title = textItem(dialog, row.title);
        compare(title.mapToItem(dialog, 0, 0), Qt.point(20, 9));
        compare(title.Accessible.role, Accessible.Heading);
        compare(dialog.Accessible.role, Accessible.Dialog);
        var picture = find(dialog, function(item) { return item.source !== undefined && item.width === 40; });
        compare(picture.mapToItem(dialog, 0, 0).x, 20);
        findAll(dialog, function(item) { return item.activeFocusOnTab && isShown(item) && item.btnText !== undefined; })
            .forEach(function(item) {
            compare(item.mapToItem(dialog, 0, 0).y, 190, item.btnText);
        });
    }

    function test_warningsSwallowWhatIsBelow() {
        view.showFreqPopup();
        var button = find(view, function(item) { return item.btnText === "Manual Calibration"; });
        mouseClick(button);
        compare(mainwindow.calls.length, 0);
        compare(button.enabled, false);
        view.showFreqPopup();
        keyClick(Qt.Key_Escape);
        mouseClick(button);
        compare(mainwindow.calls.toString(), "manual");
    }

    // --- Aspect ratio -------------------------------------------------------------------------

    function warningIsShown() {
        return isShown(find(view, function(item) { return item.btnText === "Ignore"; }))
            || isShown(find(view, function(item) { return item.btnText === "Go back"; }));
    }

    function test_ratios_data() {
        return [
            { tag: "1920x1080", width: 1920, height: 1080, warns: false },
            { tag: "1360x768", width: 1360, height: 768, warns: false },
            { tag: "1366x768", width: 1366, height: 768, warns: false },
            { tag: "1600x900", width: 1600, height: 900, warns: false },
            { tag: "1920x1200", width: 1920, height: 1200, warns: true },
            { tag: "1024x768", width: 1024, height: 768, warns: true },
            { tag: "1280x1024", width: 1280, height: 1024, warns: true },
            { tag: "2560x1080", width: 2560, height: 1080, warns: true },
            { tag: "1080x1920", width: 1080, height: 1920, warns: true }
        ];
    }

    function test_ratios(row) {
        setScreen(view, row.width, row.height);
        view.checkAspectRatio();
        compare(warningIsShown(), row.warns);
        compare(mainwindow.calls.toString(), row.warns ? "warned" : "");
        compare(view.aspectRatioWarningShown, row.warns);
        var ratio = row.width / row.height;
        var lines = testLog.takeLines();
        compare(lines[0], "aspect ratio changed to: " + ratio + " (" + row.tag + ")");
        compare(lines[1], row.warns ? "Ratio is not 16:9, it is " + ratio + " show warning, if not done so already!" : undefined);
    }

    function test_ratioWarningComesOnce() {
        setScreen(view, 1024, 768);
        view.checkAspectRatio();
        keyClick(Qt.Key_Escape);
        compare(warningIsShown(), false);
        view.checkAspectRatio();
        compare(warningIsShown(), false);
        compare(mainwindow.calls.toString(), "warned");
    }

    function test_ratioWarningWasShownBefore() {
        setScreen(view, 1024, 768);
        mainwindow.hasWarned = true;
        view.checkAspectRatio();
        compare(warningIsShown(), false);
        compare(mainwindow.calls.length, 0);
    }

    function test_noRatioWarningAfterACalibrationOfThisRun() {
        setScreen(view, 1024, 768);
        view.aspectRatioWarningShown = true;
        view.checkAspectRatio();
        compare(warningIsShown(), false);
        compare(mainwindow.calls.length, 0);
    }

    function warnOfRatio() {
        setScreen(view, 1024, 768);
        view.checkAspectRatio();
        mainwindow.calls = [];
    }

    function test_ratioTexts() {
        warnOfRatio();
        verify(shownText(view, "This Screen is not set to a widescreen (16:9) resolution.<br><br>                   If the touch accuracy is not satisfactory, <b>choose one of the following options or ignore:</b>"));
        var text = shownText(view, "This Screen is not set to a widescreen (16:9) resolution.<br><br>                   If the touch accuracy is not satisfactory, <b>choose one of the following options or ignore:</b>");
        verify(Qt.colorEqual(text.color, "#eee"));
        compare(text.textFormat, Text.RichText);
        mouseClick(control(view, "Change graphics settings"));
        verify(find(view, function(item) {
            return item.visible && item.text !== undefined && item.text
                === "Apply one of the following changes to achieve better touch accuracy:<ol type=\"A\"><li>Change your graphics scaling to \"Scale Fullscreen\" or \"Maintain Display Scaling\"                      inside the Graphics Control Panel of you graphics card.</li><li>Set a 16:9 resolution such as 1360x768, 1600x900 or 1920x1080.</li></ol>";
        }));
    }

    function test_ratioScreens() {
        var before = control(view, "Touch Calibration");
        before.forceActiveFocus();
        warnOfRatio();
        compare(focusedText(), "Ignore");
        compare(control(view, "Ignore").isSmall, true);
        mouseClick(control(view, "Change graphics settings"));
        compare(isShown(find(view, function(item) { return item.btnText === "Ignore"; })), false);
        compare(glyphs(control(view, "Go back")), "\uf053");
        compare(glyphs(control(view, "Close this dialog")), "\uf00d");
        compare(focusedText(), "Go back");
        keyClick(Qt.Key_Return);
        compare(focusedText(), "Ignore");
        keyClick(Qt.Key_Backtab);
        compare(focusedText(), "Change graphics settings");
        keyClick(Qt.Key_Return);
        keyClick(Qt.Key_Tab);
        compare(focusedText(), "Close this dialog");
        keyClick(Qt.Key_Space);
        compare(warningIsShown(), false);
        verify(before.activeFocus);
        compare(mainwindow.calls.length, 0);
        dialogOf("Aspect Ratio").show();
        compare(focusedText(), "Ignore", "it begins anew");
        verify(isShown(control(view, "Ignore")));
    }

    function test_ratioIsIgnored() {
        warnOfRatio();
        mouseClick(control(view, "Ignore"));
        compare(warningIsShown(), false);
        compare(mainwindow.calls.length, 0);
    }

    function test_ratioOffsetCorrection() {
        warnOfRatio();
        mouseClick(control(view, "Correct Offset"));
        compare(mainwindow.calls.toString(), "offset");
        compare(warningIsShown(), false);
    }

    function test_ratioWarningCanAlwaysBeLeft() {
        report(view, -10);
        warnOfRatio();
        mouseClick(control(view, "Correct Offset"));
        compare(mainwindow.calls.length, 0);
        mouseClick(control(view, "Change graphics settings"));
        mouseClick(control(view, "Close this dialog"));
        compare(warningIsShown(), false);
    }

    function test_theLastWarningIsOnTop() {
        view.showFreqPopup();
        warnOfRatio();
        compare(focusedText(), "Ignore");
        verify(dialogOf("Aspect Ratio").z > dialogOf("Refresh Rate").z);
        mouseClick(control(view, "Ignore"));
        compare(warningIsShown(), false);
        verify(okButton().activeFocus);
        keyClick(Qt.Key_Return);
        compare(isShown(okButton()), false);
    }
}
