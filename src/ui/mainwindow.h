#pragma once

#include <QString>

/// Stands in for the window until it lands.
class MainWindow
{
public:
    void appendText(QString text);
};

/// The process's window; null until it is made.
extern MainWindow* mainWindow;
