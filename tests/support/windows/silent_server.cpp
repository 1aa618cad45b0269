#include <winsock2.h> // before windows.h, which would bring the older sockets

#include <support/silent_server.h>

#include <support/loopback_address.h>

#include <gtest/gtest.h>

#include <iphlpapi.h>

namespace support {
namespace {

constexpr std::uint16_t port = 8913;

SOCKET stream_socket()
{
    static WSADATA data;
    static const int started = WSAStartup(MAKEWORD(2, 2), &data);
    EXPECT_EQ(started, 0);
    return socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
}

} // namespace

Peer::~Peer()
{
    closesocket(static_cast<SOCKET>(socket_));
}

std::string Peer::receive(std::size_t n) const
{
    std::string bytes(n, ' ');
    std::size_t received = 0;
    while (received < n) { // wine knows no MSG_WAITALL
        const int left = static_cast<int>(n - received);
        const int got = recv(static_cast<SOCKET>(socket_), bytes.data() + received, left, 0);
        if (got <= 0)
            break;
        received += static_cast<std::size_t>(got);
    }
    bytes.resize(received);
    return bytes;
}

bool Peer::send(const std::string& bytes) const
{
    const int size = static_cast<int>(bytes.size());
    return ::send(static_cast<SOCKET>(socket_), bytes.data(), size, 0) == size;
}

SilentServer::SilentServer(Queue queue) : address_(QString::fromStdString(own_loopback_address()))
{
    sockaddr_in place{};
    place.sin_family = AF_INET;
    place.sin_port = htons(port);
    place.sin_addr.s_addr = htonl(ipv4());
    const auto* const where = reinterpret_cast<const sockaddr*>(&place);
    const SOCKET listener = stream_socket();
    sockets_.push_back(static_cast<Socket>(listener));
    u_long yes = 1;
    // With a full queue this system refuses; what it lets nobody in without being asked, it keeps waiting.
    // Wine takes no notice of that, but its queues are those of the system below, which waits.
    if (queue == Full)
        setsockopt(listener, SOL_SOCKET, SO_CONDITIONAL_ACCEPT, reinterpret_cast<char*>(&yes), sizeof yes);
    EXPECT_EQ(bind(listener, where, sizeof place), 0);
    EXPECT_EQ(listen(listener, queue == Open ? 8 : 0), 0);
    for (int i = 0; queue == Full && i < 4; ++i) {
        const SOCKET filler = stream_socket();
        sockets_.push_back(static_cast<Socket>(filler));
        ioctlsocket(filler, FIONBIO, &yes);
        connect(filler, where, sizeof place);
    }
}

SilentServer::~SilentServer()
{
    for (const Socket socket : sockets_)
        closesocket(static_cast<SOCKET>(socket));
}

std::unique_ptr<Peer> SilentServer::accept() const
{
    const SOCKET accepted = ::accept(static_cast<SOCKET>(sockets_.front()), nullptr, nullptr);
    return std::make_unique<Peer>(static_cast<Socket>(accepted));
}

unsigned SilentServer::kept_waiting() const
{
    std::vector<char> memory(1 << 20);
    ULONG size = static_cast<ULONG>(memory.size());
    auto* const table = reinterpret_cast<MIB_TCPTABLE*>(memory.data());
    EXPECT_EQ(GetTcpTable(table, &size, FALSE), DWORD(NO_ERROR));
    unsigned count = 0;
    for (DWORD i = 0; i < table->dwNumEntries; ++i) {
        const MIB_TCPROW& row = table->table[i];
        count += row.dwState == MIB_TCP_STATE_SYN_SENT && row.dwRemoteAddr == htonl(ipv4()) &&
                 ntohs(static_cast<u_short>(row.dwRemotePort)) == port;
    }
    return count;
}

unsigned inheritable_sockets()
{
    unsigned count = 0;
    for (SOCKET handle = 4; handle < 0x4000; handle += 4) {
        DWORD flags = 0;
        int type = 0, size = sizeof type;
        count += GetHandleInformation(reinterpret_cast<HANDLE>(handle), &flags) &&
                 (flags & HANDLE_FLAG_INHERIT) != 0 &&
                 getsockopt(handle, SOL_SOCKET, SO_TYPE, reinterpret_cast<char*>(&type), &size) == 0;
    }
    return count;
}

} // namespace support
