// What a server has done so far, for tests to look at.
#pragma once

#include <qglobal.h>

namespace simulator {

/// A snapshot. Everything counts from the server's start and over all its clients.
struct Counters
{
    quint64 accepted = 0;  ///< connections made, refused ones too
    quint64 connected = 0; ///< connections that are open now
    quint64 overrun = 0;   ///< connections dropped because their backlog passed its limit
    quint64 malformed = 0; ///< connections closed because of bytes that were no messages
    quint64 messages = 0;  ///< whole messages received
    quint64 answers = 0;   ///< answers that went on their way, cut ones too
    quint64 bytes_received = 0;
    quint64 bytes_sent = 0; ///< handed to the system
};

} // namespace simulator
