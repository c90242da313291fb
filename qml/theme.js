.pragma library

// What the views share beside the palette. Gaps are 5, 10, 20 and 25 px, corners 3 and 5 px.
var surface = "#1d2733"; // the window
var raised = "#2c3d50"; // what lies above it
var scrim = "#eb121a23"; // over the window while a dialog is open
var disabledOpacity = 0.6;
