#include "base/workerthread.h"
#include "display/resolutionchangenotifier.h"
#include "settings/globalsettings.h"
#include "support/patience.h"
#include "support/settingsfields.h"

#include <QScreen>
#include <QtTest>

#include <cmath>
#include <memory>
#include <vector>

namespace {

struct Default
{
    QByteArray name;
    QByteArray type;
    QByteArray value;
};

QByteArray home()
{
    return qgetenv("HOME");
}

/// The fields of a fresh object in the order of their declaration.
const std::vector<Default> defaults {
    {"acConfPath", "cstr", "config/ac.conf"},
    {"debugDir", "string", "debug/"},
    {"sensorConfPath", "string", "config/sensor.conf"},
    {"cyusbConfPath", "string", "config/cyusb.conf"},
    {"calibIniPath", "string", "/var/vireon/calib-vireon.ini"},
    {"intrinsicXmlPath", "cstr", "config/intrinsic.xml"},
    {"distortionXmlPath", "cstr", "config/distortion.xml"},
    {"penSettingsPath", "string", "/var/vireon/pensettings.ini"},
    {"language", "cstr", "en"},
    {"hidgDevice", "cstr", "/dev/hidg1"},
    {"inputEventDevice", "cstr", "/dev/input/event4"},
    {"auxDevice1", "cstr", ""},
    {"auxDevice2", "cstr", ""},
    {"auxDevice3", "cstr", ""},
    {"mcCachePath", "string", "/var/vireon/mcCache"},
    {"serialPort", "cstr", "ttyS3"},
    {"userIniPath", "string", "/var/vireon/user.ini"},
    {"remoteConfPath", "cstr", "config/remote.conf"},
    {"applicationsDir", "cstr", "/usr/share/applications/"},
    {"iconsDir", "cstr", "/usr/share/icons/matefaenza/apps/scalable/"},
    {"appListIniPath", "cstr", "/usr/local/bin/vireon/config/applist.ini"},
    {"updaterName", "QString", "vireon-updater"},
    {"uinputDevice", "cstr", "/dev/uinput"},
    {"fifo1Path", "QString", ""},
    {"refifoPath", "QString", ""},
    {"appName", "QString", "vireon"},
    {"documentsDir", "QString", home() + "/Documents/"},
    {"dataDir", "QString", home() + "/Documents/Vireon"},
    {"cameraWidth", "int", "752"},
    {"cameraHeight", "int", "480"},
    {"cameraPixelCount", "int", "360960"},
    {"cameraCentre", "EVector", "376,240"},
    {"cameraHalfDiagonal", "double", settingsNumber(std::sqrt(376.0 * 376.0 + 240.0 * 240.0))},
    {"screenWidth", "int", "0"},
    {"screenHeight", "int", "0"},
    {"referenceLength", "double", settingsNumber(0.0)},
    {"isTouch", "int", "1"},
    {"profile", "int", "0"},
    {"autostart", "bool", "1"},
    {"singlePointerMode", "int", "0"},
    {"cpuState", "int", "2"},
    {"userTransform", "6 double", "1 1 0 0 1 1"},
    {"userParam60", "int", "0"},
    {"userParam61", "int", "0"},
    {"aspectRatioWarningShown", "bool", "0"},
    {"acPopUpEnabled", "bool", "1"},
    {"brand", "int", "0"},
    {"stylusOnly", "bool", "0"},
    {"param60Override", "bool", "0"},
    {"param04", "int", "80"},
    {"param05", "int", "230"},
    {"param10", "int", "0"},
    {"param11", "int", "2"},
    {"param12", "int", "700"},
    {"param13", "int", "15"},
    {"param14", "int", "600"},
    {"param15", "int", "5"},
    {"param22", "int", "5"},
    {"param23", "int", "5"},
    {"param34", "int", "2000"},
    {"param41", "int", "200"},
    {"param42", "int", "30"},
    {"param43", "int", "30"},
    {"param50", "int", "12"},
    {"param51", "int", "3"},
    {"param73", "int", "45"},
    {"param74", "int", "30"},
    {"param75", "int", "5"},
    {"param77", "int", "5000"},
    {"param93", "int", "20"},
    {"param97", "int", "20"},
    {"param98", "int", "-1"},
    {"param99", "int", "-1"},
    {"param106", "int", "-5"},
    {"param107", "int", "100"},
    {"param108", "int", "12"},
    {"param113", "int", "90"},
    {"param114", "int", "95"},
    {"param115", "int", "30"},
    {"param116", "int", "30"},
    {"param06", "double", settingsNumber(0.5)},
    {"param07", "double", settingsNumber(0.8)},
    {"param08", "double", settingsNumber(0.5)},
    {"param24", "double", settingsNumber(0.02)},
    {"param25", "double", settingsNumber(0.03)},
    {"param26", "double", settingsNumber(1.0)},
    {"param27", "double", settingsNumber(1.0)},
    {"param28", "double", settingsNumber(1.0)},
    {"param29", "double", settingsNumber(1.0)},
    {"param30", "double", settingsNumber(376.0)},
    {"param31", "double", settingsNumber(240.0)},
    {"param32", "double", settingsNumber(1.0055)},
    {"param37", "double", settingsNumber(3.0)},
    {"param40", "double", settingsNumber(1.8)},
    {"param44", "double", settingsNumber(0.00406)},
    {"param45", "double", settingsNumber(0.01)},
    {"param46", "double", settingsNumber(0.022)},
    {"param47", "double", settingsNumber(99.0)},
    {"param48", "double", settingsNumber(97.0)},
    {"param71", "double", settingsNumber(3.5)},
    {"param76", "double", settingsNumber(1.0)},
    {"param78", "double", settingsNumber(0.6)},
    {"param79", "double", settingsNumber(20.0)},
    {"param80", "double", settingsNumber(25.0)},
    {"param82", "double", settingsNumber(0.25)},
    {"param84", "double", settingsNumber(0.05)},
    {"param85", "double", settingsNumber(0.08)},
    {"param95", "double", settingsNumber(40.0)},
    {"param96", "double", settingsNumber(1.5)},
    {"param100", "double", settingsNumber(0.6)},
    {"param101", "double", settingsNumber(10.0)},
    {"param102", "double", settingsNumber(10.0)},
    {"param103", "double", settingsNumber(2.0)},
    {"param104", "double", settingsNumber(5.0)},
    {"param105", "double", settingsNumber(5.0)},
    {"param109", "double", settingsNumber(2.2)},
    {"param111", "double", settingsNumber(0.8)},
    {"param112", "double", settingsNumber(0.5)},
    {"param117", "double", settingsNumber(1.0)},
    {"param118", "double", settingsNumber(1.0)},
    {"param09", "bool", "0"},
    {"param35", "bool", "0"},
    {"param65", "bool", "0"},
    {"param81", "bool", "0"},
    {"param94", "bool", "0"},
    {"param120", "bool", "0"},
    {"param38", "double", settingsNumber(0.0)},
    {"param39", "double", settingsNumber(0.0)},
    {"param87", "double", settingsNumber(0.0)},
    {"param53", "int", "0"},
    {"param54", "int", "0"},
    {"param55", "int", "0"},
    {"param56", "int", "0"},
    {"param58", "int", "0"},
    {"param59", "int", "0"},
    {"param60", "int", "0"},
    {"param61", "int", "0"},
    {"param62", "int", "0"},
    {"param63", "int", "0"},
    {"param119", "int", "0"},
    {"param57", "bool", "0"},
    {"param64", "bool", "0"},
    {"param71Copy", "double", settingsNumber(3.5)},
    {"param87Copy", "double", settingsNumber(0.0)},
    {"param60Default", "int", "0"},
    {"param61Default", "int", "0"},
    {"extraVector1", "EVector", "0,0"},
    {"extraVector2", "EVector", "0,0"},
    {"extraVector3", "EVector", "0,0"},
    {"extraVector4", "EVector", "0,0"},
    {"extraVector5", "EVector", "0,0"},
    {"extraVector6", "EVector", "0,0"},
    {"extraScale", "double", settingsNumber(1.0)},
    {"extraLimit", "int", "253"},
    {"extraCount", "int", "4"},
    {"extraInt", "int", "0"},
    {"extraFlag1", "bool", "0"},
    {"extraFlag2", "bool", "0"},
    {"extraFlag3", "bool", "0"},
};

} // namespace

