"""Tags, enumerations, records and containers as C++."""

from layout import doc, filled_lines, fills, function, wrapped
from tables import SCALARS


def type_of(tag, catalogue):
    """The C++ type of a tag's value."""
    if tag.kind in SCALARS:
        return SCALARS[tag.kind]
    if tag.kind == "list":
        return f"std::list<{type_of(catalogue.containers[tag.of].member, catalogue)}>"
    return tag.of


def kind_of(tag, catalogue):
    """What reads and writes it, from kvrp3_kinds_p.h."""
    if tag.kind == "enum":
        return f"kind::Enum<{tag.of}_to_string, string_to_{tag.of}>"
    if tag.kind == "record":
        return f"kind::Record<KVRP3::{tag.of}>"
    if tag.kind in ("set", "vector"):
        return f"kind::Row<KVRP3::{tag.of}, {catalogue.containers[tag.of].member.name}>"
    if tag.kind == "list":
        return f"kind::List<{catalogue.containers[tag.of].member.name}>"
    names = {"string": "String", "bool": "Bool", "flag": "Flag", "speed": "Speed"}
    return f"kind::{names[tag.kind]}" if tag.kind in names else f"kind::Number<{SCALARS[tag.kind]}>"


def cpp_meaning(item_or_tag, tag):
    """The meaning with the unit that the C++ value has and the text on the wire has not."""
    unit = " In 1/65536 of normal speed." if tag.kind == "speed" else ""
    return item_or_tag.meaning + unit


def by_dependency(catalogue):
    """Records and containers, each behind those that it holds."""
    done = {}

    def visit(name):
        record, container = catalogue.records.get(name), catalogue.containers.get(name)
        if name in done or not (record or container):
            return
        for part in [field.tag for field in record.fields] if record else [container.member]:
            visit(part.of)
        done[name] = record or container

    for name in [*catalogue.containers, *catalogue.records]:
        visit(name)
    return done.values()


@fills
def enumerations(catalogue):
    for enumeration in catalogue.enumerations.values():
        name = enumeration.name
        yield doc(enumeration.meaning)
        yield f"enum {name} : int {{"
        for value, text in enumerate(enumeration.names):
            yield f"    {name}_{text} = {value},"
        yield "};"
        yield f"SKUAN_EXPORT AString {name}_to_string({name} value);"
        yield f"SKUAN_EXPORT bool string_to_{name}(const AString& name, {name}* out);"
        yield f"SKUAN_EXPORT bool valid_{name}(int value);"
        yield ""


@fills
def enumeration_definitions(catalogue):
    for enumeration in catalogue.enumerations.values():
        name = enumeration.name
        table = f"names_of_{name}"
        rows = [f'{{{name}_{text}, "{text}"}},' for text in enumeration.names]
        yield f"static const EnumString& {table}()"
        yield "{"
        yield "    static constexpr EnumString::ByLatin1 rows[] = {"
        yield from ("        " + line for line in filled_lines(rows))
        yield "    };"
        yield "    static const EnumString table(rows, std::size(rows), -1, AString());"
        yield "    return table;"
        yield "}"
        yield ""
        yield from function(f"AString {name}_to_string", [f"{name} value"], [f"return {table}().to_name(value);"])
        yield from function(
            f"bool string_to_{name}",
            ["const AString& name", f"{name}* out"],
            [f"return value_of_name({table}(), name, out);"],
        )
        yield from function(f"bool valid_{name}", ["int value"], [f"return {table}().valid_value(value, nullptr);"])


@fills
def scalar_types(catalogue):
    for tag in catalogue.tags.values():
        if tag.kind in SCALARS or tag.kind == "enum" and tag.of != tag.name:
            yield doc(cpp_meaning(tag, tag))
            yield f"typedef {type_of(tag, catalogue)} {tag.name};"


def container_type(container, catalogue):
    member = type_of(container.member, catalogue)
    shapes = {"set": "Set<{}, {}>", "vector": "Vector<{}, {}>", "list": "std::list<{}>"}
    yield doc(container.meaning)
    yield f"typedef {shapes[container.shape].format(member, container.capacity)} {container.name};"
    yield ""


