#include "settings/globalsettings.h"
#include "support/files.h"
#include "support/nodescriptors.h"
#include "support/peakmemory.h"
#include "support/permissionchecks.h"
#include "support/settingsfields.h"

#include <QtTest>

#include <clocale>
#include <cmath>
#include <memory>
#include <stdexcept>
#include <sys/stat.h>

using Changes = QMap<QByteArray, QByteArray>;

namespace {

enum class Kind { Int, Double, NonZero, One, String, None };

const char* const shippedPath = VIREON_SOURCE_DIR "/config/vireon.conf";

/// What line @p number of the configuration file sets.
struct Line
{
    Kind kind;
    QByteArrayList fields;
};

/// The lines with a name of their own, and the kind of all others.
Line lineOf(int number)
{
    static const QMap<int, Line> named {
        {0, {Kind::String, {"cyusbConfPath"}}},
        {1, {Kind::String, {"sensorConfPath"}}},
        {2, {Kind::Int, {"cameraWidth"}}},
        {3, {Kind::Int, {"cameraHeight"}}},
        {16, {Kind::String, {"acConfPath"}}},
        {17, {Kind::None, {}}},
        {18, {Kind::None, {}}},
        {19, {Kind::None, {}}},
        {20, {Kind::String, {"intrinsicXmlPath"}}},
        {21, {Kind::String, {"distortionXmlPath"}}},
        {33, {Kind::None, {}}},
        {36, {Kind::String, {"uinputDevice"}}},
        {49, {Kind::NonZero, {"isTouch"}}},
        {52, {Kind::String, {"language"}}},
        {60, {Kind::Int, {"param60", "param60Default"}}},
        {61, {Kind::Int, {"param61", "param61Default"}}},
        {66, {Kind::String, {"hidgDevice"}}},
        {67, {Kind::String, {"auxDevice1"}}},
        {68, {Kind::String, {"auxDevice2"}}},
        {69, {Kind::String, {"auxDevice3"}}},
        {70, {Kind::None, {}}},
        {71, {Kind::Double, {"param71", "param71Copy"}}},
        {72, {Kind::String, {"serialPort"}}},
        {83, {Kind::None, {}}},
        {86, {Kind::None, {}}},
        {87, {Kind::Double, {"param87", "param87Copy"}}},
        {88, {Kind::String, {"inputEventDevice"}}},
        {89, {Kind::String, {"remoteConfPath"}}},
        {90, {Kind::String, {"applicationsDir"}}},
        {91, {Kind::String, {"iconsDir"}}},
        {92, {Kind::String, {"appListIniPath"}}},
        {110, {Kind::Double, {"referenceLength"}}},
        {120, {Kind::One, {"param120", "param60Override"}}},
        {121, {Kind::Int, {"brand"}}},
        {122, {Kind::One, {"stylusOnly"}}},
    };
    static const QSet<int> reals {6,  7,  8,   24,  25,  26,  27,  28,  29,  30,  31,  32,  37, 38,
                                  39, 40, 44,  45,  46,  47,  48,  76,  78,  79,  80,  82,  84, 85,
                                  95, 96, 100, 101, 102, 103, 104, 105, 109, 111, 112, 117, 118};
    static const QSet<int> ones {35, 57, 64, 65, 81, 94};
    if (named.contains(number))
        return named[number];
    const Kind kind = number == 9 ? Kind::NonZero
        : reals.contains(number)  ? Kind::Double
        : ones.contains(number)   ? Kind::One
                                  : Kind::Int;
    return {kind, {QString("param%1").arg(number, 2, 10, QChar('0')).toLatin1()}};
}

QByteArrayList shippedLines()
{
    return contentOf(shippedPath).split('\n').mid(0, 123);
}

} // namespace

