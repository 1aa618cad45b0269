// What a go-between needs of a socket and Qt does not give: its two directions end separately.
#pragma once

#include <qglobal.h>

/// The socket again, to be closed by itself; -1 if the system has no more.
qintptr duplicate_socket(qintptr socket);

/// From now on no call waits, and each write leaves at once in segments of its own.
void prepare_socket(qintptr socket);

enum : qint64 { socket_would_wait = -1, socket_lost = -2 };

/// The bytes read, one at least; 0 once the other side has ended its sending; or one of the above.
qint64 read_socket(qintptr socket, char* data, qint64 size);

/// The bytes written, or one of the above.
qint64 write_socket(qintptr socket, const char* data, qint64 size);

/// Ends this side's sending; the other side's goes on.
void end_writing(qintptr socket);

void close_socket(qintptr socket);
