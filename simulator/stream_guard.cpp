// The guard's two questions, asked of every byte.
#include <simulator/stream_guard_p.h>

namespace simulator {

int StreamGuard::good_bytes(const QByteArray& bytes)
{
    for (int i = 0; i < bytes.size(); ++i) {
        const auto byte = static_cast<unsigned char>(bytes[i]);
        if (after_bracket_ && (byte == '!' || byte == '?'))
            objection_ = QStringLiteral("markup that the protocol does not have");
        else if (!is_utf8(byte))
            objection_ = QStringLiteral("not UTF-8");
        if (!objection_.isEmpty())
            return i;
        after_bracket_ = byte == '<';
    }
    return bytes.size();
}

// Overlong forms, surrogates and what lies beyond the last plane are no UTF-8 either.
bool StreamGuard::is_utf8(unsigned char byte)
{
    if (following_ != 0) {
        const bool good = byte >= least_ && byte <= most_;
        --following_;
        least_ = 0x80;
        most_ = 0xbf;
        return good;
    }
    if (byte < 0x80)
        return true;
    if (byte < 0xc2 || byte > 0xf4)
        return false;
    following_ = byte < 0xe0 ? 1 : byte < 0xf0 ? 2 : 3;
    least_ = byte == 0xe0 ? 0xa0 : byte == 0xf0 ? 0x90 : 0x80;
    most_ = byte == 0xed ? 0x9f : byte == 0xf4 ? 0x8f : 0xbf;
    return true;
}

} // namespace simulator
