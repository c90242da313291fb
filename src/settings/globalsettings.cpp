#include "settings/globalsettings.h"

#include "base/linereader.h"
#include "base/regularfile.h"
#include "base/stringutil.h"
#include "settings/brand.h"

#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTextStream>
#include <QThread>

#include <array>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <variant>

namespace {

constexpr int configLineLimit = 131072; // bytes; any path and any number is shorter
constexpr int userLineLimit = 4096; // characters

// --- The configuration file's lines -----------------------------------------------------------

/// A line that nothing is read from.
struct Ignored
{
};

/// The number as a whole one, see toInt32().
struct Integer
{
    int GS::*field;
    int GS::*copy = nullptr;
};

/// The number as it is.
struct Real
{
    double GS::*field;
};

/// True for any number but 0.0, NaN included.
struct NonZeroFlag
{
    std::variant<bool GS::*, int GS::*> field;
};

/// True for 1.0 alone.
struct OneFlag
{
    bool GS::*field;
};

/// The trimmed text.
struct Text
{
    std::variant<std::string GS::*, const char * GS::*> field;
};

using ConfigLine = std::variant<Ignored, Integer, Real, NonZeroFlag, OneFlag, Text>;

const std::array<ConfigLine, 123> configLines {{
    /* 0 */ Text {&GS::cyusbConfPath},
    /* 1 */ Text {&GS::sensorConfPath},
    /* 2 */ Integer {&GS::cameraWidth},
    /* 3 */ Integer {&GS::cameraHeight},
    /* 4 */ Integer {&GS::param04},
    /* 5 */ Integer {&GS::param05},
    /* 6 */ Real {&GS::param06},
    /* 7 */ Real {&GS::param07},
    /* 8 */ Real {&GS::param08},
    /* 9 */ NonZeroFlag {&GS::param09},
    /* 10 */ Integer {&GS::param10},
    /* 11 */ Integer {&GS::param11},
    /* 12 */ Integer {&GS::param12},
    /* 13 */ Integer {&GS::param13},
    /* 14 */ Integer {&GS::param14},
    /* 15 */ Integer {&GS::param15},
    /* 16 */ Text {&GS::acConfPath},
    /* 17 */ Text {&GS::debugDir}, // derived later, as lines 18, 19, 70 and 86
    /* 18 */ Text {&GS::calibIniPath},
    /* 19 */ Text {&GS::penSettingsPath},
    /* 20 */ Text {&GS::intrinsicXmlPath},
    /* 21 */ Text {&GS::distortionXmlPath},
    /* 22 */ Integer {&GS::param22},
    /* 23 */ Integer {&GS::param23},
    /* 24 */ Real {&GS::param24},
    /* 25 */ Real {&GS::param25},
    /* 26 */ Real {&GS::param26},
    /* 27 */ Real {&GS::param27},
    /* 28 */ Real {&GS::param28},
    /* 29 */ Real {&GS::param29},
    /* 30 */ Real {&GS::param30},
    /* 31 */ Real {&GS::param31},
    /* 32 */ Real {&GS::param32},
    /* 33 */ Ignored {},
    /* 34 */ Integer {&GS::param34},
    /* 35 */ OneFlag {&GS::param35},
    /* 36 */ Text {&GS::uinputDevice},
    /* 37 */ Real {&GS::param37},
    /* 38 */ Real {&GS::param38},
    /* 39 */ Real {&GS::param39},
    /* 40 */ Real {&GS::param40},
    /* 41 */ Integer {&GS::param41},
    /* 42 */ Integer {&GS::param42},
    /* 43 */ Integer {&GS::param43},
    /* 44 */ Real {&GS::param44},
    /* 45 */ Real {&GS::param45},
    /* 46 */ Real {&GS::param46},
    /* 47 */ Real {&GS::param47},
    /* 48 */ Real {&GS::param48},
    /* 49 */ NonZeroFlag {&GS::isTouch},
    /* 50 */ Integer {&GS::param50},
    /* 51 */ Integer {&GS::param51},
    /* 52 */ Text {&GS::language},
    /* 53 */ Integer {&GS::param53},
    /* 54 */ Integer {&GS::param54},
    /* 55 */ Integer {&GS::param55},
    /* 56 */ Integer {&GS::param56},
    /* 57 */ OneFlag {&GS::param57},
    /* 58 */ Integer {&GS::param58},
    /* 59 */ Integer {&GS::param59},
    /* 60 */ Integer {&GS::param60, &GS::param60Default},
    /* 61 */ Integer {&GS::param61, &GS::param61Default},
    /* 62 */ Integer {&GS::param62},
    /* 63 */ Integer {&GS::param63},
    /* 64 */ OneFlag {&GS::param64},
    /* 65 */ OneFlag {&GS::param65},
    /* 66 */ Text {&GS::hidgDevice},
    /* 67 */ Text {&GS::auxDevice1},
    /* 68 */ Text {&GS::auxDevice2},
    /* 69 */ Text {&GS::auxDevice3},
    /* 70 */ Text {&GS::mcCachePath},
    /* 71 */ Real {&GS::param71},
    /* 72 */ Text {&GS::serialPort},
    /* 73 */ Integer {&GS::param73},
    /* 74 */ Integer {&GS::param74},
    /* 75 */ Integer {&GS::param75},
    /* 76 */ Real {&GS::param76},
    /* 77 */ Integer {&GS::param77},
    /* 78 */ Real {&GS::param78},
    /* 79 */ Real {&GS::param79},
    /* 80 */ Real {&GS::param80},
    /* 81 */ OneFlag {&GS::param81},
    /* 82 */ Real {&GS::param82},
    /* 83 */ Ignored {},
    /* 84 */ Real {&GS::param84},
    /* 85 */ Real {&GS::param85},
    /* 86 */ Text {&GS::userIniPath},
    /* 87 */ Real {&GS::param87},
    /* 88 */ Text {&GS::inputEventDevice},
    /* 89 */ Text {&GS::remoteConfPath},
    /* 90 */ Text {&GS::applicationsDir},
    /* 91 */ Text {&GS::iconsDir},
    /* 92 */ Text {&GS::appListIniPath},
    /* 93 */ Integer {&GS::param93},
    /* 94 */ OneFlag {&GS::param94},
    /* 95 */ Real {&GS::param95},
    /* 96 */ Real {&GS::param96},
    /* 97 */ Integer {&GS::param97},
    /* 98 */ Integer {&GS::param98},
    /* 99 */ Integer {&GS::param99},
    /* 100 */ Real {&GS::param100},
    /* 101 */ Real {&GS::param101},
    /* 102 */ Real {&GS::param102},
    /* 103 */ Real {&GS::param103},
    /* 104 */ Real {&GS::param104},
    /* 105 */ Real {&GS::param105},
    /* 106 */ Integer {&GS::param106},
    /* 107 */ Integer {&GS::param107},
    /* 108 */ Integer {&GS::param108},
    /* 109 */ Real {&GS::param109},
    /* 110 */ Real {&GS::referenceLength},
    /* 111 */ Real {&GS::param111},
    /* 112 */ Real {&GS::param112},
    /* 113 */ Integer {&GS::param113},
    /* 114 */ Integer {&GS::param114},
    /* 115 */ Integer {&GS::param115},
    /* 116 */ Integer {&GS::param116},
    /* 117 */ Real {&GS::param117},
    /* 118 */ Real {&GS::param118},
    /* 119 */ Integer {&GS::param119},
    /* 120 */ OneFlag {&GS::param120},
    /* 121 */ Integer {&GS::brand},
    /* 122 */ OneFlag {&GS::stylusOnly},
}};

// --- The user settings file's lines -----------------------------------------------------------

/// One of the six values of userTransform.
struct TransformValue
{
    std::size_t index;
};

using UserLine = std::variant<int GS::*, bool GS::*, std::atomic<int> GS::*, TransformValue>;

const std::array<UserLine, 15> userLines {{
    /* 0 */ &GS::isTouch,
    /* 1 */ &GS::profile,
    /* 2 */ &GS::autostart,
    /* 3 */ &GS::singlePointerMode,
    /* 4 */ &GS::cpuState,
    /* 5 */ TransformValue {0},
    /* 6 */ TransformValue {1},
    /* 7 */ TransformValue {2},
    /* 8 */ TransformValue {3},
    /* 9 */ TransformValue {4},
    /* 10 */ TransformValue {5},
    /* 11 */ &GS::userParam60,
    /* 12 */ &GS::userParam61,
    /* 13 */ &GS::aspectRatioWarningShown,
    /* 14 */ &GS::acPopUpEnabled,
}};

// --- Conversions ------------------------------------------------------------------------------

template <class... Functions> struct Overloaded : Functions...
{
    using Functions::operator()...;
};
template <class... Functions> Overloaded(Functions...) -> Overloaded<Functions...>;

/// Truncates toward zero. NaN and what 32 bits do not hold become the smallest number, which is
/// what the processor's own conversion gives.
int toInt32(double number)
{
    constexpr double lowest = std::numeric_limits<int>::min();
    constexpr double highest = std::numeric_limits<int>::max();
    if (std::isnan(number) || number <= lowest - 1.0 || number >= highest + 1.0)
        return std::numeric_limits<int>::min();
    return static_cast<int>(number);
}

/// A value that only begins with blanks is no value of blanks alone: with the rest of a line, the
/// blanks before it go.
QByteArray withoutCutBlanks(QByteArray line)
{
    while (line.endsWith(' '))
        line.chop(1);
    return line;
}

/// The product in 32 bits, wrapped where it does not fit.
int wrappedProduct(int a, int b)
{
    return static_cast<int>(static_cast<unsigned>(a) * static_cast<unsigned>(b));
}

} // namespace

