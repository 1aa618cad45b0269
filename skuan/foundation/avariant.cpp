// What each kind of value is as a text, as a number and as a yes or no.
#include <skuan/foundation/avariant.h>

namespace {

template <typename... F>
struct ByKind : F...
{
    using F::operator()...;
};
template <typename... F>
ByKind(F...) -> ByKind<F...>;

} // namespace

AString AVariant::to_text(const AString& bad) const
{
    return std::visit(ByKind{[&](std::monostate) { return bad; },
                             [](unsigned value) { return AString::from_unsigned(value); },
                             [](std::uint64_t value) { return AString::from_uint64_t(value); },
                             [](int value) { return AString::from_int(value); },
                             [](std::int64_t value) { return AString::from_int64_t(value); },
                             [](bool value) { return AString::l1(value ? "true" : "false"); },
                             [](AChar value) { return AString(value); },
                             [](const AString& value) { return value; }},
                      value_);
}

template <typename T>
bool AVariant::read(T* out, bool (AString::*parse)(T*) const) const
{
    const auto set = [out](T value) {
        if (out)
            *out = value;
        return true;
    };
    return std::visit(ByKind{[](std::monostate) { return false; },
                             [&](AChar value) { return set(static_cast<T>(value.ord())); },
                             [&](const AString& value) { return (value.*parse)(out); },
                             [&](auto value) { return set(static_cast<T>(value)); }},
                      value_);
}

bool AVariant::valid_int(int* out) const
{
    return read(out, &AString::to_int);
}

int AVariant::to_int(int bad) const
{
    read(&bad, &AString::to_int);
    return bad;
}

unsigned AVariant::to_unsigned(unsigned bad) const
{
    read(&bad, &AString::to_unsigned);
    return bad;
}

std::int64_t AVariant::to_int64_t(std::int64_t bad) const
{
    read(&bad, &AString::to_int64_t);
    return bad;
}

std::uint64_t AVariant::to_uint64_t(std::uint64_t bad) const
{
    read(&bad, &AString::to_uint64_t);
    return bad;
}

bool AVariant::to_bool(bool bad) const
{
    return std::visit(ByKind{[bad](std::monostate) { return bad; },
                             [](AChar value) { return value.ord() != 0; },
                             [](const AString& value) {
                                 return !value.empty() && !value.equal_z("0") && !value.equal_z("false");
                             },
                             [](auto value) { return value != 0; }},
                      value_);
}
