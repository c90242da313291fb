import QtQuick 2.15

// Every view in every language and density: nothing cut off, nothing overlapping, nothing where the
// window's edge would hide it. With a folder for the contact sheet each picture is
// saved there.
ViewTestCase {
    id: testCase

    readonly property var languages: ["en_US", "ja_JP", "de_DE"]
    readonly property var densities: [96, 120, 144, 192]
    property int dpi: 96
    property var view
    property size frame // what the window shows of the view, in px

    readonly property var scenes: [
        { tag: "01-starting", show: function() {} },
        { tag: "02-ready", show: function() { report(view, 0); } },
        { tag: "03-not-connected", show: function() { report(view, -1); } },
        { tag: "04-remote-pen", show: function() {
            mainwindow.brandCode = "tal";
            report(view, -1);
        } },
        { tag: "05-failed", show: function() {
            view.isTouch = false;
            report(view, -4);
        } },
        { tag: "06-last-action-failed", show: function() { report(view, -5); } },
        { tag: "07-gave-up", show: function() { report(view, -12); } },
        { tag: "08-loading", show: function() {
            report(view, 2);
            var indicator = find(view, function(item) { return item.font !== undefined && item.text === "\uf110"; });
            tryCompare(indicator.parent.parent, "opacity", 1);
        } },
        { tag: "09-button-hovered", show: function() {
            report(view, 0);
            mouseMove(button(1), 20, 10);
        } },
        { tag: "10-button-pressed", show: function() {
            report(view, 0);
            mousePress(button(1), 20, 10);
        } },
        { tag: "11-button-focused", show: function() {
            report(view, -6);
            button(1).forceActiveFocus();
            keyClick(Qt.Key_Shift);
        } },
        { tag: "12-selection-hovered", show: function() {
            report(view, -2);
            mouseMove(selection(0), 20, 10);
        } },
        { tag: "13-selection-pressed", show: function() {
            report(view, -3);
            mousePress(selection(0), 20, 10);
        } },
        { tag: "14-selection-focused", show: function() {
            report(view, -10);
            selection(1).forceActiveFocus();
            keyClick(Qt.Key_Shift);
        } },
        { tag: "15-stylus-only", show: function() {
            mainwindow.isStylusOnly = true;
            recreate();
            report(view, 0);
        } },
        { tag: "16-advice", show: function() {
            report(view, 0);
            view.showPopUp();
        } },
        { tag: "17-advice-disabled", show: function() {
            report(view, 0);
            view.showPopUp();
            report(view, -10);
        } },
        { tag: "18-settings", show: function() { openPanel(1); } },
        { tag: "19-settings-tooltip", show: function() {
            openPanel(1);
            var boxes = visibleOnes(function(item) { return item.checkMark !== undefined; });
            mouseMove(boxes[1], 30, 15);
            tryCompare(tooltip(), "opacity", 1);
        } },
        { tag: "20-settings-focused", show: function() {
            openPanel(1);
            keyClick(Qt.Key_Tab);
        } },
        { tag: "21-settings-disabled", show: function() {
            openPanel(1);
            report(view, -10);
        } },
        { tag: "22-input", show: function() { openPanel(0); } },
        { tag: "23-input-hovered", show: function() {
            openPanel(0);
            mouseMove(visibleOnes(function(item) { return item.canToggle !== undefined; })[1], 30, 15);
        } },
        { tag: "24-input-disabled", show: function() {
            openPanel(0);
            report(view, -10);
        } },
        { tag: "25-rate-warning", show: function() {
            report(view, 0);
            view.showFreqPopup();
            if (sheetFolder !== "")
                wait(2000); // for a picture in which the two rates differ
        } },
        { tag: "26-ratio-warning", show: function() { warnOfRatio(); } },
        { tag: "27-ratio-settings", show: function() {
            warnOfRatio();
            visibleOnes(function(item) { return item.isSmall === true; })[2].click();
        } },
        { tag: "28-buttons-disabled", show: function() {
            report(view, -12);
            mouseMove(button(1), 20, 10);
        } },
        { tag: "29-advice-focused", show: function() {
            report(view, 0);
            view.showPopUp();
            arrange();
            keyClick(Qt.Key_Tab);
            mouseMove(button(0), 20, 10);
        } },
        { tag: "30-advice-pressed", show: function() {
            report(view, 0);
            view.showPopUp();
            arrange();
            mousePress(visibleOnes(function(item) { return item.autoToggle !== undefined; })[0], 20, 10);
        } },
        { tag: "31-settings-hovered", show: function() {
            openPanel(1);
            mouseMove(visibleOnes(function(item) { return item.isLeft === true; })[0], 10, 10);
        } },
        { tag: "32-settings-pressed", show: function() {
            openPanel(1);
            mousePress(visibleOnes(function(item) { return item.autoToggle !== undefined; })[0], 20, 10);
        } },
        { tag: "33-settings-back-focused", show: function() {
            openPanel(1);
            keyClick(Qt.Key_Shift);
            mouseMove(selection(1), 20, 10);
        } },
        { tag: "34-input-pressed", show: function() {
            openPanel(0);
            mousePress(visibleOnes(function(item) { return item.canToggle !== undefined; })[1], 30, 15);
        } },
        { tag: "35-input-focused", show: function() {
            openPanel(0);
            keyClick(Qt.Key_Tab);
        } },
        { tag: "36-rate-warning-focused", show: function() {
            view.showFreqPopup();
            keyClick(Qt.Key_Shift);
            if (sheetFolder !== "")
                wait(1500);
        } },
        { tag: "37-ratio-hovered", show: function() {
            warnOfRatio();
            keyClick(Qt.Key_Tab);
            mouseMove(visibleOnes(function(item) { return item.isSmall === true; })[0], 20, 10);
        } },
        { tag: "38-ratio-settings-pressed", show: function() {
            warnOfRatio();
            visibleOnes(function(item) { return item.isSmall === true; })[2].click();
            arrange();
            mousePress(visibleOnes(function(item) { return item.isSmall === true; })[1], 20, 10);
        } },
        { tag: "39-ratio-disabled", show: function() {
            warnOfRatio();
            report(view, -10);
        } }
    ]

    name: "Layout"

    function recreate() {
        view.destroy();
        view = create("main");
        scale();
        view.versionText = "1.4.121";
        view.status = 1;
        view.finishedLoading = true;
    }

    // The window takes its size from the view there and then, and keeps it.
    function scale() {
        view.logicalPixelDensity = view.basePixelDensity * dpi / 96;
        frame = Qt.size(view.width, view.height);
    }

    function visibleOnes(matches) {
        return findAll(view, function(item) { return item.visible && matches(item); });
    }

    function button(index) {
        return visibleOnes(function(item) { return item.btnText !== undefined; })[index];
    }

    function selection(index) {
        return visibleOnes(function(item) { return item.btnColor2 !== undefined; })[index];
    }

    function openPanel(index) {
        report(view, 0);
        selection(index).click();
        var panel = null;
        tryVerify(function() {
            panel = find(view, function(item) { return item.isOpen === true; });
            return panel !== null;
        });
        tryCompare(panel.anchors, "rightMargin", 0);
    }

    function tooltip() {
        return find(view, function(item) {
            return item.source && item.source.toString().indexOf("tooltip2") >= 0;
        });
    }

    function warnOfRatio() {
        report(view, 0);
        setScreen(view, 1280, 1024);
        view.checkAspectRatio();
    }

    // What is written and what can be pressed, in the topmost layer.
    function boxes() {
        return findAll(view, function(item) {
            if (!isShown(item) || !item.enabled)
                return false;
            if (item.activeFocusOnTab)
                return true;
            return item.font !== undefined && item.text !== "" && !isInControl(item);
        });
    }

    function isInControl(item) {
        for (var parent = item.parent; parent; parent = parent.parent) {
            if (parent.activeFocusOnTab)
                return true;
        }
        return false;
    }

    // In px of the base size. Of a text it is what is painted.
    function box(item) {
        var area = { x: 0, y: 0, width: item.width, height: item.height };
        if (item.font !== undefined) {
            area.width = item.contentWidth;
            area.height = item.contentHeight;
            area.x = item.horizontalAlignment === Text.AlignHCenter ? (item.width - area.width) / 2 : 0;
            area.y = item.verticalAlignment === Text.AlignVCenter ? (item.height - area.height) / 2 : 0;
        }
        var corner = view.mapFromItem(item.parent, item.x + area.x, item.y + area.y);
        return { x: corner.x, y: corner.y, right: corner.x + area.width, bottom: corner.y + area.height };
    }

    function describe(item) {
        var area = box(item);
        return (item.btnText || item.text || item) + " at " + [area.x, area.y, area.right, area.bottom].join(",");
    }

    function checkBounds() {
        var texts = visibleOnes(function(item) {
            return item.font !== undefined && item.text !== "" && isShown(item) && item.enabled;
        });
        boxes().concat(texts).forEach(function(item) {
            var area = box(item);
            verify(area.x >= 0 && area.right * view.factor <= frame.width, describe(item));
            verify(area.y >= 0 && area.bottom * view.factor <= frame.height, describe(item));
            if (item.font !== undefined) {
                verify(!item.truncated, describe(item));
                verify(item.contentWidth <= item.width + 0.5, describe(item));
                compare(item.font.hintingPreference,
                        dpi === 96 ? Font.PreferDefaultHinting : Font.PreferNoHinting, describe(item));
            }
            if (item.activeFocusOnTab)
                verify(item.height >= 35, describe(item));
        });
    }

    function checkOverlaps() {
        var all = boxes();
        if (tooltip() && isShown(tooltip())) {
            all = all.filter(function(item) { return item.parent !== tooltip(); }).concat(tooltip());
            verify(box(tooltip()).right * view.factor <= frame.width, describe(tooltip()));
        }
        for (var i = 0; i < all.length; ++i) {
            for (var j = i + 1; j < all.length; ++j) {
                var a = box(all[i]);
                var b = box(all[j]);
                verify(a.right <= b.x || b.right <= a.x || a.bottom <= b.y || b.bottom <= a.y,
                       describe(all[i]) + " overlaps " + describe(all[j]));
            }
        }
    }

    function save(path) {
        verify(camera.save(view, view.width, view.height, path), path);
    }

    function opacityOf(item) {
        var opacity = 1;
        for (var parent = item; parent && parent !== view; parent = parent.parent)
            opacity *= parent.opacity;
        return opacity;
    }

    function isDisabled(item) {
        for (var parent = item; parent; parent = parent.parent) {
            if (parent.isDisabled === true && parent.activeFocusOnTab)
                return true;
        }
        return false;
    }

    function test_everyTextCanBeRead_data() {
        return scenes;
    }

    // Those of a disabled control, too, as long as they are told apart from the others.
    function test_everyTextCanBeRead(scene) {
        language.choose("en_US");
        dpi = 96;
        view = createMain();
        scale();
        scene.show();
        arrange();
        var texts = visibleOnes(function(item) {
            return item.font !== undefined && item.text.trim() !== "" && isShown(item)
                && item.enabled;
        });
        verify(texts.length > 1);
        var shown = camera.take(view);
        texts.forEach(function(item) {
            var area = box(item);
            var value = shown.contrastOfText(Qt.rect(area.x, area.y, area.right - area.x, area.bottom - area.y),
                                              item.color, opacityOf(item));
            verify(value >= (isDisabled(item) ? 3 : 4.5), value + ": " + describe(item));
            compare(opacityOf(item) < 1, isDisabled(item), describe(item));
        });
        mouseRelease(testCase, 1, 1);
    }

    function test_cornersAndLinesAreSharp_data() {
        return densities.map(function(dpi) { return { tag: dpi, dpi: dpi }; });
    }

    // As if drawn at this density, and not enlarged: even around a corner, and as thick on each side.
    function test_cornersAndLinesAreSharp(row) {
        language.choose("en_US");
        dpi = row.dpi;
        view = createMain();
        scale();
        report(view, 0);
        arrange();
        var shown = camera.take(testCase);
        verify(shown.isRounded(pixels(selection(1), 0), 5 * view.factor), "a quiet button");
        verify(shown.isRounded(pixels(button(0), 0), 3 * view.factor), "a button");
        button(0).forceActiveFocus();
        keyClick(Qt.Key_Shift);
        arrange();
        shown = camera.take(testCase);
        verify(shown.isFramed(pixels(button(0), 3), Math.round(2 * view.factor)), "the mark of the keyboard");
    }

    Component {
        id: largeText

        Text {
            font.hintingPreference: Font.PreferNoHinting
        }
    }

    function test_lettersAreWhole_data() {
        var rows = [];
        densities.slice(1).forEach(function(dpi) {
            [12, 16, 20, 28].forEach(function(size) {
                rows.push({ tag: size + " px " + dpi, size: size, dpi: dpi });
            });
        });
        return rows;
    }

    // As high as if written at this density, and not enlarged, but for what rounding takes.
    function test_lettersAreWhole(row) {
        factor = row.dpi / 96;
        var small = create("Label", { text: "Cog", x: 20, y: 20, scale: factor, transformOrigin: Item.TopLeft });
        var large = createTemporaryObject(largeText, testCase, { text: "Cog", x: 300, y: 20 });
        small.font.pixelSize = row.size;
        large.font.pixelSize = row.size * factor;
        arrange();
        var shown = camera.take(testCase);
        factor = 1;
        var rows = shown.rowsOf(Qt.rect(0, 0, 280, 100));
        verify(rows > large.font.pixelSize / 2);
        fuzzyCompare(rows, shown.rowsOf(Qt.rect(280, 0, 280, 100)), 1);
    }

    // Where an item is in the picture, with so many base px around it.
    function pixels(item, around) {
        var corner = item.mapToItem(testCase, -around, -around);
        return Qt.rect(Math.round(corner.x), Math.round(corner.y),
                       Math.round((item.width + 2 * around) * view.factor),
                       Math.round((item.height + 2 * around) * view.factor));
    }

    function test_everythingFits_data() {
        var rows = [];
        languages.forEach(function(locale) {
            densities.forEach(function(dpi) {
                scenes.forEach(function(scene) {
                    rows.push({ tag: scene.tag + " " + locale + " " + dpi, scene: scene,
                                locale: locale, dpi: dpi });
                });
            });
        });
        return rows;
    }

    function test_everythingFits(row) {
        verify(language.choose(row.locale));
        dpi = row.dpi;
        view = createMain();
        scale();
        row.scene.show();
        compare(view.height, view.baseHeight * row.dpi / 96);
        compare(view.width, frame.width, "the window would cut off the rest");
        verify(view.width <= testCase.width);
        arrange();
        checkBounds();
        checkOverlaps();
        if (sheetFolder !== "")
            save(sheetFolder + "/" + row.scene.tag + "_" + row.locale + "_" + row.dpi + ".png");
        mouseRelease(testCase, 1, 1);
    }
}
