#include "support/windowfixture.h"

#include "base/workerthread.h"
#include "display/resolutionchangenotifier.h"
#include "engine/statuslistener.h"
#include "support/files.h"
#include "ui/mywidget.h"

#include <QAction>
#include <QDir>
#include <QQuickItem>
#include <QRegularExpression>
#include <QSplashScreen>
#include <QTemporaryDir>

#include <algorithm>

namespace {

constexpr int unknownFirmware = 999;
constexpr int noCommand = -1;

std::unique_ptr<QTemporaryDir> folder;

/// The settings that tests change, as the program has them without its files.
void resetSettings()
{
    GS* settings = GS::instance();
    settings->isTouch = 1;
    settings->autostart = true;
    settings->singlePointerMode = 0;
    settings->cpuState = 2;
    settings->aspectRatioWarningShown = false;
    settings->acPopUpEnabled = true;
    settings->brand = 0;
    settings->stylusOnly = false;
}

void emptyFolder()
{
    const QDir dir(folder->path());
    for (const QString& name : dir.entryList(QDir::Files))
        QFile::remove(dir.filePath(name));
}

void closeSplash()
{
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (qobject_cast<QSplashScreen*>(widget))
            widget->close();
    }
}

} // namespace

// --- Frame ------------------------------------------------------------------------------------

void WindowFixture::initTestCase()
{
    initResources();
    qunsetenv("DISPLAY"); // no GTK here: the indicator's own tests have it
    folder = std::make_unique<QTemporaryDir>();
    // Set once: the status reader looks at its path on a thread of its own.
    GS* settings = GS::instance();
    settings->penSettingsPath = file(QStringLiteral("pensettings.ini")).toStdString();
    settings->mcCachePath = file(QStringLiteral("mcCache")).toStdString();
    settings->userIniPath = file(QStringLiteral("user.ini")).toStdString();
    applyLooks();
    // Not a child of the first window, which is deleted here.
    SdkHelper::instance(QCoreApplication::instance());
    ResolutionChangeNotifier::instance();
    log = std::make_unique<LogRecorder>();
    StatusListener::instance();
    QVERIFY(readersHaveBegun());
    log.reset();
}

void WindowFixture::init()
{
    resetSettings();
    emptyFolder();
    qunsetenv("XDG_CURRENT_DESKTOP");
    StatusListener::instance()->firmware = unknownFirmware;
    log = std::make_unique<LogRecorder>();
    calls = std::make_unique<QtCalls>();
}

void WindowFixture::cleanup()
{
    // A command that still waits would go on in the next function.
    const bool ended = QTest::qWaitFor(
        [&] {
            return log->count("Action:") >= commandsGiven()
                && log->count("returned from") >= log->count("Action:");
        },
        patienceMs);
    SdkHelper::instance()->stopVireon();
    SdkHelper::instance()->resetLastAction();
    calls.reset();
    closeSplash();
    delete topLevel();
    view = nullptr;
    log.reset();
    QVERIFY(ended);
}

void WindowFixture::cleanupTestCase()
{
    WorkerThread::stopAll();
    QVERIFY(WorkerThread::waitForAll(patienceMs));
    folder.reset();
}

// --- Window -----------------------------------------------------------------------------------

void WindowFixture::build()
{
    view =
        new MainWindow(QStringLiteral("Open"), QStringLiteral("Exit"), QStringLiteral("1.4.121"));
}

QWidget* WindowFixture::topLevel() const
{
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (view && qobject_cast<MyWidget*>(widget) && widget->windowTitle() == view->appName())
            return widget;
    }
    return nullptr;
}

QAction* WindowFixture::action(const QString& text) const
{
    for (QAction* candidate : topLevel()->findChildren<QAction*>()) {
        if (candidate->text() == text)
            return candidate;
    }
    return nullptr;
}

QVariant WindowFixture::root(const char* property) const
{
    return view->rootObject()->property(property);
}

QSystemTrayIcon* WindowFixture::trayIcon() const
{
    return view->findChild<QSystemTrayIcon*>();
}

// --- Files ------------------------------------------------------------------------------------

QString WindowFixture::directory()
{
    return folder->path();
}

QString WindowFixture::file(const QString& name)
{
    return folder->filePath(name);
}

QByteArray WindowFixture::savedSetting(int line)
{
    return contentOf(file(QStringLiteral("user.ini")), QByteArray()).split('\n').value(line);
}

// --- Commands ---------------------------------------------------------------------------------

bool WindowFixture::makeReady()
{
    log->clear();
    StatusListener::instance()->injectStatus(StatusReady);
    const bool ready = QTest::qWaitFor(
        [&] { return root("status").toInt() == StatusReady && !root("buttonsDisabled").toBool(); },
        patienceMs);
    const bool begun = readersHaveBegun();
    log->clear();
    return ready && begun;
}

bool WindowFixture::readersHaveBegun() const
{
    return QTest::qWaitFor([&] { return commandsGiven() == 0; }, patienceMs);
}

int WindowFixture::commandsGiven() const
{
    // Each piece of work is told at once, and what it is by a thread of its own.
    return log->count("Do work") - log->count("start reading status file");
}

QVector<int> WindowFixture::commands() const
{
    const bool begun =
        QTest::qWaitFor([&] { return log->count("Action:") >= commandsGiven(); }, patienceMs);
    if (!begun)
        return {noCommand};
    QVector<int> codes;
    for (const LogRecorder::Line& line : log->linesWith("Action:"))
        codes.append(line.text.section(QRegularExpression(QStringLiteral(" +")), 1, 1).toInt());
    std::sort(codes.begin(), codes.end());
    return codes;
}

// --- Log --------------------------------------------------------------------------------------

QStringList WindowFixture::told(const QStringList& wanted) const
{
    QStringList found;
    for (const LogRecorder::Line& line : log->lines()) {
        if (wanted.contains(line.text))
            found.append(line.text);
    }
    return found;
}

QStringList WindowFixture::toldOf(const QString& part) const
{
    QStringList found;
    for (const LogRecorder::Line& line : log->lines()) {
        if (line.text.contains(part))
            found.append(line.text);
    }
    return found;
}
