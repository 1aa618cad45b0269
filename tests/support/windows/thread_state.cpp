#include <support/thread_state.h>

#include <windows.h>

namespace support {

unsigned long this_thread()
{
    return GetCurrentThreadId();
}

bool sleeps(unsigned long)
{
    return false;
}

} // namespace support
