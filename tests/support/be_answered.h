// Being sure of what a server has done.
#pragma once

#include <skuan/protocol/kvrp3_api_qt.h>

#include <QEventLoop>

namespace support {

/// Returns when the server has answered all that the connection has asked so far, and what it said before has
/// been taken.
inline void be_answered(KVRP3::APIQt& connection)
{
    QEventLoop loop;
    connection.cmd_sync(AFunction([](void* waits) { static_cast<QEventLoop*>(waits)->quit(); }, &loop), {});
    loop.exec();
}

} // namespace support
