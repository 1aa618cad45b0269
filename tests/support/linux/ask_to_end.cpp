#include <support/ask_to_end.h>

#include <csignal>

namespace support {

void ask_to_end(const QProcess& process, Wish wish)
{
    ::kill(static_cast<pid_t>(process.processId()), wish == Wish::interrupt ? SIGINT : SIGTERM);
}

} // namespace support
