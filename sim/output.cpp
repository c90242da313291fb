#include "output.h"

#include <algorithm>
#include <cerrno>

#include <unistd.h>

namespace {

constexpr int blockSize = 65536;

bool writeBlock(int descriptor, const QByteArray& block)
{
    int at = 0;
    while (at < block.size()) {
        const ssize_t size =
            ::write(descriptor, block.constData() + at, static_cast<size_t>(block.size() - at));
        if (size < 0 && errno != EINTR)
            return false;
        at += static_cast<int>(std::max<ssize_t>(size, 0));
    }
    return true;
}

} // namespace

void writeOutput(int descriptor, const QByteArray& text, int repeat)
{
    if (text.isEmpty())
        return;
    const int perBlock = std::max(1, blockSize / text.size());
    for (int left = repeat; left > 0; left -= perBlock) {
        if (!writeBlock(descriptor, text.repeated(std::min(left, perBlock))))
            return;
    }
}
