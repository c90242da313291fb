// An updater: updatersubject KEY. It obeys words on standard input, each on a line of its own, and
// answers each with one line:
//   make BYTES    make the segment, filled with zeros: "made"
//   state NUMBER  write the state under the segment's lock: "written"
//   lock          take the segment's lock and keep it: "locked"
//   end           leave the segment and end: "ended"
#include <QCoreApplication>
#include <QSharedMemory>

#include <cstdint>
#include <cstring>
#include <iostream>
#include <string>

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    QSharedMemory segment(application.arguments().value(1));
    std::string word;
    while (word != "end" && std::cin >> word) {
        std::int32_t number = 0;
        bool done = true;
        if (word == "make") {
            std::cin >> number;
            done = segment.create(number);
            word = "made";
        } else if (word == "state") {
            std::cin >> number;
            done = segment.lock();
            std::memcpy(segment.data(), &number, sizeof number);
            segment.unlock();
            word = "written";
        } else if (word == "lock") {
            done = segment.lock();
            word = "locked";
        } else if (word == "end") {
            break;
        }
        std::cout << (done ? word : "failed") << std::endl;
    }
    segment.detach();
    std::cout << "ended" << std::endl;
    return 0;
}
