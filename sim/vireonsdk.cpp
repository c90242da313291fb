#include "datadirectory.h"
#include "journal.h"

#include <QCoreApplication>
#include <QLocalSocket>
#include <QTextCodec>

#include <cstdio>

#include <unistd.h>

namespace {

enum ExitStatus { NoEngine = 1, EngineLost = 3, WrongUsage = 64 };

bool isLetter(const QStringList& arguments)
{
    return arguments.size() == 2 && arguments.at(1).toUcs4().size() == 1
        && arguments.at(1) != QLatin1String("\n");
}

/// Waits for the engine's answer; empty when the engine has gone.
QByteArray answerOf(QLocalSocket& engine)
{
    while (!engine.canReadLine()) {
        if (!engine.waitForReadyRead(-1))
            return QByteArray();
    }
    return engine.readLine().trimmed();
}

[[noreturn]] void hang()
{
    while (true)
        ::pause();
}

/// Delivers @p letter and returns the tool's exit status.
int deliver(const QString& letter)
{
    const DataDirectory directory;
    QLocalSocket engine;
    engine.connectToServer(directory.socketAddress());
    if (!engine.waitForConnected(-1)) {
        std::fprintf(stderr, "vireon-sdk: no engine listens at %s: %s\n",
                     qUtf8Printable(directory.socketFile()), qUtf8Printable(engine.errorString()));
        return NoEngine;
    }
    engine.write(letter.toUtf8() + '\n');
    engine.flush();
    const QByteArray answer = answerOf(engine);
    if (answer == "hang")
        hang();
    bool isTaken = false;
    const int code = answer.startsWith("exit ") ? answer.mid(5).toInt(&isTaken) : 0;
    if (isTaken)
        return code;
    std::fputs("vireon-sdk: the engine has gone before it answered\n", stderr);
    return EngineLost;
}

} // namespace

int main(int argc, char* argv[])
{
    // File names and letters are UTF-8, also in the locale "C".
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    QCoreApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();

    Journal journal("tool", Journal::pathFromEnvironment());
    if (!journal.isUsable())
        std::fprintf(stderr, "vireon-sdk: cannot open the journal %s\n",
                     qUtf8Printable(Journal::pathFromEnvironment()));
    journal.add("start", {{"letter", Journal::encoded(arguments.value(1).toUtf8())}});
    int code = WrongUsage;
    if (isLetter(arguments))
        code = deliver(arguments.at(1));
    else
        std::fputs("usage: vireon-sdk LETTER\n", stderr);
    journal.add("end",
                {{"letter", Journal::encoded(arguments.value(1).toUtf8())},
                 {"code", QByteArray::number(code)}});
    return code;
}
