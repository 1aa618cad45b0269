// What the simulator needs of the system and Qt does not give. The one place, with platform_stop, that
// knows which system it is on.
#pragma once

#include <qglobal.h>

namespace simulator {

// Closes the sending side of a TCP connection; the receiving side stays open.
void shut_down_sending(qintptr socket);

} // namespace simulator
