// Stands in for libnotify and writes on standard error what is called. With FAKE_NOTIFY_FAILS in
// the environment it cannot be initialised.
#include <cstdio>
#include <cstdlib>

extern "C" {

int notify_init(const char* applicationName)
{
    std::fprintf(stderr, "notify_init %s\n", applicationName);
    return std::getenv("FAKE_NOTIFY_FAILS") ? 0 : 1;
}

void notify_uninit()
{
    std::fputs("notify_uninit\n", stderr);
}

void* notify_notification_new(const char* summary, const char* body, const char* icon)
{
    static int notification = 0;
    std::fprintf(stderr, "notify_notification_new %s|%s|%s\n", summary, body, icon);
    return &notification;
}

int notify_notification_show(void*, void**)
{
    std::fputs("notify_notification_show\n", stderr);
    return 1;
}

void notify_notification_set_timeout(void*, int timeout)
{
    std::fprintf(stderr, "notify_notification_set_timeout %d\n", timeout);
}
}
