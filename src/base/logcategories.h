#pragma once

#include <QLoggingCategory>

// Log lines whose text may change, and which QT_LOGGING_RULES can switch off by these names. Lines
// whose text is fixed are in the default category.

/// "vireon.guard": the lock that lets only one copy run.
Q_DECLARE_LOGGING_CATEGORY(guardLog)

/// "vireon.engine": programs of the engine that cannot be run.
Q_DECLARE_LOGGING_CATEGORY(engineLog)

/// "vireon.desktop": parts of the desktop that are missing, and what it has lost.
Q_DECLARE_LOGGING_CATEGORY(desktopLog)

/// "vireon.view": why there is no view.
Q_DECLARE_LOGGING_CATEGORY(viewLog)

/// "vireon.integration": what an administrator has switched on, see Switches.
Q_DECLARE_LOGGING_CATEGORY(integrationLog)
