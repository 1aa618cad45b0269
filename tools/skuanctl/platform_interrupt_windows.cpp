// The console calls a handler on a thread of its own.
#include <skuanctl/platform_interrupt.h>

#include <atomic>

#include <windows.h>

namespace {

std::atomic<bool> is_pressed = false;

BOOL WINAPI on_interrupt(DWORD event)
{
    const bool is_first = !is_pressed.exchange(true);
    if (event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT)
        return is_first;
    // The console goes, and with it the process as soon as this returns; some seconds later in any case.
    ::Sleep(INFINITE); // until the main thread has ended the process
    return TRUE;
}

} // namespace

void catch_interrupt()
{
    ::SetConsoleCtrlHandler(on_interrupt, TRUE);
}

bool is_interrupted()
{
    return is_pressed;
}

void release_interrupt()
{
    ::SetConsoleCtrlHandler(on_interrupt, FALSE);
}
