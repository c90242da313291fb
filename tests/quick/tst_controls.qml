import QtQuick 2.15
import "qrc:/qml"

ViewTestCase {
    id: testCase

    property var button

    name: "Controls"

    function init() {
        buttonsDisabled = false;
        isLoading = false;
        isReady = false;
        statusText = "Started and ready";
        mouseMove(testCase, 1000, 500);
        testLog.takeLines();
    }

    // Every way to press a control gives one signal; none does while it is disabled.
    function checkPresses(item, signalName, disable) {
        var presses = listen(item, signalName);
        mouseClick(item);
        compare(presses.count, 1, "mouse");
        var touch = touchEvent(item);
        touch.press(0, item).commit();
        touch.release(0, item).commit();
        compare(presses.count, 2, "finger");
        item.forceActiveFocus();
        keyClick(Qt.Key_Return);
        keyClick(Qt.Key_Enter);
        keyClick(Qt.Key_Space);
        compare(presses.count, 5, "keyboard");
        item.click();
        compare(presses.count, 6, "function");
        item.Accessible.pressAction();
        compare(presses.count, 7, "screen reader");
        keyClick(Qt.Key_A);
        compare(presses.count, 7, "another key");
        if (!disable)
            return;
        disable();
        mouseClick(item);
        keyClick(Qt.Key_Return);
        item.click();
        item.Accessible.pressAction();
        compare(presses.count, 7, "disabled");
    }

    // Where the mouse is, the fill shows; a finger leaves none behind.
    function checkHover(item, disable) {
        var fill = hoverFill(item);
        verify(fill);
        verify(Qt.colorEqual(fill.color, "white"));
        compare(fill.visible, false);
        mouseMove(item, 5, 5);
        compare(fill.visible, true);
        mouseMove(testCase, 1000, 500);
        compare(fill.visible, false);
        var touch = touchEvent(item);
        touch.press(0, item).commit();
        touch.release(0, item).commit();
        compare(fill.visible, false, "after a touch");
        if (!disable)
            return;
        disable();
        mouseMove(item, 5, 5);
        compare(fill.visible, false);
    }

    function checkFocusRing(item) {
        var ring = find(item, function(child) { return child.border !== undefined && child.border.width === 2
                                                && child.parent === item; });
        verify(ring);
        testCase.forceActiveFocus();
        mouseClick(item);
        item.forceActiveFocus();
        compare(ring.visible, false, "without a key");
        keyClick(Qt.Key_Tab);
        item.forceActiveFocus();
        compare(ring.visible, true, "after a key");
        mousePress(item);
        compare(ring.visible, false, "after the mouse");
        mouseRelease(testCase, 1, 1);
        keyClick(Qt.Key_Shift);
        compare(ring.visible, true, "after a key that moves nothing");
        testCase.forceActiveFocus();
        compare(ring.visible, false, "elsewhere");
        verify(Qt.colorEqual(ring.border.color, "white"));
    }

    // A piece of the window, so that a control is seen with what it casts around it.
    Rectangle {
        id: stage

        x: 500
        y: 100
        width: 300
        height: 80
        color: "#1d2733"
    }

    function test_statesLookDifferent_data() {
        return [
            { tag: "CButton", properties: { btnText: "Press" }, disabled: "isDisabled" },
            { tag: "CButton, small", control: "CButton", properties: { btnText: "Press", isSmall: true }, disabled: "isDisabled" },
            { tag: "CSelectionButton", properties: { text: "Choose" }, disabled: "isDisabled" },
            { tag: "CSelectionButton, plain", control: "CSelectionButton", properties: { text: "   ", isLeft: true, btnColor2: "transparent" }, disabled: "isDisabled" },
            { tag: "CRadioButton", properties: { text: "One" }, disabled: "isDisabled" },
            { tag: "Checkbox", properties: { text: "One" } },
            { tag: "SimpleButton", properties: { buttonText: "Press" }, enabled: "activeButton" }
        ];
    }

    function test_statesLookDifferent(row) {
        var item = create(row.control || row.tag, row.properties);
        item.parent = stage;
        item.x = item.y = 20;
        var states = {};
        testCase.forceActiveFocus();
        item.forgetKeyboard();
        arrange();
        states.rest = camera.take(stage);
        mouseMove(item, 5, 5);
        states.hovered = camera.take(stage);
        mousePress(item, 5, 5);
        states.pressed = camera.take(stage);
        mouseRelease(testCase, 1, 1);
        mouseMove(testCase, 1000, 500);
        item.forceActiveFocus();
        keyClick(Qt.Key_Shift);
        states.focused = camera.take(stage);
        testCase.forceActiveFocus();
        if (row.disabled)
            item[row.disabled] = true;
        else if (row.enabled)
            item[row.enabled] = false;
        if (row.disabled || row.enabled) {
            states.disabled = camera.take(stage);
            mousePress(item, 5, 5);
            verify(states.disabled.equals(camera.take(stage)), "a disabled control moves when it is pressed");
            mouseRelease(testCase, 1, 1);
            mouseMove(testCase, 1000, 500);
        }
        var names = Object.keys(states);
        for (var i = 0; i < names.length; ++i) {
            for (var j = i + 1; j < names.length; ++j)
                verify(!states[names[i]].equals(states[names[j]]), names[i] + " looks like " + names[j]);
        }
        item.parent = testCase;
    }

    function test_palette() {
        var colors = Qt.createQmlObject("import 'qrc:/qml/colors.js' as Colors; import QtQml 2.15; QtObject {"
            + "property var all: [Colors.primary50, Colors.primary500, Colors.secondary500, Colors.secondary900] }",
            testCase);
        compare(colors.all.join(), "#FF555555,#39000000,#0091f8,#0077ca");
    }

    function test_button() {
        var item = create("CButton", { btnText: "Press" });
        compareDefaults(item, { btnText: "Press", isDisabled: false, icon: "", isSmall: false,
                                nextTab: undefined, prevTab: undefined });
        compare(item.height, 35);
        verify(Qt.colorEqual(item.color, "transparent"));
        var btn = find(item, function(child) { return child.radius === 3; });
        compare(btn.clip, true);
        verify(Qt.colorEqual(btn.color, "#0077ca"));
        compare(glyphs(item), "");
        checkPresses(item, "submit", function() { item.isDisabled = true; });
    }

    function test_buttonFollowsTheView() {
        var item = create("CButton", { btnText: "Press" });
        buttonsDisabled = true;
        compare(item.isDisabled, true);
        verify(item.opacity < 1);
        var presses = listen(item, "submit");
        mouseClick(item);
        compare(presses.count, 0);
    }

    function test_buttonStatesDiffer() {
        var item = create("CButton", { btnText: "Press" });
        var btn = find(item, function(child) { return child.radius === 3; });
        var rest = btn.color.toString();
        checkHover(item);
        mouseMove(item, 5, 5);
        var hovered = btn.color.toString();
        mousePress(item, 5, 5);
        var pressed = btn.color.toString();
        mouseRelease(item, 5, 5);
        item.isDisabled = true;
        compare(hoverFill(item).visible, false);
        compare(btn.color.toString(), rest);
        mousePress(item, 5, 5);
        compare(btn.color.toString(), rest, "it does not move");
        mouseRelease(item, 5, 5);
        verify(rest !== hovered && rest !== pressed && hovered !== pressed);
        item.isDisabled = false;
        checkFocusRing(item);
    }

    function test_buttonGrowsWithItsText() {
        var item = create("CButton", { btnText: "Go" });
        var narrow = item.width;
        item.btnText = "A much longer text";
        tryVerify(function() { return item.width > narrow + 50; });
        var plain = item.width;
        item.icon = "\uf053";
        tryVerify(function() { return item.width > plain; });
        compare(glyphs(item), "\uf053");
        item.isSmall = true;
        tryVerify(function() { return item.width < plain; });
        compare(item.height, 35);
    }

    function test_buttonsPieces() {
        var item = create("CButton", { btnText: "Go", icon: "\uf053" });
        arrange();
        compareValues(textItem(item, "Go"), { color: Qt.rgba(1, 1, 1, 1), "parent.spacing": 8 });
        compareValues(textItem(item, "\uf053"), { color: Qt.rgba(1, 1, 1, 1), "font.family": "FontAwesome" });
        verify(textItem(item, "\uf053").x < textItem(item, "Go").x);
        compare(hoverFill(item).opacity, 0.2);
    }

    function test_selectionButtonsPieces() {
        var item = create("CSelectionButton", { text: "Go", textIcon: "\uf013", isLeft: true, fontSize: 20 });
        arrange();
        compareValues(textItem(item, "\uf053"), { "font.pixelSize": 16, "font.family": "FontAwesome",
                                                  "anchors.verticalCenterOffset": 2, "parent.spacing": 5 });
        compareValues(textItem(item, "Go"), { "font.pixelSize": 20, color: Qt.rgba(1, 1, 1, 1) });
        verify(textItem(item, "\uf053").x < textItem(item, "\uf013").x);
        verify(textItem(item, "\uf013").x < textItem(item, "Go").x);
        verify(Math.abs(textItem(item, "Go").parent.x + textItem(item, "Go").parent.width / 2 - item.width / 2) <= 1);
        compareValues(hoverFill(item), { radius: 5, color: Qt.rgba(1, 1, 1, 1) });
        var plate = find(item, function(child) { return child.color !== undefined && child.border !== undefined
                                                 && Qt.colorEqual(child.color, "#33ffffff"); });
        compareValues(plate, { radius: 5, smooth: true });
        item.isLeft = false;
        arrange();
        verify(textItem(item, "\uf054").x > textItem(item, "Go").x);
        compareValues(textItem(item, "\uf054"), { "font.pixelSize": 16, "font.family": "FontAwesome",
                                                  "anchors.verticalCenterOffset": 2 });
    }

    function test_radioButtonsPieces() {
        var item = create("CRadioButton", { text: "One" });
        compareValues(textItem(item, "\uf10c"), { width: 20, "font.pixelSize": 22, "font.family": "FontAwesome",
                                                  "parent.spacing": 5 });
        compareValues(textItem(item, "One"), { "font.pixelSize": 18 });
    }

    function test_checkboxesPieces() {
        var item = create("Checkbox");
        compareValues(textItem(item, "✔"), { "font.pixelSize": 16, color: Qt.rgba(1, 1, 1, 1), "parent.spacing": 5 });
        compareValues(textItem(item, "high"), { "font.pixelSize": 16, color: Qt.rgba(1, 1, 1, 1) });
    }

    function test_loadingIndicatorsPieces() {
        var item = create("LoadingIndicator");
        verify(Qt.colorEqual(item.color, "transparent"));
        compareValues(textItem(item, "\uf110"), { color: Qt.rgba(1, 1, 1, 1), "font.family": "FontAwesome",
                                                  "parent.spacing": 10 });
        compareValues(textItem(item, "Loading..."), { color: Qt.rgba(1, 1, 1, 1), "font.family": "Helvetica" });
    }

    // A turn takes 800 ms: what is seen after an eighth of it may come late, but not every time.
    function test_loadingIndicatorTurnsEvenly() {
        isLoading = true;
        var spinner = textItem(create("LoadingIndicator"), "\uf110");
        tryVerify(function() {
            var angle = spinner.rotation;
            var begin = Date.now();
            wait(100);
            var turned = (spinner.rotation - angle + 360) % 360;
            return Math.abs(turned - (Date.now() - begin) * 360 / 800) < 25;
        }, 30000);
    }

    readonly property var allControls: [
        { tag: "CButton", signal: "submit", block: function(item) { item.isDisabled = true; } },
        { tag: "CSelectionButton", signal: "clicked", block: function(item) { item.isDisabled = true; } },
        { tag: "CRadioButton", signal: "clicked", block: function(item) { item.isDisabled = true; } },
        { tag: "Checkbox", signal: "submit" },
        { tag: "SimpleButton", signal: "submit", block: function(item) { item.activeButton = false; } }
    ]

    function test_heldKeyPressesOnce_data() {
        return allControls;
    }

    function test_heldKeyPressesOnce(row) {
        var item = create(row.tag);
        var presses = listen(item, row.signal);
        item.forceActiveFocus();
        keyPress(Qt.Key_Return);
        keyboard.repeat(item, Qt.Key_Return);
        keyRelease(Qt.Key_Return);
        compare(presses.count, 1);
    }

    function test_outOfReach_data() {
        return allControls;
    }

    // A screen reader, and the program, ask also what is hidden or covered.
    function test_outOfReach(row) {
        var item = create(row.tag);
        var presses = listen(item, row.signal);
        ["visible", "enabled"].forEach(function(property) {
            item[property] = false;
            item.click();
            item.Accessible.pressAction();
            compare(presses.count, 0, property);
            item[property] = true;
        });
        item.click();
        compare(presses.count, 1);
        mouseClick(item, 3, 3, Qt.RightButton);
        compare(presses.count, 1, "the right button");
    }

    // Also where the mouse has been on it all the time.
    function test_disabledUnderTheMouse_data() {
        return allControls.filter(function(row) { return row.block; });
    }

    function test_disabledUnderTheMouse(row) {
        var item = create(row.tag, row.tag === "SimpleButton" ? { buttonText: "One" }
                                  : row.tag === "CButton" ? { btnText: "One" } : { text: "One" });
        mouseMove(item, 5, 5);
        compare(hoverFill(item).visible, true);
        row.block(item);
        compare(hoverFill(item).visible, false);
        mousePress(item, 5, 5);
        compare(hoverFill(item).visible, false);
        mouseRelease(item, 5, 5);
        // One rule for all: they sink towards the surface.
        compare(item.opacity, 0.6);
    }

    // A line around a control tells of the keyboard alone.
    function test_hoverDrawsNoLine_data() {
        return allControls;
    }

    function test_hoverDrawsNoLine(row) {
        var item = create(row.tag);
        var lines = function() {
            return findAll(item, function(child) {
                return child.border !== undefined && !Qt.colorEqual(child.border.color, "black") && isShown(child);
            }).map(function(child) { return child.border.width + child.border.color; }).join();
        };
        var rest = lines();
        mouseMove(item, 5, 5);
        compare(lines(), rest);
    }

    function test_buttonTabs() {
        var first = create("CButton", { btnText: "1" });
        var second = create("CButton", { btnText: "2", prevTab: first });
        first.nextTab = second;
        first.forceActiveFocus();
        keyClick(Qt.Key_Tab);
        verify(second.activeFocus);
        keyClick(Qt.Key_Backtab);
        verify(first.activeFocus);
    }

    function test_selectionButton() {
        var item = create("CSelectionButton", { text: "Choose" });
        compareDefaults(item, { text: "Choose", isDisabled: false, isLeft: false, showDirection: true,
                                btnColor: "#33ffffff", fontSize: 16, isVisible: true, textIcon: "",
                                btnColor2: "#33ffffff" });
        verify(Qt.colorEqual(item.color, "transparent"));
        verify(item.height >= 35);
        checkHover(item);
        checkFocusRing(item);
        checkPresses(item, "clicked", function() { item.isDisabled = true; });
        item.isVisible = false;
        compare(item.visible, false);
    }

    function test_selectionButtonChevrons_data() {
        return [
            { tag: "right", isLeft: false, showDirection: true, chevrons: "\uf054" },
            { tag: "left", isLeft: true, showDirection: true, chevrons: "\uf053" },
            { tag: "none", isLeft: false, showDirection: false, chevrons: "" },
            { tag: "left, none", isLeft: true, showDirection: false, chevrons: "" }
        ];
    }

    function test_selectionButtonChevrons(row) {
        var item = create("CSelectionButton", { text: "Choose", isLeft: row.isLeft, showDirection: row.showDirection });
        compare(glyphs(item), row.chevrons);
        item.textIcon = "\uf013";
        compare(glyphs(item).replace("\uf013", ""), row.chevrons);
        verify(glyphs(item).indexOf("\uf013") >= 0);
    }

    function test_selectionButtonShowsItsPress() {
        var item = create("CSelectionButton", { text: "Choose" });
        mousePress(item, 5, 5);
        verify(!Qt.colorEqual(item.btnColor, item.btnColor2));
        mouseRelease(item, 5, 5);
        verify(Qt.colorEqual(item.btnColor, item.btnColor2));
        item.btnColor2 = "transparent";
        verify(Qt.colorEqual(item.btnColor, "transparent"));
    }

    function test_radioButton() {
        var item = create("CRadioButton", { text: "One" });
        compareDefaults(item, { isToggled: false, isDisabled: false, canToggle: true, text: "One" });
        verify(Qt.colorEqual(item.color, "#01ffffff"));
        verify(item.height >= 35);
        compare(item.Accessible.role, Accessible.RadioButton);
        checkHover(item);
        var fill = hoverFill(item);
        compare(fill.radius, 3);
        compare(fill.width, item.width + 6);
        checkFocusRing(item);
        checkPresses(item, "clicked", function() { item.isDisabled = true; });
    }

    function test_radioButtonToggles() {
        var item = create("CRadioButton", { text: "One" });
        compare(glyphs(item), "\uf10c");
        mouseClick(item);
        compare(item.isToggled, true);
        compare(glyphs(item), "\uf192");
        mouseClick(item);
        compare(item.isToggled, true);
        compare(item.Accessible.checked, true);
        var bound = create("CRadioButton", { text: "Two", canToggle: false });
        mouseClick(bound);
        compare(bound.isToggled, false);
    }

    function test_checkbox() {
        var item = create("Checkbox");
        compareDefaults(item, { isToggled: true, autoToggle: false, text: "high", checkMark: "✔", toolTipText: "" });
        verify(Qt.colorEqual(item.color, "transparent"));
        verify(item.height >= 35);
        compare(item.Accessible.role, Accessible.CheckBox);
        verify(shownText(item, "✔"));
        checkHover(item);
        compare(hoverFill(item).radius, 5);
        checkFocusRing(item);
        checkPresses(item, "submit");
        compare(item.isToggled, true);
        item.isToggled = false;
        verify(!shownText(item, "✔"));
        item.text = "<b>bold</b>";
        compare(item.Accessible.name, "bold");
    }

    function test_checkboxToggles() {
        var item = create("Checkbox", { autoToggle: true });
        mouseClick(item);
        compare(item.isToggled, false);
        compare(item.Accessible.checked, false);
        mouseClick(item);
        compare(item.isToggled, true);
    }

    function test_checkboxTooltip() {
        var item = create("Checkbox", { toolTipText: "Explained" });
        verify(!shownText(item, "Explained") || !isShown(shownText(item, "Explained")));
        mouseMove(item, 5, 5);
        verify(isShown(shownText(item, "Explained")));
        item.toolTipText = "";
        compare(find(item, function(child) { return child.z === 200; }).visible, false);
    }

    function test_tooltipArea() {
        var item = create("ToolTipArea", { toolTipTxt: "Explained" });
        compareDefaults(item, { toolTipTxt: "Explained", showToolTip: false });
        var area = find(item, function(child) { return child.z === 200; });
        compare(area.visible, false);
        item.showToolTip = true;
        compare(area.visible, true);
        verify(Qt.colorEqual(area.color, "#ffffaa"));
        verify(Qt.colorEqual(area.border.color, "#0a0a0a"));
        compare(area.y, item.height + 5);
        compare(shownText(item, "Explained").color.toString(), "#000000");
    }

    function test_simpleButton() {
        var item = create("SimpleButton", { buttonText: "Press" });
        compareDefaults(item, { activeButton: true, buttonText: "Press", altButtonText: "", toggled: false,
                                fontSize: 12, isToggle: false });
        compare(item.height, 30);
        compare(item.radius, 3);
        compare(item.border.width, 1);
        verify(Qt.colorEqual(item.border.color, "#404040"));
        compare(item.gradient.stops.length, 2);
        compare(item.gradient.stops[0].position, 0);
        compare(item.gradient.stops[1].position, 1);
        compare(shownText(item, "Press").font.family, "Tahoma");
        compare(shownText(item, "Press").font.pixelSize, 12);
        checkFocusRing(item);
        checkPresses(item, "submit", function() { item.activeButton = false; });
    }

    function test_simpleButtonTellsOfThePressBefore() {
        var item = create("SimpleButton", { buttonText: "Press" });
        var order = [];
        item.previewPress.connect(function() { order.push("preview"); });
        item.press.connect(function() { order.push("press"); });
        item.submit.connect(function() { order.push("submit"); });
        mousePress(item, 5, 5);
        compare(order.join(), "preview,press");
        var overlay = find(item, function(child) { return child !== item && child.color !== undefined
                                                   && Qt.colorEqual(child.color, "#005dc5"); });
        compare(overlay.visible, true);
        compare(overlay.radius, 3);
        mouseRelease(item, 5, 5);
        compare(order.join(), "preview,press,submit");
        compare(overlay.visible, false);
        item.activeButton = false;
        mouseClick(item);
        compare(order.length, 3);
    }

    function test_simpleButtonToggles() {
        var item = create("SimpleButton", { buttonText: "On", altButtonText: "Off", isToggle: true });
        mouseClick(item);
        compare(item.toggled, true);
        verify(shownText(item, "Off"));
        mouseClick(item);
        compare(item.toggled, false);
        verify(shownText(item, "On"));
    }

    Rectangle {
        id: shadowed

        x: 50
        y: 50
        width: 100
        height: 60
    }

    function test_shadow() {
        var item = create("CShadow", { itemId: shadowed });
        compareDefaults(item, { itemId: undefined, isPressed: false, bw: 12, amt: -6, am: -6, amb: -6 });
        compare(item.source.toString(), "qrc:///qml/shadow.png");
        compare(item.smooth, true);
        compare(item.x, 44);
        compare(item.y, 44);
        compare(item.width, 112);
        compare(item.height, 72);
        item.isPressed = true;
        compare(item.am, -6);
        compare(source.behaviorsOf(item).join(), "150 ms, Linear");
        tryCompare(item, "am", -3);
        compare(item.width, 106);
    }

    function test_versionLabel() {
        var item = create("VersionLabel");
        compareValues(item, { text: "1.4.121", color: Qt.rgba(1, 1, 1, 1), "font.family": "Helvetica Neue",
                              "font.pixelSize": 12, y: 10 });
        compare(item.x + item.width, testCase.width - 10);
        compare(item.Accessible.name, "1.4.121");
    }

    function test_statusLine() {
        var item = create("StatusLine", { width: 680, glyph: "\uf058" });
        verify(Qt.colorEqual(item.color, "transparent"));
        var status = textItem(item, "Started and ready");
        var glyph = textItem(item, "\uf058");
        compareValues(status, { color: Qt.rgba(1, 1, 1, 1), lineHeight: 1.2, "font.family": "Helvetica Neue",
                                "parent.height": 40 });
        compareValues(glyph, { color: Qt.rgba(1, 1, 1, 1), "font.family": "FontAwesome" });
        verify(glyph.x + glyph.width <= status.x + (status.width - status.contentWidth) / 2);
        ["good", "warning", "failure"].forEach(function(tone, index) {
            item.tone = tone;
            verify(Qt.colorEqual(glyph.color, ["#0091f8", "#ffc14d", "#ff8a80"][index]), tone);
        });
        verify(Qt.colorEqual(status.color, "white"));
    }

    function test_statusLineIsCentredAsAPair_data() {
        return [
            { tag: "1", text: "Started and ready" },
            { tag: "2", text: "Not connected.<br>Please connect the USB cable." },
            { tag: "3", text: "Not connected.<br>Please connect the USB cable and check the box<br>to enable it" }
        ];
    }

    function test_statusLineIsCentredAsAPair(row) {
        statusText = row.text;
        var item = create("StatusLine", { width: 680, glyph: "\uf058" });
        var status = textItem(item, row.text);
        var glyph = textItem(item, "\uf058");
        var right = status.x + (status.width + status.contentWidth) / 2;
        verify(Math.abs(glyph.x + right - item.width) <= 2, glyph.x + " " + right);
        var bottom = status.y + (status.height + status.contentHeight) / 2;
        var leading = status.contentHeight / status.lineCount / 6;
        verify(Math.abs(bottom - leading - item.height - 4) <= 1, bottom);
        verify(Math.abs(glyph.y + glyph.height / 2 - status.y - status.height / 2) <= 1);
    }

    function test_chevronAloneIsInTheMiddle() {
        var item = create("CSelectionButton", { text: "   ", isLeft: true });
        arrange();
        var chevron = textItem(item, "\uf053");
        verify(Math.abs(chevron.mapToItem(item, chevron.width / 2, 0).x - item.width / 2) <= 1);
    }

    function test_statusLineReadsAsOneSentence() {
        statusText = "Not connected. <br>Please connect the USB cable.";
        var item = create("StatusLine", { width: 680 });
        compare(textItem(item, statusText).Accessible.name, "Not connected. Please connect the USB cable.");
    }

    Component {
        id: lineWithContent

        StatusLine {
            Rectangle {
                objectName: "content"
            }
        }
    }

    // What takes its place stays: it is for that time.
    function test_statusLineHidesWhileLoading() {
        var item = createTemporaryObject(lineWithContent, testCase, { width: 680, glyph: "\uf058" });
        var texts = [textItem(item, "Started and ready"), textItem(item, "\uf058")];
        var content = item.children[item.children.length - 1];
        compare(content.objectName, "content");
        [false, true, false].forEach(function(loading) {
            isLoading = loading;
            texts.forEach(function(text) { compare(text.visible, !loading, text.text); });
            compare(content.visible, true);
        });
    }

    Component {
        id: filledAdvice

        AdvicePopUp {
            width: 680
            height: 240
            visible: true
            choice: Rectangle { objectName: "choice"; width: 100; height: 20 }

            Rectangle { objectName: "first"; width: 100; height: 35 }
            Rectangle { objectName: "second"; width: 100; height: 35 }
        }
    }

    function test_advicePopUpArrangesWhatIsPutIn() {
        compare(create("AdvicePopUp").visible, false);
        var item = createTemporaryObject(filledAdvice, testCase);
        arrange();
        var place = function(name) {
            var found = find(item, function(child) { return child.objectName === name; });
            verify(found, name);
            return found.mapToItem(item, 0, 0);
        };
        var advice = find(item, function(child) { return child.wrapMode === Text.WordWrap; });
        verify(advice.text !== "");
        compare(item.Accessible.name, advice.text);
        verify(place("choice").y >= advice.mapToItem(item, 0, advice.height).y);
        compare(place("first").y, place("choice").y + 20 + 25);
        compare(place("second").y, place("first").y);
        compare(place("second").x, place("first").x + 100 + 100);
        verify(shownText(item, "1.4.121"));
    }

    function test_loadingIndicator() {
        var item = create("LoadingIndicator");
        compare(item.opacity, 0);
        compare(item.visible, false);
        isLoading = true;
        tryCompare(item, "opacity", 1);
        verify(shownText(item, "Loading..."));
        compare(shownText(item, "Loading...").font.pixelSize, 20);
        var spinner = shownText(item, "\uf110");
        compare(spinner.font.pixelSize, 24);
        compare(source.animationsOf(spinner).join(), "0 to 360: 800 ms, Linear, -1 times");
        var angle = spinner.rotation;
        tryVerify(function() { return spinner.rotation !== angle; });
        isLoading = false;
        tryCompare(item, "opacity", 0);
        compare(item.visible, false);
        angle = spinner.rotation;
        arrange();
        arrange();
        compare(spinner.rotation, angle);
    }
}
