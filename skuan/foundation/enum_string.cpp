// Two sorted rows of pairs: tables are small and looked up for every message, so a search over
// neighbours in memory beats a tree of nodes.
#include <skuan/foundation/enum_string.h>

#include <skuan/foundation/assertfail.h>

#include <algorithm>

namespace {

bool value_before(const EnumString::ByAString& row, int value)
{
    return row.value < value;
}

bool name_before(const EnumString::ByAString& row, const AString& name)
{
    return row.name.length() != name.length() ? row.name.length() < name.length() : row.name < name;
}

} // namespace

EnumString::EnumString(const ByAString* table, unsigned count) : EnumString(table, count, 0, AString()) {}

EnumString::EnumString(const ByAString* table, unsigned count, int default_value, const AString& default_name)
    : default_value_(default_value), default_name_(default_name)
{
    if (!SKUAN_CHECK(table != nullptr && count != 0))
        return;
    for (const ByAString* row = table; row != table + count; ++row)
        add(row->value, row->name);
}

EnumString::EnumString(const ByLatin1* table, unsigned count) : EnumString(table, count, 0, AString()) {}

EnumString::EnumString(const ByLatin1* table, unsigned count, int default_value, const AString& default_name)
    : default_value_(default_value), default_name_(default_name)
{
    if (!SKUAN_CHECK(table != nullptr && count != 0))
        return;
    for (const ByLatin1* row = table; row != table + count; ++row)
        add(row->value, row->name ? AString::from_latin1(row->name) : AString());
}

void EnumString::add(int value, const AString& name)
{
    if (name.empty())
        return;
    const auto by_value = std::lower_bound(by_value_.begin(), by_value_.end(), value, value_before);
    if (by_value == by_value_.end() || by_value->value != value)
        by_value_.insert(by_value, Row{value, name});

    const auto by_name = std::lower_bound(by_name_.begin(), by_name_.end(), name, name_before);
    if (by_name == by_name_.end() || by_name->name != name)
        by_name_.insert(by_name, Row{value, name});
}

const EnumString::Row* EnumString::row_of(int value) const
{
    const auto row = std::lower_bound(by_value_.begin(), by_value_.end(), value, value_before);
    return row != by_value_.end() && row->value == value ? &*row : nullptr;
}

const EnumString::Row* EnumString::row_of(const AString& name) const
{
    const auto row = std::lower_bound(by_name_.begin(), by_name_.end(), name, name_before);
    return row != by_name_.end() && row->name == name ? &*row : nullptr;
}

AString EnumString::to_name(int value, const AString& bad) const
{
    const Row* row = row_of(value);
    return row ? row->name : bad;
}

int EnumString::to_enumval(const AString& name, int bad) const
{
    const Row* row = row_of(name);
    return row ? row->value : bad;
}

AString EnumString::to_name(const AVariant& value, const AString& bad) const
{
    int known;
    return valid_enum(value, &known) ? to_name(known, bad) : bad;
}

int EnumString::to_enumval(const AVariant& value, int bad) const
{
    valid_enum(value, &bad);
    return bad;
}

bool EnumString::valid_name(const AString& name, int* out) const
{
    const Row* row = row_of(name);
    if (row && out)
        *out = row->value;
    return row != nullptr;
}

bool EnumString::valid_value(int value, AString* out) const
{
    const Row* row = row_of(value);
    if (row && out)
        *out = row->name;
    return row != nullptr;
}

bool EnumString::valid_enum(const AVariant& value, int* out) const
{
    if (!value.is_number() && valid_name(value.to_text(), out))
        return true;
    int number;
    if (!value.valid_int(&number) || !valid_value(number, nullptr))
        return false;
    if (out)
        *out = number;
    return true;
}

bool EnumString::getfirst(int* out) const
{
    if (by_value_.empty())
        return false;
    if (out)
        *out = by_value_.front().value;
    return true;
}

bool EnumString::getlast(int* out) const
{
    if (by_value_.empty())
        return false;
    if (out)
        *out = by_value_.back().value;
    return true;
}

bool EnumString::getnext(int current, int* out) const
{
    const Row* row = row_of(current);
    if (!row || row == &by_value_.back())
        return false;
    if (out)
        *out = row[1].value;
    return true;
}

bool EnumString::getnext(int* inout) const
{
    return SKUAN_CHECK(inout != nullptr) && getnext(*inout, inout);
}

bool EnumString::getprev(int current, int* out) const
{
    const Row* row = row_of(current);
    if (!row || row == &by_value_.front())
        return false;
    if (out)
        *out = row[-1].value;
    return true;
}

bool EnumString::getprev(int* inout) const
{
    return SKUAN_CHECK(inout != nullptr) && getprev(*inout, inout);
}
