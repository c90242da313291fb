#pragma once

#include <QObject>

/**
 * Knows whether the desktop shows the program's tray icon, without asking anybody at that moment.
 *
 * Qt decides once per process how its icons get into the tray: as items on the session bus, when
 * their host was there at the start, or else as windows that a panel embeds. To ask Qt for a host
 * on the bus means to wait for that host's answer, 25 s for one that hangs; here its coming and
 * going is watched and remembered, and one that hangs counts as there. GUI thread only.
 */
class TrayWatch : public QObject
{
    Q_OBJECT

public:
    /// To be made at the program's start, once its icon is visible. The bus itself is asked, and
    /// waited for, here alone.
    explicit TrayWatch(QObject* parent = nullptr);

    /// Whether there is a tray with the icon in it.
    bool hasTray() const;

private slots:
    void askWatcher();

private:
    void watchBus();

    const bool isItem; ///< the icon is an item on the bus
    bool hostIsThere = true; ///< of such items, as Qt has just found
};
