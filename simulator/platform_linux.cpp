// Half-closing a socket on Linux.
#include <simulator/platform_p.h>

#include <sys/socket.h>

namespace simulator {

void shut_down_sending(qintptr socket)
{
    ::shutdown(static_cast<int>(socket), SHUT_WR);
}

} // namespace simulator
