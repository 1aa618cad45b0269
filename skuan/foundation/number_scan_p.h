// How numbers are read from text: a cursor over characters, for this folder's sources.
#pragma once

#include <skuan/foundation/astring.h>

#include <cstdint>
#include <vector>

namespace skuan {

inline bool has_hex_prefix(const AChar* at, const AChar* end)
{
    return end - at >= 2 && at[0] == AChar('0') && at[1] == AChar('x');
}

/// The characters of a text with no space around them, in one piece. The text must outlive it.
class NumberScan
{
public:
    explicit NumberScan(const AString& text)
    {
        at_ = text.contiguous();
        if (!at_ && !text.empty()) {
            text.for_each_run(
                [this](const AChar* run, unsigned n) { joined_.insert(joined_.end(), run, run + n); });
            at_ = joined_.data();
        }
        end_ = at_ + text.length();
        remove_space();
    }
    NumberScan(const AChar* at, const AChar* end) : at_(at), end_(end) { remove_space(); }
    NumberScan(const NumberScan&) = delete;
    NumberScan& operator=(const NumberScan&) = delete;

    const AChar* begin() const { return at_; }
    const AChar* end() const { return end_; }
    bool empty() const { return at_ == end_; }

    bool take(char c)
    {
        const bool there = !empty() && *at_ == AChar::from_latin1(c);
        at_ += there;
        return there;
    }
    bool take_last(char c)
    {
        const bool there = !empty() && end_[-1] == AChar::from_latin1(c);
        end_ -= there;
        return there;
    }
    /// One sign, if any; true for a minus.
    bool take_sign() { return take('-') || (take('+'), false); }

    /// All that is left as a number. The prefix changes what counts as a digit but not the base: 0x20 is 20.
    /// Overflow is known by the sum falling below what it was, so a number far enough beyond 64 bits may
    /// come out wrapped. Both are meant so: the other side of the wire does the same.
    bool magnitude(std::uint64_t* out) const
    {
        const bool hex = has_hex_prefix(at_, end_);
        const AChar* at = hex ? at_ + 2 : at_;
        if (at == end_)
            return false;
        constexpr unsigned none = ~0u;
        std::uint64_t sum = 0;
        for (; at != end_; ++at) {
            const unsigned digit = hex ? at->to_hexdigit(none) : at->to_digit(none);
            const std::uint64_t before = sum;
            sum = sum * 10 + digit;
            if (digit == none || sum < before)
                return false;
        }
        *out = sum;
        return true;
    }

private:
    void remove_space()
    {
        while (!empty() && at_->is_space())
            ++at_;
        while (!empty() && end_[-1].is_space())
            --end_;
    }

    const AChar* at_ = nullptr;
    const AChar* end_ = nullptr;
    std::vector<AChar> joined_; // of a text that lies in several segments
};

} // namespace skuan
