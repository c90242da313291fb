#pragma once

#include <sys/fsuid.h>

/// While it lives, the thread opens files as nobody: file permissions hold for root, too.
class Unprivileged
{
public:
    Unprivileged() { setfsuid(65534); }
    ~Unprivileged() { setfsuid(usual); }
    Unprivileged(const Unprivileged&) = delete;
    Unprivileged& operator=(const Unprivileged&) = delete;

private:
    // An id that does not exist changes nothing, and the answer is the one in force.
    uid_t usual = static_cast<uid_t>(setfsuid(static_cast<uid_t>(-1)));
};
