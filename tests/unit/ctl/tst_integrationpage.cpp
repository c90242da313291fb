#include "ctl/exitcode.h"
#include "ctl/mailboxverb.h"
#include "ctl/usage.h"
#include "settings/switches.h"

#include <QtTest>

namespace {

QString contentOf(const char* path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// The rows of the page's table with this heading, cell by cell.
QList<QStringList> tableBelow(const QString& page, const QString& heading)
{
    QList<QStringList> rows;
    const int begin = page.indexOf(heading);
    if (begin < 0)
        return rows;
    for (const QString& line : page.mid(begin).split('\n').mid(2)) {
        if (!line.startsWith("| "))
            break;
        rows.append(line.mid(2, line.size() - 4).split(" | "));
    }
    return rows;
}

QString code(const QString& text)
{
    return "`" + text + "`";
}

} // namespace

/// docs/integration.md, held against the tables in the code.
class TestIntegrationPage : public QObject
{
    Q_OBJECT

private slots:
    void everySwitchHasItsRow();
    void everyCommandHasItsRow();
    void everyExitCodeHasItsRow();

private:
    const QString page = contentOf(VIREON_SOURCE_DIR "/docs/integration.md");
};

void TestIntegrationPage::everySwitchHasItsRow()
{
    const auto rows = tableBelow(page, "| key | as shipped |");
    const Switches shipped;
    QCOMPARE(rows.size(), static_cast<int>(Switches::rows().size()));
    for (int i = 0; i < rows.size(); ++i) {
        const Switches::Row& row = Switches::rows()[static_cast<std::size_t>(i)];
        QCOMPARE(rows[i][0], code(row.name));
        QString initial = code("false");
        if (const auto* number = std::get_if<Switches::Number>(&row.value)) {
            initial = code(QString::number(shipped.*number->field));
            QVERIFY2(rows[i][2].endsWith(Switches::wanted(row)), row.name);
        } else if (std::holds_alternative<Switches::Path>(row.value)) {
            initial = "empty";
        }
        QCOMPARE(rows[i][1], initial);
    }
}

void TestIntegrationPage::everyCommandHasItsRow()
{
    const auto rows = tableBelow(page, "| character |");
    QCOMPARE(rows.size(), static_cast<int>(MailboxVerb::all().size()));
    for (const QStringList& row : rows) {
        const MailboxVerb* verb = MailboxVerb::find(QString(row[2]).remove('`'));
        QVERIFY2(verb, qPrintable(row[2]));
        QCOMPARE(row[0].left(3), code(QChar(verb->character)));
    }
}

/// The help tells the same ones.
void TestIntegrationPage::everyExitCodeHasItsRow()
{
    const auto rows = tableBelow(page, "| it ends with |");
    const QList<int> codes {ExitDone,      ExitFailed,     ExitUsage,       ExitNoController,
                            ExitNotInTime, ExitMailboxOff, ExitAnotherUsers};
    QCOMPARE(rows.size(), codes.size());
    const QString ends = usageText().section("It ends with ", 1);
    for (int i = 0; i < rows.size(); ++i) {
        QCOMPARE(rows[i][0], QString::number(codes[i]));
        QVERIFY2(ends.contains(QRegularExpression("\\b" + rows[i][0] + "\\b")),
                 qPrintable(rows[i][0]));
    }
}

QTEST_GUILESS_MAIN(TestIntegrationPage)
#include "tst_integrationpage.moc"
