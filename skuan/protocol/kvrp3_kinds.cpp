// The boolean, which has several forms.
#include <skuan/protocol/kvrp3_kinds_p.h>

namespace KVRP3 {

bool kind::Bool::read(const XMLTree& element, Value* value, AString* error)
{
    const AString text = element.get_content().despace();
    std::int64_t number;
    std::uint64_t large; // beyond the other's range, and not 0
    if (text == name<"true">())
        *value = true;
    else if (text == name<"false">())
        *value = false;
    else if (text.to_int64_t(&number))
        *value = number != 0;
    else if (text.to_uint64_t(&large))
        *value = true;
    else
        return invalid_boolean(element, error);
    return true;
}

} // namespace KVRP3
