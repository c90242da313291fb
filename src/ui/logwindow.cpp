#include "ui/logwindow.h"

#include <QUrl>
#include <QVariant>

LogWindow::LogWindow(QWidget* parent)
{
    Q_UNUSED(parent)
    load(QUrl(QStringLiteral("qrc:/qml/LogWindow.qml")));
    // Qt makes this on first use, which must not happen on two threads in appendText() at once.
    if (const QObject* window = view())
        window->metaObject();
}

bool LogWindow::isVisible()
{
    QVariant visible = false;
    if (QObject* window = view()) {
        QMetaObject::invokeMethod(window, "isVisible", Qt::DirectConnection,
                                  Q_RETURN_ARG(QVariant, visible));
    }
    return visible.toBool();
}

void LogWindow::hide()
{
    if (QObject* window = view())
        QMetaObject::invokeMethod(window, "hide");
}

void LogWindow::show()
{
    if (QObject* window = view())
        QMetaObject::invokeMethod(window, "show");
}

void LogWindow::appendText(QString text)
{
    if (QObject* window = view()) {
        QMetaObject::invokeMethod(window, "appendText", Qt::QueuedConnection,
                                  Q_ARG(QVariant, text));
    }
}

QObject* LogWindow::view() const
{
    return rootObjects().value(0);
}
