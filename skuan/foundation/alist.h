// A list as a value: copies share one chain of entries until one of them is changed.
#pragma once

#include <skuan/foundation/afunction.h>
#include <skuan/foundation/aref.h>
#include <skuan/foundation/block_pool.h>

#include <cstddef>
#include <initializer_list>
#include <iterator>
#include <new>
#include <type_traits>
#include <utility>

/// The doubly linked chain that AList values share. Entries are counted by themselves: the list holds one
/// reference, and each iterator one to the entry it stands on, so an entry outlives its removal for as
/// long as an iterator needs it.
template <typename T>
class nonstd_list
{
public:
    struct EntryStruct
    {
        template <typename... A>
        explicit EntryStruct(A&&... args) : value(std::forward<A>(args)...)
        {
        }

        EntryStruct* next = nullptr;
        EntryStruct* previous = nullptr;
        AtomicUnsigned references{1};
        T value;
    };

    nonstd_list() = default;
    nonstd_list(const nonstd_list&) = delete;
    nonstd_list& operator=(const nonstd_list&) = delete;

    template <typename... A>
    static EntryStruct* new_entry(A&&... args)
    {
        // As heaps align; the compiler claims more than that for 32-bit Windows.
        static_assert(alignof(EntryStruct) <= 2 * sizeof(void*));
        void* const block = EntryPool::take();
        if (!block)
            throw std::bad_alloc();
        struct GiveBack
        {
            void* block;
            ~GiveBack() { EntryPool::give(block); }
        } guard{block};
        EntryStruct* const entry = new (block) EntryStruct(std::forward<A>(args)...);
        guard.block = nullptr;
        return entry;
    }

    void link_back(EntryStruct* entry)
    {
        entry->previous = last;
        (last ? last->next : first) = entry;
        last = entry;
        ++count;
    }
    void link_front(EntryStruct* entry)
    {
        entry->next = first;
        (first ? first->previous : last) = entry;
        first = entry;
        ++count;
    }

    /// An entry that an iterator stands on keeps what follows it, so that the iterator can go on.
    void unlink(EntryStruct* entry)
    {
        (entry->previous ? entry->previous->next : first) = entry->next;
        (entry->next ? entry->next->previous : last) = entry->previous;
        --count;
        if (entry->references.get() == 1)
            return free_entry(entry);
        entry->previous = nullptr;
        if (entry->next)
            ++entry->next->references;
        release(entry);
    }

    /// Only an unlinked entry can come to its end here, and it holds a reference to the one it leads to.
    static void release(EntryStruct* entry)
    {
        while (entry && (entry->references.get() == 1 || --entry->references == 0)) {
            EntryStruct* const next = entry->next;
            free_entry(entry);
            entry = next;
        }
    }

    static nonstd_list* make()
    {
        void* const block = ListPool::take();
        if (!block)
            throw std::bad_alloc();
        return new (block) nonstd_list;
    }

    /// Ends the list and, in a loop, the lists that its values were the last to hold: a tree of lists may
    /// be deeper than the stack.
    static void destroy(nonstd_list* list)
    {
        if constexpr (std::is_trivially_destructible_v<T>) {
            end(list);
        } else {
            static thread_local Ending ending{false, nullptr};
            if (ending.busy) {
                list->next_to_end = ending.waiting;
                ending.waiting = list;
                return;
            }
            ending.busy = true;
            end(list);
            while (nonstd_list* const next = ending.waiting) {
                ending.waiting = next->next_to_end;
                end(next);
            }
            ending.busy = false;
        }
    }

    /// A default value that is in no list, the same for all calls and new each time.
    T& nobodys()
    {
        if (aside)
            aside->value = T();
        else
            aside = new_entry();
        return aside->value;
    }

    AtomicUnsigned references{1};
    unsigned count = 0;
    EntryStruct* first = nullptr;
    EntryStruct* last = nullptr;

private:
    struct Ending
    {
        bool busy;
        nonstd_list* waiting;
    };

    ~nonstd_list()
    {
        for (EntryStruct* entry = first; entry;) {
            EntryStruct* const next = entry->next;
            if (entry->references.get() == 1) {
                free_entry(entry);
            } else {
                entry->next = entry->previous = nullptr;
                release(entry);
            }
            entry = next;
        }
        if (aside)
            free_entry(aside);
    }
    static void end(nonstd_list* list)
    {
        list->~nonstd_list();
        ListPool::give(list);
    }
    static void free_entry(EntryStruct* entry)
    {
        entry->~EntryStruct();
        EntryPool::give(entry);
    }

    // Sizes are asked for inside functions only, so that a class may hold a list of itself.
    struct EntryPool
    {
        static void* take() { return skuan::BlockPool<sizeof(EntryStruct)>::take(); }
        static void give(void* block) { skuan::BlockPool<sizeof(EntryStruct)>::give(block); }
    };
    struct ListPool
    {
        static void* take() { return skuan::BlockPool<sizeof(nonstd_list)>::take(); }
        static void give(void* block) { skuan::BlockPool<sizeof(nonstd_list)>::give(block); }
    };