class TestGlobalSettings : public QObject
{
    Q_OBJECT

private slots:
    void freshObjectHoldsTheDefaults_data();
    void freshObjectHoldsTheDefaults();
    void everyFieldIsCompared();
    void fieldsAreDeclaredInTheirOrder();
    void noFieldIsUnknownHere();
    void noFieldOfTheHeaderIsUnknownHere();
    void documentsDirEndsWithSlash();
    void missingDocumentsDirLeavesBareName();
    void resolutionChangeSetsTheScreenAlone();
    void initBindsToThePrimaryScreen();
    void theSlotIsTheOnlyMetaMember();
    void cleanupTestCase();
};

void TestGlobalSettings::freshObjectHoldsTheDefaults_data()
{
    QTest::addColumn<int>("index");
    for (std::size_t i = 0; i < defaults.size(); ++i)
        QTest::newRow(defaults[i].name.constData()) << static_cast<int>(i);
}

void TestGlobalSettings::freshObjectHoldsTheDefaults()
{
    QFETCH(int, index);
    const Default& expected = defaults[static_cast<std::size_t>(index)];
    const SettingsField actual = settingsFields(GS())[static_cast<std::size_t>(index)];
    QCOMPARE(actual.name, expected.name);
    QCOMPARE(actual.type, expected.type);
    QCOMPARE(actual.value, expected.value);
}

void TestGlobalSettings::everyFieldIsCompared()
{
    QCOMPARE(settingsFields(GS()).size(), defaults.size());
}

