#include "ui/firmwareprompt.h"

#include "engine/enginestatus.h"
#include "settings/brand.h"
#include "ui/supportaddresses.h"

#include <QMessageBox>
#include <QPushButton>

namespace {

constexpr int lastOldFirmware = 1;
const char* const offeredVersion = "1.2";

bool isEngineAway(int status)
{
    return status == StatusEngineGaveUp || status == StatusEngineRestarting
        || status == StatusNotReady;
}

} // namespace

bool FirmwarePrompt::isOffered(int status, int firmware)
{
    return !isEngineAway(status) && firmware <= lastOldFirmware;
}

QString FirmwarePrompt::hint()
{
    return tr("Camera unit firmware is old version. Please click 'File' in the task bar to "
              "update it.");
}

QString FirmwarePrompt::text(int firmware, int brand, const QString& appTitle)
{
    const QString installed = QStringLiteral("1.%1").arg(firmware);
    const QString offered = QLatin1String(offeredVersion);
    // The multi-argument form: a marker inside an inserted text must not be replaced in turn.
    if (isBrand(brand, Brand::Tal)) {
        return tr("A new firmware (Ver. %1) is available (you have Ver. %2).<br><br>It supports to "
                  "store the calibration data onto %3. If you want to update it, If you want to "
                  "update it, please prepare the Windows computer and see the Firmware Update "
                  "Manual in the website link below.<br><br>Manual: ")
                   .arg(offered, installed, appTitle)
            + QStringLiteral("<a href='%1'>%2</a>")
                  .arg(QLatin1String(remotePenDownloadAddress), tr("Download here."));
    }
    return tr("A new firmware (Ver. %1) is available (you have Ver. %2).<br><br>It supports to "
              "store the calibration data onto %3. If you want to update it, please see the "
              "Firmware Update Manual in the website link below and click 'Start' button below. "
              "This will open the firmware updater. Select the file 'firmware.iic' from your "
              "installation folder.<br><br><br><br>Manual: <a href='%4'>Download here.</a>")
        .arg(offered, installed, appTitle, QLatin1String(firmwareManualAddress));
}

void FirmwarePrompt::exec(int firmware, int brand, const QString& appTitle)
{
    QMessageBox box;
    box.setTextFormat(Qt::RichText);
    box.setWindowTitle(tr("Update Firmware"));
    box.setText(text(firmware, brand, appTitle));
    box.addButton(tr("Start"), QMessageBox::YesRole);
    const QAbstractButton* exitButton = box.addButton(tr("Exit"), QMessageBox::NoRole);
    box.exec();
    if (box.clickedButton() == exitButton)
        box.close();
}
