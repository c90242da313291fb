#include "ui/linuxtrayiconmanager.h"

#include "base/installation.h"
#include "base/logcategories.h"
#include "ui/indicatorlibraries.h"

#include <QAbstractEventDispatcher>
#include <QTimer>

namespace {

constexpr int applicationStatusCategory = 0;
constexpr int activeStatus = 1;
constexpr int notificationTimeout = 1;
constexpr int iterationMs = 50;
constexpr int sessionBus = 2; // G_BUS_TYPE_SESSION
const char* const indicatorId = "example";
const char* const initialIcon = "indicator-messages";
const char* const notificationName = "example";

void onShow(GtkWidget* widget, void* data)
{
    // The result is not used. The entry has no check mark, so GTK logs a complaint.
    IndicatorLibrary::instance()->gtk_check_menu_item_get_active(widget);
    static_cast<LinuxTrayIconManager*>(data)->showWindow();
}

void onQuit(GtkWidget*, void* data)
{
    static_cast<LinuxTrayIconManager*>(data)->quitWindow();
}

bool initialiseGtk(const IndicatorLibrary& gtk)
{
    // The program's locale for numbers stays "C".
    gtk.gtk_disable_setlocale();
    if (!gtk.gtk_init_check(nullptr, nullptr)) {
        qCDebug(desktopLog) << "no indicator: GTK cannot be initialised";
        return false;
    }
    // GTK's handler of X errors would end the process at any of Qt's harmless ones.
    gtk.gdk_error_trap_push();
    return true;
}

/// Connects GLib to the session bus, once for all of the process. The indicator asks for that
/// connection and for the desktop's indicator host at the same time, and is lost for good when the
/// host's answer comes first.
void connectToBus(const IndicatorLibrary& glib)
{
    glib.g_bus_get_sync(sessionBus, nullptr, nullptr);
}

/// Runs GLib's main context where Qt does not.
void runGlib(const IndicatorLibrary& glib, QObject* owner)
{
    if (QAbstractEventDispatcher::instance()->inherits("QEventDispatcherGlib"))
        return;
    auto* timer = new QTimer(owner);
    QObject::connect(timer, &QTimer::timeout, owner, [&glib] {
        while (glib.g_main_context_iteration(nullptr, false)) { }
    });
    timer->start(iterationMs);
}

void appendItem(const IndicatorLibrary& gtk, GtkWidget* menu, const QString& label,
                void (*chosen)(GtkWidget*, void*), LinuxTrayIconManager* manager)
{
    GtkWidget* item = gtk.gtk_menu_item_new_with_label(label.toUtf8().constData());
    gtk.gtk_menu_shell_append(menu, item);
    gtk.g_signal_connect_data(item, "activate", reinterpret_cast<Callback>(chosen), manager,
                              nullptr, 0);
    gtk.gtk_widget_show(item);
}

} // namespace

LinuxTrayIconManager::LinuxTrayIconManager() = default;

void LinuxTrayIconManager::createIndicator(QString showLabel, QString quitLabel)
{
    const IndicatorLibrary* library = IndicatorLibrary::instance();
    if (!library || !initialiseGtk(*library))
        return;
    connectToBus(*library);
    runGlib(*library, this);
    GtkWidget* menu = library->gtk_menu_new();
    appendItem(*library, menu, showLabel, onShow, this);
    appendItem(*library, menu, quitLabel, onQuit, this);
    AppIndicator* indicator =
        library->app_indicator_new(indicatorId, initialIcon, applicationStatusCategory);
    library->app_indicator_set_status(indicator, activeStatus);
    library->app_indicator_set_menu(indicator, menu);
    library->app_indicator_set_icon(indicator, installedSmallPicture);
    made = true;
}

void LinuxTrayIconManager::createNotification(char* summary, char* body)
{
    const NotifyLibrary* library = NotifyLibrary::instance();
    if (!library || !library->notify_init(notificationName))
        return;
    NotifyNotification* notification =
        library->notify_notification_new(summary, body, installedPicture);
    library->notify_notification_show(notification, nullptr);
    // After the show, so that the bubble keeps the server's own duration.
    library->notify_notification_set_timeout(notification, notificationTimeout);
    library->notify_uninit();
}

void LinuxTrayIconManager::showWindow()
{
    emit trayIconClicked();
}

void LinuxTrayIconManager::quitWindow()
{
    emit trayIconQuit();
}
