// The commands that wait for an answer.
#pragma once

#include <skuan/foundation/astring.h>
#include <skuan/foundation/atomic.h>
#include <skuan/foundation/portable_mutex.h>
#include <skuan/protocol/reply_slots_p.h>

#include <cstdint>
#include <map>
#include <type_traits>
#include <utility>

namespace KVRP3 {

/// All operations are for any thread. No callback runs under the lock, except those of `fail_all`.
class PendingTable
{
public:
    enum Effect { goes_on, ends }; ///< what a reply does to its command

    /// Makes an entry with these callbacks and gives its xid, a decimal number that no outstanding
    /// command has. If all callbacks are empty there is no entry, and "none" stands before the number:
    /// such an xid is never that of an entry.
    template <auto... Slots, typename... Callbacks>
    AString enter(const Callbacks&... callbacks);
    /// The same for callbacks that lead to a callback group; the entry holds its guard until it ends.
    template <auto... Slots, typename... Callbacks>
    AString enter_guarded(const AReference<CallbackGuard>& guard, const Callbacks&... callbacks);

    /// Calls the command's callback for a reply, and removes the entry after one that ends it. A reply
    /// to an unknown xid is dropped.
    template <auto Slot, typename... Values>
    void fire(const AString& xid, Effect effect, Values... values);

    bool forget(const AString& xid);
    /// Gives the number of the last command that it has failed: what is entered from then on has a higher
    /// one.
    std::uint64_t fail_all();
    unsigned size() const;

    /// Which command it was that got this xid, for one of the last 4 billion: a number that rises with each
    /// command of the process, with or without callbacks.
    static std::uint64_t number_of(const AString& xid);
    /// The number of the last command.
    static std::uint64_t last_number();

private:
    // By a number whose order is the text order of the xids, which is the order in which `fail_all`
    // goes: comparing numbers costs less than comparing texts.
    using Entries = std::map<std::uint64_t, ReplySlots>;

    /// 0 for a text that is no xid of an entry.
    static std::uint64_t key_of(const AString& xid);
    /// A fresh xid that no entry has. Needs the lock.
    AString unused_xid() const;

    mutable PortableMutex lock_; ///< recursive: a callback of `fail_all` may come back here
    AtomicUnsigned failing_;     ///< 1 while `fail_all` is at work
    Entries entries_;
};

template <auto... Slots, typename... Callbacks>
AString PendingTable::enter(const Callbacks&... callbacks)
{
    const PortableMutexLock lock(lock_);
    if ((callbacks.is_null() && ...))
        return AString::l1("none") + unused_xid();
    return enter_guarded<Slots...>({}, callbacks...);
}

template <auto... Slots, typename... Callbacks>
AString PendingTable::enter_guarded(const AReference<CallbackGuard>& guard, const Callbacks&... callbacks)
{
    const PortableMutexLock lock(lock_);
    const AString xid = unused_xid();
    ReplySlots& slots = entries_[key_of(xid)];
    ((slots.*Slots = callbacks), ...);
    slots.guard = guard;
    return xid;
}

template <auto Slot, typename... Values>
void PendingTable::fire(const AString& xid, Effect effect, Values... values)
{
    std::decay_t<decltype(std::declval<ReplySlots>().*Slot)> callback;
    AReference<CallbackGuard> guard; // stays until the callback has run
    {
        const PortableMutexLock lock(lock_);
        const auto entry = entries_.find(key_of(xid));
        if (entry == entries_.end())
            return;
        callback = entry->second.*Slot;
        guard = entry->second.guard;
        // The entry counts until the callback has run. Emptied now, it cannot end a second time should
        // the connection be found lost meanwhile, by this callback or on another thread.
        if (effect == ends)
            entry->second = ReplySlots();
    }
    callback.run(std::move(values)...);
    if (effect == ends)
        forget(xid);
}

} // namespace KVRP3