class TestConfigFile : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void shippedFileHoldsTheDefaults();
    void shippedFileHasEveryLine();
    void lineSetsItsFieldAlone_data();
    void lineSetsItsFieldAlone();
    void integersAreTruncated_data();
    void integersAreTruncated();
    void realsAreTaken_data();
    void realsAreTaken();
    void nonZeroFlags_data();
    void nonZeroFlags();
    void oneFlags_data();
    void oneFlags();
    void textsAreTrimmed_data();
    void textsAreTrimmed();
    void decimalPointInAnyLocale();
    void valueFollowsTheFirstEqualsSign_data();
    void valueFollowsTheFirstEqualsSign();
    void blanksAloneThrow_data();
    void blanksAloneThrow();
    void fiftyLinesAndABreakClearLine50();
    void noFinalBreakLeavesTheNextLine();
    void emptyFileIsOneEmptyLine();
    void shortFileLeavesTheRest();
    void carriageReturnsStayInTexts();
    void linesBeyondAreIgnored();
    void longLineIsOneLine();
    void lineBeyondTheLimitIsCut();
    void blanksBeyondTheLimitDoNotThrow();
    void hugeLineCostsNothing();
    void nulByteEndsACopiedText();
    void pathsAreDerived();
    void missingFileGivesNull();
    void whatIsNoFileGivesNull_data();
    void whatIsNoFileGivesNull();
    void unreadableFileGivesNull();
    void fileThatCannotBeOpenedGivesNull_data();
    void fileThatCannotBeOpenedGivesNull();
    void fileThatCannotBeReadIsOneEmptyLine();
    void brandForcesTouch_data();
    void brandForcesTouch();
    void cameraGeometryIsDerived_data();
    void cameraGeometryIsDerived();
    void overrideIsSetByLine120();
    void oldTextsAreNotTouched();
    void fuzzerSeedsLoad_data();
    void fuzzerSeedsLoad();
    void logNamesThePath();

private:
    std::unique_ptr<GS> load(const QByteArray& text);
    std::unique_ptr<GS> loadLines(const QByteArrayList& lines) { return load(lines.join('\n')); }
    std::unique_ptr<GS> loadWith(int number, const QByteArray& line);

    QTemporaryDir directory;
    QByteArrayList shipped = shippedLines();
};

void TestConfigFile::init()
{
    QVERIFY(directory.isValid());
}

std::unique_ptr<GS> TestConfigFile::load(const QByteArray& text)
{
    const QString path = directory.filePath("vireon.conf");
    if (!writeFile(path, text))
        qFatal("cannot write the configuration file");
    return std::unique_ptr<GS>(GS::load(path));
}

/// The shipped file with another line @p number.
std::unique_ptr<GS> TestConfigFile::loadWith(int number, const QByteArray& line)
{
    QByteArrayList lines = shipped;
    while (lines.size() <= number)
        lines << QByteArray();
    lines[number] = line;
    return loadLines(lines);
}

void TestConfigFile::shippedFileHoldsTheDefaults()
{
    const std::unique_ptr<GS> settings(GS::load(shippedPath));
    QVERIFY(settings);
    const QByteArrayList derived {"debugDir",    "calibIniPath", "penSettingsPath", "mcCachePath",
                                  "userIniPath", "fifo1Path",    "refifoPath"};
    Changes changes = settingsChanges(GS(), *settings);
    QCOMPARE(changes.size(), derived.size());
    for (const QByteArray& field : derived)
        QVERIFY2(changes.contains(field), field.constData());
}

void TestConfigFile::shippedFileHasEveryLine()
{
    const QByteArrayList lines = contentOf(shippedPath).split('\n');
    QCOMPARE(lines.size(), 124); // the final break makes one more, empty line
    QCOMPARE(lines.last(), QByteArray());
    QSet<QByteArray> names;
    for (const QByteArray& line : lines.mid(0, 123)) {
        QVERIFY2(line.indexOf('=') > 0, line.constData());
        names.insert(line.left(line.indexOf('=')));
    }
    QCOMPARE(names.size(), 123);
}

void TestConfigFile::lineSetsItsFieldAlone_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QByteArray>("stored"); // null: no field changes
    for (int number = 0; number < 123; ++number) {
        const auto addRow = [number](const QByteArray& value, const QByteArray& stored) {
            QTest::addRow("%d=%s", number, value.constData()) << number << value << stored;
        };
        switch (lineOf(number).kind) {
        case Kind::Int:
            addRow("41.9", "41");
            addRow("-3e9", "-2147483648");
            break;
        case Kind::Double:
            addRow("41.9", settingsNumber(41.9));
            break;
        case Kind::NonZero:
            addRow("2", number == 49 ? QByteArray() : "1");
            addRow("0", number == 49 ? "0" : QByteArray());
            break;
        case Kind::One:
            addRow("1", "1");
            addRow("2", {});
            addRow("0.5", {});
            break;
        case Kind::String:
            addRow("/some/other text", "/some/other text");
            break;
        case Kind::None:
            addRow("41.9", {});
            break;
        }
    }
}

