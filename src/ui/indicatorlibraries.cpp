#include "ui/indicatorlibraries.h"

#include "base/logcategories.h"

#include <QLibrary>

#include <dlfcn.h>

namespace {

/// A shared library that is bound at once and never unloaded, since GLib's types cannot be.
class Library
{
public:
    explicit Library(const char* name)
        : library(QLatin1String(name))
    {
        library.setLoadHints(QLibrary::ResolveAllSymbolsHint | QLibrary::PreventUnloadHint);
    }

    bool load() { return library.load(); }

    /// Looks in the libraries that this one needs too.
    template <typename Function> bool resolve(const char* symbol, Function& function)
    {
        function = reinterpret_cast<Function>(library.resolve(symbol));
        return function != nullptr;
    }

    QString error() const { return library.errorString(); }

private:
    QLibrary library;
};

#define RESOLVE(library, function) library.resolve(#function, functions.function)

bool isInProcess(const char* library)
{
    void* handle = dlopen(library, RTLD_LAZY | RTLD_NOLOAD);
    if (handle)
        dlclose(handle);
    return handle != nullptr;
}

bool resolveGtk(Library& gtk, IndicatorLibrary& functions)
{
    return gtk.load() && RESOLVE(gtk, gtk_disable_setlocale) && RESOLVE(gtk, gtk_init_check)
        && RESOLVE(gtk, gdk_error_trap_push) && RESOLVE(gtk, gtk_menu_new)
        && RESOLVE(gtk, gtk_menu_item_new_with_label) && RESOLVE(gtk, gtk_menu_shell_append)
        && RESOLVE(gtk, gtk_check_menu_item_get_active) && RESOLVE(gtk, gtk_widget_show)
        && RESOLVE(gtk, g_signal_connect_data) && RESOLVE(gtk, g_main_context_iteration)
        && RESOLVE(gtk, g_bus_get_sync);
}

bool resolveIndicator(Library& indicator, IndicatorLibrary& functions)
{
    return indicator.load() && RESOLVE(indicator, app_indicator_new)
        && RESOLVE(indicator, app_indicator_set_status)
        && RESOLVE(indicator, app_indicator_set_menu) && RESOLVE(indicator, app_indicator_set_icon);
}

const IndicatorLibrary* loadIndicator()
{
    static IndicatorLibrary functions {};
    if (isInProcess("libgtk-3.so.0")) {
        qCDebug(desktopLog) << "no indicator: GTK 3 is loaded";
        return nullptr;
    }
    Library gtk("libgtk-x11-2.0.so.0");
    Library indicator("libayatana-appindicator.so.1");
    // The indicator brings GTK 2 with it: asked for first, a missing one leaves no GTK behind.
    if (!resolveIndicator(indicator, functions)) {
        qCDebug(desktopLog) << "no indicator:" << indicator.error();
        return nullptr;
    }
    if (!resolveGtk(gtk, functions)) {
        qCDebug(desktopLog) << "no indicator:" << gtk.error();
        return nullptr;
    }
    return &functions;
}

const NotifyLibrary* loadNotify()
{
    static NotifyLibrary functions {};
    Library notify("libnotify.so.4");
    if (notify.load() && RESOLVE(notify, notify_init) && RESOLVE(notify, notify_uninit)
        && RESOLVE(notify, notify_notification_new) && RESOLVE(notify, notify_notification_show)
        && RESOLVE(notify, notify_notification_set_timeout))
        return &functions;
    qCDebug(desktopLog) << "no notifications:" << notify.error();
    return nullptr;
}

} // namespace

const IndicatorLibrary* IndicatorLibrary::instance()
{
    static const IndicatorLibrary* const library = loadIndicator();
    return library;
}

const NotifyLibrary* NotifyLibrary::instance()
{
    static const NotifyLibrary* const library = loadNotify();
    return library;
}
