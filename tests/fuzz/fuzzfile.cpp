#include "fuzz/fuzzfile.h"

#include <cstdio>
#include <cstdlib>
#include <sys/mman.h>
#include <unistd.h>

FuzzFile::FuzzFile()
    : descriptor(memfd_create("fuzz", MFD_CLOEXEC))
{
    require(descriptor >= 0, "a file in memory");
}

QString FuzzFile::path() const
{
    return QStringLiteral("/proc/self/fd/%1").arg(descriptor);
}

void FuzzFile::write(const std::uint8_t* data, std::size_t size)
{
    require(ftruncate(descriptor, 0) == 0
                && pwrite(descriptor, data, size, 0) == static_cast<ssize_t>(size),
            "the input written");
}

QByteArray FuzzFile::read() const
{
    QByteArray content(static_cast<int>(lseek(descriptor, 0, SEEK_END)), '\0');
    require(pread(descriptor, content.data(), static_cast<std::size_t>(content.size()), 0)
                == content.size(),
            "the content read");
    return content;
}

void silenceLog()
{
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
}

void require(bool holds, const char* what)
{
    if (holds)
        return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
}
