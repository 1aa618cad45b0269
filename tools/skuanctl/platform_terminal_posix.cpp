// Asks the system about the stream's descriptor.
#include <skuanctl/platform_terminal.h>

#include <unistd.h>

bool is_terminal(std::FILE* stream)
{
    return ::isatty(::fileno(stream)) == 1;
}
