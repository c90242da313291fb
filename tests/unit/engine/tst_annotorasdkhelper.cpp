#include "engine/annotorasdkhelper.h"
#include "support/files.h"
#include "support/logrecorder.h"
#include "support/patience.h"

#include <QtTest>

#include <memory>
#include <vector>

namespace {

const char* const hideTool = "SDK\\Annotora\\Annotora_SDK_HideAnnotationWindow.exe";
const char* const showTool = "SDK\\Annotora\\Annotora_SDK_ShowAnnotationWindow.exe";

/// What the tools have noted in the current directory.
QByteArray journal()
{
    return contentOf("journal", {});
}

/// A tool that notes its start, with the number of its arguments, and runs until the file
/// "release" appears.
bool makeTool(const QString& name, const QByteArray& word)
{
    return writeScript(
        name,
        "#!/bin/sh\necho \"" + word
            + " $#\" >>journal\n"
              "while [ -e journal ] && [ ! -e release ]; do sleep 0.05; done\nexit 7\n");
}

} // namespace

class TestAnnotoraSdkHelper : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void onlyRegularFilesExist();
    void absentToolDoesNothing();
    void directoryCountsAsAbsent();
    void toolBelowRealDirectoriesIsAbsent();
    void presentToolIsStartedWithoutArguments_data();
    void presentToolIsStartedWithoutArguments();
    void showWhileHideRunsIsLost();
    void processIsUsedAgain();
    void failedStartIsSilent_data();
    void failedStartIsSilent();

private:
    AnnotoraSDKHelper& newHelper();

    std::unique_ptr<QTemporaryDir> dir;
    std::unique_ptr<LogRecorder> log;
    QString oldDirectory = QDir::currentPath();
    QByteArray oldPath = qgetenv("PATH");
    // Never deleted, as their process objects are.
    inline static auto* helpers = new std::vector<AnnotoraSDKHelper*>;
};

void TestAnnotoraSdkHelper::init()
{
    dir = std::make_unique<QTemporaryDir>();
    QVERIFY(QDir::setCurrent(dir->path()));
    qputenv("PATH", dir->path().toLocal8Bit() + ':' + oldPath);
    log = std::make_unique<LogRecorder>();
}

void TestAnnotoraSdkHelper::cleanup()
{
    log.reset();
    qputenv("PATH", oldPath);
    QVERIFY(QDir::setCurrent(oldDirectory));
    dir.reset();
}

AnnotoraSDKHelper& TestAnnotoraSdkHelper::newHelper()
{
    helpers->push_back(new AnnotoraSDKHelper);
    return *helpers->back();
}

void TestAnnotoraSdkHelper::onlyRegularFilesExist()
{
    AnnotoraSDKHelper& helper = newHelper();
    QVERIFY(!helper.fileExists("tool"));
    QVERIFY(QDir().mkdir("tool"));
    QVERIFY(!helper.fileExists("tool"));
    QVERIFY(makeTool(hideTool, "hide"));
    QVERIFY(helper.fileExists(hideTool));
    QVERIFY(!helper.fileExists(showTool));
}

void TestAnnotoraSdkHelper::absentToolDoesNothing()
{
    AnnotoraSDKHelper& helper = newHelper();
    helper.hideAnnotoraAnnotationToolbar();
    helper.showAnnotoraAnnotationToolbar();
    QCoreApplication::processEvents();
    QCOMPARE(log->lines().size(), 0);
    QCOMPARE(QDir().entryList(QDir::NoDotAndDotDot | QDir::AllEntries), QStringList());
}

void TestAnnotoraSdkHelper::directoryCountsAsAbsent()
{
    QVERIFY(QDir().mkdir(hideTool));
    QVERIFY(QDir().mkdir(showTool));
    AnnotoraSDKHelper& helper = newHelper();
    helper.hideAnnotoraAnnotationToolbar();
    // Would warn if the first call had started anything.
    helper.showAnnotoraAnnotationToolbar();
    QCoreApplication::processEvents();
    QCOMPARE(log->lines().size(), 0);
}

