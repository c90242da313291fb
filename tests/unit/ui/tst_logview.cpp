#include "app/resources.h"
#include "support/patience.h"
#include "ui/logview.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickWindow>
#include <QtTest>

#include <memory>
#include <thread>
#include <vector>

namespace {

/// The log window that was made last.
QQuickWindow* logWindow()
{
    for (QWindow* window : QGuiApplication::allWindows()) {
        if (window->title() == "Log Window")
            return qobject_cast<QQuickWindow*>(window);
    }
    return nullptr;
}

QObject* textItem()
{
    for (QObject* child : logWindow()->findChildren<QObject*>()) {
        if (child->metaObject()->className() == QByteArray("QQuickTextEdit"))
            return child;
    }
    return nullptr;
}

QStringList shown()
{
    return textItem()->property("text").toString().split('\n');
}

int rows()
{
    return logWindow()->property("rows").toInt();
}

} // namespace

class TestLogView : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initResources(); }
    void init();
    void cleanup() { view.reset(); }

    void historyKeepsTheLastLines();
    void historyFindsInACircle();
    void historySplitsLines();
    void opensAtTheEnd();
    void followsUntilItIsScrolled();
    void hiddenOneShowsNothingNew();
    void keysTurnThePages();
    void searchMarksWhatItFinds();
    void copiesAll();
    void savesAll();
    void threadsMayAppend();
    void historyHasTheLinesOfAllThreads();

private:
    void fill(int count);
    void open();
    void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);

    std::unique_ptr<LogView> view;
    std::unique_ptr<QTemporaryDir> dir;
};

void TestLogView::init()
{
    dir = std::make_unique<QTemporaryDir>();
    view = std::make_unique<LogView>(dir->path(), nullptr);
    QVERIFY(logWindow());
    QVERIFY(rows() > 5);
}

void TestLogView::fill(int count)
{
    for (int i = 0; i < count; ++i)
        view->append(QString("line %1").arg(i));
}

/// Keys find it only once it is the window in use.
void TestLogView::open()
{
    view->open();
    QVERIFY(QTest::qWaitForWindowActive(logWindow(), patienceMs));
}

void TestLogView::press(int key, Qt::KeyboardModifiers modifiers)
{
    QTest::keyClick(logWindow(), static_cast<Qt::Key>(key), modifiers);
}

void TestLogView::historyKeepsTheLastLines()
{
    LogHistory history;
    for (int i = 0; i < 25000; ++i)
        history.append(QString::number(i));
    QCOMPARE(history.begin(), 15000);
    QCOMPARE(history.end(), 25000);
    QCOMPARE(history.lines(24998, 10), QStringList({"24998", "24999"}));
    QCOMPARE(history.lines(0, 2), QStringList());
    QCOMPARE(history.lines(14999, 2), QStringList("15000"));
    QCOMPARE(history.text().count('\n'), 10000);
}

void TestLogView::historyFindsInACircle()
{
    LogHistory history;
    for (const char* line : {"one", "Two", "three", "two again"})
        history.append(line);
    QCOMPARE(history.find("two", 0), 1);
    QCOMPARE(history.find("two", 2), 3);
    QCOMPARE(history.find("two", 4), 1);
    QCOMPARE(history.find("four", 0), -1);
}

void TestLogView::historySplitsLines()
{
    LogHistory history;
    history.append("a\nb");
    QCOMPARE(history.lines(0, 9), QStringList({"a", "b"}));
}

void TestLogView::opensAtTheEnd()
{
    fill(500);
    QVERIFY(!logWindow()->isVisible());
    open();
    QVERIFY(logWindow()->isVisible());
    QCOMPARE(shown().size(), rows());
    QCOMPARE(shown().last(), QString("line 499"));
}

