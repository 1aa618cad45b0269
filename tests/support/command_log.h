// What a server was told, connection by connection.
#pragma once

#include <simulator/server.h>

#include <QStringList>

#include <map>
#include <mutex>

namespace support {

/// To be made before the server that fills it, on its thread; asked on any.
class CommandLog
{
public:
    void listen_to(simulator::Server* server)
    {
        QObject::connect(server, &simulator::Server::command, server,
                         [this](quint64 client, const simulator::Element& message) { add(client, message); });
    }
    /// Each command that is listened to with its arguments, as in "set_configuration FanSpeed full". Commands
    /// of an unknown client: none.
    QStringList of(quint64 client) const
    {
        const std::lock_guard lock(mutex_);
        const auto at = commands_.find(client);
        return at == commands_.end() ? QStringList() : at->second;
    }
    QStringList of_the_last() const
    {
        const std::lock_guard lock(mutex_);
        return commands_.empty() ? QStringList() : commands_.rbegin()->second;
    }

private:
    void add(quint64 client, const simulator::Element& message)
    {
        QStringList words;
        for (const simulator::Element& body : message.children) {
            if (body.tag == "xid")
                continue;
            words += body.tag;
            for (const simulator::Element& argument : body.children)
                words += argument.text;
        }
        const std::lock_guard lock(mutex_);
        commands_[client] += words.join(' ');
    }

    mutable std::mutex mutex_;
    std::map<quint64, QStringList> commands_;
};

} // namespace support
