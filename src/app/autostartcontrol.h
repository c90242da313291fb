#pragma once

#include <QObject>

class MainWindow;

/**
 * Makes the settings' check box of the autostart do what it says: a change of it is written into
 * the desktop's entry, and the box shows what the desktop will really do.
 */
class AutostartControl : public QObject
{
    Q_OBJECT

public:
    /// Follows the view of @p window, which has one; sets box and setting to what is so now.
    AutostartControl(MainWindow& window, QObject* parent);

private slots:
    void onChanged();

private:
    void showWhatIsSo();

    MainWindow& window;
};
