// Streams on Windows: files and pipes are kept from translating line ends, and a console is written and read
// in UTF-16, so that its code page, which other programs share, need not be changed.
#include <streams/platform_streams.h>

#include <QString>

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <io.h>
#include <windows.h>

namespace {

// A console takes some 64 KB at once at most.
constexpr int most_units = 8192;

HANDLE handle_of(std::FILE* stream)
{
    return reinterpret_cast<HANDLE>(::_get_osfhandle(::_fileno(stream)));
}

bool show(HANDLE console, const QString& text)
{
    for (int at = 0; at < text.size();) {
        int size = std::min(most_units, text.size() - at);
        if (at + size < text.size() && text[at + size].isLowSurrogate())
            --size;
        DWORD written = 0;
        if (!::WriteConsoleW(console, text.utf16() + at, static_cast<DWORD>(size), &written, nullptr) ||
            written == 0) {
            errno = EIO;
            return false;
        }
        at += static_cast<int>(written);
    }
    return true;
}

/// The C library does not know all the ways in which a pipe tells that nobody reads it any more.
bool checked(bool written)
{
    const DWORD error = ::GetLastError();
    if (!written &&
        (error == ERROR_NO_DATA || error == ERROR_BROKEN_PIPE || error == ERROR_PIPE_NOT_CONNECTED))
        errno = EPIPE;
    return written;
}

} // namespace

void prepare_streams()
{
    for (std::FILE* const stream : {stdin, stdout, stderr})
        ::_setmode(::_fileno(stream), _O_BINARY);
    // Wine's C library keeps what goes to a file or pipe, and was seen to lose it at a program's end.
    std::setvbuf(stderr, nullptr, _IONBF, 0);
}

// The C library's own answer is true for the null device, too.
bool is_terminal(std::FILE* stream)
{
    DWORD mode = 0;
    return ::GetConsoleMode(handle_of(stream), &mode) != 0;
}

bool write_stream(std::FILE* stream, const QByteArray& utf8)
{
    if (is_terminal(stream))
        return show(handle_of(stream), QString::fromUtf8(utf8));
    const auto size = static_cast<std::size_t>(utf8.size());
    return checked(std::fwrite(utf8.constData(), 1, size, stream) == size);
}

bool flush_stream(std::FILE* stream)
{
    return checked(std::fflush(stream) == 0);
}

QByteArray read_standard_stream(bool* failed)
{
    if (!is_terminal(stdin)) {
        char piece[65536];
        const std::size_t size = std::fread(piece, 1, sizeof piece, stdin);
        *failed = std::ferror(stdin) != 0;
        return {piece, static_cast<int>(size)};
    }
    wchar_t piece[most_units + 1]; // of a line
    DWORD size = 0, rest = 0;
    do { // Ctrl-C is not for this call, but ends it
        ::SetLastError(ERROR_SUCCESS);
        *failed = !::ReadConsoleW(handle_of(stdin), piece, most_units, &size, nullptr);
    } while (size == 0 && ::GetLastError() == ERROR_OPERATION_ABORTED);
    if (size > 0 && IS_HIGH_SURROGATE(piece[size - 1]) &&
        ::ReadConsoleW(handle_of(stdin), piece + size, 1, &rest, nullptr))
        size += rest;
    if (size == 0 || piece[0] == L'\x1a') // Ctrl-Z
        return {};
    return QString::fromWCharArray(piece, static_cast<int>(size)).remove('\r').toUtf8();
}
