// Asks the C library about the stream's descriptor.
#include <skuanctl/platform_terminal.h>

#include <io.h>

bool is_terminal(std::FILE* stream)
{
    return ::_isatty(::_fileno(stream)) != 0;
}
