// Cutting and checking.
#include <skuanctl/raw_input.h>
#include <streams/platform_streams.h>

#include <skuan/markup/xml_parse.h>

#include <cstring>

namespace {

constexpr int most_input = 16 * 1024 * 1024; // bytes; far above any set of commands

int skip_space(const QByteArray& text, int at)
{
    while (at < text.size() && std::strchr(" \t\r\n", text[at]) && text[at] != '\0')
        ++at;
    return at;
}

QString refusal(std::size_t number, const QByteArray& bytes, const char* why)
{
    constexpr int shown = 60;
    const QString beginning = QString::fromUtf8(bytes).simplified();
    return QStringLiteral("message %1 %2: %3%4")
        .arg(number)
        .arg(QLatin1String(why), beginning.left(shown), beginning.size() > shown ? "..." : "");
}

} // namespace

RawInput cut_commands(const QByteArray& text)
{
    static const QByteArray closing = QByteArrayLiteral("</cmd>");
    RawInput input;
    for (int at = skip_space(text, 0); at < text.size(); at = skip_space(text, at)) {
        const int close = text.indexOf(closing, at);
        const int end = close < 0 ? text.size() : close + closing.size();
        const QByteArray bytes = text.mid(at, end - at);
        at = end;

        bool bad = false;
        // Bytes that are no UTF-8 end the string early, and then its last tag is missing.
        const XMLTree tree =
            XMLParse(AString::from_utf8(bytes.constData(), static_cast<unsigned>(bytes.size())), &bad);
        const char* const why = bad || tree.is_null()    ? "is not well-formed"
                                : !tree.has_tag_z("cmd") ? "is no <cmd>"
                                                         : nullptr;
        if (why) {
            input.error = refusal(input.commands.size() + 1, bytes, why);
            return input;
        }
        input.commands.push_back({bytes, xid_of(tree)});
    }
    return input;
}

QByteArray read_standard_input(QString* error)
{
    QByteArray text;
    bool failed = false;
    for (QByteArray piece; !(piece = read_standard_stream(&failed)).isEmpty();) {
        text += piece;
        if (text.size() > most_input) {
            *error = QStringLiteral("more than %1 bytes on standard input").arg(most_input);
            return {};
        }
    }
    if (failed)
        *error = QStringLiteral("cannot read standard input");
    return text;
}
