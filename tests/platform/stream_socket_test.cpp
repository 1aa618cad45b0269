#include <skuan/platform/stream_socket.h>

#include <support/blocked_thread.h>
#include <support/loopback_address.h>

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <atomic>
#include <functional>
#include <netinet/in.h>
#include <string>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <vector>

using skuan::platform::StreamSocket;

namespace {

/// A bare listener on an address of its own, so that the test's other end shares no code with ours.
struct Listener
{
    const std::uint32_t address = ntohl(inet_addr(support::own_loopback_address().c_str()));
    std::uint16_t port = 0;
    int descriptor;

    explicit Listener(int backlog = 8) : descriptor(socket(AF_INET, SOCK_STREAM, 0))
    {
        sockaddr_in own{};
        socklen_t size = sizeof own;
        own.sin_family = AF_INET;
        own.sin_addr.s_addr = htonl(address);
        EXPECT_EQ(bind(descriptor, reinterpret_cast<sockaddr*>(&own), size), 0);
        EXPECT_EQ(listen(descriptor, backlog), 0);
        EXPECT_EQ(getsockname(descriptor, reinterpret_cast<sockaddr*>(&own), &size), 0);
        port = ntohs(own.sin_port);
    }
    ~Listener() { close(descriptor); }

    int accept() const { return ::accept(descriptor, nullptr, nullptr); }
};

/// A peer who reads nothing has no room for it, so that its sending blocks.
const std::vector<char> large(64 << 20, 'x');

TEST(StreamSocket, CarriesLargeBuffersWholeInBothDirections)
{
    Listener listener;
    StreamSocket socket;
    ASSERT_TRUE(socket.connect(listener.address, listener.port));
    const int server = listener.accept();
    const std::string sent(5'000'000, 'x');
    std::thread echo([&] {
        std::string all(sent.size(), ' ');
        EXPECT_EQ(recv(server, all.data(), all.size(), MSG_WAITALL), ssize_t(all.size()));
        EXPECT_EQ(send(server, all.data(), all.size(), 0), ssize_t(all.size()));
    });
    EXPECT_EQ(socket.send(sent.data(), sent.size()), static_cast<std::ptrdiff_t>(sent.size()));
    std::string received;
    char buffer[2048];
    while (received.size() < sent.size()) {
        const auto got = socket.receive(buffer, sizeof buffer);
        ASSERT_GT(got, 0);
        received.append(buffer, static_cast<std::size_t>(got));
    }
    echo.join();
    EXPECT_TRUE(received == sent);
    EXPECT_EQ(socket.receive(buffer, 1, 1), StreamSocket::timed_out);
    close(server);
    EXPECT_EQ(socket.receive(buffer, 1), 0) << "the end";
}

TEST(StreamSocket, FailsInsteadOfCrashing)
{
    Listener listener;
    StreamSocket socket;
    char byte = 0;
    const auto expect_unconnected = [&] {
        EXPECT_EQ(socket.receive(&byte, 1, 0), -1);
        EXPECT_LT(socket.receive(&byte, 1), 0);
        EXPECT_LT(socket.send("a", 1), 1);
        EXPECT_EQ(socket.send(nullptr, 0), 0);
        socket.close();
    };
    expect_unconnected();
    {
        const std::uint16_t refusing_port = Listener().port; // closed again by now
        EXPECT_FALSE(socket.connect(listener.address, refusing_port));
    }
    expect_unconnected();

    ASSERT_TRUE(socket.connect(listener.address, listener.port));
    close(listener.accept());
    // The first sends may still go out, then the peer's reset is known; no signal ends the process.
    while (socket.send("a", 1) == 1) {
    }
    ASSERT_TRUE(socket.connect(listener.address, listener.port)) << "a new connection begins afresh";
    const int server = listener.accept();
    EXPECT_EQ(socket.send("a", 1), 1);
    close(server);
    socket.close();
    expect_unconnected();
}

TEST(StreamSocket, CancelEndsEveryBlockedCallAndFailsEveryLaterOne)
{
    char byte = 0;
    const struct
    {
        const char* call;
        bool starts_connected;
        std::function<bool(StreamSocket&, const Listener&)> gives_failure;
        void (StreamSocket::*end)() = &StreamSocket::cancel;
    } cases[] = {
        {"connect", false, [](auto& s, auto& to) { return !s.connect(to.address, to.port); }},
        {"receive with a limit", true, [&](auto& s, auto&) { return s.receive(&byte, 1, 1u << 30) == -1; }},
        {"receive", true, [&](auto& s, auto&) { return s.receive(&byte, 1) < 0; }},
        {"send", true, [](auto& s, auto&) { return s.send(large.data(), large.size()) < 1; }},
        {"send, closed", true, [](auto& s, auto&) { return s.send(large.data(), large.size()) < 1; },
         &StreamSocket::close},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.call);
        Listener listener(0); // room for one connection that is not accepted; others get no answer
        StreamSocket socket, in_the_way;
        ASSERT_TRUE((c.starts_connected ? socket : in_the_way).connect(listener.address, listener.port));
        std::atomic<bool> failed{false};
        support::BlockedThread owner([&] { failed = c.gives_failure(socket, listener); });
        owner.wait_until_blocked();
        EXPECT_FALSE(owner.ended());
        (socket.*c.end)();
        owner.join();
        EXPECT_TRUE(failed);
        if (c.end == &StreamSocket::close)
            continue; // it may connect again

        EXPECT_TRUE(socket.cancelled());
        EXPECT_FALSE(socket.connect(listener.address, listener.port));
        EXPECT_LT(socket.receive(&byte, 1), 0);
        EXPECT_LT(socket.send("a", 1), 1);
    }
}

} // namespace
