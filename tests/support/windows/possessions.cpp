#include <support/possessions.h>

#include <algorithm>
#include <vector>
#include <windows.h>

#include <psapi.h>
#include <tlhelp32.h>
#include <winternl.h>

namespace support {
namespace {

/// By the list of all handles of the system: wine's GetProcessHandleCount says 0. Without events: mutexes,
/// Qt's and the compiler's, make themselves one when two threads first meet there, and keep it.
int own_handles()
{
    const HANDLE event = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    struct Handle
    {
        void* object;
        ULONG_PTR process;
        ULONG_PTR value;
        ULONG access;
        USHORT creator, type;
        ULONG attributes, reserved;
    };
    constexpr auto all_handles = SYSTEM_INFORMATION_CLASS(64);
    std::vector<ULONG_PTR> list(1 << 16);
    const auto bytes = [&] { return ULONG(list.size() * sizeof list[0]); };
    constexpr NTSTATUS too_short = NTSTATUS(0xc0000004);
    while (NtQuerySystemInformation(all_handles, list.data(), bytes(), nullptr) == too_short)
        list.resize(list.size() * 2);
    const auto* const first = reinterpret_cast<const Handle*>(&list[2]);
    const auto* const end = first + list[0];
    const auto ours = [](const Handle& handle) { return handle.process == GetCurrentProcessId(); };
    const auto* const known = std::find_if(first, end, [&](const Handle& handle) {
        return ours(handle) && handle.value == reinterpret_cast<ULONG_PTR>(event);
    });
    CloseHandle(event);
    return int(std::count_if(
        first, end, [&](const Handle& handle) { return ours(handle) && handle.type != known->type; }));
}

int own_threads()
{
    const HANDLE list = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    THREADENTRY32 thread{};
    thread.dwSize = sizeof thread;
    int own = 0;
    for (BOOL more = Thread32First(list, &thread); more; more = Thread32Next(list, &thread))
        own += thread.th32OwnerProcessID == GetCurrentProcessId();
    CloseHandle(list);
    return own;
}

long heap_in_use()
{
    HANDLE heaps[64];
    const DWORD count = GetProcessHeaps(64, heaps);
    long bytes = 0;
    for (DWORD i = 0; i < count && i < 64; ++i) {
        HeapLock(heaps[i]);
        PROCESS_HEAP_ENTRY entry{};
        while (HeapWalk(heaps[i], &entry))
            bytes += entry.wFlags & PROCESS_HEAP_ENTRY_BUSY ? long(entry.cbData) : 0;
        HeapUnlock(heaps[i]);
    }
    return bytes;
}

} // namespace

Possessions Possessions::now()
{
    PROCESS_MEMORY_COUNTERS memory{};
    GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof memory);
    return {heap_in_use(), long(memory.WorkingSetSize), own_handles(), own_threads()};
}

} // namespace support