void TestLogView::followsUntilItIsScrolled()
{
    fill(500);
    open();
    view->append("newest");
    QTRY_COMPARE_WITH_TIMEOUT(shown().last(), QString("newest"), patienceMs);
    press(Qt::Key_Up);
    QCOMPARE(shown().last(), QString("line 499"));
    view->append("later");
    press(Qt::Key_Up);
    QCOMPARE(shown().last(), QString("line 498"));
    press(Qt::Key_End);
    QCOMPARE(shown().last(), QString("later"));
    view->append("latest");
    QTRY_COMPARE_WITH_TIMEOUT(shown().last(), QString("latest"), patienceMs);
    press(Qt::Key_Up);
    press(Qt::Key_Down); // at the end again
    view->append("last of all");
    QTRY_COMPARE_WITH_TIMEOUT(shown().last(), QString("last of all"), patienceMs);
}

void TestLogView::hiddenOneShowsNothingNew()
{
    fill(100);
    open();
    press(Qt::Key_Escape);
    QVERIFY(!logWindow()->isVisible());
    view->append("newest");
    open();
    QCOMPARE(shown().last(), QString("newest"));
}

void TestLogView::keysTurnThePages()
{
    fill(500);
    open();
    press(Qt::Key_Home);
    QCOMPARE(shown().first(), QString("line 0"));
    press(Qt::Key_PageDown);
    QCOMPARE(shown().first(), QString("line %1").arg(rows()));
    press(Qt::Key_Down);
    QCOMPARE(shown().first(), QString("line %1").arg(rows() + 1));
    press(Qt::Key_PageUp);
    press(Qt::Key_PageUp);
    QCOMPARE(shown().first(), QString("line 0"));
}

void TestLogView::searchMarksWhatItFinds()
{
    fill(500);
    open();
    press(Qt::Key_Home);
    press(Qt::Key_F, Qt::ControlModifier);
    for (const char key : {'L', 'I', 'N', 'E', ' ', '2', '3'})
        press(key);
    press(Qt::Key_Return);
    QCOMPARE(shown().first(), QString("line 23"));
    QCOMPARE(textItem()->property("selectedText").toString(), QString("line 23"));
    press(Qt::Key_F3);
    QCOMPARE(shown().first(), QString("line 230"));
    press('X');
    press(Qt::Key_Return);
    QCOMPARE(logWindow()->property("note").toString(), QString("Not found"));
    press(Qt::Key_Escape);
    QVERIFY(logWindow()->isVisible());
    QVERIFY(textItem()->property("activeFocus").toBool());
}

void TestLogView::copiesAll()
{
    fill(12000);
    open();
    press(Qt::Key_C, Qt::ControlModifier);
    const QStringList lines = QGuiApplication::clipboard()->text().split('\n');
    QCOMPARE(lines.size(), 10001);
    QCOMPARE(lines.first(), QString("line 2000"));
    QCOMPARE(lines[9999], QString("line 11999"));
}

void TestLogView::savesAll()
{
    fill(12000);
    open();
    press(Qt::Key_S, Qt::ControlModifier);
    const QStringList names = QDir(dir->path()).entryList(QDir::Files);
    QCOMPARE(names.size(), 1);
    QFile file(dir->filePath(names[0]));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray text = file.readAll();
    QCOMPARE(text.count('\n'), 10000);
    QVERIFY(text.startsWith("line 2000\n"));
}

void TestLogView::threadsMayAppend()
{
    open();
    std::vector<std::thread> writers;
    for (int writer = 0; writer < 4; ++writer) {
        writers.emplace_back([this] {
            for (int i = 0; i < 5000; ++i)
                view->append("from a thread");
        });
    }
    for (std::thread& writer : writers)
        writer.join();
    view->append("last");
    QTRY_COMPARE_WITH_TIMEOUT(shown().last(), QString("last"), patienceMs);
}

void TestLogView::historyHasTheLinesOfAllThreads()
{
    constexpr int threads = 4;
    constexpr int lines = 100000; // long enough to meet each other
    LogHistory history;
    std::vector<std::thread> writers;
    for (int writer = 0; writer < threads; ++writer) {
        writers.emplace_back([&history] {
            for (int i = 0; i < lines; ++i)
                history.append("from a thread");
        });
    }
    for (std::thread& writer : writers)
        writer.join();
    QCOMPARE(history.end(), qint64(threads * lines));
}

QTEST_MAIN(TestLogView)
#include "tst_logview.moc"
