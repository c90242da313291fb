#pragma once

#include "settings/evector.h"

#include <QObject>
#include <QString>

#include <array>
#include <atomic>
#include <memory>
#include <string>
#include <vector>

class QTextStream;

/**
 * The settings of the process: every path, device name, dimension, parameter and user preference.
 *
 * One object, made by the first instance() and never destroyed. It is filled from the
 * configuration file "config/vireon.conf" beside the program and then from the user settings file.
 * Both are positional: the number of a line decides its field, never a name.
 *
 * The fields are public and are read and written directly. A write that must survive a restart is
 * followed by saveUserSettings(). Worker threads only read fields that are fixed once the settings
 * are loaded; cpuState is the one exception.
 *
 * The record holds all that the configuration file sets, so that it always matches the file's
 * layout; most of it is only kept. A field that is "derived" is computed when a configuration file
 * was read, whatever the file says on its line.
 */
class GS : public QObject
{
    Q_OBJECT

public:
    /// The settings; the first call makes them and must come from the main thread. Never null: a
    /// missing configuration file leaves the defaults below.
    static GS* instance();

    /// All defaults, nothing read.
    GS();
    ~GS() override;

    /// New settings, filled from the configuration file at @p path, or null if that cannot be
    /// opened. The caller owns them. Sets the process's C locale to "C" for good. Throws
    /// std::out_of_range for a value made of blanks alone; nothing in the program catches it. Of a
    /// line longer than 131072 bytes only so much counts, and it never throws.
    static GS* load(QString path);

    /// Reads the user settings file. A missing file leaves the defaults, but for cpuState on a
    /// small machine; a line that is not a number reads as 0. 4096 characters of a line count.
    void loadUserSettings();

    /// Rewrites the user settings file as a whole; does nothing if it cannot be opened. A process
    /// that ends meanwhile leaves the old or the new values.
    void saveUserSettings();

    /// Binds the settings to the primary screen: takes its size, rescales referenceLength to it
    /// and follows its changes. Not part of the start-up. A width of 0 gives an infinite or
    /// undefined referenceLength.
    void init();

    /// What is read from a line of the configuration file (0 to 122) or of the user settings file
    /// (0 to 14), in a word or two for their manual.
    static const char* configLineKind(std::size_t line);
    static const char* userLineKind(std::size_t line);

    // Paths and names. "Derived" ones lie in dataDir.
    const char* acConfPath = "config/ac.conf"; ///< engine file, relative to the engine's directory
    std::string debugDir = "debug/"; ///< derived: "debug"
    std::string sensorConfPath = "config/sensor.conf"; ///< engine file
    std::string cyusbConfPath = "config/cyusb.conf"; ///< engine file
    std::string calibIniPath = "/var/vireon/calib-vireon.ini"; ///< derived: "calib-palmora.ini"
    const char* intrinsicXmlPath = "config/intrinsic.xml"; ///< engine file
    const char* distortionXmlPath = "config/distortion.xml"; ///< engine file
    std::string penSettingsPath = "/var/vireon/pensettings.ini"; ///< derived: the status file
    const char* language = "en"; ///< not used: the system's locale decides
    const char* hidgDevice = "/dev/hidg1";
    const char* inputEventDevice = "/dev/input/event4";
    const char* auxDevice1 = "";
    const char* auxDevice2 = "";
    const char* auxDevice3 = "";
    std::string mcCachePath = "/var/vireon/mcCache"; ///< derived: manual calibration's cache
    const char* serialPort = "ttyS3";
    std::string userIniPath = "/var/vireon/user.ini"; ///< derived: the user settings file
    const char* remoteConfPath = "config/remote.conf"; ///< engine file
    const char* applicationsDir = "/usr/share/applications/";
    const char* iconsDir = "/usr/share/icons/matefaenza/apps/scalable/";
    const char* appListIniPath = "/usr/local/bin/vireon/config/applist.ini";
    QString updaterName = QStringLiteral("vireon-updater"); ///< key of the updater's segment
    const char* uinputDevice = "/dev/uinput";
    QString fifo1Path; ///< derived: "fifo1", the mailbox's command file
    QString refifoPath; ///< derived: "refifo", the mailbox's reply file
    QString appName = QStringLiteral("vireon"); ///< key of the single-instance guard
    QString documentsDir; ///< the user's documents directory with a "/" at its end, or empty
    QString dataDir; ///< documentsDir and "Vireon": the engine's data directory

    // Camera and screen geometry, in pixels.
    int cameraWidth = 752;
    int cameraHeight = 480;
    int cameraPixelCount = 0; ///< derived: width × height; wraps in 32 bits
    EVector cameraCentre {0.0, 0.0}; ///< derived: integer halves of width and height
    double cameraHalfDiagonal = 0.0; ///< derived: length of cameraCentre
    int screenWidth = 0; ///< set by init() and onResolutionChanged()
    int screenHeight = 0; ///< set by init() and onResolutionChanged()
    double referenceLength = 0.0; ///< a length for the screen's width; init() rescales it to 1920

