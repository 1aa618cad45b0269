// Comparing and searching.
#include <skuan/foundation/astring.h>

#include <algorithm>
#include <cstring>

using skuan::StringRuns;

bool AString::same_characters(const AString& other) const
{
    if (storage_ == other.storage_ && start_offset_ == other.start_offset_)
        return true; // both empty, or one view
    const AChar* const mine = contiguous();
    const AChar* const theirs = other.contiguous();
    if (mine && theirs)
        return std::memcmp(mine, theirs, len_ * sizeof(AChar)) == 0;
    StringRuns a(*this);
    StringRuns b(other);
    while (a.size()) {
        const unsigned n = std::min(a.size(), b.size());
        if (std::memcmp(a.data(), b.data(), n * sizeof(AChar)) != 0)
            return false;
        a.skip(n);
        b.skip(n);
    }
    return true;
}

bool AString::equal_z(const char* latin1) const
{
    if (!latin1)
        return empty();
    if (const AChar* const text = contiguous()) {
        for (unsigned i = 0; i < len_; ++i)
            if (latin1[i] == 0 || text[i] != AChar::from_latin1(latin1[i]))
                return false;
        return latin1[len_] == 0;
    }
    for (StringRuns runs(*this); runs.size(); runs.skip(1), ++latin1)
        if (*latin1 == 0 || *runs.data() != AChar::from_latin1(*latin1))
            return false;
    return *latin1 == 0;
}

namespace {

int order_of(unsigned a, unsigned b)
{
    return a < b ? -1 : a > b;
}

int compare_runs(const AChar* a, const AChar* b, unsigned n, AString::CaseSensitivity cs)
{
    for (unsigned i = 0; i < n; ++i) {
        if (a[i] == b[i])
            continue;
        const int order =
            cs == AString::CaseSensitive ? a[i].cmp(b[i]) : a[i].to_lower().cmp(b[i].to_lower());
        if (order != 0)
            return order;
    }
    return 0;
}

} // namespace

int AString::compare(const AString& a, const AString& b, unsigned count, CaseSensitivity cs)
{
    return compare(a, 0, b, 0, count, cs);
}

int AString::compare(const AString& a, unsigned apos, const AString& b, unsigned bpos, unsigned count,
                     CaseSensitivity cs)
{
    const unsigned alen = apos < a.len_ ? std::min(a.len_ - apos, count) : 0;
    const unsigned blen = bpos < b.len_ ? std::min(b.len_ - bpos, count) : 0;
    const unsigned common = std::min(alen, blen);
    const bool same_place = a.storage_ == b.storage_ && a.start_offset_ + apos == b.start_offset_ + bpos;
    if (common == 0 || same_place)
        return order_of(alen, blen);

    StringRuns ar(a, apos);
    StringRuns br(b, bpos);
    for (unsigned left = common; left != 0;) {
        const unsigned n = std::min({ar.size(), br.size(), left});
        if (const int order = compare_runs(ar.data(), br.data(), n, cs))
            return order;
        ar.skip(n);
        br.skip(n);
        left -= n;
    }
    return order_of(alen, blen);
}

bool AString::has_prefix(const AString& prefix, CaseSensitivity cs) const
{
    return prefix.len_ <= len_ && compare(*this, prefix, prefix.len_, cs) == 0;
}

bool AString::has_suffix(const AString& suffix, CaseSensitivity cs) const
{
    return suffix.len_ <= len_ && compare(*this, len_ - suffix.len_, suffix, 0, cs) == 0;
}

AString AString::remove_prefix(const AString& prefix, bool* had, CaseSensitivity cs) const
{
    const bool has = has_prefix(prefix, cs);
    if (had)
        *had = has;
    return has ? remove_front(prefix.len_) : *this;
}

AString AString::remove_suffix(const AString& suffix, bool* had, CaseSensitivity cs) const
{
    const bool has = has_suffix(suffix, cs);
    if (had)
        *had = has;
    return has ? remove_end(suffix.len_) : *this;
}

int AString::find(AChar c, unsigned from) const
{
    unsigned position = from;
    for (StringRuns runs(*this, from); runs.size(); runs.skip(runs.size())) {
        const AChar* const end = runs.data() + runs.size();
        const AChar* const found = std::find(runs.data(), end, c);
        if (found != end)
            return static_cast<int>(position + static_cast<unsigned>(found - runs.data()));
        position += runs.size();
    }
    return -1;
}

int AString::rfind(AChar c, unsigned from) const
{
    int found = -1;
    int position = 0;
    const AString searched = from < len_ ? left(from + 1) : *this;
    for (StringRuns runs(searched); runs.size(); runs.skip(1), ++position)
        if (*runs.data() == c)
            found = position;
    return found;
}

int AString::find(const AString& needle, unsigned from) const
{
    if (needle.empty())
        return 0;
    if (from >= len_ || needle.len_ > len_ - from)
        return -1;
    const AChar first = needle.firstchar();
    const unsigned last = len_ - needle.len_;
    // The runs stand at the candidate, so that trying it doesn't walk the string from its start again.
    unsigned position = from;
    for (StringRuns runs(*this, from); position <= last; runs.skip(1), ++position) {
        if (*runs.data() != first)
            continue;
        StringRuns mine = runs;
        StringRuns wanted(needle);
        bool same = true;
        while (same && wanted.size()) {
            const unsigned n = std::min(mine.size(), wanted.size());
            same = std::memcmp(mine.data(), wanted.data(), n * sizeof(AChar)) == 0;
            mine.skip(n);
            wanted.skip(n);
        }
        if (same)
            return static_cast<int>(position);
    }
    return -1;
}
