#include "settings/switches.h"
#include "support/permissionchecks.h"

#include <QtTest>

#include <sys/stat.h>

namespace {

const char* const shippedPath = VIREON_SOURCE_DIR "/config/integration.conf";

/// What the row holds, as one would write it.
QString textOf(const Switches& switches, const Switches::Row& row)
{
    if (const auto* flag = std::get_if<Switches::Flag>(&row.value))
        return switches.*flag->field ? "true" : "false";
    if (const auto* number = std::get_if<Switches::Number>(&row.value))
        return QString::number(switches.*number->field);
    return switches.*std::get<Switches::Path>(row.value).field;
}

QStringList textsOf(const Switches& switches)
{
    QStringList texts;
    for (const Switches::Row& row : Switches::rows())
        texts << textOf(switches, row);
    return texts;
}

} // namespace

class TestSwitches : public QObject
{
    Q_OBJECT

private slots:
    void init() { directory.reset(new QTemporaryDir); }

    void missingFileSaysNothing();
    void shippedFileHasEveryRowOff();
    void lineSetsItsRowAlone_data();
    void lineSetsItsRowAlone();
    void flagsKnowTwoWords_data();
    void flagsKnowTwoWords();
    void unknownKeyIsTold();
    void wrongNumberSwitchesTheLogFileOff_data();
    void wrongNumberSwitchesTheLogFileOff();
    void leastAndMostAreTaken();
    void commasStayInThePath();
    void whatIsNoFileIsTold_data();
    void whatIsNoFileIsTold();
    void forbiddenFileIsTold();

private:
    QString write(const QByteArray& text)
    {
        const QString path = directory->filePath("integration.conf");
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
            qFatal("no file");
        return path;
    }

    std::unique_ptr<QTemporaryDir> directory;
};

void TestSwitches::missingFileSaysNothing()
{
    Switches switches;
    QCOMPARE(switches.read(directory->filePath("nothing")), QStringList());
    QCOMPARE(textsOf(switches), textsOf({}));
}

void TestSwitches::shippedFileHasEveryRowOff()
{
    Switches switches;
    QCOMPARE(switches.read(shippedPath), QStringList());
    QCOMPARE(textsOf(switches), textsOf({}));
    const QSettings file(shippedPath, QSettings::IniFormat);
    QFile text(shippedPath);
    QVERIFY(text.open(QIODevice::ReadOnly));
    const QByteArray content = text.readAll();
    for (const Switches::Row& row : Switches::rows()) {
        QVERIFY2(file.contains(row.name), row.name);
        const QRegularExpression commented(QString("^; .*\n%1=").arg(row.name),
                                           QRegularExpression::MultilineOption);
        QVERIFY2(commented.match(content).hasMatch(), row.name);
    }
}

void TestSwitches::lineSetsItsRowAlone_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("value");
    for (const Switches::Row& row : Switches::rows()) {
        QStringList values {"true"};
        if (const auto* number = std::get_if<Switches::Number>(&row.value))
            values = QStringList {QString::number(number->least), QString::number(number->most)};
        else if (std::holds_alternative<Switches::Path>(row.value))
            values = QStringList {"/some/where.log"};
        for (const QString& value : values)
            QTest::addRow("%s %s", row.name, qPrintable(value)) << QString(row.name) << value;
    }
}

void TestSwitches::lineSetsItsRowAlone()
{
    QFETCH(QString, name);
    QFETCH(QString, value);
    Switches switches;
    QCOMPARE(switches.read(write((name + "=" + value + "\n").toUtf8())), QStringList());
    for (const Switches::Row& row : Switches::rows())
        QCOMPARE(textOf(switches, row), name == row.name ? value : textOf({}, row));
}

void TestSwitches::flagsKnowTwoWords_data()
{
    QTest::addColumn<bool>("on");
    QTest::addColumn<bool>("right");
    QTest::newRow("true") << true << true;
    QTest::newRow("TRUE") << true << true;
    QTest::newRow("false") << false << true;
    QTest::newRow("1") << false << false;
    QTest::newRow("yes") << false << false;
    QTest::newRow("") << false << false;
}

