#include "ui/logview.h"

#include "base/regularfile.h"

#include <QClipboard>
#include <QDateTime>
#include <QGuiApplication>
#include <QQuickWindow>
#include <QVariant>

#include <algorithm>

namespace {

constexpr int refreshIntervalMs = 100;

} // namespace

LogView::LogView(const QString& itsDirectory, QObject* parent)
    : QObject(parent)
    , directory(itsDirectory)
{
    timer.setInterval(refreshIntervalMs);
    connect(&timer, &QTimer::timeout, this, &LogView::refresh);
    const QObject* root = window.rootObjects().value(0);
    if (!root)
        return;
    connect(root, SIGNAL(scrolled(int)), this, SLOT(scroll(int)));
    connect(root, SIGNAL(jumped(bool)), this, SLOT(jump(bool)));
    connect(root, SIGNAL(searched(QString)), this, SLOT(search(QString)));
    connect(root, SIGNAL(copied()), this, SLOT(copyAll()));
    connect(root, SIGNAL(saved()), this, SLOT(save()));
}

void LogView::open()
{
    following = true;
    shownEnd = -1;
    window.show();
    if (auto* shown = qobject_cast<QQuickWindow*>(window.rootObjects().value(0))) {
        shown->raise();
        shown->requestActivate();
    }
    refresh();
    timer.start();
}

void LogView::refresh()
{
    if (!window.isVisible()) {
        timer.stop();
        return;
    }
    const qint64 end = history.end();
    if (following && end != shownEnd)
        showPage(end - rows());
    shownEnd = end;
}

void LogView::scroll(int count)
{
    following = false;
    showPage(shownFirst + count);
    following = shownFirst + rows() >= history.end();
}

void LogView::jump(bool toTheEnd)
{
    following = toTheEnd;
    showPage(toTheEnd ? history.end() - rows() : history.begin());
}

void LogView::search(const QString& text)
{
    const qint64 line =
        text.isEmpty() ? -1 : history.find(text, found < 0 ? shownFirst : found + 1);
    found = line;
    if (line < 0) {
        tell(tr("Not found"));
        return;
    }
    following = false;
    showPage(line, text);
}

void LogView::copyAll()
{
    QGuiApplication::clipboard()->setText(history.text());
    tell(tr("Copied"));
}

void LogView::save()
{
    const QString path =
        directory + QDateTime::currentDateTime().toString("/'log-'yyyyMMdd-HHmmss'.txt'");
    const QByteArray text = history.text().toUtf8();
    QFile file;
    const bool saved = openRegularFile(file, path, QIODevice::WriteOnly | QIODevice::Truncate)
        && file.write(text) == text.size() && file.flush();
    tell(saved ? tr("Saved as %1").arg(path) : tr("Cannot be saved"));
}

int LogView::rows() const
{
    return std::max(1, window.rootObjects().value(0)->property("rows").toInt());
}

void LogView::showPage(qint64 first, const QString& marked)
{
    shownFirst = std::clamp(first, history.begin(), std::max(history.begin(), history.end() - 1));
    const QString text = history.lines(shownFirst, rows()).join(QLatin1Char('\n'));
    const int begin = marked.isEmpty() ? -1 : text.indexOf(marked, 0, Qt::CaseInsensitive);
    QMetaObject::invokeMethod(window.rootObjects().value(0), "showPage", Q_ARG(QVariant, text),
                              Q_ARG(QVariant, begin), Q_ARG(QVariant, marked.size()));
}

void LogView::tell(const QString& note)
{
    window.rootObjects().value(0)->setProperty("note", note);
}
