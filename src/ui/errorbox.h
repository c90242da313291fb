#pragma once

class QString;

/// Tells the user, in a box with one button above all other windows, why the program cannot go on.
/// Returns when the box is closed, or the program has been told to quit.
void showErrorBox(const QString& title, const QString& text);
