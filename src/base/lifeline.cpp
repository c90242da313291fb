#include "base/lifeline.h"

#include <QThread>

Lifeline::Hold::Hold(Lifeline& lifeline)
    : line(lifeline)
{
    State expected = Free; // only one loop holds: it never meets Held here
    granted = line.state.compare_exchange_strong(expected, Held);
}

Lifeline::Hold::~Hold()
{
    if (granted)
        line.state = Free;
}

void Lifeline::begin()
{
    state = Free;
}

void Lifeline::cut()
{
    State expected = Free;
    while (!state.compare_exchange_weak(expected, Cut)) {
        expected = Free;
        QThread::yieldCurrentThread();
    }
}
