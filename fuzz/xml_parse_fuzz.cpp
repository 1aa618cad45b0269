// A message's text, as bytes: whatever is accepted must mean the same when it is written and read
// again, and the same as to a full XML reader; whatever that reader finds within the grammar must be
// accepted.
#include <skuan/markup/xml_parse.h>

#include <QByteArray>
#include <QString>
#include <QXmlStreamReader>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

std::string written(const XMLTree& tree)
{
    std::string bytes;
    auto sink = [&bytes](const char* piece, unsigned n) { bytes.append(piece, n); };
    tree.send_utf8(AFunction2<const char*, unsigned>::ref(sink), XMLTree::flatten_compact, false);
    return bytes;
}

/// A tree as a full reader sees it; `known` turns false at anything that lies outside the grammar.
struct Foreign
{
    bool known = true;
    bool good = false;
    std::string text;
};

bool is_name(const QString& name)
{
    for (const QChar c : name)
        if (c.unicode() > 127)
            return false;
    return !name.isEmpty() && name[0] != '_';
}

bool is_blank(const QString& text)
{
    for (const QChar c : text)
        if (c != ' ' && c != '\t' && c != '\n' && c != '\r')
            return false;
    return true;
}

Foreign read_elsewhere(const QByteArray& bytes)
{
    struct Open
    {
        QString text;
        bool has_children = false;
    };
    Foreign result;
    QString out;
    std::vector<Open> open = {{}};
    QXmlStreamReader reader(bytes);
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::StartElement:
            result.known &= reader.attributes().isEmpty() && reader.namespaceDeclarations().isEmpty() &&
                            is_name(reader.qualifiedName().toString());
            result.known &= is_blank(open.back().text);
            open.back().has_children = true;
            open.push_back({});
            out += "<" + reader.qualifiedName() + ">";
            break;
        case QXmlStreamReader::EndElement: {
            const Open element = open.back();
            open.pop_back();
            if (element.has_children)
                result.known &= is_blank(element.text);
            else
                out += element.text.toHtmlEscaped().replace("'", "&apos;");
            out += "</" + reader.qualifiedName() + ">";
            break;
        }
        case QXmlStreamReader::Characters:
            result.known &= !reader.isCDATA();
            open.back().text += reader.text();
            break;
        case QXmlStreamReader::StartDocument:
        case QXmlStreamReader::EndDocument:
        case QXmlStreamReader::Invalid:
            break;
        default:
            result.known = false;
        }
    }
    result.good = !reader.hasError();
    result.text = out.toStdString();
    return result;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const char* bytes = reinterpret_cast<const char*>(data);
    const AString text = AString::from_utf8(bytes, static_cast<unsigned>(size));
    bool error = false;
    const XMLTree tree = XMLParse(text, &error);
    if (error != tree.is_null())
        std::abort();

    if (!error) {
        bool again = true;
        if (written(XMLParse(AString::from_string(written(tree)), &again)) != written(tree) || again)
            std::abort();
    }

    // Where both have an opinion. A full reader turns CR LF into LF, resolves "&#65;", takes a bare '>'
    // in text, and knows a few names and characters that the grammar does not.
    const std::string whole = text.to_string();
    if (AString::from_string(whole) != text)
        return 0; // characters that UTF-8 cannot hold, decoded as they stood
    for (const char* only_there : {"\r", "&#", "<?", "<!", ":", "-", ".", ">>", "\xEF\xBF", "\x7F"})
        if (whole.find(only_there) != std::string::npos)
            return 0;
    for (const char c : whole)
        if (static_cast<unsigned char>(c) < 32 && c != '\n' && c != '\t')
            return 0;
    const Foreign foreign = read_elsewhere(QByteArray::fromStdString(whole));
    if (!foreign.good || !foreign.known)
        return 0;
    const bool bare =
        std::count(whole.begin(), whole.end(), '<') != std::count(whole.begin(), whole.end(), '>');
    if (error ? !bare : foreign.text != written(tree))
        std::abort();
    return 0;
}
