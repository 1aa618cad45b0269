// The bridge to Qt's text, both ways through UTF-16. The only file of the strings that knows Qt.
#include <skuan/foundation/astring.h>

#include <QString>

AString::AString(const QString& text) : AString(from_utf16(text.utf16(), static_cast<unsigned>(text.size())))
{
}

AString::operator QString() const
{
    unsigned units = len_;
    for_each_run([&](const AChar* run, unsigned n) {
        for (unsigned i = 0; i < n; ++i)
            units += run[i].ord() > 0xFFFF;
    });
    QString text(static_cast<int>(units), Qt::Uninitialized);
    unsigned written = 0;
    to_utf16(reinterpret_cast<unsigned short*>(text.data()), units, &written);
    text.truncate(static_cast<int>(written)); // shorter where a character has no form in UTF-16
    return text;
}
