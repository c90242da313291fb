#include "mainwindow.h"

MainWindow* mainWindow = nullptr;

void MainWindow::appendText(QString) { }
