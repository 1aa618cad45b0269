// Slots of the system. The compiler keeps thread_local data on the heap, and frees it while destructors that
// use it are still to come; a slot is there as long as the thread is.
#include <skuan/platform/thread_pointer.h>

#include <atomic>
#include <windows.h>
#include <winternl.h>

namespace skuan::platform {
namespace {

/// One for each pointer. Taken before the first static object is made, and given back when the library is
/// unloaded: then its last static objects find no slot, and ask in vain.
DWORD slots[thread_pointers] = {TLS_OUT_OF_INDEXES, TLS_OUT_OF_INDEXES};
std::atomic<void (*)(void*)> ends[thread_pointers];

/// The loader calls it, holding its lock, on whatever thread comes or goes, whoever made it.
void NTAPI on_loader_event(void*, DWORD event, void* process_ends)
{
    for (unsigned i = 0; i < thread_pointers; ++i) {
        if (event == DLL_PROCESS_ATTACH)
            slots[i] = TlsAlloc();
        else if (event == DLL_THREAD_DETACH)
            if (void* const value = TlsGetValue(slots[i]))
                ends[i].load()(value);
        if (event == DLL_PROCESS_DETACH && !process_ends) {
            TlsFree(slots[i]);
            slots[i] = TLS_OUT_OF_INDEXES;
        }
    }
}

} // namespace

// The compiler takes the start of the thread's segment, where its block lies, for a null pointer.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Warray-bounds"
void* thread_pointer(ThreadPointer which) noexcept
{
    const DWORD slot = slots[unsigned(which)];
    // The first slots lie in a published block of the thread: a load or two, against a call for every block
    // that a string takes.
    const TEB& block = *NtCurrentTeb();
    if (slot < sizeof block.TlsSlots / sizeof *block.TlsSlots)
        return block.TlsSlots[slot];
    // The system's function clears the last error, of which the caller may be about to ask.
    const DWORD error = GetLastError();
    void* const value = TlsGetValue(slot);
    SetLastError(error);
    return value;
}
#pragma GCC diagnostic pop

bool set_thread_pointer(ThreadPointer which, void* value, void (*at_end)(void*)) noexcept
{
    ends[unsigned(which)] = at_end;
    return TlsSetValue(slots[unsigned(which)], value);
}

} // namespace skuan::platform

// The linker gathers what lies in sections of such names into the table of functions that the loader calls.
extern "C" const PIMAGE_TLS_CALLBACK skuan_thread_pointer_callback [[gnu::section(".CRT$XLE"), gnu::used]] =
    skuan::platform::on_loader_event;