    EntryStruct* aside = nullptr; ///< for `nobodys`
    nonstd_list* next_to_end = nullptr;
};

/// A list value. Copying it shares the entries; the first change through one of several copies gives that
/// copy entries of its own. Copies may live on different threads; one object belongs to one thread at a
/// time. `T` may be incomplete where a list of it is declared as a member.
///
/// Reading access on a list that isn't const (`at`, `front`, `begin`...) counts as a change; `const_at`
/// and its like don't. An index beyond the end, or the front of an empty list, gives a default `T` that
/// belongs to nobody; like an item it lives no longer than the list.
///
/// An iterator keeps the entry it stands on, not the list. When that entry is removed, ++ leads on to what
/// followed it; when the whole list has ended, and for -- from a removed entry, it leads to the end.
template <typename T>
class AList
{
    using List = nonstd_list<T>;

    template <typename Value, bool Backwards>
    class Iterator
    {
        using Entry = typename nonstd_list<T>::EntryStruct;

    public:
        using iterator_category = std::bidirectional_iterator_tag;
        using value_type = T;
        using difference_type = std::ptrdiff_t;
        using pointer = Value*;
        using reference = Value&;

        Iterator() = default;
        Iterator(const Iterator& other) : Iterator(other.entry_) {}
        Iterator(Iterator&& other) noexcept : entry_(std::exchange(other.entry_, nullptr)) {}
        ~Iterator() { List::release(entry_); }
        Iterator& operator=(Iterator other) noexcept
        {
            std::swap(entry_, other.entry_);
            return *this;
        }
        /// Every iterator is also a const one.
        operator Iterator<const T, Backwards>() const { return Iterator<const T, Backwards>(entry_); }

        bool valid() const { return entry_ != nullptr; }
        Value& operator*() const { return entry_->value; }
        Value* operator->() const { return &entry_->value; }

        Iterator& operator++() { return *this = Iterator(Backwards ? previous() : next()); }
        Iterator operator++(int) { return std::exchange(*this, Iterator(Backwards ? previous() : next())); }
        /// The end has no way back: it stays the end.
        Iterator& operator--() { return *this = Iterator(Backwards ? next() : previous()); }
        Iterator operator--(int) { return std::exchange(*this, Iterator(Backwards ? next() : previous())); }

        friend bool operator==(const Iterator& a, const Iterator& b) { return a.entry_ == b.entry_; }
        friend bool operator!=(const Iterator& a, const Iterator& b) { return a.entry_ != b.entry_; }

    private:
        friend class AList;
        template <typename, bool>
        friend class Iterator;
        explicit Iterator(Entry* entry) : entry_(entry)
        {
            if (entry_)
                ++entry_->references;
        }
        Entry* next() const { return entry_ ? entry_->next : nullptr; }
        Entry* previous() const { return entry_ ? entry_->previous : nullptr; }

        Entry* entry_ = nullptr;
    };

public:
    using EntryStruct = typename List::EntryStruct;
    using value_type = T;
    using iterator = Iterator<T, false>;
    using const_iterator = Iterator<const T, false>;
    using reverse_iterator = Iterator<T, true>;
    using const_reverse_iterator = Iterator<const T, true>;

    AList() = default;
    AList(std::initializer_list<T> items)
    {
        for (const T& item : items)
            push_back(item);
    }

    unsigned size() const { return list_ ? list_->count : 0; }
    bool empty() const { return size() == 0; }
    void clear() { list_ = nullptr; }

    T& at(unsigned index)
    {
        List& list = own();
        return index < list.count ? entry_at(list, index)->value : list.nobodys();
    }
    const T& const_at(unsigned index) const
    {
        return index < size() ? entry_at(*list_, index)->value : null_item();
    }
    const T& at(unsigned index) const { return const_at(index); }
    T& front() { return at(0); }
    T& back() { return at(size() - 1); }
    const T& front() const { return const_at(0); }
    const T& back() const { return const_at(size() - 1); }

    iterator begin() { return iterator(empty() ? nullptr : own().first); }
    iterator end() { return iterator(); }
    const_iterator begin() const { return const_begin(); }
    const_iterator end() const { return const_end(); }
    const_iterator const_begin() const { return const_iterator(list_ ? list_->first : nullptr); }
    const_iterator const_end() const { return const_iterator(); }
    reverse_iterator rbegin() { return reverse_iterator(empty() ? nullptr : own().last); }
    reverse_iterator rend() { return reverse_iterator(); }
    const_reverse_iterator rbegin() const { return const_reverse_iterator(list_ ? list_->last : nullptr); }
    const_reverse_iterator rend() const { return const_reverse_iterator(); }

    /// The first entry or null, for walks along `next` that count nothing. Valid while this list is
    /// neither changed nor destroyed.
    const EntryStruct* first_entry() const { return list_ ? list_->first : nullptr; }

