// Half-closing a socket on Windows.
#include <simulator/platform_p.h>

#include <winsock2.h>

namespace simulator {

void shut_down_sending(qintptr socket)
{
    ::shutdown(static_cast<SOCKET>(socket), SD_SEND);
}

} // namespace simulator