void TestConfigFile::lineSetsItsFieldAlone()
{
    QFETCH(int, number);
    QFETCH(QByteArray, value);
    QFETCH(QByteArray, stored);
    const std::unique_ptr<GS> before = loadLines(shipped);
    const std::unique_ptr<GS> after = loadWith(number, "anyName=" + value);
    Changes expected;
    if (!stored.isNull()) {
        for (const QByteArray& field : lineOf(number).fields)
            expected.insert(field, stored);
    }
    Changes changes = settingsChanges(*before, *after);
    if (number == 2 || number == 3) {
        // The geometry that follows the size has a test of its own.
        for (const char* derived : {"cameraPixelCount", "cameraCentre", "cameraHalfDiagonal"})
            QVERIFY2(changes.remove(derived) == 1, derived);
    }
    if (number == 122 && value == "1")
        QCOMPARE(after->isTouch, 1); // the pen-only variant alone does not force it
    QCOMPARE(changes, expected);
}

void TestConfigFile::integersAreTruncated_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<int>("stored");
    constexpr int lowest = std::numeric_limits<int>::min();
    constexpr int highest = std::numeric_limits<int>::max();
    QTest::newRow("whole") << QByteArray("1280") << 1280;
    QTest::newRow("cut down") << QByteArray("7.999") << 7;
    QTest::newRow("cut up") << QByteArray("-7.999") << -7;
    QTest::newRow("minus a bit") << QByteArray("-0.5") << 0;
    QTest::newRow("highest") << QByteArray("2147483647") << highest;
    QTest::newRow("highest and a bit") << QByteArray("2147483647.9") << highest;
    QTest::newRow("too high") << QByteArray("2147483648") << lowest;
    QTest::newRow("lowest") << QByteArray("-2147483648") << lowest;
    QTest::newRow("lowest and a bit") << QByteArray("-2147483648.9") << lowest;
    QTest::newRow("above the lowest") << QByteArray("-2147483647.9") << -2147483647;
    QTest::newRow("too low") << QByteArray("-2147483649") << lowest;
    QTest::newRow("far too high") << QByteArray("1e300") << lowest;
    QTest::newRow("overflow") << QByteArray("1e999") << lowest;
    QTest::newRow("infinity") << QByteArray("inf") << lowest;
    QTest::newRow("minus infinity") << QByteArray("-infinity") << lowest;
    QTest::newRow("not a number") << QByteArray("nan") << lowest;
    QTest::newRow("hexadecimal") << QByteArray("0x10") << 16;
    QTest::newRow("hexadecimal exponent") << QByteArray("0x1p4") << 16;
    QTest::newRow("exponent") << QByteArray("1e3") << 1000;
    QTest::newRow("plus") << QByteArray("+5") << 5;
    QTest::newRow("point alone") << QByteArray(".") << 0;
    QTest::newRow("trailing text") << QByteArray("12px") << 12;
    QTest::newRow("second number") << QByteArray("12 13") << 12;
    QTest::newRow("comma") << QByteArray("3,9") << 3;
    QTest::newRow("leading tab") << QByteArray("\t44") << 44;
    QTest::newRow("trailing tab") << QByteArray("44\t") << 44;
    QTest::newRow("carriage return") << QByteArray("44\r") << 44;
    QTest::newRow("blanks around") << QByteArray("   44  ") << 44;
    QTest::newRow("text") << QByteArray("many") << 0;
    QTest::newRow("empty") << QByteArray("") << 0;
    QTest::newRow("tab alone") << QByteArray("\t") << 0;
    QTest::newRow("denormal") << QByteArray("1e-320") << 0;
}

void TestConfigFile::integersAreTruncated()
{
    QFETCH(QByteArray, value);
    QFETCH(int, stored);
    QCOMPARE(loadWith(4, "param04=" + value)->param04, stored);
}

