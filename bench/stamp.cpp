// bench-stamp: stands in for the engine and its tool, and tells when its main() began: it appends
// its name, process id and the monotonic clock in ns to the file that VIREON_BENCH_STAMPS names. As
// "vireon-main" it then waits for its end, by any other name it ends at once.

#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <unistd.h>

int main(int, char* argv[])
{
    timespec now {};
    clock_gettime(CLOCK_MONOTONIC, &now);
    const char* path = std::getenv("VIREON_BENCH_STAMPS");
    std::FILE* file = path ? std::fopen(path, "a") : nullptr;
    if (!file)
        return EXIT_FAILURE;
    const char* slash = std::strrchr(argv[0], '/');
    const char* name = slash ? slash + 1 : argv[0];
    const std::int64_t ns = std::int64_t {now.tv_sec} * 1'000'000'000 + now.tv_nsec;
    std::fprintf(file, "%s %d %" PRId64 "\n", name, static_cast<int>(getpid()), ns);
    std::fclose(file);
    if (std::strcmp(name, "vireon-main") == 0)
        pause();
    return EXIT_SUCCESS;
}
