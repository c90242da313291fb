#include "app/resources.h"
#include "support/contrast.h"
#include "support/logrecorder.h"
#include "support/patience.h"
#include "ui/logwindow.h"

#include <QElapsedTimer>
#include <QFile>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <memory>
#include <thread>
#include <vector>

namespace {

QQuickWindow* windowOf(const LogWindow& log)
{
    return qobject_cast<QQuickWindow*>(log.rootObjects().value(0));
}

QObject* childOf(const LogWindow& log, const QByteArray& className)
{
    for (QObject* child : windowOf(log)->findChildren<QObject*>()) {
        if (child->metaObject()->className() == className)
            return child;
    }
    return nullptr;
}

QString textOf(const LogWindow& log)
{
    return childOf(log, "QQuickTextEdit")->property("text").toString();
}

} // namespace

class TestLogWindow : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void metaObjectIsEmpty();
    void freshWindowIsNotVisible();
    void viewIsAsItShouldBe();
    void functionsStandInTheirOrder();
    void showsAndHides();
    void closingHides();
    void everyTextIsALine();
    void textIsShownWhenTheLoopRuns();
    void textIsKeptLiterally_data();
    void textIsKeptLiterally();
    void textScrollsInBothDirections();
    void textCanOnlyBeRead();
    void textStandsOutFromTheWindow();
    void everyThreadMayAppend();
    void longLogStaysQuick();
    void messageHandlerMayUseIt();
    void missingViewIsHarmless();

private:
    std::unique_ptr<LogRecorder> recorder;
};

void TestLogWindow::initTestCase()
{
    initResources();
}

void TestLogWindow::init()
{
    recorder = std::make_unique<LogRecorder>();
}

void TestLogWindow::cleanup()
{
    const auto lines = recorder->lines();
    recorder.reset();
    for (const LogRecorder::Line& line : lines)
        QVERIFY2(line.type == QtDebugMsg, qPrintable(line.text));
}

void TestLogWindow::metaObjectIsEmpty()
{
    const QMetaObject& meta = LogWindow::staticMetaObject;
    QCOMPARE(meta.className(), "LogWindow");
    QCOMPARE(meta.superClass(), &QQmlApplicationEngine::staticMetaObject);
    QCOMPARE(meta.methodCount(), meta.methodOffset());
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());
    QVERIFY(!LogWindow(nullptr).parent());
}

void TestLogWindow::freshWindowIsNotVisible()
{
    LogWindow log(nullptr);
    QVERIFY(!log.isVisible());
    QVERIFY(!windowOf(log)->isVisible());
}

void TestLogWindow::viewIsAsItShouldBe()
{
    LogWindow log(nullptr);
    const QQuickWindow* window = windowOf(log);
    QCOMPARE(window->size(), QSize(800, 400));
    QCOMPARE(window->minimumSize(), QSize(800, 400));
    QCOMPARE(window->maximumSize(), QSize(800, 400));
    QCOMPARE(window->title(), QString("Log Window"));
    QCOMPARE(window->visibility(), QWindow::Hidden);
    QCOMPARE(window->flags() & Qt::WindowType_Mask, Qt::Tool);
    auto* flickable = qobject_cast<QQuickItem*>(childOf(log, "QQuickFlickable"));
    QVERIFY(flickable);
    log.show();
    QTRY_COMPARE_WITH_TIMEOUT(flickable->size(), QSizeF(800, 400), patienceMs);
}

void TestLogWindow::functionsStandInTheirOrder()
{
    const LogWindow log(nullptr);
    const QMetaObject* meta = windowOf(log)->metaObject();
    const QStringList names {"appendText", "show", "hide", "isVisible"};
    QStringList found;
    for (int i = QQuickWindow::staticMetaObject.methodCount(); i < meta->methodCount(); ++i) {
        const QString name = meta->method(i).name();
        if (names.contains(name))
            found.append(name);
    }
    QCOMPARE(found, names);
}

void TestLogWindow::showsAndHides()
{
    LogWindow log(nullptr);
    log.show();
    QVERIFY(log.isVisible());
    QCOMPARE(windowOf(log)->visibility(), QWindow::Windowed);
    log.show();
    QVERIFY(log.isVisible());
    log.hide();
    QVERIFY(!log.isVisible());
    QCOMPARE(windowOf(log)->visibility(), QWindow::Hidden);
    log.hide();
    QVERIFY(!log.isVisible());
    log.show();
    QVERIFY(log.isVisible());
}

void TestLogWindow::closingHides()
{
    LogWindow log(nullptr);
    log.appendText("kept");
    log.show();
    QVERIFY(QTest::qWaitForWindowExposed(windowOf(log), patienceMs));
    QCoreApplication::processEvents();
    windowOf(log)->close();
    QVERIFY(!log.isVisible());
    log.show();
    QVERIFY(log.isVisible());
    QTRY_COMPARE_WITH_TIMEOUT(textOf(log), QString("kept\n"), patienceMs);
}

void TestLogWindow::everyTextIsALine()
{
    LogWindow log(nullptr);
    log.appendText("a");
    log.appendText("b");
    QTRY_COMPARE_WITH_TIMEOUT(textOf(log), QString("a\nb\n"), patienceMs);
}

