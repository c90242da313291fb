#include "settings/globalsettings.h"
#include "settings/oshelper.h"
#include "support/files.h"
#include "support/logrecorder.h"
#include "support/permissionchecks.h"

#include <QtTest>

#include <sys/stat.h>

namespace {

const char* const entryPath = "/etc/xdg/autostart/Vireon.desktop";
const char* const failureText = "failed to set autostart Desktop entry doesn't exists or no "
                                "permission to write";

/// Set in the copy of this program that runs in a mount namespace of its own: the id of the
/// machine's namespace.
const char* const outerNamespaceVariable = "VIREON_TEST_OUTER_MOUNTS";

QByteArray mountNamespace()
{
    char name[64] {};
    const ssize_t size = readlink("/proc/self/ns/mnt", name, sizeof name - 1);
    return QByteArray(name, static_cast<int>(qMax<ssize_t>(size, 0)));
}

/// Runs this program again with an empty directory of its own in place of "/etc/xdg" (or of "/etc"
/// where there is no such directory). Returns only when the machine forbids that.
void enterOwnMounts(char* argv[])
{
    const char* script = "if [ -d /etc/xdg ]; then mount -t tmpfs tmpfs /etc/xdg;"
                         " else mount -t tmpfs tmpfs /etc && mkdir /etc/xdg; fi"
                         " && exec \"$@\"";
    const QByteArray how = geteuid() == 0 ? "-m" : "-rm";
    const QByteArray self = QFile::symLinkTarget("/proc/self/exe").toLocal8Bit();
    QProcess probe;
    probe.start("unshare", {QString(how), "sh", "-c", script, "sh", "true"});
    if (!probe.waitForFinished() || probe.exitStatus() != QProcess::NormalExit || probe.exitCode())
        return;
    qputenv(outerNamespaceVariable, mountNamespace());
    std::vector<char*> arguments {qstrdup("unshare"), qstrdup(how),  qstrdup("sh"), qstrdup("-c"),
                                  qstrdup(script),    qstrdup("sh"), qstrdup(self)};
    while (*++argv)
        arguments.push_back(*argv);
    arguments.push_back(nullptr);
    execvp("unshare", arguments.data());
}

QByteArray expectedEntry(const QByteArray& enabled)
{
    return "[Desktop Entry]\n"
           "Type=Application\n"
           "Exec=/usr/local/bin/Vireon/Vireon.sh\n"
           "Hidden=false\n"
           "NoDisplay=false\n"
           "X-GNOME-Autostart-enabled="
        + enabled
        + "\n"
          "Name=Vireon\n"
          "Comment=\n";
}

} // namespace

class TestOsHelper : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void instanceIsMadeOnce();
    void enabledEntryIsEightLines();
    void togglingChangesLineSixOnly();
    void longerEntryIsReplacedWhole();
    void missingDirectoryIsLogged();
    void writeProtectedEntryIsLoggedAndStays();
    void directoryOrPipeInPlaceOfTheEntryIsLogged_data();
    void directoryOrPipeInPlaceOfTheEntryIsLogged();

private:
    std::unique_ptr<LogRecorder> log;
};

void TestOsHelper::initTestCase()
{
    const QByteArray outer = qgetenv(outerNamespaceVariable);
    if (outer.isEmpty() || outer == mountNamespace())
        QSKIP("this machine lets the tests make no mount namespace (unshare -m)");
}

void TestOsHelper::init()
{
    QVERIFY(QDir().mkdir("/etc/xdg/autostart"));
    log = std::make_unique<LogRecorder>();
}

void TestOsHelper::cleanup()
{
    log.reset();
    QVERIFY(QDir("/etc/xdg/autostart").removeRecursively());
}

void TestOsHelper::instanceIsMadeOnce()
{
    QVERIFY(OsHelper::instance());
    QCOMPARE(OsHelper::instance(), OsHelper::instance());
}

void TestOsHelper::enabledEntryIsEightLines()
{
    GS::instance()->autostart = true;
    OsHelper::instance()->setAutostart();
    QCOMPARE(contentOf(entryPath), expectedEntry("true"));
    QCOMPARE(log->count(failureText), 0);
}

void TestOsHelper::togglingChangesLineSixOnly()
{
    GS::instance()->autostart = false;
    OsHelper::instance()->setAutostart();
    const QByteArray off = contentOf(entryPath);
    QCOMPARE(off, expectedEntry("false"));
    GS::instance()->autostart = true;
    OsHelper::instance()->setAutostart();
    const QByteArray on = contentOf(entryPath);
    const QList<QByteArray> offLines = off.split('\n');
    const QList<QByteArray> onLines = on.split('\n');
    QCOMPARE(onLines.size(), offLines.size());
    for (int i = 0; i < onLines.size(); ++i)
        QCOMPARE(onLines[i] == offLines[i], i != 5);
}

void TestOsHelper::longerEntryIsReplacedWhole()
{
    QVERIFY(writeFile(entryPath, QByteArray(5000, '#')));
    GS::instance()->autostart = false;
    OsHelper::instance()->setAutostart();
    QCOMPARE(contentOf(entryPath), expectedEntry("false"));
}

void TestOsHelper::missingDirectoryIsLogged()
{
    QVERIFY(QDir().rmdir("/etc/xdg/autostart"));
    OsHelper::instance()->setAutostart();
    QVERIFY(!QFile::exists("/etc/xdg/autostart"));
    const auto lines = log->lines();
    QCOMPARE(lines.size(), 1);
    QCOMPARE(lines[0].text, QString(failureText));
    QCOMPARE(lines[0].type, QtDebugMsg);
}

void TestOsHelper::writeProtectedEntryIsLoggedAndStays()
{
    GS::instance()->autostart = true;
    OsHelper::instance()->setAutostart();
    QVERIFY(QFile::setPermissions(entryPath, QFile::ReadOwner | QFile::ReadOther));
    const PermissionChecks checks;
    GS::instance()->autostart = false;
    OsHelper::instance()->setAutostart();
    QCOMPARE(contentOf(entryPath), expectedEntry("true"));
    QCOMPARE(log->count(failureText), 1);
    QVERIFY(!GS::instance()->autostart);
}

void TestOsHelper::directoryOrPipeInPlaceOfTheEntryIsLogged_data()
{
    QTest::addColumn<bool>("pipe");
    QTest::newRow("directory") << false;
    QTest::newRow("pipe") << true;
}

void TestOsHelper::directoryOrPipeInPlaceOfTheEntryIsLogged()
{
    QFETCH(bool, pipe);
    if (pipe) {
        QCOMPARE(mkfifo(entryPath, 0600), 0);
    } else {
        QVERIFY(QDir().mkdir(entryPath));
    }
    OsHelper::instance()->setAutostart();
    QCOMPARE(log->count(failureText), 1);
}

int main(int argc, char* argv[])
{
    if (!qEnvironmentVariableIsSet(outerNamespaceVariable))
        enterOwnMounts(argv);
    const QCoreApplication app(argc, argv);
    TestOsHelper test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}
#include "tst_oshelper.moc"
