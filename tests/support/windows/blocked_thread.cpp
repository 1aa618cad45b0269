#include <support/blocked_thread.h>

#include <thread>
#include <windows.h>

namespace support {
namespace {

/// Where the thread stands: in its code, and in its stack.
struct Place
{
    const void* instruction = nullptr;
    const void* stack = nullptr;

    bool operator==(const Place&) const = default;
};

Place place(HANDLE thread)
{
    CONTEXT context{};
    context.ContextFlags = CONTEXT_CONTROL;
    if (SuspendThread(thread) == DWORD(-1))
        return {};
    const bool known = GetThreadContext(thread, &context);
    ResumeThread(thread);
#if defined(__x86_64__)
    return known ? Place{reinterpret_cast<void*>(context.Rip), reinterpret_cast<void*>(context.Rsp)}
                 : Place{};
#else
    return known ? Place{reinterpret_cast<void*>(context.Eip), reinterpret_cast<void*>(context.Esp)}
                 : Place{};
#endif
}

bool is_in_the_system(const void* instruction)
{
    HMODULE module = nullptr;
    return GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                                  GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                              static_cast<const wchar_t*>(instruction), &module) &&
           module == GetModuleHandleW(L"ntdll.dll");
}

} // namespace

unsigned long this_thread()
{
    return GetCurrentThreadId();
}

// Windows has a list of threads with their states, but in wine all states and times in it are 0. What both
// tell is where a thread stands: one that sleeps does not move from its call into the system.
bool sleeps(unsigned long id)
{
    const HANDLE thread = OpenThread(THREAD_SUSPEND_RESUME | THREAD_GET_CONTEXT, FALSE, id);
    if (!thread)
        return false;
    const Place before = place(thread);
    std::this_thread::yield();
    const bool still = before.instruction && is_in_the_system(before.instruction) && place(thread) == before;
    CloseHandle(thread);
    return still;
}

} // namespace support
