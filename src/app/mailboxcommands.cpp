#include "app/mailboxcommands.h"

#include "base/logcategories.h"
#include "engine/sdkhelper.h"
#include "ipc/ipclistener.h"
#include "settings/globalsettings.h"
#include "ui/mainwindow.h"
#include "ui/viewroot.h"

#include <QTimer>

#include <algorithm>
#include <array>

namespace {

constexpr int retryMs = 20;
constexpr int mostTries = 500;

template <void (MainWindow::*slot)()> void call(MainWindow& window)
{
    (window.*slot)();
}

/// As the view's choice of the input does it.
template <bool finger> void chooseInput(MainWindow& window)
{
    ViewRoot(window).setTouch(finger);
    SdkHelper::instance()->trigger(finger ? SdkHelper::CommandF : SdkHelper::CommandS);
}

struct Row
{
    int code;
    void (*act)(MainWindow& window);
};

const std::array<Row, 21> rows {{
    {0, call<&MainWindow::startManualCalibration>},
    {1, call<&MainWindow::startAutoCalibration>},
    {2, call<&MainWindow::startTouchCalibration>},
    {3, chooseInput<false>},
    {4, chooseInput<true>},
    {5, call<&MainWindow::openSensorViewer>},
    {6, call<&MainWindow::startParallaxCorrection>},
    {8, call<&MainWindow::hideWindow>},
    {11, call<&MainWindow::bringToFront>},
    {12, call<&MainWindow::exitApp>},
    {16, call<&MainWindow::resetCalibration>},
    {17, call<&MainWindow::pauseResumeCalibration>},
    {21, call<&MainWindow::calibrateRayline>},
    {22, call<&MainWindow::singlePointerMode>},
    {23, call<&MainWindow::multiPointerMode>},
    {24, call<&MainWindow::offsetCorrection>},
    {25, call<&MainWindow::exitApp>},
    {100, call<&MainWindow::openLogWindow>},
    {102, call<&MainWindow::onWakingUp>},
    {106, call<&MainWindow::onGoingToSleep>},
    {113, call<&MainWindow::onLoadCcf>},
}};

const Row* find(int code)
{
    const auto* const found =
        std::find_if(rows.begin(), rows.end(), [code](const Row& row) { return row.code == code; });
    return found == rows.end() ? nullptr : found;
}

} // namespace

MailboxCommands::MailboxCommands(MainWindow& itsWindow, QObject* parent)
    : QObject(parent)
    , window(itsWindow)
{
    tellSenders(mostTries);
    connect(IpcListener::instance(), &IpcListener::received, this, &MailboxCommands::carryOut);
}

void MailboxCommands::tellSenders(int triesLeft)
{
    openForCommands.emplace(GS::instance()->fifo1Path + QLatin1String(".open"), 0);
    if (!openForCommands->isTaken())
        return;
    if (triesLeft > 0)
        QTimer::singleShot(retryMs, this, [this, triesLeft] { tellSenders(triesLeft - 1); });
    else
        qCWarning(integrationLog)
            << "mailbox: another process keeps the lock; senders take it for off";
}

void MailboxCommands::carryOut(int code)
{
    const Row* row = find(code);
    if (!row) {
        qCDebug(integrationLog) << "mailbox: nothing to do for code" << code;
        return;
    }
    row->act(window);
    IpcListener::instance()->writeDone();
}
