// Where the tags of a row stand among the children of an element, all found in one walk.
#pragma once

#include <skuan/protocol/kvrp3_kinds_p.h>

namespace KVRP3 {

/// What a walk has found for one tag.
struct Child
{
    const XMLTree* element = nullptr; ///< the first with the tag
    bool twice = false;

    bool is_there() const { return element != nullptr; }
};

/// Fills `found`, which has an empty place for each of the `count` tags. Children come in the order of the
/// tags as a rule, so each is looked for from where the last one was; unknown ones are passed over.
void find_children(const XMLTree& within, const AString* const* tags, unsigned count, Child* found);

/// The children of an element with the tags of a row, by their places in the row. Good while the element is.
template <typename... Tags>
class Children
{
public:
    explicit Children(const XMLTree& within) : within_(within)
    {
        static const AString* const tags[] = {&Tags::tag()..., nullptr};
        find_children(within, tags, sizeof...(Tags), found_);
    }

    bool has(unsigned place) const { return found_[place].is_there(); }

    template <typename T>
    bool read(unsigned place, typename T::Value* value, AString* error) const
    {
        const Child& child = found_[place];
        if constexpr (T::by_presence) {
            *value = child.is_there();
            return true;
        } else if (!child.is_there()) {
            return not_found(T::tag(), within_, error);
        } else if (child.twice) {
            return found_twice(T::tag(), within_, error);
        } else {
            return T::Kind::read(*child.element, value, error);
        }
    }

private:
    const XMLTree& within_;
    Child found_[sizeof...(Tags) + 1]; // of one more, as a row may be empty
};

} // namespace KVRP3
