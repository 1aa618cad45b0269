// Connections that learn of their end in any case.
#pragma once

#include <QObject>

namespace support {

/// From now on writes a blank to the sockets of a connection five times a second, on its thread, where a
/// system may keep the end of a connection to itself until it is written to. Between messages a blank means
/// nothing.
void keep_touching_sockets(QObject& connection);

} // namespace support
