// The node name that the kernel was given.
#include <skuan/platform/host_name.h>

#include <sys/utsname.h>

namespace skuan::platform {

std::string host_name()
{
    utsname names{};
    return uname(&names) == 0 ? std::string(names.nodename) : std::string();
}

} // namespace skuan::platform
