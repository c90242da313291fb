#include "display/resolutionchangenotifier.h"
#include "support/dummyscreens.h"
#include "support/patience.h"

#include <QtTest>

#include <memory>

/// The watcher in a program of its own, on screens whose modes are really changed.
class TestResolutionChangeNotifier : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void metaObjectIsOneSignalAndOneSlot();
    void screensAreLoggedAtTheStart();
    void lowestWholeRateOfAllScreensDecides_data();
    void lowestWholeRateOfAllScreensDecides();
    void ratesAreLogged();
    void modeChangeIsAnnouncedAndLogged();
    void rateChangeAloneIsNotAnnounced();
    void watcherFollowsThePrimaryScreen();
    void removedScreensDoNoHarm();
    void switchAndBackWithinOneSecondIsNotAnnounced();
    void panelGivesOneSignalAfterOneSecond();
    void busyGuiThreadIsAskedAgain();
    void deletedWatcherStopsAndIsStillNamed();

private:
    /// Whether it is ready.
    bool startSubject();

    /// The next line that the program prints; what is on its log when none came in time.
    QString nextLine();

    /// The size in the next line, which announces a change; else the line.
    QString nextChange();

    /// Asks until the answer comes: the change must reach the program first. The last answer, or
    /// what came in place of one, such as a signal.
    QString ratesOnceChangedTo(const QString& answer);
    QString logText();

    std::unique_ptr<DummyScreens> screens;
    std::unique_ptr<QProcess> subject;
    QByteArray log;
};

void TestResolutionChangeNotifier::init()
{
    screens = std::make_unique<DummyScreens>();
    QVERIFY2(screens->isUp(), "Xorg with its dummy driver is needed");
    log.clear();
}

void TestResolutionChangeNotifier::cleanup()
{
    if (subject) {
        subject->closeWriteChannel();
        QVERIFY(subject->waitForFinished(patienceMs));
        QCOMPARE(subject->exitStatus(), QProcess::NormalExit);
        QVERIFY2(subject->exitCode() == 0, qPrintable(logText()));
    }
    subject.reset();
    screens.reset();
}

bool TestResolutionChangeNotifier::startSubject()
{
    subject = std::make_unique<QProcess>();
    subject->setProcessEnvironment(screens->environment());
    subject->start(SUBJECT_DIR "/displaysubject", QStringList());
    return nextLine() == "ready";
}

QString TestResolutionChangeNotifier::nextLine()
{
    while (!subject->canReadLine()) {
        if (!subject->waitForReadyRead(patienceMs))
            return "no line; log:\n" + logText();
    }
    return QString::fromUtf8(subject->readLine().trimmed());
}

QString TestResolutionChangeNotifier::nextChange()
{
    const QString line = nextLine();
    const QStringList words = line.split(' ');
    return words.size() == 4 && words[0] == "changed" ? words[1] + 'x' + words[2] : line;
}

QString TestResolutionChangeNotifier::ratesOnceChangedTo(const QString& answer)
{
    QString line;
    const QDeadlineTimer deadline(patienceMs);
    do {
        subject->write("rates\n");
        line = nextLine();
    } while (line.startsWith("rates ") && line != answer && !deadline.hasExpired());
    return line;
}

QString TestResolutionChangeNotifier::logText()
{
    log += subject->readAllStandardError();
    return QString::fromUtf8(log).replace(QRegularExpression(" +"), " ");
}

void TestResolutionChangeNotifier::metaObjectIsOneSignalAndOneSlot()
{
    const QMetaObject& meta = ResolutionChangeNotifier::staticMetaObject;
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 2);
    const QMetaMethod first = meta.method(meta.methodOffset());
    QCOMPARE(first.methodType(), QMetaMethod::Signal);
    QCOMPARE(first.methodSignature(), QByteArray("resolutionChanged(int,int)"));
    const QMetaMethod second = meta.method(meta.methodOffset() + 1);
    QCOMPARE(second.access(), QMetaMethod::Private);
    QCOMPARE(second.methodSignature(), QByteArray("listenToResolution()"));
}

void TestResolutionChangeNotifier::screensAreLoggedAtTheStart()
{
    QVERIFY(screens->plugSecond("small_50"));
    QVERIFY(startSubject());
    const QString text = logText();
    int at = 0;
    for (const char* expected :
         {"used width: 1920 height: 1080\n", " primary screen freq: 60 width: 1920 height: 1080\n",
          "screen info numScreen: 2\n", "freq: 60 width: 1920 height: 1080\n",
          "freq: 50 width: 1280 height: 720\n", "QApplication::desktop()->width(): 3200\n",
          "QApplication::desktop()->height(): 1080\n"}) {
        at = text.indexOf(expected, at);
        QVERIFY2(at >= 0, qPrintable(expected + QString(" is not where it should be in\n") + text));
        ++at;
    }
}

