#include "base/logcategories.h"

Q_LOGGING_CATEGORY(guardLog, "vireon.guard")
Q_LOGGING_CATEGORY(engineLog, "vireon.engine")
Q_LOGGING_CATEGORY(desktopLog, "vireon.desktop")
Q_LOGGING_CATEGORY(viewLog, "vireon.view")
Q_LOGGING_CATEGORY(integrationLog, "vireon.integration")