void TestConfigFile::realsAreTaken_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<double>("stored");
    QTest::newRow("fraction") << QByteArray("-0.25") << -0.25;
    QTest::newRow("exponent") << QByteArray("1e3") << 1000.0;
    QTest::newRow("hexadecimal") << QByteArray("0x10") << 16.0;
    QTest::newRow("infinity") << QByteArray("inf") << HUGE_VAL;
    QTest::newRow("overflow") << QByteArray("-1e999") << -HUGE_VAL;
    QTest::newRow("not a number") << QByteArray("nan") << std::nan("");
    QTest::newRow("all digits") << QByteArray("0.1234567890123456") << 0.1234567890123456;
    QTest::newRow("trailing text") << QByteArray("2.5Hz") << 2.5;
    QTest::newRow("text") << QByteArray("fast") << 0.0;
    QTest::newRow("empty") << QByteArray("") << 0.0;
}

void TestConfigFile::realsAreTaken()
{
    QFETCH(QByteArray, value);
    QFETCH(double, stored);
    const double actual = loadWith(71, "param71=" + value)->param71;
    QCOMPARE(settingsNumber(actual), settingsNumber(stored));
}

void TestConfigFile::nonZeroFlags_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<bool>("set");
    QTest::newRow("1") << QByteArray("1") << true;
    QTest::newRow("2") << QByteArray("2") << true;
    QTest::newRow("0.1") << QByteArray("0.1") << true;
    QTest::newRow("-1") << QByteArray("-1") << true;
    QTest::newRow("nan") << QByteArray("nan") << true;
    QTest::newRow("inf") << QByteArray("inf") << true;
    QTest::newRow("denormal") << QByteArray("1e-320") << true;
    QTest::newRow("0") << QByteArray("0") << false;
    QTest::newRow("-0.0") << QByteArray("-0.0") << false;
    QTest::newRow("true") << QByteArray("true") << false;
    QTest::newRow("empty") << QByteArray("") << false;
}

void TestConfigFile::nonZeroFlags()
{
    QFETCH(QByteArray, value);
    QFETCH(bool, set);
    QCOMPARE(loadWith(9, "x=" + value)->param09, set);
    QCOMPARE(loadWith(49, "x=" + value)->isTouch, set ? 1 : 0);
}

void TestConfigFile::oneFlags_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<bool>("set");
    QTest::newRow("1") << QByteArray("1") << true;
    QTest::newRow("1.0") << QByteArray("1.0") << true;
    QTest::newRow("10e-1") << QByteArray("10e-1") << true;
    QTest::newRow("0x1") << QByteArray("0x1") << true;
    QTest::newRow("1 and text") << QByteArray("1yes") << true;
    QTest::newRow("1.0000001") << QByteArray("1.0000001") << false;
    QTest::newRow("2") << QByteArray("2") << false;
    QTest::newRow("-1") << QByteArray("-1") << false;
    QTest::newRow("nan") << QByteArray("nan") << false;
    QTest::newRow("0") << QByteArray("0") << false;
    QTest::newRow("empty") << QByteArray("") << false;
}

void TestConfigFile::oneFlags()
{
    QFETCH(QByteArray, value);
    QFETCH(bool, set);
    QCOMPARE(loadWith(35, "x=" + value)->param35, set);
}

void TestConfigFile::textsAreTrimmed_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QByteArray>("stored");
    QTest::newRow("blanks around") << QByteArray("  a b  ") << QByteArray("a b");
    QTest::newRow("tabs stay") << QByteArray(" \ta\t ") << QByteArray("\ta\t");
    QTest::newRow("empty") << QByteArray("") << QByteArray("");
    QTest::newRow("bytes beyond ASCII") << QByteArray("設定/Müller") << QByteArray("設定/Müller");
    QTest::newRow("not UTF-8") << QByteArray("\xff\xfe") << QByteArray("\xff\xfe");
}

void TestConfigFile::textsAreTrimmed()
{
    QFETCH(QByteArray, value);
    QFETCH(QByteArray, stored);
    QCOMPARE(QByteArray::fromStdString(loadWith(1, "x=" + value)->sensorConfPath), stored);
    QCOMPARE(QByteArray(loadWith(52, "x=" + value)->language), stored);
}

