#pragma once

#include <QByteArray>
#include <QList>

struct ControllerState;

/// For the support: the state now, what the status file holds and since when, and the last 100
/// changes with their times. The program keeps those nowhere but in its log: they come from
/// @p logs, the oldest first; without a log, that is said.
QByteArray tellStatusHistory(const ControllerState& state, const QList<QByteArray>& logs);
