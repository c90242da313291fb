#include "engine/sdkhelper.h"

#include "base/logcategories.h"
#include "base/workerthread.h"
#include "engine/childprocess.h"
#include "engine/statuslistener.h"

#include <QDeadlineTimer>
#include <QDebug>

#include <algorithm>
#include <iterator>
#include <memory>

namespace {

const char* const engineProgram = "./vireon-main";
const char* const toolProgram = "./vireon-sdk";

constexpr int noAction = -1;
constexpr int restartLimit = 35; // an exit beyond it is the last one
constexpr int retryLimit = 3;
constexpr unsigned long readinessIntervalMs = 100;
constexpr int toolLimitMs = 30000;
constexpr int stopIntervalMs = 20; // how soon a command sees that the program ends

struct CommandLetter
{
    SdkHelper::Action action;
    const char* letter;
};

/// The engine's vocabulary; the digits are letters of their own, not the codes.
constexpr CommandLetter commandLetters[] = {
    {SdkHelper::AutoCalibration, "a"},  {SdkHelper::ManualCalibration, "m"},
    {SdkHelper::SensorViewer, "v"},     {SdkHelper::TouchCalibration, "t"},
    {SdkHelper::CommandS, "s"},         {SdkHelper::CommandF, "f"},
    {SdkHelper::ResetCalibration, "0"}, {SdkHelper::PauseResumeCalibration, "8"},
    {SdkHelper::SinglePointer, "5"},    {SdkHelper::MultiPointer, "6"},
    {SdkHelper::CalibrateRayline, "4"}, {SdkHelper::OffsetCorrection, "7"},
    {SdkHelper::QuitEngine, "Q"},       {SdkHelper::LoadCcf, "9"},
};

/// The letter of @p action, or an empty text.
QString letterOf(int action)
{
    const auto* const found =
        std::find_if(std::begin(commandLetters), std::end(commandLetters),
                     [action](const CommandLetter& entry) { return entry.action == action; });
    return found == std::end(commandLetters) ? QString() : QString::fromLatin1(found->letter);
}

/// Whether the tool came to its end: within its time, and while the program runs.
bool waitForTool(ChildProcess& tool)
{
    const QDeadlineTimer deadline(toolLimitMs);
    while (!WorkerThread::isStopping() && !deadline.hasExpired()) {
        if (tool.waitForFinished(stopIntervalMs))
            return true;
        if (tool.state() == QProcess::NotRunning)
            return false; // it could not be started
    }
    return false;
}

/// Whether commands have to wait. Each test reads the status afresh.
bool engineIsAway()
{
    const StatusListener* listener = StatusListener::instance();
    return listener->currentStatus() == StatusEngineRestarting
        || listener->currentStatus() == StatusNotReady
        || listener->currentStatus() == StatusUnknown;
}

} // namespace

SdkHelper* SdkHelper::_instance = nullptr;

SdkHelper* SdkHelper::instance(QObject* parent)
{
    if (!_instance)
        _instance = new SdkHelper(parent);
    return _instance;
}

SdkHelper::SdkHelper(QObject* parent)
    : QObject(parent)
{
}

SdkHelper::~SdkHelper()
{
    qDebug() << "delete sdk";
    _instance = nullptr;
    discardProcess();
}

// --- Engine -----------------------------------------------------------------------------------

void SdkHelper::startVireon()
{
    discardProcess();
    process = new ChildProcess(this);
    process->setReadChannel(QProcess::StandardOutput);
    connect(process, &QProcess::readyReadStandardOutput, this, &SdkHelper::onReadyRead);
    connect(process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this,
            &SdkHelper::onFinished);
    connect(process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            qCWarning(engineLog) << "cannot start" << engineProgram << process->errorString();
    });
    qDebug() << "starting" << engineProgram;
    process->launch(QLatin1String(engineProgram));
}

void SdkHelper::stopVireon()
{
    if (process) {
        process->disconnect(this);
        process->terminate();
        discardProcess();
    }
    tellIfStopped();
}

void SdkHelper::discardProcess()
{
    ChildProcess* old = process;
    process = nullptr;
    if (!old)
        return;
    old->disconnect(this);
    connect(old, &QObject::destroyed, this, &SdkHelper::tellIfStopped);
    old->discard();
}

void SdkHelper::tellIfStopped()
{
    // One that has been let go of is a child of this object until it has ended.
    if (!process && !findChild<ChildProcess*>())
        emit engineStopped();
}

void SdkHelper::onReadyRead()
{
    if (!process)
        return;
    for (QByteArray line = process->readLine(); !line.isEmpty(); line = process->readLine())
        qDebug() << "[vireon]" << line;
}

void SdkHelper::onFinished(int exitCode, QProcess::ExitStatus status)
{
    if (restartCount > restartLimit) {
        emit statusChanged(StatusEngineGaveUp);
        return;
    }
    qDebug() << "Vireon exited, code = " << exitCode << " status = " << status;
    process->close();
    StatusListener::instance()->resetWithProblem();
    startVireon();
    qDebug() << "lastAction: " << lastAction.load();
    if (lastAction != noAction)
        resendLastAction();
    ++restartCount;
}

void SdkHelper::resendLastAction()
{
    ++retryCount;
    if (retryCount <= retryLimit) {
        qDebug() << "Send last action again";
        trigger(lastAction);
        return;
    }
    qDebug() << "Maximum retry exceeded, will not start the last action again";
    recoveryFlag = false;
    recoveryMark = -1;
    lastAction = noAction;
    retryCount = 0;
}

// --- Commands ---------------------------------------------------------------------------------

void SdkHelper::trigger(Action action)
{
    trigger(static_cast<int>(action));
}

void SdkHelper::trigger(int action)
{
    commandIdle = false;
    WorkerThread::doWork(this, SLOT(processTrigger(int)), action);
}

void SdkHelper::processTrigger(int action)
{
    qDebug() << "Action: " << action << " last: " << lastAction.load()
             << " current vireon status = " << StatusListener::instance()->currentStatus();
    while (engineIsAway() && !WorkerThread::isStopping())
        WorkerThread::msleep(readinessIntervalMs);
    if (WorkerThread::isStopping())
        return;

    const QString letter = letterOf(action);
    if (letter.isEmpty()) {
        qDebug() << "[SdKHelper] no argument found for: " << action;
        commandIdle = true;
        return;
    }
    lastAction = action;
    if (runTool(letter))
        onToolSucceeded(letter);
    commandIdle = true;
}

bool SdkHelper::runTool(const QString& letter)
{
    auto tool = std::make_unique<ChildProcess>();
    // Nobody reads its output, which would pile up here.
    tool->setStandardOutputFile(QProcess::nullDevice());
    tool->launch(QLatin1String(toolProgram), {letter});
    const bool finished = waitForTool(*tool);
    if (WorkerThread::isStopping() && !finished) {
        static_cast<void>(tool.release()); // it has its grace period, too
        return false;
    }
    qDebug() << "returned from " << toolProgram << " : " << (finished ? "true" : "false");
    if (!finished)
        tool->endNow();
    return finished;
}

void SdkHelper::onToolSucceeded(const QString& letter)
{
    restartCount = 0;
    recoveryMark = -1;
    recoveryFlag = false;
    qDebug() << "Sdk successful for command: " << letter;
    lastAction = noAction;
    retryCount = 0;
}

void SdkHelper::resetLastAction()
{
    commandIdle = true;
    lastAction = noAction;
    retryCount = 0;
}
