#include "engine/enginestatus.h"
#include "settings/brand.h"
#include "ui/firmwareprompt.h"
#include "ui/supportaddresses.h"

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QTest>
#include <QTimer>

/// When the firmware's update is offered, and what is said of it.
class TestFirmwarePrompt : public QObject
{
    Q_OBJECT

private slots:
    void isOfferedByTheRule_data();
    void isOfferedByTheRule();
    void hintTellsTheWay();
    void textTellsHow_data();
    void textTellsHow();
    void markersInTheNameStay();
    void boxWaitsForAnyButton_data();
    void boxWaitsForAnyButton();
    void boxCanBeClosed();
};

namespace {

const char* const firmwareText =
    "A new firmware (Ver. 1.2) is available (you have Ver. 1.1).<br><br>It supports to store the "
    "calibration data onto Vireon. If you want to update it, please see the Firmware Update Manual "
    "in the website link below and click 'Start' button below. This will open the firmware "
    "updater. Select the file 'firmware.iic' from your installation folder.<br><br><br><br>"
    "Manual: <a href='%1'>Download here.</a>";
const char* const remotePenFirmwareText =
    "A new firmware (Ver. 1.2) is available (you have Ver. 1.1).<br><br>It supports to store the "
    "calibration data onto Vireon. If you want to update it, If you want to update it, please "
    "prepare the Windows computer and see the Firmware Update Manual in the website link below."
    "<br><br>Manual: <a href='%1'>Download here.</a>";

/// What was on the screen.
struct Box
{
    QString title;
    QString text;
    Qt::TextFormat format = Qt::PlainText;
    QMessageBox::Icon icon = QMessageBox::Critical;
    QStringList buttons;
    QList<int> roles;
    bool isModal = false;
    bool hasParent = true;
};

Box describe(const QMessageBox& box)
{
    Box seen;
    seen.title = box.windowTitle();
    seen.text = box.text();
    seen.format = box.textFormat();
    seen.icon = box.icon();
    seen.isModal = box.isModal();
    seen.hasParent = box.parent();
    for (QAbstractButton* button : box.buttons()) {
        seen.buttons.append(button->text());
        seen.roles.append(box.buttonRole(button));
    }
    return seen;
}

/// Shows the box, has it closed with @p button (or, without that, as by the window manager), and
/// tells what it was like.
Box show(int firmware, int brand, const QString& button)
{
    Box seen;
    QTimer::singleShot(0, qApp, [&] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (!box)
            return;
        seen = describe(*box);
        for (QAbstractButton* candidate : box->buttons()) {
            if (candidate->text() == button)
                candidate->click();
        }
        if (box->isVisible())
            box->reject();
    });
    FirmwarePrompt::exec(firmware, brand, "Vireon");
    return seen;
}

} // namespace

void TestFirmwarePrompt::isOfferedByTheRule_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<bool>("away");
    QTest::newRow("unknown") << int(StatusUnknown) << false;
    QTest::newRow("not calibrated 2") << int(StatusNotCalibrated2) << false;
    QTest::newRow("gave up") << int(StatusEngineGaveUp) << true;
    QTest::newRow("restarting") << int(StatusEngineRestarting) << true;
    QTest::newRow("not calibrated") << int(StatusNotCalibrated) << false;
    QTest::newRow("last action failed") << int(StatusLastActionFailed) << false;
    QTest::newRow("light disturbance") << int(StatusLightDisturbance) << false;
    QTest::newRow("not ready") << int(StatusNotReady) << true;
    QTest::newRow("ready") << int(StatusReady) << false;
    QTest::newRow("started") << int(StatusStarted) << false;
    QTest::newRow("calibrating") << int(StatusCalibrating) << false;
    QTest::newRow("any other") << 77 << false;
}

void TestFirmwarePrompt::isOfferedByTheRule()
{
    QFETCH(int, status);
    QFETCH(bool, away);
    for (const int old : {-1, 0, 1})
        QCOMPARE(FirmwarePrompt::isOffered(status, old), !away);
    for (const int current : {2, 3, 999})
        QCOMPARE(FirmwarePrompt::isOffered(status, current), false);
}

void TestFirmwarePrompt::hintTellsTheWay()
{
    QCOMPARE(FirmwarePrompt::hint(),
             QString("Camera unit firmware is old version. Please click 'File' in the task bar to "
                     "update it."));
}

void TestFirmwarePrompt::textTellsHow_data()
{
    QTest::addColumn<int>("brand");
    QTest::addColumn<QString>("text");
    const QString usual = QString(firmwareText).arg(firmwareManualAddress);
    const QString remotePen = QString(remotePenFirmwareText).arg(remotePenDownloadAddress);
    QTest::newRow("qor") << int(Brand::Qor) << usual;
    QTest::newRow("tal") << int(Brand::Tal) << remotePen;
    QTest::newRow("wendle") << int(Brand::Wendle) << usual;
    QTest::newRow("nobrand") << 3 << usual;
    QTest::newRow("marrowby") << int(Brand::Marrowby) << usual;
}

void TestFirmwarePrompt::textTellsHow()
{
    QFETCH(int, brand);
    QFETCH(QString, text);
    QCOMPARE(FirmwarePrompt::text(1, brand, "Vireon"), text);
    QCOMPARE(FirmwarePrompt::text(0, brand, "Vireon"), text.replace("Ver. 1.1", "Ver. 1.0"));
}

void TestFirmwarePrompt::markersInTheNameStay()
{
    for (const int brand : {int(Brand::Qor), int(Brand::Tal)}) {
        const QString text = FirmwarePrompt::text(1, brand, "%1 %2 %4");
        QVERIFY2(text.contains("onto %1 %2 %4. If"), qPrintable(text));
    }
}

void TestFirmwarePrompt::boxWaitsForAnyButton_data()
{
    QTest::addColumn<int>("brand");
    QTest::addColumn<QString>("button");
    QTest::newRow("start") << int(Brand::Qor) << "Start";
    QTest::newRow("exit") << int(Brand::Marrowby) << "Exit";
    QTest::newRow("remote pen") << int(Brand::Tal) << "Exit";
}

void TestFirmwarePrompt::boxWaitsForAnyButton()
{
    QFETCH(int, brand);
    QFETCH(QString, button);
    const Box box = show(1, brand, button);
    QCOMPARE(box.title, QString("Update Firmware"));
    QCOMPARE(box.text, FirmwarePrompt::text(1, brand, "Vireon"));
    QCOMPARE(box.format, Qt::RichText);
    QCOMPARE(box.icon, QMessageBox::NoIcon);
    QCOMPARE(box.buttons, QStringList({"Start", "Exit"}));
    QCOMPARE(box.roles, QList<int>({QMessageBox::YesRole, QMessageBox::NoRole}));
    QVERIFY(box.isModal);
    QVERIFY(!box.hasParent);
    QVERIFY(!QApplication::activeModalWidget());
}

void TestFirmwarePrompt::boxCanBeClosed()
{
    QCOMPARE(show(0, int(Brand::Qor), {}).buttons.size(), 2);
    QVERIFY(!QApplication::activeModalWidget());
}

QTEST_MAIN(TestFirmwarePrompt)

#include "tst_firmwareprompt.moc"
