#pragma once

/**
 * The functions of GTK 2, of the indicator library and of libnotify that the program uses.
 *
 * The libraries are loaded when they are first asked for, never linked: on all desktops but Unity
 * Qt may bring GTK 3 into the process, and GTK 2 beside it would end it. They stay loaded. The
 * members are named after the C functions, whose types are opaque here. GUI thread only.
 */

using GtkWidget = void;
using AppIndicator = void;
using NotifyNotification = void;
using Callback = void (*)();

struct IndicatorLibrary
{
    /// Loads GTK 2 and the indicator library. Null, with one line on the log, when one of them is
    /// missing or when GTK 3 is in the process. The answer does not change afterwards.
    static const IndicatorLibrary* instance();

    // GTK 2
    void (*gtk_disable_setlocale)();
    int (*gtk_init_check)(int* argc, char*** argv);
    void (*gdk_error_trap_push)();
    GtkWidget* (*gtk_menu_new)();
    GtkWidget* (*gtk_menu_item_new_with_label)(const char* label);
    void (*gtk_menu_shell_append)(GtkWidget* shell, GtkWidget* child);
    int (*gtk_check_menu_item_get_active)(GtkWidget* item);
    void (*gtk_widget_show)(GtkWidget* widget);

    // GLib
    unsigned long (*g_signal_connect_data)(void* instance, const char* signal, Callback handler,
                                           void* data, void (*destroyData)(void*, void*),
                                           int flags);
    int (*g_main_context_iteration)(void* context, int mayBlock);
    void* (*g_bus_get_sync)(int busType, void* cancellable, void** error);

    // The indicator
    AppIndicator* (*app_indicator_new)(const char* id, const char* iconName, int category);
    void (*app_indicator_set_status)(AppIndicator* indicator, int status);
    void (*app_indicator_set_menu)(AppIndicator* indicator, GtkWidget* menu);
    void (*app_indicator_set_icon)(AppIndicator* indicator, const char* iconName);
};

struct NotifyLibrary
{
    /// Loads libnotify. Null, with one line on the log, when it is missing.
    static const NotifyLibrary* instance();

    int (*notify_init)(const char* applicationName);
    void (*notify_uninit)();
    NotifyNotification* (*notify_notification_new)(const char* summary, const char* body,
                                                   const char* icon);
    int (*notify_notification_show)(NotifyNotification* notification, void** error);
    void (*notify_notification_set_timeout)(NotifyNotification* notification, int timeout);
};
