#pragma once

/**
 * Gives all widgets - the window's frame, menu bar, menus, message boxes - the looks of the views,
 * whatever theme the desktop has: their colours, corners and gaps, their typeface in the desktop's
 * size, and entries that a finger can hit. To be called once, after the application object was made
 * and before any widget is.
 */
void applyLooks();

/// Lays the widgets' looks out anew: their lengths follow the font, whose size in px is another one
/// once the desktop's text size is.
void refreshLooks();

/// The height in px that a menu bar with one line of text takes.
int menuBarHeight();
