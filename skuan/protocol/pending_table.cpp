// The life of an entry, apart from its types.
#include <skuan/protocol/pending_table_p.h>

#include <atomic>

namespace KVRP3 {

/// One count for the whole process, so that an xid, its lower half, tells a command apart in any log.
static std::atomic<std::uint64_t> commands{0};

std::uint64_t PendingTable::last_number()
{
    return commands;
}

std::uint64_t PendingTable::number_of(const AString& xid)
{
    std::uint32_t lower = 0;
    for (const AChar c : xid) {
        if (c.is_digit())
            lower = lower * 10 + (c.ord() - '0');
    }
    const std::uint64_t last = commands;
    return last - static_cast<std::uint32_t>(last - lower);
}

std::uint64_t PendingTable::key_of(const AString& xid)
{
    // Each digit is a nibble above 0 and a missing one is 0, so "1" comes before "10", and that before "9".
    constexpr unsigned most_digits = 10;
    if (xid.length() > most_digits)
        return 0;
    std::uint64_t key = 0;
    for (const AChar c : xid) {
        if (!c.is_digit())
            return 0;
        key = key << 4 | (c.ord() - '0' + 1);
    }
    return key << 4 * (most_digits - xid.length());
}

AString PendingTable::unused_xid() const
{
    AString xid;
    do {
        xid = AString::from_uint32_t(static_cast<std::uint32_t>(++commands), 0, ' ');
    } while (entries_.count(key_of(xid)) != 0); // only once the count has wrapped
    return xid;
}

bool PendingTable::forget(const AString& xid)
{
    const PortableMutexLock lock(lock_);
    return entries_.erase(key_of(xid)) != 0;
}

unsigned PendingTable::size() const
{
    const PortableMutexLock lock(lock_);
    return static_cast<unsigned>(entries_.size());
}

std::uint64_t PendingTable::fail_all()
{
    // Without this, a callback that sends on the dead connection would come back here without end; the
    // loop below finds the entry that it made. Nor does a second thread wait for the lock, which it
    // might be holding a send lock against.
    if (!failing_.cas(0, 1))
        return last_number();
    const PortableMutexLock lock(lock_);
    while (!entries_.empty()) {
        // Out of the table only after the callback, as with a reply; a callback may also forget it.
        const auto entry = entries_.begin();
        const std::uint64_t key = entry->first;
        const ReplySlots ended = std::exchange(entry->second, ReplySlots());
        ended.error.run(AString::l1("Failing all outstanding commands"), ErrorCode_general);
        entries_.erase(key);
    }
    failing_.set(0);
    return last_number();
}

} // namespace KVRP3
