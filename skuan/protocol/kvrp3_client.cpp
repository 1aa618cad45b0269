// The loop that connects and reads, and the sink that writes beside it.
#include <skuan/protocol/kvrp3_client.h>

#include <skuan/foundation/aprotect.h>
#include <skuan/foundation/semaphore.h>
#include <skuan/platform/clock.h>
#include <skuan/platform/stream_socket.h>
#include <skuan/platform/thread.h>
#include <skuan/protocol/server_port_p.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <thread>

namespace KVRP3 {

using skuan::platform::StreamSocket;

namespace {

constexpr unsigned attempt_pause_ms = 100;
constexpr unsigned read_wait_ms = 1000;
constexpr std::size_t read_size = 2048;
constexpr std::size_t own_stack = 0x10000;
constexpr unsigned busy = 4; ///< so many outstanding commands hold the periodic action back

struct Periodic
{
    unsigned seconds = 0;
    AFunction action;
};

} // namespace

struct Client::Private
{
    // Any thread.
    std::atomic<unsigned> address;
    AProtect<Periodic> periodic;
    StreamSocket socket;
    // Connections are told apart by number, so that a write that fails late, when the loop has connected
    // again already, does not take the new connection down.
    std::atomic<unsigned> connection{0}; ///< the open one; 0 is none
    std::atomic<unsigned> broken{0};     ///< the last one on which a write failed; the loop takes it down

    std::atomic<bool> looping{false};
    std::atomic<bool> stop_requested{false};
    BinarySemaphore stopped{false}; ///< wakes the loop from its pause

    // The sender's, under the send lock.
    unsigned message = 0;            ///< the one of which bytes were given last
    unsigned message_connection = 0; ///< where its beginning went; 0 is nowhere

    // The loop's.
    unsigned last_connection = 0;
    std::int64_t last_periodic = 0; ///< or when the connection was made, if that was later

    // The owner's, but for the two flags.
    skuan::platform::Thread own_thread;
    int own_priority = 0;
    std::atomic<bool> own_thread_running{false};
    std::atomic<std::thread::id> own_thread_id{};
    bool on_own_thread() const { return own_thread_id.load() == std::this_thread::get_id(); }
};

Client::Client()
{
    ctor(localhost());
}

Client::Client(unsigned address)
{
    ctor(address);
}

void Client::ctor(unsigned address)
{
    d = std::make_unique<Private>();
    d->address = address;
}

Client::~Client()
{
    stop();
}

void Client::connected() {}
void Client::disconnected() {}

void Client::set_ipaddr(unsigned address)
{
    d->address = address;
}

void Client::add_periodic(unsigned seconds, AFunction action)
{
    *d->periodic.lock() = {seconds, action};
}

bool Client::isConnected() const
{
    return d->connection != 0;
}

bool Client::is_down() const
{
    const unsigned connection = d->connection;
    return connection == 0 || connection == d->broken;
}

void Client::run_forever()
{
    const bool left_to_own_thread = d->own_thread_running && !d->on_own_thread();
    if (d->stop_requested || left_to_own_thread || d->looping.exchange(true))
        return;
    while (!d->stopped.semTake(attempt_pause_ms) && !d->stop_requested) {
        perform_connect();
        while (isConnected() && !d->stop_requested)
            run_once();
    }
    d->connection = 0;
    d->socket.close();
    d->looping = false;
}

void Client::run_forever_in_own_thread(int priority)
{
    if (d->own_thread_running.exchange(true))
        return;
    d->own_priority = priority;
    const auto body = [](void* argument) {
        auto* const self = static_cast<Client*>(argument);
        self->d->own_thread_id = std::this_thread::get_id();
        skuan::platform::set_current_thread_priority(self->d->own_priority);
        self->run_forever_ownthread();
    };
    if (!d->own_thread.start(body, this, own_stack))
        d->own_thread_running = false;
}

void Client::run_forever_ownthread()
{
    run_forever();
    d->own_thread_running = false;
}

void Client::stop()
{
    d->stop_requested = true;
    d->stopped.semGive();
    d->socket.cancel();
    if (!d->on_own_thread())
        d->own_thread.join();
}

void Client::perform_connect()
{
    // The socket asks for small writes to go out without delay.
    if (!isConnected() && d->socket.connect(d->address, server_port))
        set_up();
}

void Client::set_up()
{
    if (++d->last_connection == 0)
        d->last_connection = 1;
    d->last_periodic = skuan::platform::wall_seconds();
    d->connection = d->last_connection;
    connected();
}

void Client::set_down()
{
    d->socket.close();
    d->connection = 0;
    fail_all_pending_commands();
    reset_stream();
    disconnected();
}

void Client::run_once()
{
    if (!isConnected())
        return;
    if (is_down()) {
        set_down();
        return;
    }
    run_periodic_action();
    if (is_down())
        return;

    char buffer[read_size];
    const std::ptrdiff_t count = d->socket.receive(buffer, sizeof buffer, read_wait_ms);
    if (count == StreamSocket::timed_out)
        return;
    if (d->stop_requested)
        return; // the end of the loop, not of the connection
    if (count > 0)
        input_stream(buffer, static_cast<unsigned>(count));
    if (count <= 0 || stream_broken())
        set_down();
}

void Client::run_periodic_action()
{
    const Periodic periodic = *d->periodic.lock();
    if (periodic.action.is_null() || outstanding_commands() >= busy)
        return;
    // The difference is one of 32 bits and without sign: a time of day set back is long ago.
    const std::int64_t now = skuan::platform::wall_seconds();
    if (static_cast<std::uint32_t>(now - d->last_periodic) < periodic.seconds)
        return;
    d->last_periodic = now;
    periodic.action.run();
}

// Under the send lock. What must not be waited for here, the table of commands, `fail_all_pending_commands`
// leaves alone while another thread is failing them.
void Client::send(const void* data, unsigned length)
{
    const unsigned connection = d->connection;
    const bool is_up = connection != 0 && connection != d->broken && !d->stop_requested;
    const int newer = static_cast<int>(message_in_hand() - d->message);
    if (newer > 0) {
        d->message = message_in_hand();
        d->message_connection = is_up ? connection : 0;
    }
    if (!is_up) {
        fail_all_pending_commands();
        return;
    }
    // The rest of a message goes where its beginning went: to a later connection it would be garbage. An
    // older message is one in whose midst a callback sent, since there was no connection then.
    if (newer < 0 || d->message_connection != connection)
        return;
    auto* bytes = static_cast<const char*>(data);
    while (length != 0) {
        const std::ptrdiff_t sent = d->socket.send(bytes, std::min(length, 0x7fffffffu));
        if (sent < 1) {
            d->broken = connection;
            return;
        }
        length -= static_cast<unsigned>(sent);
        // By what is left, not by what was sent: meant. The socket sends all or fails, and no piece of a
        // message comes near the limit above, so that nothing is left here.
        bytes += length;
    }
}

} // namespace KVRP3
