// The user settings file: any text loads, and what was loaded survives a save and a load. The same
// text as the engine's status file gives a report whose number is the text's own.

#include "engine/statusreport.h"
#include "fuzz/fuzzfile.h"
#include "settings/globalsettings.h"

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    silenceLog();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static FuzzFile file;
    static GS settings;
    settings.userIniPath = file.path().toStdString();
    settings.isTouch = 1; // which a text without a line leaves
    settings.stylusOnly = size % 2 == 1;
    settings.param60Override = size % 3 == 0;

    file.write(data, size);
    const auto report = StatusReport::fromFile(file.path());
    require(report.has_value(), "a file is always a report");
    require(!report->status || report->statusText.toInt() == *report->status, "the status is read");
    settings.loadUserSettings();
    require(!settings.stylusOnly || settings.isTouch == 1, "a product without finger touch");
    require(!settings.param60Override || settings.userParam60 == 0
                || (settings.param60 == settings.userParam60
                    && settings.param61 == settings.userParam61),
            "the override applies");

    settings.saveUserSettings();
    const QByteArray saved = file.read();
    require(saved.count('\n') == 15 && saved.endsWith('\n'), "fifteen lines");
    settings.loadUserSettings();
    settings.saveUserSettings();
    require(file.read() == saved, "a save and a load give the same values");
    return 0;
}
