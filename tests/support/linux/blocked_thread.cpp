#include <support/blocked_thread.h>

#include <fstream>
#include <string>
#include <sys/syscall.h>
#include <unistd.h>

namespace support {

unsigned long this_thread()
{
    return static_cast<unsigned long>(syscall(SYS_gettid));
}

bool sleeps(unsigned long thread)
{
    std::ifstream file("/proc/self/task/" + std::to_string(thread) + "/stat");
    std::string line;
    std::getline(file, line);
    const auto name_end = line.rfind(')'); // the state follows: R running, S asleep, ...
    return name_end != std::string::npos && line[name_end + 2] == 'S';
}

} // namespace support
