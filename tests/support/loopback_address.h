// An address for one test's server, so that tests running side by side never meet on port 8913.
#pragma once

#include <QCoreApplication>

#include <atomic>
#include <cstdint>
#include <string>

namespace support {

/// A new address of 127.0.0.0/8 at each call, also across the test programs of one run. A program's first 64
/// lie in 127.1 to 127.190, the next 65,536 in one of 127.192 to 127.254, either place by its process number.
inline std::string own_loopback_address()
{
    constexpr std::uint32_t few = 64;
    static std::atomic<std::uint32_t> calls{0};
    const std::uint32_t count = calls++;
    const auto process = static_cast<std::uint32_t>(QCoreApplication::applicationPid());
    const std::uint32_t host = count < few ? (1u << 16) + (process * few + count) % (190u << 16)
                                           : ((192 + process % 63) << 16) + (count - few) % (1u << 16);
    return "127." + std::to_string(host >> 16) + '.' + std::to_string(host >> 8 & 255) + '.' +
           std::to_string(host & 255);
}

} // namespace support
