// Writing a message: whole, in chunks, one sender at a time.
#include <skuan/protocol/kvrp3_api_command.h>

#include <skuan/foundation/portable_mutex.h>
#include <skuan/protocol/kvrp3_kinds_p.h>

#include <algorithm>
#include <cstring>
#include <utility>

namespace KVRP3 {

namespace {

/// Gathers the small pieces of a message into chunks that suit a network packet.
template <typename Sink>
class ChunkBuffer
{
public:
    explicit ChunkBuffer(Sink sink) : sink_(sink) {}

    void input(const char* piece, unsigned n)
    {
        while (n != 0) {
            if (fill_ == sizeof chunk_)
                flush();
            if (fill_ == 0 && n >= sizeof chunk_) {
                sink_(piece, n);
                return;
            }
            const unsigned part = std::min<unsigned>(n, sizeof chunk_ - fill_);
            std::memcpy(chunk_ + fill_, piece, part);
            fill_ += part;
            piece += part;
            n -= part;
        }
    }

    void flush()
    {
        if (const unsigned n = std::exchange(fill_, 0))
            sink_(chunk_, n);
    }

private:
    Sink sink_;
    unsigned fill_ = 0;
    char chunk_[1500];
};

} // namespace

APICommand::APICommand() : send_lock_(std::make_unique<PortableMutex>()) {}
APICommand::~APICommand() = default;

void APICommand::send(const XMLTree& message)
{
    send_debug_hook_.run(message);
    const PortableMutexLock lock(*send_lock_);
    // A sink that fails commands may have their callbacks send in the midst of this message.
    ChunkBuffer buffer([this, &message, message_number = ++messages_](const char* data, unsigned n) {
        message_in_hand_ = message_number;
        tree_in_hand_ = &message;
        send(data, n);
    });
    using Buffer = decltype(buffer);
    // What was written before a failure still goes out: the peer sees a broken message, and not one
    // that runs into the next.
    try {
        message.send_utf8(AFunction2<const char*, unsigned>::member<&Buffer::input>(&buffer),
                          XMLTree::flatten_lines, true);
    } catch (...) {
    }
    try {
        buffer.flush();
    } catch (...) {
    }
}

const AString& APICommand::xid_in_hand() const
{
    return tree_in_hand_->get_subnode(name<"xid">()).get_content();
}

} // namespace KVRP3
