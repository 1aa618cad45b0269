// What this process holds, as the system and the C library tell it: what a leak makes grow.
#pragma once

#include <ostream>

namespace support {

struct Possessions
{
    long heap;     ///< bytes in use
    long resident; ///< bytes; 0 where the system does not tell
    int handles;   ///< or file descriptors
    int threads;

    static Possessions now();
};

inline std::ostream& operator<<(std::ostream& out, const Possessions& p)
{
    return out << p.heap / 1024 << " KB in use, " << p.resident / 1024 << " KB resident, " << p.handles
               << " handles, " << p.threads << " threads";
}

} // namespace support