void TestConfigFile::decimalPointInAnyLocale()
{
    // Where the locale is not installed, nothing changes and this holds all the more.
    std::setlocale(LC_ALL, "de_DE.UTF-8");
    QCOMPARE(loadWith(71, "x=0.5")->param71, 0.5);
    QCOMPARE(QByteArray(std::setlocale(LC_ALL, nullptr)), QByteArray("C"));
}

void TestConfigFile::valueFollowsTheFirstEqualsSign_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QByteArray>("stored");
    QTest::newRow("own name") << QByteArray("sensorConfPath=a") << QByteArray("a");
    QTest::newRow("another's name") << QByteArray("cameraWidth=a") << QByteArray("a");
    QTest::newRow("no name") << QByteArray("=a") << QByteArray("a");
    QTest::newRow("blanks in the name") << QByteArray("  the name  =  a") << QByteArray("a");
    QTest::newRow("no sign") << QByteArray("a") << QByteArray("a");
    QTest::newRow("no sign, blanks around") << QByteArray(" a ") << QByteArray("a");
    QTest::newRow("two signs") << QByteArray("x=a=b") << QByteArray("a=b");
    QTest::newRow("two signs in a row") << QByteArray("x==a") << QByteArray("=a");
    QTest::newRow("sign alone") << QByteArray("=") << QByteArray("");
    QTest::newRow("nothing") << QByteArray("") << QByteArray("");
}

void TestConfigFile::valueFollowsTheFirstEqualsSign()
{
    QFETCH(QByteArray, line);
    QFETCH(QByteArray, stored);
    QCOMPARE(QByteArray::fromStdString(loadWith(1, line)->sensorConfPath), stored);
}

void TestConfigFile::blanksAloneThrow_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QByteArray>("line");
    for (const int number : {0, 2, 33, 52, 83, 86, 122, 123, 500}) {
        QTest::addRow("line %d, value", number) << number << QByteArray("x= ");
        QTest::addRow("line %d, whole", number) << number << QByteArray("   ");
    }
}

void TestConfigFile::blanksAloneThrow()
{
    QFETCH(int, number);
    QFETCH(QByteArray, line);
    try {
        loadWith(number, line);
        QFAIL("nothing was thrown");
    } catch (const std::out_of_range& error) {
        QCOMPARE(error.what(), "basic_string::substr");
    }
}

void TestConfigFile::fiftyLinesAndABreakClearLine50()
{
    const std::unique_ptr<GS> settings = loadLines(shipped.mid(0, 50) << "");
    QCOMPARE(settings->param50, 0);
    QCOMPARE(settings->param51, 3);
}

void TestConfigFile::noFinalBreakLeavesTheNextLine()
{
    const std::unique_ptr<GS> settings = loadLines(shipped.mid(0, 49) << "isTouch=0");
    QCOMPARE(settings->isTouch, 0);
    QCOMPARE(settings->param50, 12);
}

void TestConfigFile::emptyFileIsOneEmptyLine()
{
    const std::unique_ptr<GS> settings = load("");
    QVERIFY(settings);
    QCOMPARE(settings->cyusbConfPath, std::string());
    QCOMPARE(settings->sensorConfPath, std::string("config/sensor.conf"));
    QCOMPARE(settings->userIniPath, (settings->dataDir + "/user.ini").toStdString());
}

void TestConfigFile::shortFileLeavesTheRest()
{
    const Changes expected {{"cyusbConfPath", "a"}, {"sensorConfPath", "b"}};
    QCOMPARE(settingsChanges(*loadLines(shipped), *load("x=a\nx=b")), expected);
}

void TestConfigFile::carriageReturnsStayInTexts()
{
    const std::unique_ptr<GS> before = loadLines(shipped);
    const std::unique_ptr<GS> settings = load(shipped.join("\r\n") + "\r\n");
    const Changes changes = settingsChanges(*before, *settings);
    const Changes old = settingsValues(*before);
    int texts = 0;
    for (int number = 0; number < 123; ++number) {
        if (lineOf(number).kind != Kind::String)
            continue;
        const QByteArray field = lineOf(number).fields.first();
        QCOMPARE(changes.value(field), old.value(field) + '\r');
        ++texts;
    }
    QCOMPARE(changes.size(), texts);
}

