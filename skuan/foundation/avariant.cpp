// What each kind of value is as a text, as a number and as a yes or no.
#include <skuan/foundation/avariant.h>

AVariant::AVariant(const AString& value) : kind_(Text)
{
    const AString* const own = new AString(value);
    std::memcpy(payload_, &own, sizeof own);
}

AVariant::AVariant(const AVariant& other) : AVariant(other.kind_, other.payload())
{
    if (kind_ == Text) {
        kind_ = Nothing; // nothing to drop, should there be no memory
        *this = AVariant(other.text());
    }
}

const AString& AVariant::text() const
{
    const AString* own;
    std::memcpy(&own, payload_, sizeof own);
    return *own;
}

void AVariant::drop_text()
{
    delete &text();
}

AString AVariant::to_text(const AString& bad) const
{
    switch (kind_) {
    case Nothing:
        break;
    case Unsigned:
    case Unsigned64:
        return AString::from_uint64_t(payload());
    case Int:
    case Int64:
        return AString::from_int64_t(static_cast<std::int64_t>(payload()));
    case Boolean:
        return AString::l1(payload() ? "true" : "false");
    case Character:
        return AString(AChar(static_cast<unsigned>(payload())));
    case Text:
        return text();
    }
    return bad;
}

template <typename T>
bool AVariant::read(T* out, bool (AString::*parse)(T*) const) const
{
    if (kind_ == Nothing)
        return false;
    if (kind_ == Text)
        return (text().*parse)(out);
    if (out)
        *out = static_cast<T>(payload());
    return true;
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
    switch (kind_) {
    case Nothing:
        return bad;
    case Text:
        return !text().empty() && !text().equal_z("0") && !text().equal_z("false");
    default:
        return payload() != 0;
    }
}
