// The configuration file: any text loads, but for a value of blanks alone, and what must hold of
// loaded settings holds.

#include "fuzz/fuzzfile.h"
#include "settings/globalsettings.h"

#include <cstring>
#include <memory>
#include <stdexcept>

namespace {

bool hasBlankValue(const QByteArray& text)
{
    const QByteArrayList lines = text.split('\n');
    for (const QByteArray& line : lines) {
        const QByteArray value = line.mid(line.indexOf('=') + 1);
        const bool isCut = line.size() > 131072; // which is never fatal
        if (!isCut && !value.isEmpty() && value.count(' ') == value.size())
            return true;
    }
    return false;
}

void check(const GS& settings)
{
    const bool penBrand = settings.brand == 2 || settings.brand == 4;
    require(!penBrand || settings.stylusOnly, "pen brands are pen only");
    require(!(penBrand || settings.brand == 1) || settings.isTouch == 1, "brands set isTouch");
    require(settings.isTouch == 0 || settings.isTouch == 1, "isTouch is a flag");
    require(settings.param60 == settings.param60Default, "line 60 has a copy");
    require(settings.param60Override == settings.param120, "line 120 permits the override");
    const int halfWidth = settings.cameraWidth / 2;
    require(settings.cameraCentre.x == halfWidth, "the centre is derived");
    require(settings.userIniPath == (settings.dataDir + "/user.ini").toStdString(),
            "the paths are derived");
    // Every text ends somewhere: the address sanitizer sees one that does not.
    for (const char* text : {settings.acConfPath, settings.language, settings.appListIniPath})
        require(std::strlen(text) < 1000000, "texts end");
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    silenceLog();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static FuzzFile file;
    file.write(data, size);
    const bool fatal = hasBlankValue(file.read());
    try {
        const std::unique_ptr<GS> settings(GS::load(file.path()));
        require(settings != nullptr, "the file is opened");
        require(!fatal, "a value of blanks alone is fatal");
        check(*settings);
    } catch (const std::out_of_range& error) {
        require(fatal, "only a value of blanks alone is fatal");
        require(std::strcmp(error.what(), "basic_string::substr") == 0, "the exception's text");
    }
    return 0;
}
