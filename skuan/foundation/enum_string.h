// The names of an enumeration, in both directions: from one table of rows, with a default for each
// direction.
#pragma once

#include <skuan/export.h>
#include <skuan/foundation/astring.h>
#include <skuan/foundation/avariant.h>

#include <vector>

/// Looks up names by value and values by name. Two names may stand for one value: the first row is the
/// name that is given, and both are understood. Two values with one name: the first row is understood.
/// Names are matched exactly, and an empty name in the table is skipped.
///
/// It is not changed once it is made, so it may be read from any thread. A null table or a count of 0
/// is reported and leaves it without names.
class SKUAN_EXPORT EnumString
{
public:
    struct ByAString
    {
        int value;
        AString name;
    };
    /// A row of a constant table; `name` is NUL-terminated Latin-1 text, or null for no name.
    struct ByLatin1
    {
        int value;
        const char* name;
    };

    /// The tables are read during the call only. Without given defaults, an unknown name gives 0 and
    /// an unknown value the empty name.
    EnumString(const ByAString* table, unsigned count);
    EnumString(const ByAString* table, unsigned count, int default_value, const AString& default_name);
    EnumString(const ByLatin1* table, unsigned count);
    EnumString(const ByLatin1* table, unsigned count, int default_value, const AString& default_name);

    /// The name of `value`; for an unknown value `bad`, or the default name.
    AString to_name(int value) const { return to_name(value, default_name_); }
    AString to_name(int value, const AString& bad) const;
    AString to_name(const AVariant& value) const { return to_name(value, default_name_); }
    AString to_name(const AVariant& value, const AString& bad) const;
    /// The value of `name`; for an unknown name `bad`, or the default value.
    int to_enumval(const AString& name) const { return to_enumval(name, default_value_); }
    int to_enumval(const AString& name, int bad) const;
    int to_enumval(const AVariant& value) const { return to_enumval(value, default_value_); }
    int to_enumval(const AVariant& value, int bad) const;

    // Whether the name or value is known. `out`, which may be null, is set only if it is.
    bool valid_name(const AString& name, int* out) const;
    bool valid_value(int value, AString* out) const;
    /// What is no number is looked up by its text first, and then by the number that it may be read as.
    bool valid_enum(const AVariant& value, int* out) const;

    // A walk over the values in numeric order. False, with nothing set, at the end of the walk and
    // when `current` is no value of the table. A null `out` only asks.
    bool getfirst(int* out) const;
    bool getlast(int* out) const;
    bool getnext(int current, int* out) const;
    bool getnext(int* inout) const;
    bool getprev(int current, int* out) const;
    bool getprev(int* inout) const;

private:
    using Row = ByAString;
    using Rows = std::vector<Row>;

    void add(int value, const AString& name);
    const Row* row_of(int value) const;
    const Row* row_of(const AString& name) const;

    int default_value_ = 0;
    AString default_name_;
    Rows by_value_; ///< in numeric order
    Rows by_name_;  ///< by length, and by text where that is equal: most comparisons are of two numbers
};
