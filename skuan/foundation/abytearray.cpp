// The bytes themselves: sharing, growing, comparing, searching.
#include <skuan/foundation/abytearray.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>

namespace {

constexpr std::size_t page = 4096;
constexpr std::size_t smallest_capacity = 32;
constexpr std::size_t largest_size = ~0u - 1;

} // namespace

AByteArray::DataStruct::~DataStruct()
{
    ::operator delete(allocation);
}

bool AByteArray::DataStruct::reserve(std::size_t n)
{
    if (!SKUAN_CHECK(n <= largest_size))
        return false;
    if (capacity >= n + 1)
        return true;
    std::size_t wanted = capacity ? capacity : smallest_capacity;
    while (wanted < n + 1) {
        if (wanted > ~std::size_t{0} / 2 - 2 * page)
            return false;
        wanted *= 2;
    }
    const bool aligned = wanted >= page;
    auto* const block =
        static_cast<unsigned char*>(::operator new(aligned ? wanted + 2 * page : wanted, std::nothrow));
    if (!block) {
        hardassertfail(__FILE__, __LINE__, "block != 0");
        return false;
    }
    const std::size_t misfit = aligned ? reinterpret_cast<std::uintptr_t>(block) % page : 0;
    unsigned char* const bytes = misfit ? block + (page - misfit) : block;
    if (capacity)
        std::memcpy(bytes, data, capacity);
    bytes[capacity] = 0;
    ::operator delete(allocation);
    capacity = wanted;
    allocation = block;
    data = bytes;
    return true;
}

void AByteArray::Shared::destroy(Shared* shared)
{
    delete shared;
}

AByteArray::DataStruct* AByteArray::ref()
{
    if (shared_ && shared_->references.get() == 1)
        return &shared_->data;
    std::unique_ptr<Shared> own(new (std::nothrow) Shared);
    const std::size_t bytes = size();
    if (!own || !own->data.reserve(std::max(bytes, smallest_capacity - 1)))
        return nullptr;
    if (bytes)
        std::memcpy(own->data.data, const_data(), bytes);
    own->data.data[bytes] = 0;
    own->data.size = bytes;
    shared_ = ARef<Shared>::adopt(own.release());
    return &shared_->data;
}

unsigned char* AByteArray::data()
{
    DataStruct* const own = ref();
    return own ? own->data : nullptr;
}

const unsigned char* AByteArray::const_data() const
{
    static const unsigned char nothing = 0;
    return shared_ ? shared_->data.data : &nothing;
}

unsigned char& AByteArray::operator[](unsigned index)
{
    static thread_local unsigned char nobodys;
    DataStruct* const own = index < size() ? ref() : nullptr;
    if (own)
        return own->data[index];
    return nobodys = 0;
}

void AByteArray::set(unsigned char a)
{
    set(&a, 1);
}

void AByteArray::set(unsigned char a, unsigned char b)
{
    const unsigned char bytes[] = {a, b};
    set(bytes, sizeof bytes);
}

void AByteArray::set(unsigned char a, unsigned char b, unsigned char c)
{
    const unsigned char bytes[] = {a, b, c};
    set(bytes, sizeof bytes);
}

void AByteArray::set(unsigned char a, unsigned char b, unsigned char c, unsigned char d)
{
    const unsigned char bytes[] = {a, b, c, d};
    set(bytes, sizeof bytes);
}

void AByteArray::set(const void* bytes, unsigned n)
{
    AByteArray fresh(bytes, n); // first, as `bytes` may be ours
    *this = std::move(fresh);
}

void AByteArray::append(unsigned char a)
{
    append(&a, 1);
}

void AByteArray::append(unsigned char a, unsigned char b)
{
    const unsigned char bytes[] = {a, b};
    append(bytes, sizeof bytes);
}

void AByteArray::append(unsigned char a, unsigned char b, unsigned char c)
{
    const unsigned char bytes[] = {a, b, c};
    append(bytes, sizeof bytes);
}

