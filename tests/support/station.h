// A simulated server on a thread and at an address of its own.
#pragma once

#include <simulator/server_thread.h>
#include <support/loopback_address.h>

#include <QHostAddress>

#include <stdexcept>

namespace support {

class Station
{
public:
    explicit Station(simulator::Settings settings = {}) : thread_(placed(settings, address_))
    {
        if (!thread_.start())
            throw std::runtime_error(thread_.error_text().toStdString());
    }
    explicit Station(const simulator::Faults& faults) : Station(simulator::Settings{.faults = faults}) {}
    /// A server that gives itself this name.
    explicit Station(const char* name) : Station(simulator::Settings{.computer_name = name, .faults = {}}) {}

    const QHostAddress& address() const { return address_; }
    unsigned ipv4() const { return address_.toIPv4Address(); }
    simulator::Server* operator->() const { return thread_.server(); }

private:
    static simulator::Settings placed(simulator::Settings settings, const QHostAddress& address)
    {
        settings.address = address;
        return settings;
    }

    const QHostAddress address_{QString::fromStdString(own_loopback_address())};
    simulator::ServerThread thread_;
};

} // namespace support
