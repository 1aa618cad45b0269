// Finds where a tag stands in bytes that are still arriving, and looks at each byte once, however
// they were cut on their way.
#pragma once

#include <cstddef>
#include <string>

namespace skuan {

/// Looks for `<name>` or `</name>`, with white space allowed around the name. White space is blank,
/// tab, line feed, carriage return and backspace (8); the last is accepted here, though nowhere else.
class TagSearch
{
public:
    enum Form { opening, closing };

    TagSearch(std::string name, Form form);

    /// Starts over, at offset `from`.
    void restart(std::size_t from);

    /// Says that the first `n` bytes have gone and offsets count from behind them. What is known of the
    /// others stays known.
    void drop(std::size_t n);

    /// Goes on with the bytes up to `used`, of which those seen before must be the same as then. True
    /// once the tag has been found; then it stands from start() up to end(). Bytes up to
    /// `used` + scan_slack must be readable.
    bool advance(const char* bytes, std::size_t used);

    std::size_t start() const { return start_; }
    std::size_t end() const { return cursor_; }

private:
    enum Phase { outside, before_slash, before_name, in_name, after_name, found };

    std::string name_;
    Form form_;
    Phase phase_ = outside;
    std::size_t start_ = 0;   ///< where the tag in hand began
    std::size_t cursor_ = 0;  ///< everything before it has been looked at
    std::size_t matched_ = 0; ///< how much of the name has been seen
};

} // namespace skuan
