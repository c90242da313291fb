#pragma once

#include <QtGlobal>

class LogFile;
class QMessageLogContext;
class QString;

/// A handler for qInstallMessageHandler(), to be installed right after the application object is
/// made. Each message becomes one line of UTF-8,
///     16.11.2026 05:34:12: Warning: text (file.cpp:12, void function())
/// with the level words Debug, Warning, Critical and Fatal, and none for an information. Parts of
/// the context that are missing are empty, or 0. The line goes to standard output at once, to the
/// log file if there is one and, when there is a main window, to MainWindow::appendText(), on the
/// thread that logs. Returns also
/// from a fatal message; Qt ends the process then.
void myMessageOutput(QtMsgType type, QMessageLogContext const& context, QString const& text);

/// Lets the handler write its lines into @p file as well, which must live as long as the process.
/// To be called before the handler is installed.
void setLogFile(LogFile* file);
