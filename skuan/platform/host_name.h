// The name by which this machine knows itself.
#pragma once

#include <string>

namespace skuan::platform {

/// The name of this machine in UTF-8, as configured; empty if the system does not tell. Any thread.
std::string host_name();

} // namespace skuan::platform