GS* GS::_instance = nullptr;

// --- Creation ---------------------------------------------------------------------------------

GS* GS::instance()
{
    if (_instance)
        return _instance;
    qDebug() << "Making a new instance of global settings";
    const QString path = QCoreApplication::applicationDirPath() + QDir::separator()
        + QLatin1String("config/vireon.conf");
    _instance = load(path);
    if (!_instance)
        _instance = new GS;
    _instance->loadUserSettings();
    return _instance;
}

GS::GS()
    : documentsDir(QStandardPaths::locate(QStandardPaths::DocumentsLocation, QString(),
                                          QStandardPaths::LocateDirectory))
    , dataDir(documentsDir + QLatin1String("Vireon"))
{
    deriveCameraGeometry();
}

GS::~GS() = default;

// --- Configuration file -----------------------------------------------------------------------

GS* GS::load(QString path)
{
    std::setlocale(LC_ALL, "C");
    qDebug() << "Loading global settings from" << path;
    auto settings = std::make_unique<GS>();
    QFile file;
    if (!openRegularFile(file, path, QIODevice::ReadOnly))
        return nullptr;

    // The read that meets the end is processed too: after a last "\n" comes one more, empty line.
    LineReader<QByteArray> lines([&file](int size) { return file.read(size); }, configLineLimit);
    for (std::size_t number = 0; number == 0 || lines.hasBreak(); ++number) {
        lines.next();
        const QByteArray line = lines.isCut() ? withoutCutBlanks(lines.line()) : lines.line();
        settings->storeConfigLine(number, line.toStdString());
    }

    settings->derivePaths();
    settings->applyProductVariant();
    settings->deriveCameraGeometry();
    settings->param71Copy = settings->param71;
    settings->param87Copy = settings->param87;
    if (settings->param120)
        settings->param60Override = true;
    return settings.release();
}

