#include "ui/viewroot.h"

#include "engine/enginestatus.h"

#include <QAccessible>
#include <QQuickItem>
#include <QQuickView>
#include <QVariant>

namespace {

const char* const statusProperty = "status";
const char* const loadingProperty = "isLoading";
const char* const statusNotifier = "statusChanged";

} // namespace

ViewRoot::ViewRoot(const QQuickView& itsView)
    : view(itsView)
{
}

bool ViewRoot::exists() const
{
    return view.rootObject() != nullptr;
}

void ViewRoot::setGreaterEqualsWin8(bool yes)
{
    write("isGreaterEqualsWin8", yes);
}

void ViewRoot::setTouch(bool yes)
{
    write("isTouch", yes);
}

void ViewRoot::setVersionText(const QString& text)
{
    write("versionText", text);
}

void ViewRoot::setAutoStart(bool on)
{
    write("isAutoStart", on);
}

void ViewRoot::setFinishedLoading(bool yes)
{
    write("finishedLoading", yes);
}

void ViewRoot::setCalibrationPaused(bool yes)
{
    write("pauseCalib", yes);
}

void ViewRoot::setKeepingACpuRunning(bool on)
{
    write("isKeepACpuRunning", on);
}

void ViewRoot::setLoading(bool yes)
{
    write(loadingProperty, yes);
}

bool ViewRoot::isLoading() const
{
    return exists() && view.rootObject()->property(loadingProperty).toBool();
}

void ViewRoot::setAspectRatioWarningShown(bool yes)
{
    write("aspectRatioWarningShown", yes);
}

void ViewRoot::setStatus(int code)
{
    // A write of an equal value tells the view nothing, yet it must react to every report.
    const bool equal = exists() && status() == code;
    const QString before = shownStatus();
    write(statusProperty, code);
    if (equal)
        call(statusNotifier);
    // Of a text that comes up Qt tells by itself.
    if (!before.isEmpty() && shownStatus() != before)
        announceStatus();
}

int ViewRoot::status() const
{
    return exists() ? view.rootObject()->property(statusProperty).toInt() : StatusUnknown;
}

void ViewRoot::checkAspectRatio()
{
    call("checkAspectRatio");
}

void ViewRoot::showFreqPopup()
{
    call("showFreqPopup");
}

void ViewRoot::disableAcPopUp()
{
    call("disableAcPopUp");
}

// Screen readers say a notification that comes up; of an alert Qt does not tell them.
void ViewRoot::announceStatus()
{
    QAccessibleEvent shown(statusItem(), QAccessible::ObjectShow);
    QAccessible::updateAccessibility(&shown);
}

QString ViewRoot::shownStatus() const
{
    const QQuickItem* item = statusItem();
    return item && item->isVisible() ? item->property("text").toString() : QString();
}

QQuickItem* ViewRoot::statusItem() const
{
    return exists() ? view.rootObject()->findChild<QQuickItem*>(QLatin1String(statusProperty))
                    : nullptr;
}

void ViewRoot::write(const char* property, const QVariant& value)
{
    if (QQuickItem* root = view.rootObject())
        root->setProperty(property, value);
}

void ViewRoot::call(const char* function)
{
    if (QQuickItem* root = view.rootObject())
        QMetaObject::invokeMethod(root, function);
}
