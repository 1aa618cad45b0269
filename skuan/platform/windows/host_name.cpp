// The DNS name of the machine; the NetBIOS name would be cut to 15 characters.
#include <skuan/platform/host_name.h>

#include <windows.h>

namespace skuan::platform {

std::string host_name()
{
    wchar_t wide[256];
    DWORD length = sizeof wide / sizeof *wide;
    if (!GetComputerNameExW(ComputerNameDnsHostname, wide, &length))
        return {};
    const int bytes = WideCharToMultiByte(CP_UTF8, 0, wide, int(length), nullptr, 0, nullptr, nullptr);
    std::string name(std::size_t(bytes), '\0');
    WideCharToMultiByte(CP_UTF8, 0, wide, int(length), name.data(), bytes, nullptr, nullptr);
    return name;
}

} // namespace skuan::platform
