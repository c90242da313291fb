#include "signalnames.h"

#include <csignal>
#include <cstring>

int signalNumber(QByteArray name)
{
    if (name.startsWith("SIG"))
        name.remove(0, 3);
    for (int number = 1; number < NSIG; ++number) {
        if (!name.isEmpty() && name == ::sigabbrev_np(number))
            return number;
    }
    return 0;
}

QByteArray signalName(int number)
{
    const char* name = ::sigabbrev_np(number);
    return name ? QByteArray(name) : QByteArray::number(number);
}
