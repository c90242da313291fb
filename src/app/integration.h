#pragma once

#include "settings/switches.h"

#include <QObject>

class CommandLine;
class MainWindow;

/**
 * What an administrator has switched on: makes it and wires it to the main window.
 *
 * With everything off it does nothing at all. One object per process, made once this copy is the
 * one that runs; it must outlive the event loop.
 */
class Integration : public QObject
{
    Q_OBJECT

public:
    /// Reads "config/integration.conf" beside the program, over which @p commandLine takes
    /// precedence. What is wrong in the file is told on standard error.
    explicit Integration(const CommandLine& commandLine);

    /// Starts what needs the main window, which must exist.
    void start(MainWindow& window);

private:
    void startLogFile();

    Switches switches;
};