def record_type(record, catalogue):
    yield doc(record.meaning)
    yield f"struct {record.name}"
    yield "{"
    setters = []
    for field in record.fields:
        value_type = type_of(field.tag, catalogue)
        if field.optional:
            yield f"    bool has_{field.name} = false;"
            parameter = f"{value_type} value" if field.tag.is_plain else f"const {value_type}& value"
            setters.append(f"void set_{field.name}({parameter}) {{ has_{field.name} = true; {field.name} = value; }}")
        default = "{}" if field.tag.is_plain else ""
        yield f"    {value_type} {field.name}{default}; ///< {cpp_meaning(field, field.tag)}"
    if setters:
        yield ""
        yield from ("    " + setter for setter in setters)
    yield "};"
    yield f"SKUAN_EXPORT bool operator==(const {record.name}& a, const {record.name}& b);"
    yield f"inline bool operator!=(const {record.name}& a, const {record.name}& b) {{ return !(a == b); }}"
    yield ""


@fills
def structured_types(catalogue):
    for entry in by_dependency(catalogue):
        yield from (record_type if entry.name in catalogue.records else container_type)(entry, catalogue)


@fills
def further_record_tags(catalogue):
    for tag in catalogue.tags.values():
        if tag.kind == "record" and tag.of != tag.name:
            yield doc(tag.meaning)
            yield f"typedef {tag.of} {tag.name};"


@fills
def tag_list(catalogue):
    """Those of containers last, as they name their members."""
    for tag in sorted(catalogue.tags.values(), key=lambda tag: tag.name in catalogue.containers):
        yield from wrapped(f"using {tag.name} =", f'Tag<"{tag.name}", {kind_of(tag, catalogue)}>;')


@fills
def record_fields(catalogue):
    for record in catalogue.records.values():
        name = record.name
        yield "template <>"
        yield f"struct FieldsOf<{name}>"
        yield "    : Fields<"
        for place, field in enumerate(record.fields):
            value = f"&{name}::{field.name}"
            row = f"OptionalField<tag::{field.tag.name}, &{name}::has_{field.name}, {value}>"
            if not field.optional:
                row = f"Field<tag::{field.tag.name}, {value}>"
            yield f"          {row}{',' if place < len(record.fields) - 1 else '>'}"
        yield "{"
        yield "};"
        yield f"template XMLTree write_record(const AString&, const {name}&);"
        yield f"template bool read_record(const XMLTree&, {name}*, AString*);"
        yield from function("bool operator==", [f"const {name}& a", f"const {name}& b"],
                            [f"return FieldsOf<{name}>::equal(a, b);"])


def names_by_type(catalogue):
    """The tags that share each C++ type."""
    names = {"AString": []}
    for tag in catalogue.tags.values():
        names.setdefault(type_of(tag, catalogue), []).append(tag.name)
    return names


def optional_signal_values(catalogue):
    return dict.fromkeys(item.tag.name for report in catalogue.reports.values() for item in report.items if item.optional)


@fills
def meta_type_declarations(catalogue):
    """Each type once, under the first tag that has it; Qt knows the numbers already."""
    yield "Q_DECLARE_METATYPE(AString)"
    for cpp_type, names in names_by_type(catalogue).items():
        if cpp_type not in SCALARS.values():
            yield f"Q_DECLARE_METATYPE(KVRP3::{names[0]})"
    for name in optional_signal_values(catalogue):
        yield f"Q_DECLARE_METATYPE(AOption<KVRP3::{name}>)"


@fills
def meta_type_registrations(catalogue):
    for cpp_type, names in names_by_type(catalogue).items():
        first, *more = filled_lines(names)
        if not more:
            yield f'register_names<{cpp_type}>("{first}");'
            continue
        yield f"register_names<{cpp_type}>("
        yield from (f'    "{line} "' for line in [first, *more[:-1]])
        yield f'    "{more[-1]}");'
    for name in optional_signal_values(catalogue):
        yield f'qRegisterMetaType<AOption<{name}>>("AOption<KVRP3::{name}>");'
