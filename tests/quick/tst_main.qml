import QtQuick 2.15

ViewTestCase {
    id: testCase

    property var view

    name: "MainView"

    function init() {
        language.choose("en_US");
        view = createMain();
        testLog.takeLines();
    }

    function button(label) {
        return control(view, label);
    }

    function resource(property) {
        for (var i = 0; i < view.resources.length; ++i) {
            if (view.resources[i][property] !== undefined)
                return view.resources[i];
        }
        return null;
    }

    function timer(interval) {
        for (var i = 0; i < view.resources.length; ++i) {
            if (view.resources[i].interval === interval)
                return view.resources[i];
        }
        return null;
    }

    function test_beforeTheFirstReport() {
        verify(shownText(view, "Starting up..."));
        verify(shownText(view, "1.4.121"));
        compare(view.isReady, false);
        compare(view.buttonsDisabled, false);
    }

    function test_statusTexts_data() {
        return [
            { tag: "-99", code: -99, text: "Starting up...", ready: false },
            { tag: "0", code: 0, text: "Started and ready", ready: true },
            { tag: "1, equal to what was written at first", code: 1, text: "Started and ready", ready: true },
            { tag: "3", code: 3, text: "Started and ready", ready: true },
            { tag: "-1", code: -1, text: "Not connected to Vireon.<br>Please connect the USB cable.", ready: false },
            { tag: "-2", code: -2, text: "Light disturbance detected.", ready: true },
            { tag: "-3", code: -3, text: "Calibration aborted.", ready: true },
            { tag: "-4", code: -4, text: "Calibration failed, please try again.", ready: true },
            { tag: "-5", code: -5, text: "Last action failed please try again.", ready: true },
            { tag: "-6", code: -6, text: "Started, Vireon not calibrated.", ready: true },
            { tag: "-14", code: -14, text: "Started, Vireon not calibrated.", ready: true },
            { tag: "-10", code: -10, text: "A problem occured, please wait...", ready: false },
            { tag: "-7", code: -7, text: "A problem occured, please wait...", ready: false },
            { tag: "-12", code: -12, text: "A problem occured, please restart Vireon.", ready: false }
        ];
    }

    function test_statusTexts(row) {
        report(view, row.code);
        compare(view.statusText, row.text);
        verify(shownText(view, row.text));
        compare(view.isReady, row.ready);
        compare(view.buttonsDisabled, !row.ready);
    }

    function test_remotePenTextOfItsBrand() {
        mainwindow.brandCode = "tal";
        report(view, -1);
        compare(view.statusText, "Vireon not connected! <br>Please connect the USB cable and check the box<br> to enable the setting for Remote Pen");
        compare(view.isReady, false);
    }

    function test_nothingChangesBeforeTheViewIsComplete() {
        view.finishedLoading = false;
        report(view, 0);
        verify(shownText(view, "Starting up..."));
        compare(view.isReady, false);
    }

    function test_calibratingLoadsUntilTheNextReport() {
        report(view, 0);
        report(view, 2);
        compare(view.isLoading, true);
        compare(view.isReady, false);
        tryVerify(function() { return shownText(view, "Loading..."); });
        verify(!shownText(view, "Started and ready"));
        compare(view.buttonsDisabled, true);
        compare(timer(60000).running, false, "a calibration takes as long as it takes");
        report(view, 2);
        compare(view.isLoading, true);
        compare(timer(60000).running, false);
        report(view, -4);
        compare(view.isLoading, false);
        verify(shownText(view, "Calibration failed, please try again."));
        compare(view.buttonsDisabled, false);
    }

    function test_loadingEndsWithAnEqualReportToo() {
        report(view, 0);
        view.isLoading = true;
        tryVerify(function() { return shownText(view, "Loading..."); });
        report(view, 0);
        compare(view.isLoading, false);
        verify(shownText(view, "Started and ready"));
    }

    // As soon as the engine has taken over, it alone ends what a button began.
    function test_engineTakesTheLoadingOver() {
        report(view, 0);
        view.isLoading = true;
        compare(timer(60000).running, true);
        report(view, 2);
        compare(timer(60000).running, false);
        report(view, 0);
        compare(view.isLoading, false);
        compare(view.isReady, true);
        view.isLoading = true;
        compare(timer(60000).running, true);
    }

    function test_loadingEndsByItself() {
        report(view, 0);
        view.isLoading = true;
        var limit = timer(60000);
        verify(limit && limit.running);
        limit.triggered();
        compare(view.isLoading, false);
        verify(shownText(view, "Last action failed please try again."));
        compare(limit.running, false);
    }

    function test_buttonsStartTheirCalibrations_data() {
        return [
            { tag: "Manual Calibration", call: "manual", glyph: "\uf05b" },
            { tag: "Touch Calibration", call: "touch", glyph: "\uf25a" },
            { tag: "Auto Calibration", call: "auto", glyph: "\uf140" }
        ];
    }

    function test_buttonsStartTheirCalibrations(row) {
        view.disableAcPopUp();
        var target = button(row.tag);
        compare(target.icon, row.glyph);
        mouseClick(target);
        target.forceActiveFocus();
        keyClick(Qt.Key_Return);
        keyClick(Qt.Key_Space);
        compare(mainwindow.calls.toString(), [row.call, row.call, row.call].toString());

        report(view, -10);
        mouseClick(target);
        keyClick(Qt.Key_Return);
        compare(mainwindow.calls.length, 3);
    }

    function test_tabGoesRound() {
        var labels = ["Manual Calibration", "Touch Calibration", "Auto Calibration", "Finger", "Settings"];
        for (var i = 0; i <= labels.length; ++i) {
            keyClick(Qt.Key_Tab);
            verify(button(labels[i % labels.length]).activeFocus, labels[i % labels.length]);
        }
        for (i = labels.length - 1; i >= 0; --i) {
            keyClick(Qt.Key_Backtab);
            verify(button(labels[i]).activeFocus, labels[i]);
        }
    }

    function test_tabSkipsWhatIsNotThere() {
        mainwindow.isStylusOnly = true;
        view.destroy();
        view = create("main");
        button("Auto Calibration").forceActiveFocus();
        keyClick(Qt.Key_Tab);
        verify(button("Settings").activeFocus);
        keyClick(Qt.Key_Backtab);
        verify(button("Auto Calibration").activeFocus);
    }

    function test_scaleFollowsThePixelDensity() {
        var base = view.baseWidth;
        view.logicalPixelDensity = 2 * view.basePixelDensity;
        compare(view.factor, 2);
        compare(view.width, 2 * base);
        compare(view.height, 480);
    }

    function test_declaredDefaults() {
        var fresh = create("main");
        compareDefaults(fresh, {
            baseWidth: undefined, baseHeight: 240, basePixelDensity: 3.7795275590551185,
            logicalPixelDensity: undefined, factor: undefined, finishedLoading: false,
            margin: undefined, fontfamily: "Helvetica", isLoading: false, markerMargin: 5,
            isTouch: true, buttonsDisabled: false, isGreaterEqualsWin8: false,
            aspectRatioWarningShown: false, loadingText: "Loading...", versionText: "",
            statusText: "Starting up...", isReady: false, status: -99, settingsVisible: false,
            isAutoStart: true, isKeepACpuRunning: false, pauseCalib: false
        });
        compare(fresh.transform.length, 1);
        compare(fresh.transform[0].origin.x, 0);
        compare(fresh.transform[0].xScale, fresh.factor);
        compare(fresh.transform[0].yScale, fresh.factor);
        compare(typeof fresh.windowClosing, "function");
    }

    function test_declaredTypes() {
        var fresh = create("main");
        ["baseWidth", "baseHeight", "margin", "markerMargin", "status"].forEach(function(name) {
            fresh[name] = 7.25;
            compare(fresh[name], 7, name + " is an int");
        });
        ["basePixelDensity", "logicalPixelDensity", "factor"].forEach(function(name) {
            fresh[name] = 7.25;
            compare(fresh[name], 7.25, name + " is a real");
        });
        ["finishedLoading", "isLoading", "isTouch", "buttonsDisabled", "isGreaterEqualsWin8",
         "aspectRatioWarningShown", "isReady", "settingsVisible", "isAutoStart", "isKeepACpuRunning",
         "pauseCalib"].forEach(function(name) {
            fresh[name] = 7;
            compare(fresh[name], true, name + " is a bool");
        });
        ["fontfamily", "loadingText", "versionText", "statusText"].forEach(function(name) {
            fresh[name] = 7;
            compare(fresh[name], "7", name + " is a string");
        });
        testLog.takeLines();
    }

    // As wide as the language needs it; the labels are wider only in a wide font.
    function test_widthOfEachLanguage_data() {
        return [
            { tag: "ja_JP", width: 720 },
            { tag: "en_US", width: 680 },
            { tag: "de_DE", width: 680 }
        ];
    }

    function test_widthOfEachLanguage(row) {
        verify(language.choose(row.tag));
        view.destroy();
        view = createMain();
        findAll(view, function(item) { return item.btnText !== undefined; }).forEach(function(item) {
            item.btnText = "";
        });
        tryCompare(view, "baseWidth", row.width);
    }

    function test_ids() {
        var ids = [];
        // What is in a panel is made when it opens.
        findAll(view, function(item) { return item.content !== undefined; }).forEach(function(panel) {
            panel.show();
        });
        findAll(view, function() { return true; }).forEach(function(item) {
            ids = ids.concat(source.idsOf(item));
        });
        ["root", "acPopUp", "dntShowMsg", "manualBtn2", "mainRect", "mainView", "loadingIndicator",
         "btnRow", "manualBtn", "calibrateTouchBtn", "autoBtn", "inputSelection", "settingsView",
         "aspectRatioWarning", "freqWarning", "loader", "titlebar", "isAutoStartBtn",
         "isKeepACpuRunningBtn", "mouseArea", "tooltip", "sensorViewerBtnRow", "sensorViewerBtn",
         "sensorViewerBtn2", "calibCorrection", "fingerRadio", "stylusRadio", "popup", "thirtyHz",
         "sixtyHz", "name", "okBtn", "firstScreen", "graphicsSettingsScreen", "btnRow2", "btn",
         "overlay", "whiteHover", "iconLeft", "buttonContent", "btnText", "buttonMouse", "box",
         "toolTip", "toolTipRectangle", "toolTipText"].forEach(function(id) {
            verify(ids.indexOf(id) >= 0, id);
        });
    }

    function test_functionsInTheirOrder() {
        var names = Object.keys(view).filter(function(name) { return typeof view[name] === "function"; });
        var wanted = ["checkAspectRatio", "show", "hide", "showPopUp", "hidePopUp", "showFreqPopup", "disableAcPopUp"];
        compare(names.filter(function(name) { return wanted.indexOf(name) >= 0; }).join(), wanted.join());
    }

    function test_itemsInTheirOrder() {
        var found = [];
        for (var i = 0; i < view.children.length; ++i) {
            var item = view.children[i];
            var kind = item.isDisabled !== undefined ? "acPopUp"
                     : item.showGraphicsSettings ? "aspectRatioWarning"
                     : item.isPlaying !== undefined ? "freqWarning" : "mainRect";
            found.push(kind + (item.visible ? "" : ": hidden"));
        }
        compare(found.join(), "acPopUp: hidden,mainRect,aspectRatioWarning: hidden,freqWarning: hidden");
    }

    function test_iconFont() {
        compare(resource("source").source.toString(), "qrc:///fontawesome-webfont.ttf");
    }

    function test_windowIsToldOfItsSize() {
        var sizing = timer(500);
        compare(sizing.running, true);
        sizing.stop();
        view.logicalPixelDensity = view.basePixelDensity;
        compare(sizing.running, true);
        mainwindow.calls = [];
        tryVerify(function() { return mainwindow.calls.length === 1; });
        compare(mainwindow.calls.toString(), "size " + view.width + "x240 1");
        view.logicalPixelDensity = 1.5 * view.basePixelDensity;
        compare(sizing.running, true);
        tryVerify(function() { return mainwindow.calls.length === 2; });
        compare(mainwindow.calls[1], "size " + view.width + "x360 1.5");
    }

    function test_ctrlF() {
        keyClick(Qt.Key_F, Qt.ControlModifier);
        compare(mainwindow.calls.toString(), "log window");
        keyClick(Qt.Key_F);
        button("Touch Calibration").forceActiveFocus();
        keyClick(Qt.Key_F, Qt.ControlModifier);
        compare(mainwindow.calls.toString(), "log window,log window");
    }

    function test_showAndHide() {
        view.hide();
        compare(isShown(find(view, function(item) { return item.btnText === "Manual Calibration"; })), false);
        view.show();
        verify(isShown(button("Manual Calibration")));
    }

    function test_inputModeIsShown() {
        verify(glyphs(button("Finger")).indexOf("\uf25a") >= 0);
        view.isTouch = false;
        verify(glyphs(button("Stylus")).indexOf("\uf040") >= 0);
        compare(glyphs(button("Settings")).length, 2);
        verify(glyphs(button("Settings")).indexOf("\uf013") >= 0);
    }

    function test_stylusOnlyHasNoChoice() {
        mainwindow.isStylusOnly = true;
        view.destroy();
        view = create("main");
        verify(!find(view, function(item) { return item.visible && (item.text === "Finger" || item.text === "Stylus"); }));
    }

    function test_settingsOpenWheneverAsked() {
        report(view, -12);
        compare(button("Finger").isDisabled, true);
        mouseClick(button("Settings"));
        compare(view.settingsVisible, true);
    }

    // --- Places and sizes ---------------------------------------------------------------------

    readonly property color white: "white"

    function checkVersionText(item) {
        compareValues(item, { color: white, "font.family": "Helvetica Neue", "font.pixelSize": 12,
                              text: "1.4.121", y: 10 });
        compare(item.x + item.width, view.baseWidth - 10);
    }

    function test_mainViewsPlaces() {
        report(view, 0);
        arrange();
        var status = textItem(view, "Started and ready");
        compareValues(status, { color: white, lineHeight: 1.2, "font.family": "Helvetica Neue",
                                horizontalAlignment: Text.AlignHCenter, "parent.height": 40 });
        var column = status.parent.parent;
        compare(column.spacing, 25);
        compare(column.x + column.width / 2, view.baseWidth / 2);
        compare(column.y + column.height / 2, view.baseHeight / 2);
        compare(button("Manual Calibration").parent.spacing, 10);
        compare(button("Manual Calibration").parent.parent, column);
        compare(button("Settings").parent.spacing, 20);
        compare(button("Settings").parent.parent, column);
        checkVersionText(shownText(view, "1.4.121"));
    }

    function test_stateIsShownByAGlyphToo_data() {
        return [
            { tag: "ready", code: 0, glyph: "\uf058", color: "#0091f8" },
            { tag: "not connected", code: -1, glyph: "\uf1e6", color: "#ffc14d" },
            { tag: "given up", code: -12, glyph: "\uf057", color: "#ff8a80" },
            { tag: "calibration failed", code: -4, glyph: "\uf071", color: "#ff8a80" }
        ];
    }

    function test_stateIsShownByAGlyphToo(row) {
        verify(shownText(view, "\uf252"));
        report(view, row.code);
        var glyph = shownText(view, row.glyph);
        verify(glyph);
        verify(Qt.colorEqual(glyph.color, row.color));
        verify(glyph.font.pixelSize >= 28, "it can be seen from afar");
        view.isLoading = true;
        compare(glyph.visible, false);
    }

    // Blue and the check mark are for the good alone.
    function test_goodAndBadLookDifferent() {
        [-1, -2, -3, -4, -5, -6, -14, -10, -12].forEach(function(code) {
            report(view, code);
            verify(!shownText(view, "\uf058"), code);
            var glyph = find(view, function(item) { return item.font !== undefined && item.font.pixelSize === 32; });
            verify(!Qt.colorEqual(glyph.color, "#0091f8") && !Qt.colorEqual(glyph.color, "white"), code);
        });
    }

    function test_versionIsTheSameInBothPlaces() {
        view.versionText = "2.0.7";
        var labels = findAll(view, function(item) { return item.text === "2.0.7"; });
        compare(labels.length, 2);
        compare(labels[0].font, labels[1].font);
        compare(labels[0].color, labels[1].color);
        compare(labels[0].mapToItem(view, 0, 0), labels[1].mapToItem(view, 0, 0));
    }

    function test_statusTextIsAsLargeAsItCanBe() {
        report(view, 0);
        var status = textItem(view, "Started and ready");
        compare(status.fontInfo.pixelSize, 28);
        report(view, -12);
        verify(status.fontInfo.pixelSize >= 20);
    }

    function test_advicesPlaces() {
        report(view, 0);
        view.showPopUp();
        arrange();
        var text = textItem(view, advice);
        compareValues(text, { color: white, lineHeight: 1.2, wrapMode: Text.WordWrap, "parent.height": 40 });
        var icon = find(text.parent, function(item) { return item.source !== undefined; });
        compareValues(icon, { width: 40, height: 40, status: Image.Ready });
        compare(icon.source.toString(), "qrc:///qml/warningIcon.png");
        compare(text.parent.parent.spacing, 75);
        var column = text.parent.parent.parent;
        compareValues(column, { spacing: 25, y: 30 });
        compare(column.x + column.width, view.baseWidth - 10);
        var boxRow = control(view, dontShow).parent;
        compareValues(boxRow, { height: 20, "anchors.horizontalCenterOffset": 80 });
        var buttons = control(view, "Cancel").parent;
        compareValues(buttons, { height: 40, spacing: 100, "anchors.horizontalCenterOffset": 60 });
        compare(control(view, "    Continue    ").parent, buttons);
        checkVersionText(find(column.parent, function(item) { return item.text === "1.4.121"; }));
        var layer = column.parent.parent;
        compareValues(layer, { width: view.baseWidth, height: 240 });
        verify(Qt.colorEqual(layer.color, "transparent"));
    }

    // --- Advice before an auto calibration ----------------------------------------------------

    readonly property string advice: "Auto calibration depends on the type of your screen and ambient lighting conditions. If you do not see accurate performance post auto calibration, perform a manual calibration again which is robust for all scenarios."
    readonly property string dontShow: "<b><font color=\"white\" family= \"Poppins\">Don't show this message again.</font></b>"

    function adviceIsShown() {
        var text = find(view, function(item) { return item.text === advice; });
        compare(text.font.family, "Poppins");
        compare(text.font.bold, true);
        compare(text.font.pixelSize, 14);
        return isShown(text);
    }

    function test_advice_data() {
        return [
            { tag: "Continue", label: "    Continue    ", checked: true, calls: "no advice,auto" },
            { tag: "Continue, shown again", label: "    Continue    ", checked: false, calls: "auto" },
            { tag: "Cancel", label: "Cancel", checked: true, calls: "no advice" },
            { tag: "Cancel, shown again", label: "Cancel", checked: false, calls: "" },
            { tag: "Escape", label: "", checked: true, calls: "no advice" },
            { tag: "Escape, shown again", label: "", checked: false, calls: "" }
        ];
    }

    function test_advice(row) {
        report(view, 0);
        compare(adviceIsShown(), false);
        mouseClick(button("Auto Calibration"));
        compare(mainwindow.calls.toString(), "");
        compare(adviceIsShown(), true);
        arrange();
        verify(!find(view, function(item) { return item.btnText === "Manual Calibration" && isShown(item); }));
        var box = control(view, dontShow);
        compare(box.isToggled, true);
        if (!row.checked)
            mouseClick(box);
        compare(box.isToggled, row.checked);
        testLog.takeLines();
        if (row.label)
            mouseClick(control(view, row.label));
        else
            keyClick(Qt.Key_Escape);
        compare(testLog.takeLines()[0], "checked: " + row.checked);
        compare(mainwindow.calls.toString(), row.calls);
        compare(adviceIsShown(), false);
        mouseClick(button("Auto Calibration"));
        compare(adviceIsShown(), !row.checked);
        compare(mainwindow.calls.toString(), row.checked ? row.calls + ",auto" : row.calls);
    }

    function test_adviceByKeyboard() {
        report(view, 0);
        button("Auto Calibration").forceActiveFocus();
        keyClick(Qt.Key_Return);
        verify(control(view, "    Continue    ").activeFocus);
        keyClick(Qt.Key_Tab);
        verify(control(view, dontShow).activeFocus);
        keyClick(Qt.Key_Space);
        compare(control(view, dontShow).isToggled, false);
        keyClick(Qt.Key_Tab);
        verify(control(view, "Cancel").activeFocus);
        keyClick(Qt.Key_Backtab);
        keyClick(Qt.Key_Backtab);
        verify(control(view, "    Continue    ").activeFocus);
        keyClick(Qt.Key_F, Qt.ControlModifier);
        compare(mainwindow.calls.toString(), "");
        keyClick(Qt.Key_Return);
        compare(mainwindow.calls.toString(), "auto");
        verify(button("Auto Calibration").activeFocus);
    }

    function test_adviceWaitsForTheEngine() {
        report(view, 0);
        view.showPopUp();
        arrange();
        report(view, -10);
        mouseClick(control(view, "    Continue    "));
        compare(mainwindow.calls.toString(), "");
        compare(adviceIsShown(), true);
        mouseClick(control(view, "Cancel"));
        compare(adviceIsShown(), false);
    }

    function test_adviceIsDisabled() {
        view.disableAcPopUp();
        mouseClick(button("Auto Calibration"));
        compare(mainwindow.calls.toString(), "auto");
        compare(adviceIsShown(), false);
    }

    // --- Languages ----------------------------------------------------------------------------

    // Words that mean something else elsewhere: the box is closed, not the program.
    function test_wordsThatATeacherWouldUse_data() {
        return [
            { tag: "de, box", locale: "de_DE", context: "FirmwarePrompt", source: "Exit", text: "Schließen" },
            { tag: "de, key", locale: "de_DE", context: "QShortcut", source: "Ctrl", text: "Strg" },
            { tag: "de, tray", locale: "de_DE", context: "QObject", source: "Exit", text: "Beenden" },
            { tag: "ja, box", locale: "ja_JP", context: "FirmwarePrompt", source: "Exit", text: "閉じる" },
            { tag: "ja, light", locale: "ja_JP", context: "status", source: "Light disturbance detected.", text: "外光の影響を検出しました。" },
            { tag: "ja, 30 Hz", locale: "ja_JP", context: "FreqWarning", source: "Slow writing\nspeed at 30Hz", text: "30Hzでは筆記が\n遅れます" },
            { tag: "ja, 60 Hz", locale: "ja_JP", context: "FreqWarning", source: "Fast writing\nspeed at 60Hz", text: "60Hzでは筆記が\n滑らかです" }
        ];
    }

    function test_wordsThatATeacherWouldUse(row) {
        verify(language.choose(row.locale));
        compare(qsTranslate(row.context, row.source), row.text);
    }

    function test_languages_data() {
        return [
            { tag: "de_DE", ready: "Gestartet und bereit", settings: "Einstellungen" },
            { tag: "ja_JP", ready: "起動完了、使用できます", settings: "設定" },
            { tag: "en_US", ready: "Started and ready", settings: "Settings" }
        ];
    }

    function test_languages(row) {
        verify(language.choose(row.tag));
        view.destroy();
        view = createMain();
        report(view, 0);
        compare(view.statusText, row.ready);
        verify(button(row.settings));
        // The window takes its size as soon as the view is there.
        var width = view.width;
        wait(50);
        compare(view.width, width);
    }
}
