// Values by their text: the other direction of every toString.
#pragma once

#include <skuan/foundation/astring.h>
#include <skuan/time/closed_enumeration.h>

namespace Vantor {

/// The first valid value of which `text_of` gives exactly this text, or `invalid`.
template <typename E>
E value_of_text(const AString& text, const char* text_of(E), E invalid)
{
    E x{};
    for (bool more = getfirst(x); more; more = getnext(x))
        if (text.equal_z(text_of(x)))
            return x;
    return invalid;
}

} // namespace Vantor
