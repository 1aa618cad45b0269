#include <support/ask_to_end.h>

#include <stdexcept>
#include <string>

#include <windows.h>

namespace support {

static BOOL WINAPI stay(DWORD)
{
    return TRUE;
}

// All the processes at a console hear what is pressed there. A process that Qt starts for one without a
// console, as a test under CTest is, has an invisible console to itself.
void ask_to_end(const QProcess& process, Wish)
{
    if (::GetConsoleWindow())
        throw std::runtime_error("others at this console would hear it, too: run the test in CTest");
    ::FreeConsole();
    ::SetConsoleCtrlHandler(stay, TRUE);
    if (!::AttachConsole(static_cast<DWORD>(process.processId())) ||
        !::GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0))
        throw std::runtime_error("cannot reach the program's console: " + std::to_string(::GetLastError()));
    ::FreeConsole();
}

} // namespace support
