#pragma once

#include <sys/resource.h>

/// While it lives, this process can open no file: the system says EMFILE.
class NoDescriptors
{
public:
    NoDescriptors()
    {
        getrlimit(RLIMIT_NOFILE, &usual);
        const rlimit none {0, usual.rlim_max};
        setrlimit(RLIMIT_NOFILE, &none);
    }

    ~NoDescriptors() { setrlimit(RLIMIT_NOFILE, &usual); }

    NoDescriptors(const NoDescriptors&) = delete;
    NoDescriptors& operator=(const NoDescriptors&) = delete;

private:
    rlimit usual {};
};