void TestSwitches::flagsKnowTwoWords()
{
    QFETCH(bool, on);
    QFETCH(bool, right);
    Switches switches;
    const QStringList faults =
        switches.read(write(QByteArray("sleep=") + QTest::currentDataTag() + "\n"));
    QCOMPARE(switches.sleep, on);
    QCOMPARE(faults.size(), right ? 0 : 1);
    if (!right)
        QCOMPARE(faults[0],
                 QString("sleep: \"%1\" is wrong, true or false wanted; it stays off")
                     .arg(QTest::currentDataTag()));
}

void TestSwitches::unknownKeyIsTold()
{
    Switches switches;
    const QStringList faults = switches.read(write("mailbx=true\nsleep=true\n[more]\nsleep=x\n"));
    QCOMPARE(faults, QStringList({"unknown key \"mailbx\"", "unknown key \"more/sleep\""}));
    QVERIFY(switches.sleep);
    QVERIFY(!switches.mailbox);
}

void TestSwitches::wrongNumberSwitchesTheLogFileOff_data()
{
    QTest::addColumn<QByteArray>("line");
    for (const char* line : {"logFileSize=1023", "logFileSize=1073741825", "logFileSize=big",
                             "logFileKept=-1", "logFileKept=10", "logFileKept="})
        QTest::newRow(line) << QByteArray(line);
}

void TestSwitches::wrongNumberSwitchesTheLogFileOff()
{
    Switches switches;
    QFETCH(QByteArray, line);
    const QStringList faults = switches.read(write(line + "\nlogFile=/some/where.log\n"));
    QCOMPARE(faults.size(), 1);
    const bool isSize = line.startsWith("logFileSize");
    QCOMPARE(faults[0],
             QString("%1: \"%2\" is wrong, %3 wanted; it stays off")
                 .arg(QString(line.left(11)), QString(line.mid(12)),
                      isSize ? "1024 to 1073741824" : "0 to 9"));
    QCOMPARE(textsOf(switches), textsOf({}));
}

void TestSwitches::leastAndMostAreTaken()
{
    Switches switches;
    QCOMPARE(switches.read(write("logFileSize=1024\nlogFileKept=0\n")), QStringList());
    QCOMPARE(switches.logFileSize, qint64(1024));
    QCOMPARE(switches.logFileKept, qint64(0));
    QCOMPARE(switches.read(write("logFileSize=1073741824\nlogFileKept=9\n")), QStringList());
    QCOMPARE(switches.logFileSize, qint64(1073741824));
    QCOMPARE(switches.logFileKept, qint64(9));
}

void TestSwitches::commasStayInThePath()
{
    for (const char* line : {"logFile=\"/a, b/c.log\"\n", "logFile=/a, b/c.log\n"}) {
        Switches switches;
        QCOMPARE(switches.read(write(line)), QStringList());
        QCOMPARE(switches.logFile, QString("/a, b/c.log"));
    }
}

void TestSwitches::whatIsNoFileIsTold_data()
{
    QTest::addColumn<bool>("pipe");
    QTest::newRow("directory") << false;
    QTest::newRow("pipe") << true;
}

void TestSwitches::whatIsNoFileIsTold()
{
    const QString path = directory->filePath("integration.conf");
    QFETCH(bool, pipe);
    if (pipe)
        QCOMPARE(mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    else
        QVERIFY(QDir().mkdir(path));
    Switches switches;
    QCOMPARE(switches.read(path).size(), 1);
    QCOMPARE(textsOf(switches), textsOf({}));
}

void TestSwitches::forbiddenFileIsTold()
{
    const QString path = write("sleep=true\n");
    QVERIFY(QFile::setPermissions(path, {}));
    const PermissionChecks checks;
    Switches switches;
    QCOMPARE(switches.read(path), QStringList("it cannot be read; all in it stays off"));
    QVERIFY(!switches.sleep);
}

QTEST_GUILESS_MAIN(TestSwitches)
#include "tst_switches.moc"
