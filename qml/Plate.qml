import QtQuick 2.15

// A rounded rectangle behind or around its parent, with a line around it if there is one. The view
// is scaled as a whole to the screen's density, which would only enlarge the steps of a corner and
// make a line thinner here than there: so this one is laid out in px of the screen, and scaled back.
Rectangle {
    property real reach: 0 // beyond the parent, on each side; this and the next two in base px
    property real rounding: 5
    property real line: 0

    x: -reach
    y: -reach
    width: Math.round((parent.width + 2 * reach) * factor)
    height: Math.round((parent.height + 2 * reach) * factor)
    scale: 1 / factor
    transformOrigin: Item.TopLeft
    radius: rounding * factor
    border.width: Math.round(line * factor)
}
