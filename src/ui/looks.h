#pragma once

/**
 * Gives all widgets - the window's frame, menu bar, menus, message boxes - the looks of the views,
 * whatever theme the desktop has: their colours, corners and gaps, and entries that a finger can
 * hit. To be called once, after the application object was made and before any widget is.
 */
void applyLooks();

/// The height in px that a menu bar with one line of text takes.
int menuBarHeight();
