#include "app/quitrequests.h"

#include <QCoreApplication>
#include <QEvent>
#include <QSocketNotifier>

#include <cerrno>
#include <csignal>
#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

namespace {

int wakeUpPipe[2] = {-1, -1};

void wakeUp(int)
{
    const int savedErrno = errno;
    const char byte = 1;
    [[maybe_unused]] const ssize_t written = write(wakeUpPipe[1], &byte, 1);
    errno = savedErrno;
}

/// Several signals in a row are one request.
void drainPipe()
{
    char bytes[64];
    while (read(wakeUpPipe[0], bytes, sizeof bytes) > 0) { }
}

/// Whether the process was started with this signal ignored, as by nohup.
bool isIgnored(int number)
{
    struct sigaction inherited = {};
    return sigaction(number, nullptr, &inherited) == 0 && inherited.sa_handler == SIG_IGN;
}

/// When the session manager has gone, at the session's end or by a crash, libICE calls exit() in
/// the middle of everything: a quit is requested instead. libICE is in this process only where Qt's
/// plug-in for X has loaded it.
void surviveTheSessionManager()
{
    using Handler = void (*)(void* connection);
    using SetHandler = Handler (*)(Handler);
    void* library = dlopen("libICE.so.6", RTLD_LAZY | RTLD_NOLOAD);
    if (!library)
        return;
    const auto setHandler = reinterpret_cast<SetHandler>(dlsym(library, "IceSetIOErrorHandler"));
    if (setHandler)
        setHandler([](void*) { wakeUp(0); });
}

} // namespace

QuitRequests::QuitRequests()
{
    QCoreApplication::instance()->installEventFilter(this);
    if (pipe2(wakeUpPipe, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    auto* notifier = new QSocketNotifier(wakeUpPipe[0], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this] {
        drainPipe();
        emit quitRequested();
    });
    struct sigaction action = {};
    action.sa_handler = wakeUp;
    action.sa_flags = SA_RESTART;
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        if (number == SIGTERM || !isIgnored(number))
            sigaction(number, &action, nullptr);
    }
    surviveTheSessionManager();
}

bool QuitRequests::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != QCoreApplication::instance() || event->type() != QEvent::Quit)
        return false;
    emit quitRequested();
    return true;
}