void TestConfigFile::linesBeyondAreIgnored()
{
    QByteArrayList lines = shipped;
    while (lines.size() < 400)
        lines << "x=77";
    QCOMPARE(settingsChanges(*loadLines(shipped), *loadLines(lines)), Changes());
}

void TestConfigFile::longLineIsOneLine()
{
    // Lengths around the sizes in which files are usually read.
    for (const int size : {16382, 16383, 16384, 16385, 32768, 100000}) {
        const QByteArray text(size, 'a');
        QByteArrayList lines = shipped;
        lines[1] = text;
        const std::unique_ptr<GS> settings = loadLines(lines);
        QCOMPARE(settings->sensorConfPath, text.toStdString());
        QCOMPARE(settings->cameraWidth, 752);
    }
}

void TestConfigFile::lineBeyondTheLimitIsCut()
{
    constexpr int limit = 131072;
    for (const int size : {limit - 1, limit, limit + 1, 2 * limit - 1, 2 * limit, 1000000}) {
        QByteArrayList lines = shipped;
        lines[1] = QByteArray(size, 'a');
        const QByteArray kept(qMin(size, limit), 'a');
        const std::unique_ptr<GS> settings = loadLines(lines);
        QCOMPARE(settings->sensorConfPath, kept.toStdString());
        QCOMPARE(settings->cameraWidth, 752);
        QCOMPARE(settings->cameraHeight, 480);

        const std::unique_ptr<GS> last = load("x=1\n" + lines[1]);
        QCOMPARE(last->sensorConfPath, kept.toStdString());
        QCOMPARE(last->cameraWidth, 752);
    }
}

void TestConfigFile::blanksBeyondTheLimitDoNotThrow()
{
    constexpr int limit = 131072;
    QVERIFY_EXCEPTION_THROWN(loadWith(1, "x=" + QByteArray(limit - 2, ' ')), std::out_of_range);
    // What was cut off may have been a value.
    for (const QByteArray& end : {QByteArray(), QByteArray("5")}) {
        const std::unique_ptr<GS> settings = loadWith(4, "x=" + QByteArray(limit, ' ') + end);
        QCOMPARE(settings->param04, 0);
        QCOMPARE(settings->param05, 230);
    }
    QCOMPARE(loadWith(1, "x=a" + QByteArray(limit, ' '))->sensorConfPath, std::string("a"));
}

void TestConfigFile::hugeLineCostsNothing()
{
    const QString name = directory.filePath("huge.conf");
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(file.write("x=a") == 3 && file.seek(Q_INT64_C(1200) << 20)); // sparse: NUL bytes
    QVERIFY(file.write("\nx=b\nx=5") == 8);
    file.close();
    const PeakMemory memory;
    const std::unique_ptr<GS> settings(GS::load(name));
    QVERIFY2(memory.grownMb() < 600, "the whole line was read");
    QVERIFY(QFile::remove(name));
    QCOMPARE(settings->cyusbConfPath.substr(0, 2), std::string("a\0", 2));
    QCOMPARE(settings->sensorConfPath, std::string("b"));
    QCOMPARE(settings->cameraWidth, 5);
}

void TestConfigFile::nulByteEndsACopiedText()
{
    const QByteArray value("ab\0cd", 5);
    QCOMPARE(loadWith(1, value)->sensorConfPath, value.toStdString());
    QCOMPARE(QByteArray(loadWith(52, value)->language), QByteArray("ab"));
    QCOMPARE(loadWith(4,
                      QByteArray("12\0"
                                 "3",
                                 4))
                 ->param04,
             12);
}

void TestConfigFile::pathsAreDerived()
{
    const std::unique_ptr<GS> settings = load("x");
    const QString prefix = qEnvironmentVariable("HOME") + "/Documents/Vireon/";
    QCOMPARE(settings->dataDir + '/', prefix);
    QCOMPARE(settings->penSettingsPath, (prefix + "pensettings.ini").toStdString());
    QCOMPARE(settings->calibIniPath, (prefix + "calib-palmora.ini").toStdString());
    QCOMPARE(settings->mcCachePath, (prefix + "mcCache").toStdString());
    QCOMPARE(settings->userIniPath, (prefix + "user.ini").toStdString());
    QCOMPARE(settings->debugDir, (prefix + "debug").toStdString());
    QCOMPARE(settings->fifo1Path, prefix + "fifo1");
    QCOMPARE(settings->refifoPath, prefix + "refifo");
}

