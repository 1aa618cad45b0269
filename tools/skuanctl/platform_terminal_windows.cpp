// Asks the console behind the stream, which other programs share.
#include <skuanctl/platform_terminal.h>

#include <io.h>
#include <windows.h>

namespace {

HANDLE console_of(std::FILE* stream)
{
    return reinterpret_cast<HANDLE>(::_get_osfhandle(::_fileno(stream)));
}

/// The console's mode as it was, put back when the program ends in order.
class FollowsSequences
{
public:
    explicit FollowsSequences(HANDLE console) : console_(console)
    {
        constexpr DWORD follow = 0x0004; // ENABLE_VIRTUAL_TERMINAL_PROCESSING, from Windows 10 on
        follows_ = ::GetConsoleMode(console_, &before_) && ::SetConsoleMode(console_, before_ | follow);
    }
    ~FollowsSequences()
    {
        if (follows_)
            ::SetConsoleMode(console_, before_);
    }
    bool follows() const { return follows_; }

private:
    const HANDLE console_;
    DWORD before_ = 0;
    bool follows_ = false;
};

} // namespace

bool can_move_cursor(std::FILE* stream)
{
    static const FollowsSequences out(console_of(stdout)), err(console_of(stderr));
    return (stream == stdout ? out : err).follows();
}

TerminalSize terminal_size(std::FILE* stream)
{
    CONSOLE_SCREEN_BUFFER_INFO info{};
    if (!::GetConsoleScreenBufferInfo(console_of(stream), &info))
        return {80, 24};
    const SMALL_RECT& window = info.srWindow;
    return {window.Right - window.Left + 1, window.Bottom - window.Top + 1};
}
