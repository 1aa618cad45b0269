#include <support/thread_end.h>

#include <windows.h>

namespace support {
namespace {

DWORD slot = TLS_OUT_OF_INDEXES;

/// The loader tells the program itself of a thread's end after all libraries.
void NTAPI on_loader_event(void*, DWORD event, void*)
{
    if (event == DLL_PROCESS_ATTACH)
        slot = TlsAlloc();
    if (event != DLL_THREAD_DETACH)
        return;
    if (auto* const last = static_cast<std::function<void()>*>(TlsGetValue(slot))) {
        (*last)();
        delete last;
    }
}

} // namespace

void at_thread_end(std::function<void()> last)
{
    delete static_cast<std::function<void()>*>(TlsGetValue(slot));
    TlsSetValue(slot, new std::function<void()>(std::move(last)));
}

} // namespace support

extern "C" const PIMAGE_TLS_CALLBACK support_thread_end_callback [[gnu::section(".CRT$XLE"), gnu::used]] =
    reinterpret_cast<PIMAGE_TLS_CALLBACK>(support::on_loader_event);