void TestResolutionChangeNotifier::lowestWholeRateOfAllScreensDecides_data()
{
    QTest::addColumn<QString>("firstMode");
    QTest::addColumn<QString>("secondMode");
    QTest::addColumn<QByteArray>("answer");
    QTest::newRow("60 Hz") << "full_60"
                           << "" << QByteArray("rates 60 1");
    QTest::newRow("59.94 Hz") << "full_59.94"
                              << "" << QByteArray("rates 59 1");
    QTest::newRow("51 Hz") << "full_51"
                           << "" << QByteArray("rates 51 1");
    QTest::newRow("50 Hz") << "full_50"
                           << "" << QByteArray("rates 50 0");
    QTest::newRow("30 Hz") << "full_30"
                           << "" << QByteArray("rates 30 0");
    QTest::newRow("29.96 Hz") << "full_29.96"
                              << "" << QByteArray("rates 29 0");
    QTest::newRow("60 and 50 Hz") << "full_60"
                                  << "small_50" << QByteArray("rates 50 0");
    QTest::newRow("30 and 60 Hz") << "full_30"
                                  << "small_60" << QByteArray("rates 30 0");
}

void TestResolutionChangeNotifier::lowestWholeRateOfAllScreensDecides()
{
    QFETCH(QString, firstMode);
    QFETCH(QString, secondMode);
    QFETCH(QByteArray, answer);
    QVERIFY(startSubject());
    QVERIFY(screens->set("DUMMY0", {"--mode", firstMode}));
    QVERIFY(secondMode.isEmpty() || screens->plugSecond(secondMode));
    QCOMPARE(ratesOnceChangedTo(answer), QString(answer));
}

void TestResolutionChangeNotifier::ratesAreLogged()
{
    QVERIFY(screens->plugSecond("small_50"));
    QVERIFY(startSubject());
    QCOMPARE(ratesOnceChangedTo("rates 50 0"), QString("rates 50 0"));
    QTRY_VERIFY_WITH_TIMEOUT(
        logText().contains("primaryDispFrequency refreshRate: 60 numScreens: 2\n"
                           "minScreenFreq refreshRate: 50\n optimumDispFrequency: false\n"),
        patienceMs);
    QVERIFY(screens->set("DUMMY1", {"--off"}));
    QCOMPARE(ratesOnceChangedTo("rates 60 1"), QString("rates 60 1"));
    QTRY_VERIFY_WITH_TIMEOUT(logText().contains(" optimumDispFrequency: true\n"), patienceMs);
}

void TestResolutionChangeNotifier::modeChangeIsAnnouncedAndLogged()
{
    QVERIFY(startSubject());
    QVERIFY(screens->set("DUMMY0", {"--mode", "small_30"}));
    QCOMPARE(nextChange(), QString("1280x720"));
    QCOMPARE(ratesOnceChangedTo("rates 30 0"), QString("rates 30 0"));
    QVERIFY(
        logText().contains("Resolution changed, notify. Old vs new: 1920 / 1080 and 1280 / 720\n"));
    QVERIFY(screens->set("DUMMY0", {"--mode", "full_60"}));
    QCOMPARE(nextChange(), QString("1920x1080"));
    QCOMPARE(logText().count("Resolution changed, notify."), 2);
}

void TestResolutionChangeNotifier::rateChangeAloneIsNotAnnounced()
{
    QVERIFY(startSubject());
    QVERIFY(screens->set("DUMMY0", {"--mode", "full_30"}));
    QCOMPARE(ratesOnceChangedTo("rates 30 0"), QString("rates 30 0"));
    QVERIFY(screens->set("DUMMY0", {"--mode", "small_30"}));
    QCOMPARE(nextChange(), QString("1280x720"));
    QCOMPARE(logText().count("Resolution changed, notify."), 1);
}

void TestResolutionChangeNotifier::watcherFollowsThePrimaryScreen()
{
    QVERIFY(screens->plugSecond("small_60"));
    QVERIFY(startSubject());
    QVERIFY(screens->set("DUMMY1", {"--primary"}));
    QCOMPARE(nextChange(), QString("1280x720"));
    QVERIFY(screens->set("DUMMY0", {"--primary"}));
    QCOMPARE(nextChange(), QString("1920x1080"));
}

