#include "settings/globalsettings.h"
#include "settingsmeanings.h"

#include <QtTest>

#include <algorithm>

namespace {

const char* const pagePath = VIREON_SOURCE_DIR "/docs/settings-files.md";
constexpr int configLineCount = 123;
constexpr int userLineCount = 15;

const char* const head = R"(# The two settings files

Both are positional: the number of a line decides what it sets, never a name. **One line deleted or
added shifts the meaning of all lines below it.** Change values, and nothing else.

Lines are counted from 0 here; an editor that counts from 1 shows one more. Where the unit is that of
the engine, Vireon knows none and keeps the number as it is. This page is made by
`scripts/update-pages` from the tables in the code and the shipped file.

## config/vireon.conf

It lies beside the program and is read once, at the start. What stands left of the first `=` is only a
name for the reader; the value is what follows, without the blanks around it. **A value that is
nothing but blanks ends the program at its start; an empty one does not.** So never leave a blank
behind a `=` without a value. Numbers have a point, whatever the language; a whole number is cut off,
not rounded; what is no number reads as 0. Without the file all values are as shipped, but the files
of the data directory are looked for in `/var/vireon`.

| line | name | is | unit | as shipped | meaning |
| --- | --- | --- | --- | --- | --- |
)";

const char* const middle = R"(
## user.ini

It lies in the data directory, `Vireon` in the user's documents directory. Vireon writes it as a whole
when a setting changes, and at the start where `autostart` is on: change it while Vireon does not run.
The engine reads it and must not write it. Lines hold a value and no name; what is no number reads as
0. Lines after the last one are ignored. Without the file the values are those of the third column.

| line | name | at first | is | unit | meaning |
| --- | --- | --- | --- | --- | --- |
)";

QString contentOf(const char* path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// Null for a line that has no words of its own.
const Meaning* findMeaning(const QString& name)
{
    const auto* const found =
        std::find_if(std::begin(configMeanings), std::end(configMeanings),
                     [&name](const Meaning& meaning) { return name == meaning.name; });
    return found == std::end(configMeanings) ? nullptr : found;
}

QString unitOf(const Meaning* meaning, const QString& kind)
{
    if (meaning && meaning->unit)
        return meaning->unit;
    return kind.endsWith("number") ? enginesUnit : noUnit;
}

QString quoted(const QString& text)
{
    return text.isEmpty() ? "empty" : "`" + text + "`";
}

QString page()
{
    QString text = head;
    const QStringList shipped = contentOf(VIREON_SOURCE_DIR "/config/vireon.conf").split('\n');
    for (int line = 0; line < configLineCount; ++line) {
        const QString name = shipped.value(line).section('=', 0, 0);
        const QString value = shipped.value(line).section('=', 1);
        const QString kind = GS::configLineKind(static_cast<std::size_t>(line));
        const Meaning* const meaning = findMeaning(name);
        text += QString("| %1 | `%2` | %3 | %4 | %5 | %6 |\n")
                    .arg(QString::number(line), name, kind, unitOf(meaning, kind), quoted(value),
                         meaning ? meaning->text : otherMeaning);
    }
    text += middle;
    for (int line = 0; line < userLineCount; ++line) {
        text += QString("| %1 | `%2` | %3 | %4 | %5 | %6 |\n")
                    .arg(QString::number(line), userMeanings[line].name,
                         quoted(userMeanings[line].initial),
                         GS::userLineKind(static_cast<std::size_t>(line)), userMeanings[line].unit,
                         userMeanings[line].meaning);
    }
    return text;
}

} // namespace

/// docs/settings-files.md; with VIREON_UPDATE_PAGES set it is written anew.
class TestSettingsPage : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void pageIsUpToDate();
    void everyMeaningHasItsLine();
    void userDefaultsAreThoseOfTheCode();
};

void TestSettingsPage::initTestCase()
{
    if (!qEnvironmentVariableIsSet("VIREON_UPDATE_PAGES"))
        return;
    QFile file(pagePath);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(page().toUtf8());
}

void TestSettingsPage::pageIsUpToDate()
{
    const QStringList there = contentOf(pagePath).split('\n');
    const QStringList wanted = page().split('\n');
    for (int i = 0; i < wanted.size(); ++i)
        QCOMPARE(there.value(i), wanted[i]);
    QCOMPARE(there.size(), wanted.size());
}

void TestSettingsPage::everyMeaningHasItsLine()
{
    const QString shipped = "\n" + contentOf(VIREON_SOURCE_DIR "/config/vireon.conf");
    for (const Meaning& meaning : configMeanings)
        QVERIFY2(shipped.contains(QString("\n%1=").arg(meaning.name)), meaning.name);
}

/// The file that fresh settings write holds what the page says.
void TestSettingsPage::userDefaultsAreThoseOfTheCode()
{
    const QTemporaryDir dir;
    GS settings;
    settings.userIniPath = dir.filePath("user.ini").toStdString();
    settings.saveUserSettings();
    const QStringList written = contentOf(settings.userIniPath.c_str()).split('\n');
    QCOMPARE(written.size(), userLineCount + 1);
    for (int line = 0; line < userLineCount; ++line)
        QCOMPARE(written[line], QString(userMeanings[line].initial));
}

QTEST_GUILESS_MAIN(TestSettingsPage)
#include "tst_settingspage.moc"
