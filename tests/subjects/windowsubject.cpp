// Windows under a window manager's control: windowsubject. It shows a MyWidget with the title
// "widget" and makes a log window, says "ready", and obeys lines on standard input:
//   append TEXT    adds a line to the log
//   show | hide    the log window
//   visible        answers "log yes|no, widget yes|no"
//   quit           ends it
// It says "closing" whenever the widget announces that the user wants to close it.
#include "app/resources.h"
#include "support/words.h"
#include "ui/logwindow.h"
#include "ui/mywidget.h"

#include <QApplication>
#include <QCloseEvent>

int main(int argc, char** argv)
{
    initResources();
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    MyWidget widget;
    widget.setWindowTitle("widget");
    widget.resize(300, 200);
    QObject::connect(&widget, &MyWidget::closeWindow, [] { Words::say("closing"); });
    widget.show();
    LogWindow log(nullptr);

    const Words words([&](const QStringList& line) {
        const QString& word = line.first();
        if (word == "append")
            log.appendText(line.value(1));
        else if (word == "show")
            log.show();
        else if (word == "hide")
            log.hide();
        else if (word == "quit")
            _exit(0);
        if (word == "visible") {
            Words::say(QString("log %1, widget %2")
                           .arg(log.isVisible() ? "yes" : "no", widget.isVisible() ? "yes" : "no"));
        }
    });
    Words::say("ready");
    return QApplication::exec();
}