void AByteArray::append(unsigned char a, unsigned char b, unsigned char c, unsigned char d)
{
    const unsigned char bytes[] = {a, b, c, d};
    append(bytes, sizeof bytes);
}

void AByteArray::append(const void* bytes, unsigned n)
{
    if (n == 0 || !SKUAN_CHECK(bytes != nullptr) || !SKUAN_CHECK(n <= largest_size - size()))
        return;
    // Growing frees the old room, and `bytes` may lie in it.
    const auto* from = static_cast<const unsigned char*>(bytes);
    const std::uintptr_t offset =
        reinterpret_cast<std::uintptr_t>(bytes) - reinterpret_cast<std::uintptr_t>(const_data());
    const bool ours = offset < size();
    DataStruct* const own = ref();
    if (!own || !own->reserve(own->size + n))
        return;
    std::memmove(own->data + own->size, ours ? own->data + offset : from, n);
    own->size += n;
    own->data[own->size] = 0;
}

void AByteArray::append(const AByteArray& other)
{
    if (empty() && reserved_size() == 0) {
        *this = other;
        return;
    }
    append(other.const_data(), other.size());
}

AByteArray AByteArray::mid(unsigned pos, unsigned n) const
{
    if (pos >= size())
        return AByteArray();
    const unsigned rest = size() - pos;
    if (pos == 0 && n >= rest)
        return *this;
    return AByteArray(const_data() + pos, std::min(n, rest));
}

int AByteArray::cmp(const AByteArray& other) const
{
    const int order = std::memcmp(const_data(), other.const_data(), std::min(size(), other.size()));
    if (order != 0)
        return order < 0 ? -1 : 1;
    return size() < other.size() ? -1 : size() > other.size();
}

int AByteArray::find(unsigned char byte, unsigned from) const
{
    if (from >= size())
        return -1;
    const void* const found = std::memchr(const_data() + from, byte, size() - from);
    return found ? static_cast<int>(static_cast<const unsigned char*>(found) - const_data()) : -1;
}

int AByteArray::rfind(unsigned char byte, unsigned from) const
{
    const unsigned char* const bytes = const_data();
    for (unsigned end = from < size() ? from + 1 : size(); end != 0; --end)
        if (bytes[end - 1] == byte)
            return static_cast<int>(end - 1);
    return -1;
}

bool AByteArray::has_prefix(const AByteArray& prefix) const
{
    return prefix.size() <= size() && std::memcmp(const_data(), prefix.const_data(), prefix.size()) == 0;
}

void AByteArray::replace(unsigned char from, unsigned char to)
{
    if (find(from) == -1)
        return;
    if (DataStruct* const own = ref())
        std::replace(own->data, own->data + own->size, from, to);
}

void AByteArray::reserve(unsigned n)
{
    if (DataStruct* const own = n <= largest_size ? ref() : nullptr)
        own->reserve(n);
}

unsigned AByteArray::reserved_size() const
{
    const std::size_t capacity = shared_ ? shared_->data.capacity : 0;
    return capacity ? static_cast<unsigned>(std::min(capacity - 1, largest_size)) : 0;
}

void AByteArray::resize(unsigned n, unsigned char fill)
{
    DataStruct* const own = n <= largest_size ? ref() : nullptr;
    if (!own || !own->reserve(n))
        return;
    if (n > own->size)
        std::memset(own->data + own->size, fill, n - own->size);
    own->size = n;
    own->data[n] = 0;
}

unsigned AByteArray::copy_from(const void* from, unsigned count, unsigned dest_offset)
{
    if (dest_offset >= size())
        return 0;
    const unsigned n = std::min(count, size() - dest_offset);
    DataStruct* const own = n ? ref() : nullptr;
    if (!own)
        return 0;
    std::memmove(own->data + dest_offset, from, n);
    return n;
}

unsigned AByteArray::copy_to(void* to, unsigned count, unsigned source_offset) const
{
    if (source_offset >= size())
        return 0;
    const unsigned n = std::min(count, size() - source_offset);
    if (n)
        std::memcpy(to, const_data() + source_offset, n);
    return n;
}