void TestAnnotoraSdkHelper::toolBelowRealDirectoriesIsAbsent()
{
    QVERIFY(QDir().mkpath("SDK/Annotora"));
    QVERIFY(makeTool(QString(hideTool).replace('\\', '/'), "hide"));
    newHelper().hideAnnotoraAnnotationToolbar();
    // The tool would be started by now: start() returns after the exec was tried.
    QTest::qWait(200);
    QCOMPARE(journal(), QByteArray());
    QCOMPARE(log->lines().size(), 0);
}

void TestAnnotoraSdkHelper::presentToolIsStartedWithoutArguments_data()
{
    QTest::addColumn<bool>("hide");
    QTest::newRow("hide") << true;
    QTest::newRow("show") << false;
}

void TestAnnotoraSdkHelper::presentToolIsStartedWithoutArguments()
{
    QFETCH(bool, hide);
    QVERIFY(makeTool(hideTool, "hide"));
    QVERIFY(makeTool(showTool, "show"));
    QVERIFY(QFile("release").open(QIODevice::WriteOnly));
    AnnotoraSDKHelper& helper = newHelper();
    if (hide) {
        helper.hideAnnotoraAnnotationToolbar();
    } else {
        helper.showAnnotoraAnnotationToolbar();
    }
    QTRY_COMPARE_WITH_TIMEOUT(journal(), QByteArray(hide ? "hide 0\n" : "show 0\n"), patienceMs);
}

void TestAnnotoraSdkHelper::showWhileHideRunsIsLost()
{
    QVERIFY(makeTool(hideTool, "hide"));
    QVERIFY(makeTool(showTool, "show"));
    AnnotoraSDKHelper& helper = newHelper();
    helper.hideAnnotoraAnnotationToolbar();
    helper.showAnnotoraAnnotationToolbar();
    QCOMPARE(log->lines().size(), 1);
    QCOMPARE(log->lines()[0].type, QtWarningMsg);
    QCOMPARE(log->lines()[0].text, QString("QProcess::start: Process is already running"));
    QTRY_COMPARE_WITH_TIMEOUT(journal(), QByteArray("hide 0\n"), patienceMs);
    QVERIFY(QFile("release").open(QIODevice::WriteOnly));
    // Until the hide tool's end is noticed, further requests are lost as well.
    QTRY_VERIFY_WITH_TIMEOUT((helper.hideAnnotoraAnnotationToolbar(), journal().count("hide") >= 2),
                             patienceMs);
    QVERIFY(!journal().contains("show"));
}

void TestAnnotoraSdkHelper::processIsUsedAgain()
{
    QVERIFY(makeTool(hideTool, "hide"));
    QVERIFY(makeTool(showTool, "show"));
    QVERIFY(QFile("release").open(QIODevice::WriteOnly));
    AnnotoraSDKHelper& helper = newHelper();
    helper.hideAnnotoraAnnotationToolbar();
    QTRY_COMPARE_WITH_TIMEOUT(journal(), QByteArray("hide 0\n"), patienceMs);
    QTRY_VERIFY_WITH_TIMEOUT(
        (helper.showAnnotoraAnnotationToolbar(), journal().contains("show 0\n")), patienceMs);
}

void TestAnnotoraSdkHelper::failedStartIsSilent_data()
{
    QTest::addColumn<bool>("inPath");
    QTest::newRow("not executable") << true;
    QTest::newRow("not in PATH") << false;
}

void TestAnnotoraSdkHelper::failedStartIsSilent()
{
    QFETCH(bool, inPath);
    QVERIFY(makeTool(hideTool, "hide"));
    if (inPath) {
        QVERIFY(QFile::setPermissions(hideTool, QFile::ReadOwner));
    } else {
        qputenv("PATH", oldPath);
    }
    AnnotoraSDKHelper& helper = newHelper();
    helper.hideAnnotoraAnnotationToolbar();
    QTest::qWait(200);
    QCOMPARE(journal(), QByteArray());
    QCOMPARE(log->lines().size(), 0);
}

QTEST_GUILESS_MAIN(TestAnnotoraSdkHelper)
#include "tst_annotorasdkhelper.moc"
