#pragma once

#include <QByteArray>

// What the support asks about a machine, as plain text in English. Tools of others are asked; one
// that is not installed, or that gives no answer within 5 s, is named with that.

/// Of this program, of the controller beside it, of Qt and of the system.
QByteArray tellVersions();

/// The desktop's name and kind of session, its window manager, the screens with their rates.
QByteArray tellDesktop();
