#include "base/desktop.h"

#include <QTest>

namespace {

const char* const variable = "XDG_CURRENT_DESKTOP";

} // namespace

class TestDesktop : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();

    void unityIsThatWordAlone_data();
    void unityIsThatWordAlone();
    void unsetVariableIsNotUnity();
    void nameIsHiddenOnUnityOnly_data();
    void nameIsHiddenOnUnityOnly();
    void unsetVariableStaysUnset();
    void nameIsRestoredAtTheLatestAtTheEnd();
    void laterChangeIsKept();
};

void TestDesktop::cleanup()
{
    qunsetenv(variable);
}

void TestDesktop::unityIsThatWordAlone_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<bool>("expected");
    for (const char* name : {"Unity", "unity", "UNITY", "uNiTy"})
        QTest::newRow(name) << QByteArray(name) << true;
    for (const char* name : {"", " ", "Unity ", " Unity", "Unity:Unity7:ubuntu", "ubuntu:Unity",
                             "ubuntu:GNOME", "GNOME", "MATE", "KDE", "Unity8", "Un"})
        QTest::newRow(name) << QByteArray(name) << false;
}

void TestDesktop::unityIsThatWordAlone()
{
    QFETCH(QByteArray, name);
    QFETCH(bool, expected);
    qputenv(variable, name);
    QCOMPARE(isUnityDesktop(), expected);
}

void TestDesktop::unsetVariableIsNotUnity()
{
    qunsetenv(variable);
    QVERIFY(!isUnityDesktop());
}

void TestDesktop::nameIsHiddenOnUnityOnly_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("meanwhile");
    QTest::newRow("Unity") << QByteArray("Unity") << QByteArray("none");
    QTest::newRow("upper case") << QByteArray("UNITY") << QByteArray("none");
    for (const char* name : {"GNOME", "MATE", "ubuntu:GNOME", "Unity:Unity7:ubuntu"})
        QTest::newRow(name) << QByteArray(name) << QByteArray(name);
}

void TestDesktop::nameIsHiddenOnUnityOnly()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, meanwhile);
    qputenv(variable, name);
    GtkThemeBlocker blocker;
    QCOMPARE(qgetenv(variable), meanwhile);
    blocker.restore();
    QCOMPARE(qgetenv(variable), name);
}

void TestDesktop::unsetVariableStaysUnset()
{
    qunsetenv(variable);
    GtkThemeBlocker blocker;
    QVERIFY(!qEnvironmentVariableIsSet(variable));
    blocker.restore();
    QVERIFY(!qEnvironmentVariableIsSet(variable));
}

void TestDesktop::nameIsRestoredAtTheLatestAtTheEnd()
{
    qputenv(variable, "Unity");
    {
        const GtkThemeBlocker blocker;
        QVERIFY(!isUnityDesktop());
    }
    QCOMPARE(qgetenv(variable), QByteArray("Unity"));
}

void TestDesktop::laterChangeIsKept()
{
    qputenv(variable, "Unity");
    {
        GtkThemeBlocker blocker;
        blocker.restore();
        qputenv(variable, "MATE");
    }
    QCOMPARE(qgetenv(variable), QByteArray("MATE"));
}

QTEST_GUILESS_MAIN(TestDesktop)
#include "tst_desktop.moc"
