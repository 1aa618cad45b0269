// A value that may be absent, as reports and signals carry it.
#pragma once

#include <utility>

/// A flag and a `T`. While the flag is false, no value is present and `value()` is a default `T`.
/// A plain value: any thread, copied with its `T`.
template <typename T>
class AOption
{
public:
    AOption() = default;
    AOption(T value) : present_(true), value_(std::move(value)) {}

    bool has_value() const { return present_; }
    explicit operator bool() const { return present_; }

    const T& value() const { return value_; }
    T value_or(T fallback) const { return present_ ? value_ : std::move(fallback); }

    void set(T value)
    {
        value_ = std::move(value);
        present_ = true;
    }
    void clear() { *this = AOption(); }

    /// Two absent values are equal; an absent and a present one differ.
    bool operator==(const AOption& other) const
    {
        return present_ == other.present_ && (!present_ || value_ == other.value_);
    }
    bool operator!=(const AOption& other) const { return !(*this == other); }

private:
    bool present_ = false;
    T value_{};
};
