// From bytes to characters, and from these to a message. The characters must be those that come one by one.
// Whatever is accepted as a message must mean the same when it is written and read again, and the same as to
// a full XML reader; whatever that reader finds within the grammar must be accepted.
#include <require.h>

#include <skuan/foundation/astring_builder.h>
#include <skuan/markup/xml_parse.h>

#include <QByteArray>
#include <QRegularExpression>
#include <QXmlStreamReader>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>

namespace {

/// `text` ends at the first byte that is refused; the strict reading refuses all then.
void check_characters(const AString& text, const char* bytes, unsigned n)
{
    AChar c;
    unsigned used = 0;
    unsigned at = 0;
    text.for_each_run([&](const AChar* run, unsigned length) {
        for (unsigned i = 0; i < length; ++i, at += used)
            fuzz::require(AChar::consume_utf8(bytes + at, n - at, &c, &used) && c == run[i]);
    });
    fuzz::require(!AChar::consume_utf8(bytes + at, n - at, &c, &used));
    AString strict;
    fuzz::require(skuan::string_from_utf8(bytes, n, &strict) == (at == n) && (at < n || strict == text));
}

std::string written(const XMLTree& tree)
{
    return tree.flatten(XMLTree::flatten_compact, false).to_string();
}

/// The text as a full reader understands it; nothing if it finds a fault or what the grammar does not have.
std::optional<std::string> read_elsewhere(const QByteArray& bytes)
{
    static const QRegularExpression name(QStringLiteral("^[A-Za-z][A-Za-z0-9_]*$"));
    static const QRegularExpression blank(QStringLiteral("^[ \t\r\n]*$"));
    QString out, text; // text: since the last tag
    bool is_leaf = false;
    for (QXmlStreamReader reader(bytes); !reader.atEnd();) {
        switch (reader.readNext()) {
        case QXmlStreamReader::StartElement:
            if (!reader.attributes().isEmpty() || !name.match(reader.name()).hasMatch() ||
                !blank.match(text).hasMatch())
                return {};
            out += '<' + reader.name() + '>';
            text.clear();
            is_leaf = true;
            break;
        case QXmlStreamReader::EndElement:
            if (is_leaf)
                out += text.toHtmlEscaped().replace('\'', QLatin1String("&apos;"));
            else if (!blank.match(text).hasMatch())
                return {};
            out += "</" + reader.name() + '>';
            text.clear();
            is_leaf = false;
            break;
        case QXmlStreamReader::Characters:
            text += reader.text();
            break;
        case QXmlStreamReader::Invalid:
            return {};
        default: // the document's ends
            break;
        }
    }
    return out.toStdString();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const char* bytes = reinterpret_cast<const char*>(data);
    const AString text = AString::from_utf8(bytes, static_cast<unsigned>(size));
    check_characters(text, bytes, static_cast<unsigned>(size));
    bool error = false;
    const XMLTree tree = XMLParse(text, &error);
    fuzz::require(error == tree.is_null());
    const std::string whole = text.to_string();
    if (AString::from_string(whole) != text)
        return 0; // characters that UTF-8 cannot hold, decoded as they stood

    if (!error) {
        bool again = true;
        const XMLTree copy = XMLParse(AString::from_string(written(tree)), &again);
        fuzz::require(!again && written(copy) == written(tree));
    }

    // Where both have an opinion. A full reader turns CR LF into LF, resolves "&#65;", takes a bare '>'
    // in text, and knows a few names and characters that the grammar does not.
    for (const char* only_there : {"\r", "&#", "<?", "<!", ":", "-", ".", ">>", "\xEF\xBF", "\x7F"})
        if (whole.find(only_there) != std::string::npos)
            return 0;
    for (const char c : whole)
        if (static_cast<unsigned char>(c) < 32 && c != '\n' && c != '\t')
            return 0;
    const auto foreign = read_elsewhere(QByteArray::fromStdString(whole));
    if (!foreign)
        return 0;
    const bool bare =
        std::count(whole.begin(), whole.end(), '<') != std::count(whole.begin(), whole.end(), '>');
    fuzz::require(error ? bare : *foreign == written(tree));
    return 0;
}