void TestConfigFile::missingFileGivesNull()
{
    QCOMPARE(GS::load(directory.filePath("missing.conf")), nullptr);
    QCOMPARE(GS::load(QString()), nullptr);
}

void TestConfigFile::whatIsNoFileGivesNull_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("directory") << directory.path();
    QTest::newRow("pipe") << directory.filePath("pipe");
    QTest::newRow("device") << "/dev/zero";
    QTest::newRow("dangling link") << directory.filePath("dangling");
    QTest::newRow("file as directory") << directory.filePath("vireon.conf/vireon.conf");
}

void TestConfigFile::whatIsNoFileGivesNull()
{
    QFETCH(QString, path);
    mkfifo(QFile::encodeName(directory.filePath("pipe")).constData(), 0600);
    QFile::link(directory.filePath("nowhere"), directory.filePath("dangling"));
    load("x");
    QCOMPARE(GS::load(path), nullptr);
}

void TestConfigFile::unreadableFileGivesNull()
{
    load("x");
    const QString path = directory.filePath("vireon.conf");
    QVERIFY(QFile::setPermissions(path, {}));
    GS* settings = nullptr;
    {
        const PermissionChecks checks;
        settings = GS::load(path);
    }
    QVERIFY(QFile::remove(path));
    QCOMPARE(settings, nullptr);
}

void TestConfigFile::fileThatCannotBeOpenedGivesNull_data()
{
    QTest::addColumn<QString>("reason");
    for (const char* reason :
         {"link to itself", "name too long", "closed directory", "no descriptor"})
        QTest::newRow(reason) << reason;
}

void TestConfigFile::fileThatCannotBeOpenedGivesNull()
{
    QFETCH(QString, reason);
    load("x");
    QString name = directory.filePath("vireon.conf");
    std::unique_ptr<NoDescriptors> none;
    if (reason == "link to itself") {
        name = directory.filePath("loop");
        QFile::link("loop", name);
    } else if (reason == "name too long") {
        name = directory.filePath(QString(300, 'x'));
    } else if (reason == "closed directory") {
        QVERIFY(QFile::setPermissions(directory.path(), QFile::WriteOwner));
    } else {
        none = std::make_unique<NoDescriptors>();
    }
    GS* settings = nullptr;
    {
        const PermissionChecks checked;
        settings = GS::load(name);
    }
    QVERIFY(QFile::setPermissions(directory.path(), QFile::Permissions(0x7000)));
    QCOMPARE(settings, nullptr);
}

void TestConfigFile::fileThatCannotBeReadIsOneEmptyLine()
{
    // It opens, and every read of its first page is an error.
    const std::unique_ptr<GS> settings(GS::load("/proc/self/mem"));
    QVERIFY(settings);
    QCOMPARE(settings->cyusbConfPath, std::string());
    QCOMPARE(settings->sensorConfPath, std::string("config/sensor.conf"));
    QCOMPARE(settings->userIniPath, (settings->dataDir + "/user.ini").toStdString());
}

void TestConfigFile::brandForcesTouch_data()
{
    QTest::addColumn<QByteArray>("brand");
    QTest::addColumn<int>("isTouch");
    QTest::addColumn<bool>("stylusOnly");
    QTest::newRow("0") << QByteArray("0") << 0 << false;
    QTest::newRow("1") << QByteArray("1") << 1 << false;
    QTest::newRow("2") << QByteArray("2") << 1 << true;
    QTest::newRow("3") << QByteArray("3") << 0 << false;
    QTest::newRow("4") << QByteArray("4") << 1 << true;
    QTest::newRow("4.9 is 4") << QByteArray("4.9") << 1 << true;
    QTest::newRow("5") << QByteArray("5") << 0 << false;
    QTest::newRow("-1") << QByteArray("-1") << 0 << false;
}