    void push_back(const T& item) { emplace_back(item); }
    void push_back(T&& item) { emplace_back(std::move(item)); }
    /// All items of `items`, which may be this list itself.
    void push_back(const AList& items)
    {
        const AList held = items; // its entries stay, whatever becomes of ours
        for (auto* entry = held.first_entry(); entry; entry = entry->next)
            emplace_back(entry->value);
    }
    template <typename... A>
    T& emplace_back(A&&... args)
    {
        // The entry comes first: the arguments may lie in an entry that is shared now.
        EntryStruct* const entry = List::new_entry(std::forward<A>(args)...);
        own().link_back(entry);
        return entry->value;
    }
    void push_front(const T& item)
    {
        EntryStruct* const entry = List::new_entry(item);
        own().link_front(entry);
    }
    void push_front(const AList& items)
    {
        AList joined = items;
        joined.push_back(*this);
        *this = std::move(joined);
    }
    void push(const T& item) { push_back(item); }
    void unshift(const T& item) { push_front(item); }

    /// The item, which leaves the list; a default `T` from an empty one.
    T pop_back() { return empty() ? T() : take(own().last); }
    T pop_front() { return empty() ? T() : take(own().first); }
    T pop() { return pop_back(); }
    T shift() { return pop_front(); }

    /// Moves all items of `other` behind these, in one step if `other` shares them with nobody.
    void splice_back(AList& other)
    {
        if (&other == this || other.empty())
            return;
        if (empty()) {
            list_.swap(other.list_);
        } else if (other.is_unique()) {
            List& to = own();
            List& from = *other.list_;
            to.last->next = from.first;
            from.first->previous = to.last;
            to.last = from.last;
            to.count += from.count;
            from.first = from.last = nullptr;
            from.count = 0;
        } else {
            push_back(other);
        }
        other.clear();
    }

    void reverse()
    {
        if (size() < 2)
            return;
        List& list = own();
        for (EntryStruct* entry = list.first; entry; entry = entry->previous)
            std::swap(entry->next, entry->previous);
        std::swap(list.first, list.last);
    }

    bool contains_item(const T& item) const
    {
        for (auto* entry = first_entry(); entry; entry = entry->next)
            if (entry->value == item)
                return true;
        return false;
    }
    /// Removes every item equal to `item`; gives how many there were.
    unsigned remove_item(const T& item)
    {
        if (!contains_item(item))
            return 0;
        const T wanted = item; // it may be one of ours
        List& list = own();
        const unsigned before = list.count;
        for (EntryStruct* entry = list.first; entry;) {
            EntryStruct* const candidate = std::exchange(entry, entry->next);
            if (candidate->value == wanted)
                list.unlink(candidate);
        }
        return before - list.count;
    }

    /// A new list of the items for which `matches` says true.
    AList find_matches(AFunction1R<bool, const T&> matches) const { return choose(matches, true); }
    /// A new list of all the others; this list stays as it is.
    AList remove_matches(AFunction1R<bool, const T&> matches) const { return choose(matches, false); }

    /// True when no other list value shares the entries.
    bool is_unique() const { return !list_ || list_->references.get() == 1; }

    friend bool operator==(const AList& a, const AList& b)
    {
        if (a.list_ == b.list_)
            return true;
        if (a.size() != b.size())
            return false;
        auto* x = a.first_entry();
        for (auto* y = b.first_entry(); y; x = x->next, y = y->next)
            if (!(x->value == y->value))
                return false;
        return true;
    }
    friend bool operator!=(const AList& a, const AList& b) { return !(a == b); }

private:
    /// The chain as ours alone.
    List& own()
    {
        if (!list_) {
            list_ = ARef<List>::adopt(List::make());
        } else if (!is_unique()) {
            const ARef<List> copy = ARef<List>::adopt(List::make());
            for (auto* entry = list_->first; entry; entry = entry->next)
                copy->link_back(List::new_entry(entry->value));
            list_ = copy;
        }
        return *list_;
    }

    static EntryStruct* entry_at(const List& list, unsigned index)
    {
        EntryStruct* entry = nullptr;
        if (index < list.count / 2)
            for (entry = list.first; index != 0; --index)
                entry = entry->next;
        else
            for (entry = list.last, index = list.count - 1 - index; index != 0; --index)
                entry = entry->previous;
        return entry;
    }

    T take(EntryStruct* entry)
    {
        const bool watched = entry->references.get() != 1;
        T item = watched ? T(static_cast<const T&>(entry->value)) : T(std::move(entry->value));
        list_->unlink(entry);
        return item;
    }

    AList choose(const AFunction1R<bool, const T&>& matches, bool wanted) const
    {
        AList chosen;
        for (auto* entry = first_entry(); entry; entry = entry->next)
            if (matches.run(false, entry->value) == wanted)
                chosen.push_back(entry->value);
        return chosen;
    }

    static const T& null_item()
    {
        static const T* const item = new T(); // outlives every static list
        return *item;
    }
    ARef<List> list_; // null until first needed
};
