.pragma library

// What the views share beside the palette. Gaps are 5, 10, 20 and 25 px, corners 3 and 5 px.
// The menus and message boxes take the colours from here, too.
var surface = "#1d2733"; // the window
var raised = "#2c3d50"; // what lies above it
var line = "#4c6580"; // around and between what is raised
var hovered = "#005896"; // a button below the mouse, darker so that a lighter layer can lie on it
var pressed = "#004270";
var dimmed = "#9fb0c2"; // text that can not be chosen now
var scrim = "#121a23"; // around a dialog that covers the window
var disabledOpacity = 0.6;