void GS::storeConfigLine(std::size_t number, const std::string& line)
{
    // Without a "=", npos + 1 is 0: the whole line is the value.
    const std::string value = StringUtil::trim(line.substr(line.find('=') + 1));
    const double parsed = std::strtod(value.c_str(), nullptr);
    if (number >= configLines.size())
        return;
    const auto storeText = Overloaded {
        [&](std::string GS::*field) { this->*field = value; },
        [&](const char* GS::*field) {
            char* copy = nullptr;
            StringUtil::copy(value, &copy);
            ownedStrings.emplace_back(copy);
            this->*field = copy;
        },
    };
    const auto store = Overloaded {
        [](Ignored) {},
        [&](const Integer& kind) {
            this->*kind.field = toInt32(parsed);
            if (kind.copy)
                this->*kind.copy = toInt32(parsed);
        },
        [&](const Real& kind) { this->*kind.field = parsed; },
        [&](const NonZeroFlag& kind) {
            std::visit([&](auto field) { this->*field = parsed != 0.0; }, kind.field);
        },
        [&](const OneFlag& kind) { this->*kind.field = parsed == 1.0; },
        [&](const Text& kind) { std::visit(storeText, kind.field); },
    };
    std::visit(store, configLines[number]);
}

void GS::derivePaths()
{
    const QString prefix = dataDir + QDir::separator();
    penSettingsPath = (prefix + QLatin1String("pensettings.ini")).toStdString();
    calibIniPath = (prefix + QLatin1String("calib-palmora.ini")).toStdString();
    mcCachePath = (prefix + QLatin1String("mcCache")).toStdString();
    userIniPath = (prefix + QLatin1String("user.ini")).toStdString();
    fifo1Path = prefix + QLatin1String("fifo1");
    refifoPath = prefix + QLatin1String("refifo");
    debugDir = (prefix + QLatin1String("debug")).toStdString();
}

