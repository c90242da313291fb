.pragma library

// What the views share beside the palette: every colour and every font family, by what it is for.
// Gaps are 5, 10, 20 and 25 px, corners 3 and 5 px. The menus and message boxes take the colours
// from here, too.

// Surfaces and what is on them.
var surface = "#1d2733"; // the window
var raised = "#2c3d50"; // what lies above it
var line = "#4c6580"; // around and between what is raised
var hovered = "#005896"; // a button below the mouse, darker so that a lighter layer can lie on it
var pressed = "#004270";
var dimmed = "#9fb0c2"; // text that can not be chosen now
var disabledOpacity = 0.6;

// What is written and drawn.
var text = "#ffffff"; // glyphs, too
var softText = "#eee"; // the titles of panels, the warning of the aspect ratio
var outline = "#ffffff"; // of the focus, of a check box, of a button below the mouse

// The glyph before the status, so that bad is seen from afar. What is good has the palette's blue.
var warning = "#ffc14d";
var failure = "#ff8a80";

// Layers over something else.
var gloss = "#ffffff"; // over a control below the mouse, with an opacity of its own
var veil = "#33ffffff"; // a quiet button; a title bar
var glass = "#01ffffff"; // a radio button at rest: as good as clear

// The small framed button.
var buttonEdge = "#404040";
var toggled = "#005dc5"; // while it is pressed or switched on

// The tooltip.
var tooltip = "#ffffaa";
var tooltipEdge = "#0a0a0a";
var tooltipText = "#000000";

// Font families. A desktop without one of them shows its own in its place.
var controlFamily = "Helvetica";
var messageFamily = "Helvetica Neue"; // the status, the version, the warning of a low rate
var adviceFamily = "Poppins";
var smallButtonFamily = "Tahoma";