void TestConfigFile::brandForcesTouch()
{
    QFETCH(QByteArray, brand);
    QFETCH(int, isTouch);
    QFETCH(bool, stylusOnly);
    QByteArrayList lines = shipped;
    lines[49] = "isTouch=0";
    lines[121] = "brand=" + brand;
    lines[122] = "stylusOnly=0";
    const std::unique_ptr<GS> settings = loadLines(lines);
    QCOMPARE(settings->isTouch, isTouch);
    QCOMPARE(settings->stylusOnly, stylusOnly);

    lines[122] = "stylusOnly=1";
    QCOMPARE(loadLines(lines)->stylusOnly, true);
    QCOMPARE(loadLines(lines)->isTouch, isTouch);
}

void TestConfigFile::cameraGeometryIsDerived_data()
{
    QTest::addColumn<QByteArray>("width");
    QTest::addColumn<QByteArray>("height");
    QTest::addColumn<int>("pixels");
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("y");
    constexpr int lowest = std::numeric_limits<int>::min();
    QTest::newRow("even") << QByteArray("1280") << QByteArray("960") << 1228800 << 640. << 480.;
    QTest::newRow("odd") << QByteArray("641") << QByteArray("-481") << -308321 << 320. << -240.;
    QTest::newRow("zero") << QByteArray("0") << QByteArray("0") << 0 << 0. << 0.;
    QTest::newRow("to 2 to the 31st")
        << QByteArray("65536") << QByteArray("32768") << lowest << 32768. << 16384.;
    QTest::newRow("to 2 to the 32nd")
        << QByteArray("65536") << QByteArray("65536") << 0 << 32768. << 32768.;
    QTest::newRow("largest squared")
        << QByteArray("2147483647") << QByteArray("2147483647") << 1 << 1073741823. << 1073741823.;
    QTest::newRow("lowest by -1") << QByteArray("nan") << QByteArray("-1") << lowest << -1073741824.
                                  << 0.;
    QTest::newRow("lowest squared")
        << QByteArray("inf") << QByteArray("inf") << 0 << -1073741824. << -1073741824.;
}

void TestConfigFile::cameraGeometryIsDerived()
{
    QFETCH(QByteArray, width);
    QFETCH(QByteArray, height);
    QFETCH(double, x);
    QFETCH(double, y);
    QByteArrayList lines = shipped;
    lines[2] = width;
    lines[3] = height;
    const std::unique_ptr<GS> settings = loadLines(lines);
    QTEST(settings->cameraPixelCount, "pixels");
    QCOMPARE(settings->cameraCentre.x, x);
    QCOMPARE(settings->cameraCentre.y, y);
    QCOMPARE(settings->cameraHalfDiagonal, std::sqrt(x * x + y * y));
}

void TestConfigFile::overrideIsSetByLine120()
{
    QCOMPARE(loadWith(120, "x=1")->param60Override, true);
    QCOMPARE(loadWith(120, "x=2")->param60Override, false);
}

void TestConfigFile::oldTextsAreNotTouched()
{
    // The texts belong to the object that read them: a second load leaves the first one's alone.
    const std::unique_ptr<GS> first = loadWith(52, "x=first");
    const char* before = first->language;
    const std::unique_ptr<GS> second = loadWith(52, "x=second");
    QCOMPARE(QByteArray(before), QByteArray("first"));
    QVERIFY(second->language != before);
}

void TestConfigFile::fuzzerSeedsLoad_data()
{
    QTest::addColumn<QString>("path");
    const QDir seeds(VIREON_SOURCE_DIR "/tests/fuzz/seeds/vireonconf");
    const QFileInfoList files = seeds.entryInfoList(QDir::Files);
    for (const QFileInfo& file : files)
        QTest::newRow(qPrintable(file.fileName())) << file.filePath();
    QVERIFY(!files.isEmpty());
}

void TestConfigFile::fuzzerSeedsLoad()
{
    QFETCH(QString, path);
    try {
        const std::unique_ptr<GS> settings(GS::load(path));
        QVERIFY(settings);
    } catch (const std::out_of_range& error) {
        QCOMPARE(error.what(), "basic_string::substr");
    }
}

void TestConfigFile::logNamesThePath()
{
    const QString path = directory.filePath("absent.conf");
    const QString line = QString("Loading global settings from \"%1\"").arg(path);
    QTest::ignoreMessage(QtDebugMsg, qPrintable(line));
    QCOMPARE(GS::load(path), nullptr);
}

QTEST_GUILESS_MAIN(TestConfigFile)
#include "tst_configfile.moc"