void GS::applyProductVariant()
{
    const bool isStylusProduct = isBrand(brand, Brand::Wendle) || isBrand(brand, Brand::Marrowby);
    if (isStylusProduct || isBrand(brand, Brand::Tal))
        isTouch = 1;
    if (isStylusProduct)
        stylusOnly = true;
}

void GS::deriveCameraGeometry()
{
    cameraPixelCount = wrappedProduct(cameraWidth, cameraHeight);
    const int halfWidth = cameraWidth / 2; // whole pixels
    const int halfHeight = cameraHeight / 2;
    cameraCentre = EVector(halfWidth, halfHeight);
    cameraHalfDiagonal = cameraCentre.length();
}

// --- The manual of both files -----------------------------------------------------------------

const char* GS::configLineKind(std::size_t line)
{
    const auto kind = Overloaded {
        [](const Ignored&) { return "nothing"; },
        [](const Integer&) { return "whole number"; },
        [](const Real&) { return "number"; },
        [](const NonZeroFlag&) { return "flag, on unless 0"; },
        [](const OneFlag&) { return "flag, on if 1"; },
        [](const Text&) { return "text"; },
    };
    return std::visit(kind, configLines.at(line));
}

const char* GS::userLineKind(std::size_t line)
{
    const auto kind = Overloaded {
        [](int GS::*) { return "whole number"; },
        [](bool GS::*) { return "flag, on unless 0"; },
        [](std::atomic<int> GS::*) { return "whole number"; },
        [](TransformValue) { return "number"; },
    };
    return std::visit(kind, userLines.at(line));
}

// --- User settings file -----------------------------------------------------------------------

void GS::loadUserSettings()
{
    qDebug() << "load user settings";
    QFile file;
    if (openRegularFile(file, QString::fromStdString(userIniPath), QIODevice::ReadOnly)) {
        QTextStream stream(&file);
        readUserLines(stream);
        if (userParam60 != 0 && param60Override) {
            param60 = userParam60;
            param61 = userParam61;
        }
    } else if (QThread::idealThreadCount() <= 3 || isBrand(brand, Brand::Tal)) {
        cpuState = 0;
    }
    qDebug() << "loaded user settings, profile is" << profile << "autostart is" << autostart;
}

void GS::readUserLines(QTextStream& stream)
{
    LineReader<QString> lines([&stream](int size) { return stream.read(size); }, userLineLimit);
    for (const UserLine& target : userLines) {
        if (!lines.next())
            return;
        const QString line = lines.line().trimmed(); // of a "\r", too
        const auto store = Overloaded {
            [&](int GS::*field) { this->*field = line.toInt(); },
            [&](bool GS::*field) { this->*field = line.toInt() != 0; },
            [&](std::atomic<int> GS::*field) { this->*field = line.toInt(); },
            [&](TransformValue value) { userTransform[value.index] = line.toDouble(); },
        };
        std::visit(store, target);
        if (stylusOnly)
            isTouch = 1;
    }
}

void GS::saveUserSettings()
{
    QString text;
    QTextStream stream(&text);
    const auto write = Overloaded {
        [&](int GS::*field) { stream << this->*field; },
        [&](bool GS::*field) { stream << (this->*field ? 1 : 0); },
        [&](std::atomic<int> GS::*field) { stream << (this->*field).load(); },
        [&](TransformValue value) { stream << userTransform[value.index]; },
    };
    for (const UserLine& line : userLines) {
        std::visit(write, line);
        stream << '\n';
    }

    // One write over the old text, cut to length after it: whoever reads meanwhile, and whatever
    // ends the process, the file is never empty. A longer old text's end is beyond the lines read.
    QFile file;
    const QString path = QString::fromStdString(userIniPath);
    const QByteArray bytes = text.toUtf8();
    if (!openRegularFile(file, path,
                         QIODevice::ReadWrite | QIODevice::Unbuffered | QIODevice::ExistingOnly))
        createRegularFile(path, bytes);
    else if (file.write(bytes) == bytes.size())
        file.resize(bytes.size());
}

// --- Screen -----------------------------------------------------------------------------------

void GS::onResolutionChanged(int width, int height)
{
    screenWidth = width;
    screenHeight = height;
}
