// Qt switches a socket's window messages off while it handles one. Of a reset in just that moment Windows
// tells when they are on again, and wine never: not even a write that Qt has put off comes to the socket
// then.
#include <support/touch_sockets.h>

#include <QTcpSocket>
#include <QTimer>

namespace support {

void keep_touching_sockets(QObject& connection)
{
    auto* const timer = new QTimer(&connection);
    QObject::connect(timer, &QTimer::timeout, &connection, [&connection] {
        for (QTcpSocket* socket : connection.findChildren<QTcpSocket*>())
            if (socket->state() == QAbstractSocket::ConnectedState) {
                socket->write("\n");
                socket->flush();
            }
    });
    timer->start(200);
}

} // namespace support
