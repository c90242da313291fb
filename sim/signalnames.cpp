#include "signalnames.h"

#include <csignal>

namespace {

struct SignalName
{
    const char* name;
    int number;
};

constexpr SignalName signalNames[] = {
    {"HUP", SIGHUP},   {"INT", SIGINT},   {"QUIT", SIGQUIT}, {"ILL", SIGILL},
    {"TRAP", SIGTRAP}, {"ABRT", SIGABRT}, {"BUS", SIGBUS},   {"FPE", SIGFPE},
    {"KILL", SIGKILL}, {"USR1", SIGUSR1}, {"SEGV", SIGSEGV}, {"USR2", SIGUSR2},
    {"PIPE", SIGPIPE}, {"ALRM", SIGALRM}, {"TERM", SIGTERM}, {"STOP", SIGSTOP},
};

} // namespace

int signalNumber(QByteArray name)
{
    if (name.startsWith("SIG"))
        name.remove(0, 3);
    for (const SignalName& entry : signalNames) {
        if (name == entry.name)
            return entry.number;
    }
    return 0;
}

QByteArray signalName(int number)
{
    for (const SignalName& entry : signalNames) {
        if (number == entry.number)
            return entry.name;
    }
    return QByteArray::number(number);
}
