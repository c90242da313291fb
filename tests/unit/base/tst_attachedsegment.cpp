#include "base/attachedsegment.h"

#include <QtTest>

#include <algorithm>
#include <optional>
#include <sys/shm.h>
#include <unistd.h>

namespace {

constexpr uid_t otherUser = 65534;
constexpr uid_t thirdUser = 65533;

std::optional<AttachedSegment> find(int id)
{
    const auto all = AttachedSegment::all();
    const auto found =
        std::find_if(all.begin(), all.end(), [id](auto& one) { return one.id == id; });
    return found == all.end() ? std::nullopt : std::optional(*found);
}

} // namespace

class TestAttachedSegment : public QObject
{
    Q_OBJECT

private slots:
    void segmentIsListedWhileSomebodyIsAttached();
    void everybodySeesIt();
};

void TestAttachedSegment::segmentIsListedWhileSomebodyIsAttached()
{
    const key_t key = 0x7e570000 + static_cast<key_t>(getpid() & 0xffff);
    const int id = shmget(key, 8, IPC_CREAT | IPC_EXCL | 0600);
    QVERIFY(id >= 0);
    QVERIFY(!find(id));
    void* const memory = shmat(id, nullptr, 0);
    const auto segment = find(id);
    QVERIFY(segment);
    QCOMPARE(segment->key, key);
    QCOMPARE(segment->size, std::size_t(8));
    QCOMPARE(segment->creator, geteuid());
    QCOMPARE(segment->creatorPid, getpid());
    QVERIFY(!segment->isFlagged);
    AttachedSegment::flag(id);
    QVERIFY(find(id)->isFlagged);
    shmdt(memory);
    QVERIFY(!find(id));
    shmctl(id, IPC_RMID, nullptr);
    AttachedSegment::flag(id);
}

void TestAttachedSegment::everybodySeesIt()
{
    if (geteuid() != 0)
        QSKIP("only root can look as several users");
    QVERIFY(seteuid(otherUser) == 0);
    const int id = shmget(IPC_PRIVATE, 8, IPC_CREAT | 0600);
    void* const memory = shmat(id, nullptr, 0);
    QVERIFY(seteuid(0) == 0 && seteuid(thirdUser) == 0);
    AttachedSegment::flag(id);
    const auto untouched = find(id);
    QVERIFY(seteuid(0) == 0 && seteuid(otherUser) == 0);
    AttachedSegment::flag(id);
    QVERIFY(seteuid(0) == 0 && seteuid(thirdUser) == 0);
    const auto flagged = find(id);
    QVERIFY(seteuid(0) == 0);
    shmdt(memory);
    shmctl(id, IPC_RMID, nullptr);
    QVERIFY(untouched && flagged);
    QCOMPARE(flagged->creator, otherUser);
    QVERIFY(!untouched->isFlagged);
    QVERIFY(flagged->isFlagged);
}

QTEST_GUILESS_MAIN(TestAttachedSegment)
#include "tst_attachedsegment.moc"
