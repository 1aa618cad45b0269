#include <skuan/platform/stream_socket.h>

#include <support/blocked_thread.h>
#include <support/silent_server.h>

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <vector>

using skuan::platform::StreamSocket;
using support::SilentServer;

namespace {

constexpr std::uint16_t port = 8913;

/// A peer who reads nothing has no room for it, so that its sending blocks.
const std::vector<char> large(64 << 20, 'x');

TEST(StreamSocket, CarriesLargeBuffersWholeInBothDirections)
{
    SilentServer listener(SilentServer::Open);
    StreamSocket socket;
    ASSERT_TRUE(socket.connect(listener.ipv4(), port));
    auto server = listener.accept();
    const std::string sent(5'000'000, 'x');
    std::thread echo([&] { EXPECT_TRUE(server->send(server->receive(sent.size()))); });
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
    server.reset();
    EXPECT_EQ(socket.receive(buffer, 1), 0) << "the end";
}

TEST(StreamSocket, FailsInsteadOfCrashing)
{
    SilentServer listener(SilentServer::Open);
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
    const unsigned refusing = SilentServer(SilentServer::Open).ipv4(); // closed again by now
    EXPECT_FALSE(socket.connect(refusing, port));
    expect_unconnected();

    ASSERT_TRUE(socket.connect(listener.ipv4(), port));
    listener.accept();
    // The first sends may still go out, then the peer's reset is known; no signal ends the process.
    while (socket.send("a", 1) == 1) {
    }
    ASSERT_TRUE(socket.connect(listener.ipv4(), port)) << "a new connection begins afresh";
    const auto server = listener.accept();
    EXPECT_EQ(socket.send("a", 1), 1);
    socket.close();
    expect_unconnected();
}

TEST(StreamSocket, IsNothingThatOtherProgramsInherit)
{
    SilentServer listener(SilentServer::Open);
    const unsigned others = support::inheritable_sockets();
    StreamSocket socket;
    ASSERT_TRUE(socket.connect(listener.ipv4(), port));
    EXPECT_EQ(support::inheritable_sockets(), others);
}

TEST(StreamSocket, CancelEndsEveryBlockedCallAndFailsEveryLaterOne)
{
    char byte = 0;
    const struct
    {
        const char* call;
        bool starts_connected;
        std::function<bool(StreamSocket&, unsigned)> gives_failure;
        void (StreamSocket::*end)() = &StreamSocket::cancel;
    } cases[] = {
        {"connect", false, [](auto& s, unsigned to) { return !s.connect(to, port); }},
        {"receive with a limit", true,
         [&](auto& s, unsigned) { return s.receive(&byte, 1, 1u << 30) == -1; }},
        {"receive", true, [&](auto& s, unsigned) { return s.receive(&byte, 1) < 0; }},
        {"send", true, [](auto& s, unsigned) { return s.send(large.data(), large.size()) < 1; }},
        {"send, closed", true, [](auto& s, unsigned) { return s.send(large.data(), large.size()) < 1; },
         &StreamSocket::close},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.call);
        SilentServer listener(c.starts_connected ? SilentServer::Open : SilentServer::Full);
        StreamSocket socket;
        const SilentServer earlier(SilentServer::Open); // what was there ends no later wait
        ASSERT_TRUE(socket.connect(earlier.ipv4(), port));
        EXPECT_EQ(socket.receive(&byte, 1, 0), StreamSocket::timed_out);
        ASSERT_TRUE(!c.starts_connected || socket.connect(listener.ipv4(), port));
        std::atomic<bool> failed{false};
        support::BlockedThread owner([&] { failed = c.gives_failure(socket, listener.ipv4()); });
        owner.wait_until_blocked();
        EXPECT_FALSE(owner.ended());
        (socket.*c.end)();
        owner.join();
        EXPECT_TRUE(failed);
        if (c.end == &StreamSocket::close)
            continue; // it may connect again

        EXPECT_TRUE(socket.cancelled());
        EXPECT_FALSE(socket.connect(listener.ipv4(), port));
        EXPECT_LT(socket.receive(&byte, 1), 0);
        EXPECT_LT(socket.send("a", 1), 1);
    }
}

} // namespace
