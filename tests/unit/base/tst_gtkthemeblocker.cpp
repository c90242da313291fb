#include "base/desktop.h"

#include <QTest>

namespace {

const char* const desktopVariable = "XDG_CURRENT_DESKTOP";
const char* const themeVariable = "QT_QPA_PLATFORMTHEME";

} // namespace

/// What the blocker does to the variable that names a theme to Qt.
class TestGtkThemeBlocker : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();

    void themeIsHiddenOnUnityOnly_data();
    void themeIsHiddenOnUnityOnly();
    void missingThemeStaysMissing();
    void laterThemeIsKept();
};

void TestGtkThemeBlocker::cleanup()
{
    qunsetenv(desktopVariable);
    qunsetenv(themeVariable);
}

void TestGtkThemeBlocker::themeIsHiddenOnUnityOnly_data()
{
    QTest::addColumn<QByteArray>("desktop");
    QTest::addColumn<bool>("hidden");
    QTest::newRow("Unity") << QByteArray("Unity") << true;
    for (const char* name : {"GNOME", "MATE", "ubuntu:Unity", ""})
        QTest::newRow(name) << QByteArray(name) << false;
}

void TestGtkThemeBlocker::themeIsHiddenOnUnityOnly()
{
    QFETCH(QByteArray, desktop);
    QFETCH(bool, hidden);
    qputenv(desktopVariable, desktop);
    qputenv(themeVariable, "gtk3");
    GtkThemeBlocker blocker;
    QCOMPARE(qEnvironmentVariableIsSet(themeVariable), !hidden);
    blocker.restore();
    QCOMPARE(qgetenv(themeVariable), QByteArray("gtk3"));
}

void TestGtkThemeBlocker::missingThemeStaysMissing()
{
    qputenv(desktopVariable, "Unity");
    GtkThemeBlocker blocker;
    blocker.restore();
    QVERIFY(!qEnvironmentVariableIsSet(themeVariable));
}

void TestGtkThemeBlocker::laterThemeIsKept()
{
    qputenv(desktopVariable, "Unity");
    qputenv(themeVariable, "gtk3");
    {
        GtkThemeBlocker blocker;
        blocker.restore();
        qputenv(themeVariable, "other");
    }
    QCOMPARE(qgetenv(themeVariable), QByteArray("other"));
}

QTEST_GUILESS_MAIN(TestGtkThemeBlocker)
#include "tst_gtkthemeblocker.moc"
