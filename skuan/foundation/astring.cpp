// Strings and their pieces: what a view knows about itself and how new ones are cut and joined.
#include <skuan/foundation/astring.h>
#include <skuan/foundation/astring_builder.h>
#include <skuan/foundation/astring_list.h>

#include <cstring>

using skuan::AStringBuilder;
using skuan::StringRuns;

AString::AString(AChar c)
{
    AStringBuilder builder;
    builder.append(c);
    *this = builder.finish();
}

AString::AString(const AStringList& items) : AString(items, AString()) {}

AString::AString(const AStringList& items, const AString& separator)
{
    AStringBuilder builder;
    for (auto* entry = items.first_entry(); entry; entry = entry->next) {
        builder.append(entry->value);
        if (entry->next)
            builder.append(separator);
    }
    *this = builder.finish();
}

AString AString::from_join(const AStringList& items, const AString& separator)
{
    return AString(items, separator);
}

AString AString::rep(const AString& text, unsigned count)
{
    if (text.empty() || !SKUAN_CHECK(count < ~0u / text.length()))
        return AString();
    AStringBuilder builder;
    for (unsigned i = 0; i < count; ++i)
        builder.append(text);
    return builder.finish();
}

AString AString::cat(const AString& a, const AString& b)
{
    if (a.empty())
        return b;
    if (b.empty())
        return a;
    AStringBuilder builder;
    builder.append(a);
    builder.append(b);
    return builder.finish();
}

AString AString::copied() const
{
    AStringBuilder builder;
    builder.append(*this);
    return builder.finish();
}

const AChar* AString::contiguous_further_on() const
{
    const unsigned offset = start_offset_ % AStringSegment::capacity;
    if (len_ == 0 || len_ > AStringSegment::capacity - offset)
        return nullptr;
    return segment_of(start_offset_)->buf + offset;
}

void AString::send_achars(AFunction2<const AChar*, unsigned> sink) const
{
    for_each_run([&](const AChar* run, unsigned n) { sink.run(run, n); });
}

namespace {

/// 32-bit FNV-1a over the four bytes of a code point, the lowest first.
unsigned hash_character(unsigned c)
{
    constexpr unsigned basis = 0x811C9DC5u;
    constexpr unsigned prime = 16777619u;
    if (c < 256) // three further bytes of 0 only multiply
        return (basis ^ c) * (prime * prime * prime * prime);
    unsigned hash = basis;
    for (unsigned shift = 0; shift < 32; shift += 8)
        hash = (hash ^ (c >> shift & 0xFF)) * prime;
    return hash;
}

} // namespace

unsigned AString::compute_hash() const
{
    unsigned sum = 0;
    for_each_run([&](const AChar* run, unsigned n) {
        for (unsigned i = 0; i < n; ++i)
            sum += hash_character(run[i].ord());
    });
    unsigned known = 0;
    const unsigned hash = sum ? sum : 1;
    __atomic_compare_exchange_n(&hash_, &known, hash, false, __ATOMIC_SEQ_CST, __ATOMIC_SEQ_CST);
    return hash;
}

unsigned AString::count_spaces_front() const
{
    unsigned count = 0;
    for (StringRuns runs(*this); runs.size(); runs.skip(1), ++count)
        if (!runs.data()->is_space())
            break;
    return count;
}

AString AString::despace_end() const
{
    if (const AChar* const text = contiguous()) {
        unsigned n = len_;
        while (n != 0 && text[n - 1].is_space())
            --n;
        return left(n);
    }
    // Forwards, since a segment doesn't know the one before it.
    unsigned kept = 0;
    unsigned position = 0;
    for (StringRuns runs(*this); runs.size(); runs.skip(1)) {
        ++position;
        if (!runs.data()->is_space())
            kept = position;
    }
    return left(kept);
}

AString AString::leading_digits() const
{
    unsigned count = 0;
    for (StringRuns runs(*this); runs.size() && runs.data()->is_digit(); runs.skip(1))
        ++count;
    return left(count);
}

AString AString::replace(unsigned pos, unsigned len, const AString& with) const
{
    AStringBuilder builder;
    builder.append(left(pos));
    builder.append(with);
    if (pos < len_ && len < len_ - pos)
        builder.append(substr(pos + len));
    return builder.finish();
}

AString AString::pad(int width, char c) const
{
    const unsigned wanted = width < 0 ? 0u - static_cast<unsigned>(width) : static_cast<unsigned>(width);
    if (wanted <= len_)
        return *this;
    AStringBuilder builder;
    if (width > 0)
        builder.append(AChar::from_latin1(c), wanted - len_);
    builder.append(*this);
    if (width < 0)
        builder.append(AChar::from_latin1(c), wanted - len_);
    return builder.finish();
}

void AString::iterator::go_to(unsigned index)
{
    const unsigned absolute = string_.start_offset_ + index;
    valid_ = index < string_.len_;
    position_.absolute_position = absolute;
    if (!valid_) {
        current_ = AChar(0);
        return;
    }
    position_.current_segment = string_.segment_of(absolute);
    position_.segment_offset = absolute % AStringSegment::capacity;
    current_ = position_.current_segment->buf[position_.segment_offset];
}

void AString::iterator::next()
{
    ++position_.absolute_position;
    if (position_.absolute_position == string_.start_offset_ + string_.len_) {
        valid_ = false;
        current_ = AChar(0);
        return;
    }
    if (++position_.segment_offset == AStringSegment::capacity) {
        position_.current_segment = position_.current_segment->next;
        position_.segment_offset = 0;
    }
    current_ = position_.current_segment->buf[position_.segment_offset];
}

AString::iterator& AString::iterator::operator--()
{
    if (string_.empty())
        return *this;
    if (position_.absolute_position == string_.start_offset_) {
        go_to(string_.len_);
    } else if (valid_ && position_.segment_offset > 0) {
        --position_.absolute_position;
        current_ = position_.current_segment->buf[--position_.segment_offset];
    } else {
        go_to(position_.absolute_position - 1 - string_.start_offset_);
    }
    return *this;
}
