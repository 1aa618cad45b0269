// Where every server listens.
#pragma once

#include <cstdint>

namespace KVRP3 {

inline constexpr std::uint16_t server_port = 8913;

} // namespace KVRP3
