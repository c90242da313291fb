#pragma once

#include <QCommandLineParser>
#include <QStringList>

#include <optional>

struct Switches;

/**
 * The program's command line: an option for each row of Switches, --help and --version.
 *
 * Qt's own options, such as "-platform", are let through to the application object, which takes
 * them. Options may begin with one dash or two. Needs no application object.
 */
class CommandLine
{
public:
    /// The arguments as main() gets them.
    CommandLine(int argc, char** argv);

    /// What the program has to end with at once: 0 when it was asked for its help or its version,
    /// which are printed then, 2 for an unknown option or a wrong value, which is told on standard
    /// error. Nothing when the program is to run.
    std::optional<int> answer();

    /// Sets what the command line says, over what is set already.
    void applyTo(Switches& switches) const;

private:
    QString findFault();

    QCommandLineParser parser;
    const QStringList arguments;
};
