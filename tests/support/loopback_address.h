// An address for one test's server, so that tests running side by side never meet on port 8913.
#pragma once

#include <QCoreApplication>

#include <atomic>
#include <cstdint>
#include <string>

namespace support {

/// A new address of 127.0.0.0/8 at each call, also across the test programs of one run: the process
/// number and a count are spread over 127.1.0.0 to 127.191.255.255.
inline std::string own_loopback_address()
{
    static std::atomic<std::uint32_t> count{0};
    const auto process = static_cast<std::uint32_t>(QCoreApplication::applicationPid());
    const std::uint32_t host = (process * 64 + count++) % (190u << 16);
    return "127." + std::to_string(1 + (host >> 16)) + '.' + std::to_string(host >> 8 & 255) + '.' +
           std::to_string(host & 255);
}

} // namespace support
