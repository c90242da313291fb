#include "support/files.h"
#include "support/logrecorder.h"
#include "support/qtcalls.h"
#include "ui/linuxtrayiconmanager.h"
#include "ui/messagechannel.h"

#include <QSystemTrayIcon>
#include <QTemporaryFile>
#include <QTest>

#include <memory>
#include <unistd.h>

/// Each of the three ways of a message, and what the others do meanwhile. In place of libnotify is
/// one that says on standard error what is called.
class TestMessageChannel : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void trayIsAskedForEachTime();
    void withoutAnIndicatorThereIsNoTray();
    void trayShowsABalloon();
    void serviceShowsItWithoutATray();
    void indicatorShowsANotification();
    void hidingTakesTheBalloonAway();
    void hidingDoesNothingOnUnity();

private:
    QStringList told() const;

    std::unique_ptr<LogRecorder> log;
    std::unique_ptr<QtCalls> calls;
};

namespace {

/// What is written on standard error while it lives.
class StandardError
{
public:
    StandardError()
        : usual(dup(STDERR_FILENO))
    {
        file.open();
        dup2(file.handle(), STDERR_FILENO);
    }

    ~StandardError()
    {
        dup2(usual, STDERR_FILENO);
        close(usual);
    }

    StandardError(const StandardError&) = delete;
    StandardError& operator=(const StandardError&) = delete;

    QString text() const { return QString::fromUtf8(contentOf(file.fileName())); }

private:
    const int usual;
    QTemporaryFile file;
};

} // namespace

void TestMessageChannel::init()
{
    log = std::make_unique<LogRecorder>();
    calls = std::make_unique<QtCalls>();
}

void TestMessageChannel::cleanup()
{
    calls.reset();
    log.reset();
}

/// What the tray icon and the session bus were asked for.
QStringList TestMessageChannel::told() const
{
    QStringList found;
    for (const LogRecorder::Line& line : log->lines()) {
        const bool isAsked =
            line.text.startsWith("QSystemTrayIcon.") || line.text.startsWith("QDBusConnection.");
        if (isAsked && !line.text.contains(".connect("))
            found.append(line.text);
    }
    return found;
}

void TestMessageChannel::trayIsAskedForEachTime()
{
    QSystemTrayIcon icon;
    const MessageChannel channel(&icon, nullptr, nullptr);
    for (const bool available : {true, false, true}) {
        calls->hasTray = available;
        QCOMPARE(channel.hasTray(), available);
    }
}

void TestMessageChannel::withoutAnIndicatorThereIsNoTray()
{
    LinuxTrayIconManager indicator;
    const MessageChannel channel(nullptr, &indicator, nullptr);
    for (const bool available : {true, false}) {
        calls->hasTray = available;
        QVERIFY(!channel.hasTray());
    }
}

void TestMessageChannel::trayShowsABalloon()
{
    QSystemTrayIcon icon;
    MessageChannel channel(&icon, nullptr, nullptr);
    channel.show("Title", "Text");
    // With the icon of an information, for 5 s.
    QCOMPARE(told(), QStringList {"QSystemTrayIcon.showMessage(Title, Text, 1, 5000)"});
}

void TestMessageChannel::serviceShowsItWithoutATray()
{
    QSystemTrayIcon icon;
    MessageChannel channel(&icon, nullptr, nullptr);
    calls->hasTray = false;
    channel.show("Title", "Text");
    QCOMPARE(told(), QStringList {"QDBusConnection.Notify(Title, Text)"});
}

void TestMessageChannel::indicatorShowsANotification()
{
    LinuxTrayIconManager indicator;
    MessageChannel channel(nullptr, &indicator, nullptr);
    for (const bool available : {true, false}) {
        calls->hasTray = available;
        const StandardError error;
        channel.show(QString::fromUtf8("Größe"), QString::fromUtf8("日本"));
        QVERIFY2(error.text().contains(QString::fromUtf8("notify_notification_new Größe|日本|")),
                 qPrintable(error.text()));
        QCOMPARE(error.text().count("notify_notification_show"), 1);
    }
    QCOMPARE(told(), QStringList());
}

void TestMessageChannel::hidingTakesTheBalloonAway()
{
    QSystemTrayIcon icon;
    MessageChannel channel(&icon, nullptr, nullptr);
    channel.hide();
    QCOMPARE(
        told(),
        QStringList({"QSystemTrayIcon.setVisible(false)", "QSystemTrayIcon.setVisible(true)"}));
}

void TestMessageChannel::hidingDoesNothingOnUnity()
{
    LinuxTrayIconManager indicator;
    MessageChannel channel(nullptr, &indicator, nullptr);
    const StandardError error;
    channel.hide();
    QCOMPARE(told(), QStringList());
    QCOMPARE(error.text(), QString());
}

QTEST_MAIN(TestMessageChannel)

#include "tst_messagechannel.moc"
