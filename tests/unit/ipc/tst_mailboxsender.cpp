#include "base/filelock.h"
#include "ipc/mailboxsender.h"

#include <QtTest>

class TestMailboxSender : public QObject
{
    Q_OBJECT

private slots:
    void isOpenWhileTheLockIsHeldAlone();
    void lookersDoNotSeeEachOther();
    void lookLeavesNoFile();

private:
    bool looksOpen() const
    {
        return MailboxSender(directory.filePath("fifo1"), directory.filePath("refifo")).isOpen();
    }

    const QTemporaryDir directory;
    const QString lockPath = directory.filePath("fifo1.open");
};

void TestMailboxSender::isOpenWhileTheLockIsHeldAlone()
{
    {
        const FileLock controller(lockPath, 0);
        QVERIFY(looksOpen());
        QVERIFY(looksOpen());
    }
    QVERIFY(QFile::exists(lockPath));
    QVERIFY(!looksOpen());
}

void TestMailboxSender::lookersDoNotSeeEachOther()
{
    const FileLock other(lockPath, 0, FileLock::Kind::Shared);
    QVERIFY(other.isHeld());
    QVERIFY(!looksOpen());
}

void TestMailboxSender::lookLeavesNoFile()
{
    const QTemporaryDir empty;
    QVERIFY(!MailboxSender(empty.filePath("fifo1"), empty.filePath("refifo")).isOpen());
    QVERIFY(QDir(empty.path()).isEmpty());
}

QTEST_GUILESS_MAIN(TestMailboxSender)
#include "tst_mailboxsender.moc"
