// How much memory clients may make the server fill, so that none can fill all there is.
#pragma once

#include <simulator/element.h>

#include <map>
#include <set>
#include <utility>

namespace simulator {

// Roughly what a value takes, in bytes.
inline qint64 weight(const QString& text)
{
    return 32 + 2 * static_cast<qint64>(text.size());
}
template <class Item>
qint64 weight(const std::vector<Item>& items)
{
    qint64 sum = 0;
    for (const Item& item : items)
        sum += weight(item);
    return sum;
}
inline qint64 weight(const Element& element)
{
    return 64 + weight(element.text) + weight(element.children);
}
inline qint64 weight(const std::set<QString>& names)
{
    qint64 sum = 0;
    for (const QString& name : names)
        sum += 64 + weight(name);
    return sum;
}

// The value of a name that stands for itself.
struct Nothing
{
};
inline qint64 weight(Nothing)
{
    return 0;
}

// What is left of the server's memory for one purpose. One thread.
class Budget
{
public:
    explicit Budget(qint64 bytes) : left_(bytes) {}
    Budget(const Budget&) = delete;
    Budget& operator=(const Budget&) = delete;

    // False if there is not so much left: then nothing is taken. Less than nothing can be taken, too.
    bool take(qint64 bytes)
    {
        if (bytes > 0 && bytes > left_)
            return false;
        left_ -= bytes;
        return true;
    }
    void give(qint64 bytes) { left_ += bytes; }

private:
    qint64 left_;
};

// A share of a budget, given back when it goes. The budget outlives it.
class Share
{
public:
    explicit Share(Budget& budget) : budget_(&budget) {}
    ~Share() { release(); }
    Share(Share&& other) noexcept : budget_(other.budget_), bytes_(std::exchange(other.bytes_, 0)) {}
    Share& operator=(Share&& other) noexcept
    {
        std::swap(budget_, other.budget_);
        std::swap(bytes_, other.bytes_);
        return *this;
    }

    // Makes the share larger, or smaller; false if the budget has no more.
    bool grow(qint64 bytes)
    {
        const bool taken = budget_->take(bytes);
        bytes_ += taken ? bytes : 0;
        return taken;
    }
    bool resize(qint64 bytes) { return grow(bytes - bytes_); }
    void release() { budget_->give(std::exchange(bytes_, 0)); }

private:
    Budget* budget_;
    qint64 bytes_ = 0;
};

// Values by name, in text order, within a budget.
template <class Value>
class Shelf
{
public:
    explicit Shelf(Budget& budget) : share_(budget) {}

    const Value* find(const QString& name) const
    {
        const auto at = values_.find(name);
        return at == values_.end() ? nullptr : &at->second;
    }

    // Replaces what stood under the name. False if there is no room: then nothing has changed.
    bool put(const QString& name, Value value)
    {
        const auto at = values_.find(name);
        const qint64 before = at == values_.end() ? -entry_weight(name) : weight(at->second);
        if (!share_.grow(weight(value) - before))
            return false;
        if (at == values_.end())
            values_.emplace(name, std::move(value));
        else
            at->second = std::move(value);
        return true;
    }

    bool erase(const QString& name)
    {
        const auto at = values_.find(name);
        if (at == values_.end())
            return false;
        share_.grow(-entry_weight(name) - weight(at->second));
        values_.erase(at);
        return true;
    }

    // Empties the shelf, and gives back what it took.
    std::map<QString, Value> take_all()
    {
        share_.release();
        return std::exchange(values_, {});
    }

    bool is_empty() const { return values_.empty(); }
    auto begin() const { return values_.begin(); }
    auto end() const { return values_.end(); }
    auto from(const QString& name) const { return values_.lower_bound(name); }

private:
    static qint64 entry_weight(const QString& name) { return 64 + weight(name); }

    std::map<QString, Value> values_;
    Share share_;
};

} // namespace simulator