void TestLogWindow::textIsShownWhenTheLoopRuns()
{
    LogWindow log(nullptr);
    log.appendText("a");
    QCOMPARE(textOf(log), QString());
    QCoreApplication::processEvents();
    QCOMPARE(textOf(log), QString("a\n"));
}

void TestLogWindow::textIsKeptLiterally_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << QString();
    QTest::newRow("blanks") << QString("  a  b  ");
    QTest::newRow("markup") << QString("<b>a</b> &amp; <br>");
    QTest::newRow("line break") << QString("a\nb");
    QTest::newRow("German, Japanese") << QString("Größe 日本語 \U0001f600");
    QTest::newRow("markers") << QString("50%2 of %1");
}

void TestLogWindow::textIsKeptLiterally()
{
    QFETCH(QString, text);
    LogWindow log(nullptr);
    log.appendText("first");
    log.appendText(text);
    QTRY_COMPARE_WITH_TIMEOUT(textOf(log), "first\n" + text + '\n', patienceMs);
}

void TestLogWindow::textScrollsInBothDirections()
{
    LogWindow log(nullptr);
    const QObject* flickable = childOf(log, "QQuickFlickable");
    log.appendText("short");
    QCoreApplication::processEvents();
    QVERIFY(flickable->property("contentWidth").toReal() > 0);
    QVERIFY(flickable->property("contentWidth").toReal() < 800);
    QVERIFY(flickable->property("contentHeight").toReal() < 400);
    for (int i = 0; i < 100; ++i)
        log.appendText(QString(500, 'w'));
    QCoreApplication::processEvents();
    QVERIFY(flickable->property("contentWidth").toReal() > 800);
    QVERIFY(flickable->property("contentHeight").toReal() > 400);
}

void TestLogWindow::textCanOnlyBeRead()
{
    LogWindow log(nullptr);
    log.appendText("a");
    log.show();
    QVERIFY(childOf(log, "QQuickTextEdit")->property("readOnly").toBool());
    QTest::mouseClick(windowOf(log), Qt::LeftButton, {}, {5, 5});
    for (const char key : {'x', 'y', 'z'})
        QTest::keyClick(windowOf(log), key);
    QTest::keyClick(windowOf(log), Qt::Key_Delete);
    QCOMPARE(textOf(log), QString("a\n"));
}

void TestLogWindow::everyThreadMayAppend()
{
    constexpr int threads = 8;
    constexpr int lines = 50;
    LogWindow log(nullptr);
    std::vector<std::thread> writers;
    for (int writer = 0; writer < threads; ++writer) {
        writers.emplace_back([&log, writer] {
            for (int line = 0; line < lines; ++line)
                log.appendText(QString("%1 %2").arg(writer).arg(line));
        });
    }
    for (std::thread& writer : writers)
        writer.join();
    QTRY_COMPARE_WITH_TIMEOUT(textOf(log).count('\n'), threads * lines, patienceMs);
    // Each thread's lines are whole and in their order.
    QVector<int> next(threads, 0);
    for (const QString& line : textOf(log).split('\n', Qt::SkipEmptyParts)) {
        const QStringList words = line.split(' ');
        QCOMPARE(words.size(), 2);
        QCOMPARE(words[1].toInt(), next[words[0].toInt()]++);
    }
}

void TestLogWindow::longLogStaysQuick()
{
    LogWindow log(nullptr);
    log.show();
    constexpr int lines = 5000;
    for (int i = 0; i < lines; ++i)
        log.appendText(QString("line %1 of a log that grows and grows").arg(i));
    QElapsedTimer clock;
    clock.start();
    QTRY_COMPARE_WITH_TIMEOUT(textOf(log).count('\n'), lines, patienceMs);
    QVERIFY2(clock.elapsed() < patienceMs, qPrintable(QString::number(clock.elapsed())));
    QTest::setBenchmarkResult(static_cast<qreal>(clock.elapsed()), QTest::WalltimeMilliseconds);
}

namespace {

LogWindow* handledLog = nullptr;

void toLogWindow(QtMsgType, const QMessageLogContext&, const QString& text)
{
    handledLog->appendText(text);
}

} // namespace

void TestLogWindow::messageHandlerMayUseIt()
{
    LogWindow log(nullptr);
    handledLog = &log;
    const QtMessageHandler previous = qInstallMessageHandler(toLogWindow);
    qDebug() << "from the GUI thread";
    std::thread([] { qWarning("from another thread"); }).join();
    QCoreApplication::processEvents();
    qInstallMessageHandler(previous);
    QCOMPARE(textOf(log), QString("from the GUI thread\nfrom another thread\n"));
}

void TestLogWindow::missingViewIsHarmless()
{
    // Another URL cannot be given, so the view is taken away from the loaded engine instead.
    LogWindow log(nullptr);
    delete windowOf(log);
    QVERIFY(log.rootObjects().isEmpty());
    log.show();
    log.appendText("a");
    log.hide();
    QVERIFY(!log.isVisible());
}

void TestLogWindow::textStandsOutFromTheWindow()
{
    const LogWindow log(nullptr);
    const auto text = childOf(log, "QQuickTextEdit")->property("color").value<QColor>();
    QVERIFY(contrast(text, windowOf(log)->color()) >= readableContrast);
}

QTEST_MAIN(TestLogWindow)
#include "tst_logwindow.moc"
