#pragma once

#include <QIcon>

/// The program's icon, ":/qml/Vireon.icns", for windows and tray. Read once, and of its sizes only
/// those that a desktop shows there: the large ones would take megabytes, here and in the X server
/// for each window, and most of the time of a start. GUI thread only.
const QIcon& programIcon();
