// Going through a string: run by run for conversions, character by character for everyone else. It is the
// second half of astring.h, which includes it.
#pragma once

#include <skuan/foundation/astring.h>

#include <cstddef>
#include <iterator>

namespace skuan {

/// Walks the characters of a string run by run: `for (StringRuns r(s); r.size(); r.skip(r.size()))`. The
/// string has to outlive it.
class StringRuns
{
public:
    explicit StringRuns(const AString& string, unsigned from = 0)
    {
        if (from >= string.len_)
            return;
        const unsigned position = string.start_offset_ + from;
        segment_ = string.segment_of(position);
        remaining_ = string.len_ - from;
        enter(position % AStringSegment::capacity);
    }

    const AChar* data() const { return data_; }
    unsigned size() const { return size_; } ///< 0 at the end
    /// Goes `n` <= size() characters on.
    void skip(unsigned n)
    {
        data_ += n;
        size_ -= n;
        remaining_ -= n;
        if (size_ == 0 && remaining_ != 0) {
            segment_ = segment_->next;
            enter(0);
        }
    }

private:
    void enter(unsigned offset)
    {
        data_ = segment_->buf + offset;
        const unsigned room = AStringSegment::capacity - offset;
        size_ = remaining_ < room ? remaining_ : room;
    }

    const AStringSegment* segment_ = nullptr;
    const AChar* data_ = nullptr;
    unsigned size_ = 0;
    unsigned remaining_ = 0;
};

} // namespace skuan

template <typename F>
void AString::for_each_run(F&& f) const
{
    for (skuan::StringRuns runs(*this); runs.size(); runs.skip(runs.size()))
        f(runs.data(), runs.size());
}

/// Stands on a character of a string, or past its end. It holds its own copy of the string, so it stays
/// good when the string is assigned to. Going on from the end, or back from the start, leaves it past the
/// end; going back from the end gives the last character.
class SKUAN_EXPORT AString::iterator
{
public:
    using iterator_category = std::bidirectional_iterator_tag;
    using value_type = AChar;
    using difference_type = std::ptrdiff_t;
    using pointer = const AChar*;
    using reference = AChar;

    iterator() = default;

    bool valid() const { return valid_; }
    AChar operator*() const { return current_; } ///< 0 past the end
    const AChar* operator->() const { return &current_; }

    iterator& operator++()
    {
        if (valid_)
            next();
        return *this;
    }
    iterator operator++(int)
    {
        iterator before = *this;
        ++*this;
        return before;
    }
    iterator& operator--();
    iterator operator--(int)
    {
        iterator before = *this;
        --*this;
        return before;
    }

    /// At the same position of views of one storage, or both past the end.
    bool operator==(const iterator& other) const
    {
        if (!valid_ || !other.valid_)
            return valid_ == other.valid_;
        return string_.storage_ == other.string_.storage_ &&
               position_.absolute_position == other.position_.absolute_position;
    }
    bool operator!=(const iterator& other) const { return !(*this == other); }

private:
    friend class AString;
    iterator(const AString& string, unsigned index) : string_(string) { go_to(index); }

    void go_to(unsigned index);
    void next();

    AString string_;
    AChar current_{0};
    bool valid_ = false;
    AStringSegmentPosition position_;
};

inline AString::iterator AString::begin() const
{
    return iterator(*this, 0);
}

inline AString::iterator AString::end() const
{
    return iterator(*this, len_);
}
