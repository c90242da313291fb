#include "base/keyfilewatch.h"

#include <QtTest>

#include <memory>

class TestKeyFileWatch : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void tellsOfEveryFileThatGoes();
    void changesAreNoLoss();
    void newFileOfTheSameNameIsWatched();
    void filesOfAnEarlierSetAreForgotten();

private:
    QString make(const QString& name) const;

    std::unique_ptr<QTemporaryDir> directory;
};

void TestKeyFileWatch::init()
{
    directory = std::make_unique<QTemporaryDir>();
}

QString TestKeyFileWatch::make(const QString& name) const
{
    QFile file(directory->filePath(name));
    return file.open(QIODevice::WriteOnly) ? file.fileName() : QString();
}

void TestKeyFileWatch::tellsOfEveryFileThatGoes()
{
    KeyFileWatch watch;
    QSignalSpy told(&watch, &KeyFileWatch::isIncomplete);
    watch.watch({make("first"), make("second")});
    QVERIFY(QFile::remove(directory->filePath("second")));
    QTRY_VERIFY(!told.isEmpty());
    told.clear();
    QVERIFY(QFile::remove(directory->filePath("first")));
    QTRY_VERIFY(!told.isEmpty());
}

void TestKeyFileWatch::changesAreNoLoss()
{
    KeyFileWatch watch;
    QSignalSpy told(&watch, &KeyFileWatch::isIncomplete);
    QFile file(make("file"));
    watch.watch({file.fileName()});
    QVERIFY(file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("text") > 0 && file.flush());
    QCoreApplication::processEvents();
    QVERIFY(told.isEmpty());
    QVERIFY(file.remove());
    QTRY_VERIFY(!told.isEmpty());
}

void TestKeyFileWatch::newFileOfTheSameNameIsWatched()
{
    KeyFileWatch watch;
    QSignalSpy told(&watch, &KeyFileWatch::isIncomplete);
    const QString path = make("file");
    watch.watch({path});
    QVERIFY(QFile::remove(path));
    make("file");
    watch.watch({path});
    QCoreApplication::processEvents(); // what happened to the first file is no news any more
    told.clear();
    QVERIFY(QFile::remove(path));
    QTRY_VERIFY(!told.isEmpty());
}

void TestKeyFileWatch::filesOfAnEarlierSetAreForgotten()
{
    KeyFileWatch watch;
    QSignalSpy told(&watch, &KeyFileWatch::isIncomplete);
    const QString path = make("old");
    watch.watch({path});
    watch.watch({make("new")});
    QVERIFY(QFile::remove(path));
    QCoreApplication::processEvents();
    QVERIFY(told.isEmpty());
    QVERIFY(QFile::remove(directory->filePath("new")));
    QTRY_VERIFY(!told.isEmpty());
}

QTEST_GUILESS_MAIN(TestKeyFileWatch)
#include "tst_keyfilewatch.moc"