void TestGlobalSettings::fieldsAreDeclaredInTheirOrder()
{
    const GS settings;
    std::ptrdiff_t last = 0;
    for (const SettingsField& field : settingsFields(settings)) {
        QVERIFY2(field.offset > last, field.name.constData());
        last = field.offset;
    }
}

void TestGlobalSettings::noFieldIsUnknownHere()
{
    // From the base class to the end of the object nothing is left but what alignment leaves.
    const auto aligned = [](std::ptrdiff_t offset, std::ptrdiff_t alignment) {
        return (offset + alignment - 1) / alignment * alignment;
    };
    std::ptrdiff_t end = sizeof(QObject);
    for (const SettingsField& field : settingsFields(GS())) {
        QVERIFY2(field.offset == aligned(end, field.alignment), field.name.constData());
        end = field.offset + field.size;
    }
    // The texts behind the fields of type "cstr".
    using OwnedStrings = std::vector<std::unique_ptr<char[]>>;
    end = aligned(end, alignof(OwnedStrings)) + std::ptrdiff_t(sizeof(OwnedStrings));
    QCOMPARE(aligned(end, alignof(GS)), std::ptrdiff_t(sizeof(GS)));
}

void TestGlobalSettings::noFieldOfTheHeaderIsUnknownHere()
{
    // A flag may hide where alignment leaves room: what the header declares is compared too.
    QFile header(VIREON_SOURCE_DIR "/src/settings/globalsettings.h");
    QVERIFY(header.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(header.readAll());
    const int begin = text.indexOf("    // Paths and names.");
    const int end = text.indexOf("public slots:");
    QVERIFY(begin > 0 && begin < end);
    const QRegularExpression comment("^\\s*(//.*)?$");
    const QRegularExpression field(
        "^    [\\w:]+(?: char)?(?:<[^>]+>)?[*]? (\\w+)(?: = [^;]+| \\{[^;]*\\})?;( ///< .*)?$");
    QByteArrayList names;
    for (const QString& line : text.mid(begin, end - begin).split('\n')) {
        if (comment.match(line).hasMatch())
            continue;
        const auto match = field.match(line);
        QVERIFY2(match.hasMatch(), qPrintable("not understood: " + line));
        names << match.captured(1).toLatin1();
    }
    QByteArrayList known;
    for (const SettingsField& each : settingsFields(GS()))
        known << each.name;
    QCOMPARE(names, known);
}

void TestGlobalSettings::documentsDirEndsWithSlash()
{
    const GS settings;
    QVERIFY(settings.documentsDir.endsWith("/Documents/"));
    QCOMPARE(settings.dataDir, settings.documentsDir + "Vireon");
}

void TestGlobalSettings::missingDocumentsDirLeavesBareName()
{
    const QByteArray usual = home();
    qputenv("HOME", usual + "/tmp");
    const GS settings;
    qputenv("HOME", usual);
    QCOMPARE(settings.documentsDir, QString());
    QCOMPARE(settings.dataDir, QString("Vireon"));
}

void TestGlobalSettings::resolutionChangeSetsTheScreenAlone()
{
    GS settings;
    settings.referenceLength = 500.0;
    GS changed;
    changed.referenceLength = 500.0;
    changed.onResolutionChanged(1920, 1080);
    const QMap<QByteArray, QByteArray> expected {{"screenWidth", "1920"}, {"screenHeight", "1080"}};
    QCOMPARE(settingsChanges(settings, changed), expected);
}

void TestGlobalSettings::initBindsToThePrimaryScreen()
{
    const QSize screen = QGuiApplication::primaryScreen()->size();
    QVERIFY(!screen.isEmpty());
    GS settings;
    settings.referenceLength = 100.0;
    QCOMPARE(settings.screenWidth, 0);
    settings.init();
    QCOMPARE(settings.screenWidth, screen.width());
    QCOMPARE(settings.screenHeight, screen.height());
    QCOMPARE(settings.referenceLength, 100.0 / screen.width() * 1920.0);

    const double rescaled = settings.referenceLength;
    emit ResolutionChangeNotifier::instance()->resolutionChanged(1920, 1080);
    QCOMPARE(settings.screenWidth, 1920);
    QCOMPARE(settings.screenHeight, 1080);
    QCOMPARE(settings.referenceLength, rescaled);
}

void TestGlobalSettings::theSlotIsTheOnlyMetaMember()
{
    const QMetaObject& meta = GS::staticMetaObject;
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 1);
    QCOMPARE(meta.method(meta.methodOffset()).methodSignature(),
             QByteArray("onResolutionChanged(int,int)"));
    QCOMPARE(meta.method(meta.methodOffset()).methodType(), QMetaMethod::Slot);
    QCOMPARE(meta.propertyCount() - meta.propertyOffset(), 0);
    QCOMPARE(meta.superClass(), &QObject::staticMetaObject);
}

void TestGlobalSettings::cleanupTestCase()
{
    WorkerThread::stopAll();
    QVERIFY(WorkerThread::waitForAll(patienceMs));
}

QTEST_MAIN(TestGlobalSettings)
#include "tst_globalsettings.moc"
