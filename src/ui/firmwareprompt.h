#pragma once

#include <QCoreApplication>
#include <QString>

/**
 * The update of the camera's firmware: when it is offered, and what is said of it.
 *
 * A firmware is known by the indicator of the status file; 1 and below are old. The program only
 * tells how to update: it starts no updater.
 */
class FirmwarePrompt
{
    Q_DECLARE_TR_FUNCTIONS(FirmwarePrompt)

public:
    /// Whether the update is offered: the firmware is old, and the engine is not away.
    static bool isOffered(int status, int firmware);

    /// The message that tells of an old firmware.
    static QString hint();

    /// The box's text, for a camera with @p firmware of a product of @p brand (GS::brand).
    static QString text(int firmware, int brand, const QString& appTitle);

    /// Shows the box, and waits until it is closed. What was clicked makes no difference.
    static void exec(int firmware, int brand, const QString& appTitle);
};
