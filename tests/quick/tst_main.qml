import QtQuick 2.15
import QtTest 1.15

TestCase {
    id: testCase

    property var view

    name: "MainView"
    when: windowShown
    width: 800
    height: 300
    visible: true

    function find(item, matches) {
        if (matches(item))
            return item;
        for (var i = 0; i < item.children.length; ++i) {
            var found = find(item.children[i], matches);
            if (found)
                return found;
        }
        return null;
    }

    function button(label) {
        return find(view, function(item) { return item.btnText === label; });
    }

    function shownText(text) {
        var item = find(view, function(candidate) {
            return candidate.text === text && candidate.visible;
        });
        return item !== null;
    }

    // As the controller does it after the view was loaded.
    function init() {
        mainwindow.calls = [];
        mainwindow.brandCode = "qor";
        var component = Qt.createComponent("qrc:/qml/main.qml");
        compare(component.status, Component.Ready, component.errorString());
        view = createTemporaryObject(component, testCase);
        verify(view);
        view.versionText = "1.4.121";
        view.status = 1;
        view.finishedLoading = true;
    }

    // A status as the controller writes it, also when it equals the last one.
    function report(code) {
        var equal = view.status === code;
        view.status = code;
        if (equal)
            view.statusChanged();
    }

    function test_beforeTheFirstReport() {
        verify(shownText("Starting up..."));
        verify(shownText("1.4.121"));
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
        report(row.code);
        compare(view.statusText, row.text);
        verify(shownText(row.text));
        compare(view.isReady, row.ready);
        compare(view.buttonsDisabled, !row.ready);
    }

    function test_remotePenTextOfItsBrand() {
        mainwindow.brandCode = "tal";
        report(-1);
        compare(view.statusText, "Vireon not connected! <br>Please connect the USB cable and check the box<br> to enable the setting for Remote Pen");
        compare(view.isReady, false);
    }

    function test_nothingChangesBeforeTheViewIsComplete() {
        view.finishedLoading = false;
        report(0);
        verify(shownText("Starting up..."));
        compare(view.isReady, false);
    }

    function test_calibratingLoadsUntilTheNextReport() {
        report(0);
        report(2);
        compare(view.isLoading, true);
        tryVerify(function() { return shownText("Loading..."); });
        verify(!shownText("Started and ready"));
        compare(view.buttonsDisabled, true);
        report(-4);
        compare(view.isLoading, false);
        verify(shownText("Calibration failed, please try again."));
        compare(view.buttonsDisabled, false);
    }

    function test_loadingEndsWithAnEqualReportToo() {
        report(0);
        view.isLoading = true;
        tryVerify(function() { return shownText("Loading..."); });
        report(0);
        compare(view.isLoading, false);
        verify(shownText("Started and ready"));
    }

    function test_loadingEndsByItself() {
        report(0);
        view.isLoading = true;
        var limit = null;
        for (var i = 0; i < view.resources.length; ++i) {
            if (view.resources[i].interval === 60000)
                limit = view.resources[i];
        }
        verify(limit && limit.running);
        limit.triggered();
        compare(view.isLoading, false);
        verify(shownText("Last action failed please try again."));
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
        var target = button(row.tag);
        verify(target);
        compare(target.icon, row.glyph);
        mouseClick(target);
        compare(mainwindow.calls.toString(), row.call);

        target.forceActiveFocus();
        keyClick(Qt.Key_Return);
        keyClick(Qt.Key_Space);
        compare(mainwindow.calls.toString(), [row.call, row.call, row.call].toString());

        report(-10);
        mouseClick(target);
        keyClick(Qt.Key_Return);
        compare(mainwindow.calls.length, 3);
    }

    function test_tabGoesRound() {
        var labels = ["Manual Calibration", "Touch Calibration", "Auto Calibration"];
        button(labels[0]).forceActiveFocus();
        for (var i = 1; i <= 3; ++i) {
            keyClick(Qt.Key_Tab);
            verify(button(labels[i % 3]).activeFocus, labels[i % 3]);
        }
        keyClick(Qt.Key_Backtab);
        verify(button(labels[2]).activeFocus);
    }

    function test_scaleFollowsThePixelDensity() {
        var base = view.baseWidth;
        view.logicalPixelDensity = 2 * view.basePixelDensity;
        compare(view.factor, 2);
        compare(view.width, 2 * base);
        compare(view.height, 480);
    }

    function test_declaredDefaults() {
        compare(view.baseHeight, 240);
        compare(view.basePixelDensity, 3.7795275590551185);
        compare(view.fontfamily, "Helvetica");
        compare(view.markerMargin, 5);
        compare(view.isTouch, true);
        compare(view.isGreaterEqualsWin8, false);
        compare(view.aspectRatioWarningShown, false);
        compare(view.settingsVisible, false);
        compare(view.isAutoStart, true);
        compare(view.isKeepACpuRunning, false);
        compare(view.pauseCalib, false);
    }
}
