#include <skuan/markup/tag_search.h>

#include <skuan/markup/byte_scan.h>

#include <utility>

namespace skuan {
namespace {

bool is_blank(char c)
{
    return c == ' ' || c == '\r' || c == '\n' || c == '\t' || c == '\b';
}

} // namespace

TagSearch::TagSearch(std::string name, Form form) : name_(std::move(name)), form_(form) {}

void TagSearch::restart(std::size_t from)
{
    phase_ = outside;
    cursor_ = from;
}

void TagSearch::drop(std::size_t n)
{
    if (cursor_ < n || (phase_ != outside && start_ < n))
        return restart(0);
    start_ -= n;
    cursor_ -= n;
}

bool TagSearch::advance(const char* bytes, std::size_t used)
{
    if (phase_ == found)
        return true;
    while (cursor_ < used) {
        const char c = bytes[cursor_];
        switch (phase_) {
        case outside: {
            const char* const from = bytes + cursor_;
            const char* const lt = form_ == closing ? find_end_tag(from, bytes + used, name_[0])
                                                    : find_tag_start(from, bytes + used);
            start_ = static_cast<std::size_t>(lt - bytes);
            cursor_ = start_;
            if (start_ == used)
                return false;
            ++cursor_;
            phase_ = form_ == closing ? before_slash : before_name;
            continue;
        }
        case before_slash:
            if (c == '/')
                phase_ = before_name;
            else if (!is_blank(c))
                phase_ = outside;
            break;
        case before_name:
            if (is_blank(c))
                break;
            phase_ = in_name;
            matched_ = 0;
            continue; // the name starts with this very byte
        case in_name:
            if (c != name_[matched_])
                phase_ = outside;
            else if (++matched_ == name_.size())
                phase_ = after_name;
            break;
        case after_name:
            if (c == '>') {
                ++cursor_;
                phase_ = found;
                return true;
            }
            if (!is_blank(c))
                phase_ = outside;
            break;
        case found:
            return true;
        }
        // A byte that breaks the match off may begin the next one.
        if (phase_ != outside)
            ++cursor_;
    }
    return false;
}

} // namespace skuan
