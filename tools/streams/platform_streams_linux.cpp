// Streams on Linux, where they are as they should be.
#include <streams/platform_streams.h>

#include <unistd.h>

void prepare_streams() {}

bool is_terminal(std::FILE* stream)
{
    return ::isatty(::fileno(stream)) == 1;
}

bool write_stream(std::FILE* stream, const QByteArray& utf8)
{
    const auto size = static_cast<std::size_t>(utf8.size());
    return std::fwrite(utf8.constData(), 1, size, stream) == size;
}

bool flush_stream(std::FILE* stream)
{
    return std::fflush(stream) == 0;
}

QByteArray read_standard_stream(bool* failed)
{
    char piece[65536];
    const std::size_t size = std::fread(piece, 1, sizeof piece, stdin);
    *failed = std::ferror(stdin) != 0;
    return {piece, static_cast<int>(size)};
}