void TestResolutionChangeNotifier::removedScreensDoNoHarm()
{
    QVERIFY(screens->plugSecond("small_50"));
    QVERIFY(startSubject());
    QVERIFY(screens->set("DUMMY0", {"--off"}));
    QCOMPARE(nextChange(), QString("1280x720"));
    QCOMPARE(ratesOnceChangedTo("rates 50 0"), QString("rates 50 0"));
    QVERIFY(screens->set("DUMMY0", {"--mode", "full_60", "--primary"}));
    QCOMPARE(nextChange(), QString("1920x1080"));
    QVERIFY(screens->set("DUMMY1", {"--off"}));
    QCOMPARE(ratesOnceChangedTo("rates 60 1"), QString("rates 60 1"));
}

void TestResolutionChangeNotifier::switchAndBackWithinOneSecondIsNotAnnounced()
{
    QVERIFY(startSubject());
    QVERIFY(screens->set("DUMMY0", {"--mode", "small_60"}));
    QCOMPARE(nextChange(), QString("1280x720"));
    // A signal comes right after a read of the size: the next read is a second away.
    QElapsedTimer sinceRead;
    sinceRead.start();
    QVERIFY(screens->set("DUMMY0", {"--mode", "full_60"}));
    QVERIFY(screens->set("DUMMY0", {"--mode", "small_50"}));
    if (sinceRead.elapsed() > 800)
        QSKIP("this machine is too slow for two switches within a second");
    QCOMPARE(ratesOnceChangedTo("rates 50 0"), QString("rates 50 0"));
    // Beyond the next read, which must find the old size.
    QTest::qWait(1500);
    QVERIFY(screens->set("DUMMY0", {"--mode", "full_60"}));
    QCOMPARE(nextChange(), QString("1920x1080"));
    QCOMPARE(logText().count("Resolution changed, notify."), 2);
}

void TestResolutionChangeNotifier::panelGivesOneSignalAfterOneSecond()
{
    QProcess manager;
    manager.setProcessEnvironment(screens->environment());
    manager.start("openbox", QStringList());
    // A panel that is there before its manager may get no room.
    QTRY_VERIFY_WITH_TIMEOUT(
        screens->run("xprop", {"-root", "_NET_CLIENT_LIST"}).contains("window id"), patienceMs);
    QProcess panel;
    panel.setProcessEnvironment(screens->environment());
    panel.start("trayer",
                {"--edge", "bottom", "--widthtype", "percent", "--width", "100", "--heighttype",
                 "pixel", "--height", "40", "--SetDockType", "true", "--SetPartialStrut", "true"});
    QTRY_VERIFY_WITH_TIMEOUT(
        screens->run("xprop", {"-root", "_NET_WORKAREA"}).contains("= 0, 0, 1920, 1040"),
        patienceMs);
    QVERIFY(startSubject());
    const QString line = nextLine();
    const QStringList words = line.split(' ');
    QCOMPARE(words.mid(0, 3), QStringList({"changed", "1920", "1080"}));
    QVERIFY2(words.value(3).toInt() >= 950, qPrintable(line));
    QVERIFY(logText().contains("used width: 1920 height: 1040\n"));
    // No other signal comes before the next real change's.
    QVERIFY(screens->set("DUMMY0", {"--mode", "small_60"}));
    QCOMPARE(nextChange(), QString("1280x720"));
    panel.kill();
    panel.waitForFinished();
    manager.kill();
    manager.waitForFinished();
}

void TestResolutionChangeNotifier::busyGuiThreadIsAskedAgain()
{
    QVERIFY(startSubject());
    subject->write("block 2500\n");
    QVERIFY(screens->set("DUMMY0", {"--mode", "small_60"}));
    QCOMPARE(nextLine(), QString("blocked"));
    QCOMPARE(nextChange(), QString("1280x720"));
    QCOMPARE(logText().count("Resolution changed, notify."), 1);
}

void TestResolutionChangeNotifier::deletedWatcherStopsAndIsStillNamed()
{
    QVERIFY(startSubject());
    subject->write("delete\n");
    QCOMPARE(nextLine(), QString("resolution changed notifier was deleted"));
    QCOMPARE(nextLine(), QString("same 1"));
    QVERIFY(screens->set("DUMMY0", {"--mode", "small_60"}));
    QCOMPARE(ratesOnceChangedTo("rates 60 1"), QString("rates 60 1"));
    // The watcher's thread wakes up once more.
    QTest::qWait(1500);
    QCOMPARE(ratesOnceChangedTo("rates 60 1"), QString("rates 60 1"));
    QVERIFY(!logText().contains("Resolution changed"));
}

QTEST_GUILESS_MAIN(TestResolutionChangeNotifier)
#include "tst_resolutionchangenotifier.moc"
