import QtQuick 2.15
import QtTest 1.15

// What the tests of the views have in common. Every warning on the log fails the test.
TestCase {
    id: viewTestCase

    // What a control finds in the main view that it lies in.
    property bool buttonsDisabled: false
    property real factor: 1
    property bool isLoading: false
    property bool isReady: false
    property int margin: 20
    property string loadingText: "Loading..."
    property string statusText: "Started and ready"
    property string versionText: "1.4.121"
    property string fontfamily: "Helvetica"
    property var fontAwesome: ({ name: "FontAwesome" })

    when: windowShown
    width: 1600
    height: 520
    visible: true

    // The first item of the tree below "item" for which "matches" holds.
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

    function findAll(item, matches) {
        var all = matches(item) ? [item] : [];
        for (var i = 0; i < item.children.length; ++i)
            all = all.concat(findAll(item.children[i], matches));
        return all;
    }

    // Controls are known by what is written on them.
    function control(view, label) {
        var matches = function(item) {
            return item.visible && (item.btnText === label || item.buttonText === label
                || (item.text === label && item.activeFocusOnTab));
        };
        var item = find(view, matches);
        verify(item, label);
        return item;
    }

    function shownText(view, text) {
        return find(view, function(item) {
            return item.text === text && item.visible && item.font !== undefined;
        });
    }

    // What a main view takes for the size of the screen: it can be set.
    function displayOf(view) {
        for (var i = 0; i < view.resources.length; ++i) {
            if (view.resources[i].tolerance !== undefined)
                return view.resources[i];
        }
        return null;
    }

    function setScreen(view, width, height) {
        displayOf(view).width = width;
        displayOf(view).height = height;
    }

    function isShown(item) {
        for (var parent = item; parent; parent = parent.parent) {
            if (!parent.visible || parent.opacity === 0)
                return false;
        }
        return true;
    }

    function hasProperty(item, name) {
        return Object.keys(item).indexOf(name) >= 0;
    }

    // Each declared property with its default, in this order.
    function compareDefaults(item, defaults) {
        var names = Object.keys(item);
        var last = -1;
        for (var name in defaults) {
            var place = names.indexOf(name);
            verify(place > last, name + " is not in its place");
            last = place;
            if (defaults[name] !== undefined)
                compare(item[name].toString(), defaults[name].toString(), name);
        }
    }

    // Each of these properties of the item has this value; of a font it is "font.pixelSize" etc.
    function compareValues(item, values) {
        for (var name in values) {
            var actual = name.split(".").reduce(function(value, part) { return value[part]; }, item);
            if (values[name].r !== undefined)
                verify(Qt.colorEqual(actual, values[name]), name + ": " + actual);
            else
                compare(actual, values[name], name);
        }
    }

    // The text item that shows this, seen or not.
    function textItem(view, text) {
        var item = find(view, function(child) { return child.font !== undefined && child.text === text; });
        verify(item, text);
        return item;
    }

    // The fill that lies over the control while the mouse is on it.
    function hoverFill(item) {
        return find(item, function(child) {
            return child !== item && child.border !== undefined && child.opacity === 0.2;
        });
    }

    // Has a frame drawn: rows and columns arrange before it what has just come to light.
    function arrange() {
        verify(camera.take(viewTestCase));
    }

    function glyphs(item) {
        return findAll(item, function(child) {
            return child.font !== undefined && child.visible && /[\uf000-\uf2ff]/.test(child.text);
        }).map(function(child) { return child.text; }).join("");
    }

    SignalSpy {
        id: spy
    }

    function listen(target, signalName) {
        spy.target = target;
        spy.signalName = signalName;
        spy.clear();
        return spy;
    }

    function create(name, properties) {
        var component = Qt.createComponent("qrc:/qml/" + name + ".qml");
        compare(component.status, Component.Ready, component.errorString());
        var view = createTemporaryObject(component, viewTestCase, properties || {});
        verify(view);
        return view;
    }

    // A main view as the controller has it once the engine has reported.
    function createMain() {
        mainwindow.calls = [];
        mainwindow.brandCode = "qor";
        mainwindow.isStylusOnly = false;
        mainwindow.hasWarned = false;
        sdk.actions = [];
        mouseMove(viewTestCase, viewTestCase.width - 1, viewTestCase.height - 1);
        var view = create("main");
        view.versionText = "1.4.121";
        view.status = 1;
        view.finishedLoading = true;
        // Whatever the last test did: nobody has used the keyboard yet.
        find(view, function(item) { return item.forgetKeyboard !== undefined; }).forgetKeyboard();
        return view;
    }

    // A status as the controller writes it, also when it equals the last one.
    function report(view, code) {
        var equal = view.status === code;
        view.status = code;
        if (equal)
            view.statusChanged();
    }

    function initTestCase() {
        testLog.listen();
    }

    function cleanup() {
        compare(testLog.takeWarnings().join("\n"), "");
        testLog.takeLines();
    }
}