    // User preferences, kept in the user settings file.
    int isTouch = 1; ///< flag: 1 means pen, 0 finger; the main view's "isTouch" is its negation
    int profile = 0;
    bool autostart = true; ///< start with the desktop session
    int singlePointerMode = 0; ///< applied at start: 0 selects the single pointer
    std::atomic<int> cpuState {2}; ///< keep a processor awake: 2 on, 0 off
    std::array<double, 6> userTransform {1.0, 1.0, 0.0, 0.0, 1.0, 1.0};
    int userParam60 = 0; ///< replaces param60 when not 0 and param60Override is set
    int userParam61 = 0; ///< replaces param61 together with userParam60
    bool aspectRatioWarningShown = false;
    bool acPopUpEnabled = true; ///< show the advice on auto calibration

    // Product variant.
    int brand = 0; ///< see settings/brand.h
    bool stylusOnly = false; ///< the product has no finger touch
    bool param60Override = false; ///< set by param120

    // Parameters of the configuration file, named after their lines.
    int param04 = 80;
    int param05 = 230;
    int param10 = 0;
    int param11 = 2;
    int param12 = 700;
    int param13 = 15;
    int param14 = 600;
    int param15 = 5;
    int param22 = 5;
    int param23 = 5;
    int param34 = 2000;
    int param41 = 200;
    int param42 = 30;
    int param43 = 30;
    int param50 = 12;
    int param51 = 3;
    int param73 = 45;
    int param74 = 30;
    int param75 = 5;
    int param77 = 5000;
    int param93 = 20;
    int param97 = 20;
    int param98 = -1;
    int param99 = -1;
    int param106 = -5;
    int param107 = 100;
    int param108 = 12;
    int param113 = 90;
    int param114 = 95;
    int param115 = 30;
    int param116 = 30;
    double param06 = 0.5;
    double param07 = 0.8;
    double param08 = 0.5;
    double param24 = 0.02;
    double param25 = 0.03;
    double param26 = 1.0;
    double param27 = 1.0;
    double param28 = 1.0;
    double param29 = 1.0;
    double param30 = 376.0;
    double param31 = 240.0;
    double param32 = 1.0055;
    double param37 = 3.0;
    double param40 = 1.8;
    double param44 = 0.00406;
    double param45 = 0.01;
    double param46 = 0.022;
    double param47 = 99.0;
    double param48 = 97.0;
    double param71 = 3.5;
    double param76 = 1.0;
    double param78 = 0.6;
    double param79 = 20.0;
    double param80 = 25.0;
    double param82 = 0.25;
    double param84 = 0.05;
    double param85 = 0.08;
    double param95 = 40.0;
    double param96 = 1.5;
    double param100 = 0.6;
    double param101 = 10.0;
    double param102 = 10.0;
    double param103 = 2.0;
    double param104 = 5.0;
    double param105 = 5.0;
    double param109 = 2.2;
    double param111 = 0.8;
    double param112 = 0.5;
    double param117 = 1.0;
    double param118 = 1.0;
    bool param09 = false;
    bool param35 = false;
    bool param65 = false;
    bool param81 = false;
    bool param94 = false;
    bool param120 = false;
    double param38 = 0.0;
    double param39 = 0.0;
    double param87 = 0.0;
    int param53 = 0;
    int param54 = 0;
    int param55 = 0;
    int param56 = 0;
    int param58 = 0;
    int param59 = 0;
    int param60 = 0;
    int param61 = 0;
    int param62 = 0;
    int param63 = 0;
    int param119 = 0;
    bool param57 = false;
    bool param64 = false;

    // Copies, and values that nothing sets.
    double param71Copy = param71; ///< derived
    double param87Copy = param87; ///< derived
    int param60Default = 0; ///< line 60 as configured, also when userParam60 applies
    int param61Default = 0; ///< line 61 as configured
    EVector extraVector1 {0.0, 0.0};
    EVector extraVector2 {0.0, 0.0};
    EVector extraVector3 {0.0, 0.0};
    EVector extraVector4 {0.0, 0.0};
    EVector extraVector5 {0.0, 0.0};
    EVector extraVector6 {0.0, 0.0};
    double extraScale = 1.0;
    int extraLimit = 253;
    int extraCount = 4;
    int extraInt = 0;
    bool extraFlag1 = false;
    bool extraFlag2 = false;
    bool extraFlag3 = false;

public slots:
    /// Stores the screen's new size in px; nothing is rescaled.
    void onResolutionChanged(int width, int height);

private:
    void storeConfigLine(std::size_t number, const std::string& line);
    void derivePaths();
    void applyProductVariant();
    void deriveCameraGeometry();
    void readUserLines(QTextStream& stream);

    static GS* _instance;

    /// The strings behind the fields of type const char* that a configuration file has set.
    std::vector<std::unique_ptr<char[]>> ownedStrings;
};
