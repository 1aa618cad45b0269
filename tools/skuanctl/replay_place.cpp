// Counts messages by the depth of their elements alone, so that bytes which are none do no harm.
#include <skuanctl/replay_place.h>

#include <cstring>

namespace {
constexpr int most_shown = 100;
}

void ReplayPlace::pass(const QByteArray& bytes)
{
    for (const char character : bytes)
        pass(character);
    byte_ += bytes.size();
}

QByteArray ReplayPlace::begun() const
{
    return begun_.size() <= most_shown ? begun_ : "..." + begun_.right(most_shown);
}

void ReplayPlace::pass(char character)
{
    if (begun_.size() >= 4 * most_shown)
        begun_.remove(0, 2 * most_shown);
    const bool is_between = depth_ == 0 && state_ == in_text;
    if (!is_between || !std::strchr("\r\n", character))
        begun_ += character;

    if (state_ == in_text && character == '<') {
        state_ = in_tag;
    } else if (state_ == in_tag && character == '/' && last_ == '<') {
        state_ = in_end_tag;
    } else if (state_ != in_text && character == '>') {
        if (state_ == in_end_tag)
            --depth_;
        else if (last_ != '/')
            ++depth_;
        state_ = in_text;
        if (depth_ <= 0) {
            depth_ = 0;
            ++message_;
            begun_.clear();
        }
    }
    last_ = character;
}
