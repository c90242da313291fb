#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantList>
#include <QVariantMap>

/**
 * The running program as others on the session bus see it: the standard D-Bus interface
 * org.freedesktop.Application, at /com/corvanthel/Vireon of the bus name com.corvanthel.Vireon.
 *
 * The desktop calls it to start or show the program, and a second copy calls it to bring the
 * first one's window to the front. Without a session bus, or when another process has the name,
 * nothing happens, and the program runs without it.
 */
class ApplicationService : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    ApplicationService() = default;
    ~ApplicationService() override;

    /// Exports the interface and asks for the bus name, without waiting for the answer. Calls
    /// that come before the event loop runs are kept.
    void start();

    /// For the second copy: calls Activate on the first with the start-up id of its own start, that
    /// is DESKTOP_STARTUP_ID as it was before the application object was made, which removes the
    /// variable. Waits 2 s at most, starts nothing, and tells whether the first copy answered.
    static bool activateOther(const QByteArray& startupId);

public slots:
    // The interface; names and types are the standard's. The start-up id that may come with a call
    // is not used.
    Q_SCRIPTABLE void Activate(const QVariantMap& platformData);

    /// Shows the window: the program opens no files.
    Q_SCRIPTABLE void Open(const QStringList& uris, const QVariantMap& platformData);

    /// Does nothing: the desktop entry has no actions.
    Q_SCRIPTABLE void ActivateAction(const QString& name, const QVariantList& parameter,
                                     const QVariantMap& platformData);

signals:
    /// The window is to come to the front.
    void activateRequested();
};
