// Asks the C library about the stream's descriptor, and the console behind it.
#include <skuanctl/platform_terminal.h>

#include <io.h>
#include <windows.h>

static HANDLE console_of(std::FILE* stream)
{
    return reinterpret_cast<HANDLE>(::_get_osfhandle(::_fileno(stream)));
}

bool is_terminal(std::FILE* stream)
{
    return ::_isatty(::_fileno(stream)) != 0;
}

bool can_move_cursor(std::FILE* stream)
{
    constexpr DWORD follow_sequences = 0x0004; // ENABLE_VIRTUAL_TERMINAL_PROCESSING, which old headers lack
    DWORD mode = 0;
    return is_terminal(stream) && ::GetConsoleMode(console_of(stream), &mode) &&
           ::SetConsoleMode(console_of(stream), mode | follow_sequences);
}

TerminalSize terminal_size(std::FILE* stream)
{
    CONSOLE_SCREEN_BUFFER_INFO info{};
    if (!::GetConsoleScreenBufferInfo(console_of(stream), &info))
        return {80, 24};
    const SMALL_RECT& window = info.srWindow;
    return {window.Right - window.Left + 1, window.Bottom - window.Top + 1};
}
