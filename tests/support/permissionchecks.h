#pragma once

#include <linux/capability.h>
#include <sys/syscall.h>
#include <unistd.h>

/// While it lives, file permissions bind the calling thread, and the threads that it starts, also
/// when the tests run as root.
class PermissionChecks
{
public:
    PermissionChecks()
    {
        syscall(SYS_capget, &header, saved);
        __user_cap_data_struct reduced[2] = {saved[0], saved[1]};
        reduced[0].effective &= ~((1U << CAP_DAC_OVERRIDE) | (1U << CAP_DAC_READ_SEARCH));
        syscall(SYS_capset, &header, reduced);
    }

    ~PermissionChecks() { syscall(SYS_capset, &header, saved); }

    PermissionChecks(const PermissionChecks&) = delete;
    PermissionChecks& operator=(const PermissionChecks&) = delete;

private:
    __user_cap_header_struct header {_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct saved[2] {};
};
