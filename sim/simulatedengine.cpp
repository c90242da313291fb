#include "simulatedengine.h"

#include "datadirectory.h"
#include "journal.h"
#include "output.h"
#include "signalnames.h"

#include <QSocketNotifier>

#include <algorithm>
#include <csignal>

#include <sys/resource.h>
#include <sys/signalfd.h>
#include <unistd.h>

namespace {

void say(const QByteArray& line)
{
    writeOutput(STDOUT_FILENO, line + '\n');
}

void sendSignalToSelf(int number)
{
    if (number != SIGSTOP) {
        // A core file would only litter the tests.
        const rlimit none {0, 0};
        ::setrlimit(RLIMIT_CORE, &none);
        std::signal(number, SIG_DFL);
        sigset_t only;
        sigemptyset(&only);
        sigaddset(&only, number);
        ::sigprocmask(SIG_UNBLOCK, &only, nullptr);
    }
    ::kill(::getpid(), number);
}

} // namespace

SimulatedEngine::SimulatedEngine(const EngineLife& itsLife, const DataDirectory& directory,
                                 Journal& itsJournal, const QElapsedTimer& clock, int signalFile)
    : life(itsLife)
    , journal(itsJournal)
    , terminations(signalFile)
    , server(directory)
    , writer(directory.statusFile())
    , agenda(clock, [this](const Action& action) { perform(action); })
{
    connect(&server, &LetterServer::letterCame, this, &SimulatedEngine::onLetter);
    auto* notifier = new QSocketNotifier(terminations, QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, &SimulatedEngine::onTermination);
}

bool SimulatedEngine::start()
{
    if (!server.listen())
        return false;
    for (const Step& step : life.timeline)
        agenda.add(step.atMs, step.action, Agenda::Timeline);
    return true;
}

void SimulatedEngine::onLetter(const QByteArray& letter, QLocalSocket* tool)
{
    journal.add("letter", {{"letter", Journal::encoded(letter)}});
    say("letter " + letter);
    LetterServer::answer(tool, life.answers.value(letter));
    react(letter);
}

void SimulatedEngine::onTermination()
{
    signalfd_siginfo info {};
    if (::read(terminations, &info, sizeof info) != sizeof info)
        return;
    const QByteArray name = signalName(static_cast<int>(info.ssi_signo));
    journal.add("asked", {{"signal", name}});
    react(Scenario::sigterm());
}

void SimulatedEngine::react(const QByteArray& letter)
{
    const QVector<Step> steps = life.reactions.value(letter);
    if (std::any_of(steps.begin(), steps.end(),
                    [](const Step& step) { return step.action.touchesStatusFile(); }))
        agenda.dropWritesOfLetters();
    const int now = agenda.nowMs();
    for (const Step& step : steps)
        agenda.add(now + step.atMs, step.action, Agenda::Letter);
    agenda.performDue();
}

void SimulatedEngine::perform(const Action& action)
{
    switch (action.kind) {
    case Action::Ignore:
        break;
    case Action::Status:
    case Action::Firmware:
    case Action::Raw:
        writeStatus(action);
        break;
    case Action::Remove:
        writer.remove();
        journal.add("remove");
        break;
    case Action::Print:
        writeOutput(STDOUT_FILENO, action.text, action.repeat);
        break;
    case Action::PrintError:
        writeOutput(STDERR_FILENO, action.text, action.repeat);
        break;
    case Action::Die:
        journalDeath(*action.death);
        if (action.death->how == Death::ByExit)
            server.close();
        die(*action.death);
    }
}

void SimulatedEngine::writeStatus(const Action& action)
{
    QByteArray content = action.text;
    QVector<JournalField> fields {{"raw", Journal::encoded(content)}};
    if (action.kind != Action::Raw) {
        result = action.kind == Action::Status ? action.result : result;
        firmware = action.firmware.value_or(firmware);
        const QByteArray resultText = QByteArray::number(result);
        const QByteArray firmwareText = QByteArray::number(firmware);
        content = "Result=" + resultText + "\nFirmware=" + firmwareText + '\n';
        fields = {{"result", resultText}, {"firmware", firmwareText}};
        say("status " + resultText + " firmware " + firmwareText);
    }
    if (action.styleMs > 0)
        journal.add("writing", fields);
    const auto done = [this, fields, death = action.death] {
        journal.add("status", fields);
        if (death)
            journalDeath(*death);
    };
    const auto appeared = [this, death = action.death] {
        if (death)
            die(*death);
    };
    writer.write(content, action, done, appeared);
}

void SimulatedEngine::journalDeath(const Death& death)
{
    if (death.how == Death::ByExit)
        journal.add("exit", {{"code", QByteArray::number(death.value)}});
    else
        journal.add(death.value == SIGSTOP ? "stop" : "exit",
                    {{"signal", signalName(death.value)}});
}

void SimulatedEngine::die(const Death& death)
{
    // At once: there are no other threads, and nothing here needs a destructor.
    if (death.how == Death::BySignal)
        sendSignalToSelf(death.value);
    else
        ::_exit(death.value);
}
