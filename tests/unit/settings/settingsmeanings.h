#pragma once

// What the pages say of the settings files' lines, beside what the code tells by itself.

/// What the unit's column says of a text, a flag or a number that counts nothing, and of a number
/// that only the engine understands.
constexpr char noUnit[] = "–";
constexpr char enginesUnit[] = "the engine's";

struct Meaning
{
    const char* name; ///< as in the shipped configuration file
    const char* text;
    const char* unit = nullptr; ///< null: as for every line of its kind
};

constexpr Meaning configMeanings[] = {
    {"cyusbConfPath", "a file of the engine's, relative to its directory"},
    {"sensorConfPath", "a file of the engine's, relative to its directory"},
    {"cameraWidth", "width of the camera's picture", "px"},
    {"cameraHeight", "height of the camera's picture", "px"},
    {"acConfPath", "a file of the engine's, relative to its directory"},
    {"debugDir", "not used: always `debug` in the data directory"},
    {"calibIniPath", "not used: always `calib-palmora.ini` in the data directory"},
    {"penSettingsPath",
     "not used: the status file is always `pensettings.ini` in the data directory"},
    {"intrinsicXmlPath", "a file of the engine's, relative to its directory"},
    {"distortionXmlPath", "a file of the engine's, relative to its directory"},
    {"uinputDevice", "the device of the virtual input"},
    {"isTouch", "the input before the user has chosen one: on for the pen, off for the finger"},
    {"language", "not used: the system's locale decides"},
    {"param60",
     "for the engine; `userParam60` of `user.ini` takes its place where `param120` is on"},
    {"param61", "for the engine; goes with `param60`"},
    {"hidgDevice", "a device"},
    {"auxDevice1", "a further device"},
    {"auxDevice2", "a further device"},
    {"auxDevice3", "a further device"},
    {"mcCachePath",
     "not used: the manual calibration's cache is always `mcCache` in the data directory"},
    {"serialPort", "a serial port"},
    {"userIniPath", "not used: the user's settings are always `user.ini` in the data directory"},
    {"inputEventDevice", "a device"},
    {"remoteConfPath", "a file of the engine's, relative to its directory"},
    {"applicationsDir", "where desktop entries are"},
    {"iconsDir", "where icons are"},
    {"appListIniPath", "a list of applications"},
    {"referenceLength", "a length for the width of the screen"},
    {"param120", "lets `userParam60` and `userParam61` of `user.ini` apply"},
    {"brand", "the product: 0, 1, 2 or 4; any other is one without a brand", noUnit},
    {"stylusOnly", "the product has no finger touch"},
    {"reserved33", "kept free"},
    {"reserved83", "kept free"},
};

/// Of every other line.
constexpr char otherMeaning[] = "a parameter of the engine's; Vireon only keeps it";

struct UserLine
{
    const char* name;
    const char* initial;
    const char* meaning;
    const char* unit = noUnit;
};

constexpr UserLine userMeanings[] = {
    {"isTouch", "1", "1 for the pen, 0 for the finger"},
    {"profile", "0", "number of the profile"},
    {"autostart", "1", "start with the desktop session"},
    {"singlePointerMode", "0", "0 for one pointer at the start, any other number for several"},
    {"cpuState", "2",
     "2 keeps a processor awake, 0 does not; 0 at first with three processors or less"},
    {"userTransform[0]", "1", "an adjustment of the user's", enginesUnit},
    {"userTransform[1]", "1", "an adjustment of the user's", enginesUnit},
    {"userTransform[2]", "0", "an adjustment of the user's", enginesUnit},
    {"userTransform[3]", "0", "an adjustment of the user's", enginesUnit},
    {"userTransform[4]", "1", "an adjustment of the user's", enginesUnit},
    {"userTransform[5]", "1", "an adjustment of the user's", enginesUnit},
    {"userParam60", "0", "takes the place of `param60` unless 0, where `param120` is on",
     enginesUnit},
    {"userParam61", "0", "takes the place of `param61` together with it", enginesUnit},
    {"aspectRatioWarningShown", "0", "the warning of the aspect ratio was shown"},
    {"acPopUpEnabled", "1", "show the advice on auto calibration"},
};
