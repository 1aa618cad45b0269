#include <skuan/markup/name_table.h>

#include <skuan/foundation/assertfail.h>
#include <skuan/foundation/astring_builder.h>
#include <skuan/markup/byte_scan.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <cstring>
#include <mutex>

namespace skuan {
namespace {

constexpr unsigned longest_name = 48;
constexpr unsigned most_names = 1024;
constexpr unsigned slot_count = 4 * most_names; // sparse, so that probes stay short

struct Name
{
    AString text;
    unsigned length;
    char bytes[longest_name];
};

// Slots go from null to a name once and never change again. That is all a reader needs to know.
struct Table
{
    std::array<std::atomic<const Name*>, slot_count> slots{};
    std::mutex adding;
    unsigned count = 0;
};

// Never destroyed: trees in other statics may outlive this file's.
Table& table()
{
    static Table* const the_table = new Table;
    return *the_table;
}

template <typename Word>
std::uint64_t load(const char* p)
{
    Word w;
    std::memcpy(&w, p, sizeof w);
    return w;
}

// Head, tail and length tell names of one vocabulary apart; a collision only costs one more probe.
unsigned first_slot(const char* p, unsigned n)
{
    std::uint64_t head = 0;
    std::uint64_t tail = 0;
    if (n >= 8) {
        head = load<std::uint64_t>(p);
        tail = load<std::uint64_t>(p + n - 8);
    } else if (n >= 4) {
        head = load<std::uint32_t>(p);
        tail = load<std::uint32_t>(p + n - 4);
    } else if (n > 0) {
        head = static_cast<unsigned char>(p[0]);
        tail = load<unsigned char>(p + n / 2) << 8 | static_cast<unsigned char>(p[n - 1]);
    }
    const std::uint64_t mixed = (head ^ (tail * 0x9E3779B97F4A7C15u) ^ n) * 0xD6E8FEB86659FD93u;
    return static_cast<unsigned>(mixed >> 40) % slot_count;
}

/// The slot that holds the name, or the empty one where it would stand.
std::atomic<const Name*>& slot_of(Table& t, const char* bytes, unsigned n)
{
    for (unsigned i = first_slot(bytes, n);; i = (i + 1) % slot_count) {
        const Name* name = t.slots[i].load(std::memory_order_acquire);
        if (!name || (name->length == n && same_bytes(name->bytes, bytes, n)))
            return t.slots[i];
    }
}

} // namespace

const AString* find_name(const char* bytes, unsigned n)
{
    if (n > longest_name)
        return nullptr;
    const Name* name = slot_of(table(), bytes, n).load(std::memory_order_acquire);
    return name ? &name->text : nullptr;
}

namespace {

const AString* add_name(const char* bytes, unsigned n, unsigned limit)
{
    if (n == 0 || n > longest_name)
        return nullptr;
    Table& t = table();
    std::lock_guard<std::mutex> lock(t.adding);
    std::atomic<const Name*>& slot = slot_of(t, bytes, n);
    if (const Name* present = slot.load(std::memory_order_acquire))
        return &present->text;
    if (t.count >= limit)
        return nullptr;
    ++t.count;
    Name* made = new Name{permanent_string(bytes, n), n, {}};
    std::memcpy(made->bytes, bytes, n);
    slot.store(made, std::memory_order_release);
    return &made->text;
}

} // namespace

const AString* add_name(const char* bytes, unsigned n)
{
    return add_name(bytes, n, most_names);
}

const AString& tag_name(const char* name)
{
    const auto n = static_cast<unsigned>(std::strlen(name));
    if (const AString* known = find_name(name, n))
        return *known;
    // The source's own tags find room even when a peer's inventions have used up theirs.
    const AString* added = add_name(name, n, 2 * most_names);
    static const AString none;
    return SKUAN_CHECK(added != nullptr) ? *added : none;
}

} // namespace skuan
