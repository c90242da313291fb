#include "ctl/controllerstate.h"
#include "ctl/statushistory.h"
#include "settings/globalsettings.h"
#include "support/files.h"

#include <QtTest>

class TestStatusHistory : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void tellsTheStatusFile();
    void saysThatThereIsNoLog();
    void changesComeFromTheLog();
    void onlyTheLastChangesAreTold();

private:
    std::unique_ptr<QTemporaryDir> directory;
};

void TestStatusHistory::init()
{
    directory.reset(new QTemporaryDir);
    GS::instance()->penSettingsPath = directory->filePath("status").toStdString();
}

void TestStatusHistory::tellsTheStatusFile()
{
    QVERIFY(tellStatusHistory({}, {}).startsWith(
        "now: Vireon is not running.\nstatus file: there is none\n"));
    const QString path = directory->filePath("status");
    QVERIFY(writeFile(path, "Result=-6\nFirmware=3\nsecret\n"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(
        file.setFileTime(QDateTime({2026, 11, 21}, {7, 50}), QFileDevice::FileModificationTime));
    const QByteArray text = tellStatusHistory({true, -6, {}}, {});
    QVERIFY2(text.startsWith("now: Started, Vireon not calibrated.\nstatus file: status -6, "
                             "firmware 3, written 2026-11-21T07:50:00\n"),
             text.constData());
    QVERIFY(!text.contains("secret"));
    QVERIFY(writeFile(path, "nonsense\n"));
    QVERIFY(tellStatusHistory({}, {}).contains("status file: status none, firmware none, "));
}

void TestStatusHistory::saysThatThereIsNoLog()
{
    QVERIFY(tellStatusHistory({}, {}).contains("The last changes are not known"));
    QVERIFY(!tellStatusHistory({}, {"", ""}).contains("not known"));
}

void TestStatusHistory::changesComeFromTheLog()
{
    const QByteArray older =
        "21.11.2026 07:49:58: Debug: statuslistener \"-6\" (a.cpp:1, f)\n"
        "21.11.2026 07:49:59: Debug: ipc read: \"statuslistener \" (a.cpp:1, f)\n";
    const QByteArray newer =
        "21.11.2026 07:50:01: Debug: vireon-main crashed, notifying Ui status:  -6 (a.cpp:1, f)\n"
        "21.11.2026 07:50:02: Debug: statuslistener \"0\" (a.cpp:1, f)\n";
    const QByteArray text = tellStatusHistory({}, {older, newer});
    QVERIFY2(text.endsWith("\n21.11.2026 07:49:58   -6 Started, Vireon not calibrated.\n"
                           "21.11.2026 07:50:01      the engine has ended and is started again\n"
                           "21.11.2026 07:50:02    0 Started and ready\n"),
             text.constData());
    QCOMPARE(text.count("2026"), 3);
}

void TestStatusHistory::onlyTheLastChangesAreTold()
{
    QByteArray log;
    for (int i = 0; i < 150; ++i)
        log +=
            "21.11.2026 07:50:02: Debug: statuslistener \"" + QByteArray::number(i) + "\" (:0, )\n";
    const QByteArray text = tellStatusHistory({}, {log});
    QCOMPARE(text.count("Started and ready"), 100);
    QVERIFY(text.contains(" 149 Started"));
    QVERIFY(text.contains("  50 Started"));
    QVERIFY(!text.contains("  49 Started"));
}

QTEST_GUILESS_MAIN(TestStatusHistory)
#include "tst_statushistory.moc"
