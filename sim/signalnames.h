#pragma once

#include <QByteArray>

/// The number of the signal @p name, with or without "SIG" before it; 0 when it is unknown.
int signalNumber(QByteArray name);

/// The name of the signal @p number without "SIG"; its digits when it has none here.
QByteArray signalName(int number);
