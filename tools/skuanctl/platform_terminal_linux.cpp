// Asks the system about the stream's descriptor.
#include <skuanctl/platform_terminal.h>
#include <streams/platform_streams.h>

#include <cstdlib>
#include <cstring>

#include <sys/ioctl.h>
#include <unistd.h>

bool can_move_cursor(std::FILE* stream)
{
    const char* const kind = std::getenv("TERM");
    return is_terminal(stream) && kind && *kind && std::strcmp(kind, "dumb") != 0;
}

TerminalSize terminal_size(std::FILE* stream)
{
    winsize size{};
    if (::ioctl(::fileno(stream), TIOCGWINSZ, &size) != 0 || size.ws_col == 0 || size.ws_row == 0)
        return {80, 24};
    return {size.ws_col, size.ws_row};
}
