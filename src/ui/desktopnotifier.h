#pragma once

#include <QObject>
#include <QPointer>
#include <QSet>
#include <QString>

class QDBusPendingCallWatcher;

/**
 * Shows messages through the desktop's notification service, where there is no tray icon that
 * could show them.
 *
 * Every call is asynchronous: a service that hangs or is missing delays nothing, and a message
 * that it does not take is lost silently.
 */
class DesktopNotifier : public QObject
{
    Q_OBJECT

public:
    explicit DesktopNotifier(QObject* parent = nullptr);

    /// Shows one message for 5 s. Earlier ones stay until their own time is up.
    void showMessage(const QString& summary, const QString& body);

    /// Takes the last message away, as soon as the service has told its number.
    void closeMessage();

signals:
    void messageClicked(); ///< the user has clicked one that was shown here

private slots:
    void onActionInvoked(uint id, const QString& action);
    void onNotificationClosed(uint id);

private:
    QPointer<QDBusPendingCallWatcher> lastCall; ///< null once answered, or closed
    uint lastId = 0; ///< the service's number of the last message; 0: none
    QSet<uint> shownIds; ///< of all messages that can be clicked
};
