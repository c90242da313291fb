#include "support/settingsfields.h"

#include "settings/globalsettings.h"

namespace {

struct Content
{
    QByteArray value;
    QByteArray type;
};

Content content(int value)
{
    return {QByteArray::number(value), "int"};
}

Content content(const std::atomic<int>& value)
{
    return content(value.load());
}

Content content(bool value)
{
    return {value ? "1" : "0", "bool"};
}

Content content(double value)
{
    return {settingsNumber(value), "double"};
}

Content content(const std::string& value)
{
    return {QByteArray::fromStdString(value), "string"};
}

Content content(const char* value)
{
    return {value, "cstr"};
}

Content content(const QString& value)
{
    return {value.toUtf8(), "QString"};
}

Content content(const EVector& value)
{
    return {settingsNumber(value.x) + ',' + settingsNumber(value.y), "EVector"};
}

Content content(const std::array<double, 6>& values)
{
    QByteArrayList numbers;
    for (const double value : values)
        numbers << settingsNumber(value);
    return {numbers.join(' '), "6 double"};
}

template <class Type> SettingsField field(const char* name, const GS& settings, const Type& member)
{
    const Content c = content(member);
    const std::ptrdiff_t offset =
        reinterpret_cast<const char*>(&member) - reinterpret_cast<const char*>(&settings);
    return {name, c.value, c.type, offset, sizeof(Type), alignof(Type)};
}

using FieldReader = SettingsField (*)(const GS&);

#define FIELD(name) [](const GS& s) { return field(#name, s, s.name); }
const FieldReader fieldReaders[] {
    FIELD(acConfPath),
    FIELD(debugDir),
    FIELD(sensorConfPath),
    FIELD(cyusbConfPath),
    FIELD(calibIniPath),
    FIELD(intrinsicXmlPath),
    FIELD(distortionXmlPath),
    FIELD(penSettingsPath),
    FIELD(language),
    FIELD(hidgDevice),
    FIELD(inputEventDevice),
    FIELD(auxDevice1),
    FIELD(auxDevice2),
    FIELD(auxDevice3),
    FIELD(mcCachePath),
    FIELD(serialPort),
    FIELD(userIniPath),
    FIELD(remoteConfPath),
    FIELD(applicationsDir),
    FIELD(iconsDir),
    FIELD(appListIniPath),
    FIELD(updaterName),
    FIELD(uinputDevice),
    FIELD(fifo1Path),
    FIELD(refifoPath),
    FIELD(appName),
    FIELD(documentsDir),
    FIELD(dataDir),
    FIELD(cameraWidth),
    FIELD(cameraHeight),
    FIELD(cameraPixelCount),
    FIELD(cameraCentre),
    FIELD(cameraHalfDiagonal),
    FIELD(screenWidth),
    FIELD(screenHeight),
    FIELD(referenceLength),
    FIELD(isTouch),
    FIELD(profile),
    FIELD(autostart),
    FIELD(singlePointerMode),
    FIELD(cpuState),
    FIELD(userTransform),
    FIELD(userParam60),
    FIELD(userParam61),
    FIELD(aspectRatioWarningShown),
    FIELD(acPopUpEnabled),
    FIELD(brand),
    FIELD(stylusOnly),
    FIELD(param60Override),
    FIELD(param04),
    FIELD(param05),
    FIELD(param10),
    FIELD(param11),
    FIELD(param12),
    FIELD(param13),
    FIELD(param14),
    FIELD(param15),
    FIELD(param22),
    FIELD(param23),
    FIELD(param34),
    FIELD(param41),
    FIELD(param42),
    FIELD(param43),
    FIELD(param50),
    FIELD(param51),
    FIELD(param73),
    FIELD(param74),
    FIELD(param75),
    FIELD(param77),
    FIELD(param93),
    FIELD(param97),
    FIELD(param98),
    FIELD(param99),
    FIELD(param106),
    FIELD(param107),
    FIELD(param108),
    FIELD(param113),
    FIELD(param114),
    FIELD(param115),
    FIELD(param116),
    FIELD(param06),
    FIELD(param07),
    FIELD(param08),
    FIELD(param24),
    FIELD(param25),
    FIELD(param26),
    FIELD(param27),
    FIELD(param28),
    FIELD(param29),
    FIELD(param30),
    FIELD(param31),
    FIELD(param32),
    FIELD(param37),
    FIELD(param40),
    FIELD(param44),
    FIELD(param45),
    FIELD(param46),
    FIELD(param47),
    FIELD(param48),
    FIELD(param71),
    FIELD(param76),
    FIELD(param78),
    FIELD(param79),
    FIELD(param80),
    FIELD(param82),
    FIELD(param84),
    FIELD(param85),
    FIELD(param95),
    FIELD(param96),
    FIELD(param100),
    FIELD(param101),
    FIELD(param102),
    FIELD(param103),
    FIELD(param104),
    FIELD(param105),
    FIELD(param109),
    FIELD(param111),
    FIELD(param112),
    FIELD(param117),
    FIELD(param118),
    FIELD(param09),
    FIELD(param35),
    FIELD(param65),
    FIELD(param81),
    FIELD(param94),
    FIELD(param120),
    FIELD(param38),
    FIELD(param39),
    FIELD(param87),
    FIELD(param53),
    FIELD(param54),
    FIELD(param55),
    FIELD(param56),
    FIELD(param58),
    FIELD(param59),
    FIELD(param60),
    FIELD(param61),
    FIELD(param62),
    FIELD(param63),
    FIELD(param119),
    FIELD(param57),
    FIELD(param64),
    FIELD(param71Copy),
    FIELD(param87Copy),
    FIELD(param60Default),
    FIELD(param61Default),
    FIELD(extraVector1),
    FIELD(extraVector2),
    FIELD(extraVector3),
    FIELD(extraVector4),
    FIELD(extraVector5),
    FIELD(extraVector6),
    FIELD(extraScale),
    FIELD(extraLimit),
    FIELD(extraCount),
    FIELD(extraInt),
    FIELD(extraFlag1),
    FIELD(extraFlag2),
    FIELD(extraFlag3),
};
#undef FIELD

} // namespace

QByteArray settingsNumber(double number)
{
    return QByteArray::number(number, 'g', 17);
}

std::vector<SettingsField> settingsFields(const GS& settings)
{
    std::vector<SettingsField> fields;
    for (const FieldReader read : fieldReaders)
        fields.push_back(read(settings));
    return fields;
}

QMap<QByteArray, QByteArray> settingsValues(const GS& settings)
{
    QMap<QByteArray, QByteArray> values;
    for (const SettingsField& f : settingsFields(settings))
        values.insert(f.name, f.value);
    return values;
}

QMap<QByteArray, QByteArray> settingsChanges(const GS& before, const GS& after)
{
    QMap<QByteArray, QByteArray> changes;
    const QMap<QByteArray, QByteArray> old = settingsValues(before);
    const QMap<QByteArray, QByteArray> fresh = settingsValues(after);
    for (auto i = fresh.begin(); i != fresh.end(); ++i) {
        if (old.value(i.key()) != i.value())
            changes.insert(i.key(), i.value());
    }
    return changes;
}
