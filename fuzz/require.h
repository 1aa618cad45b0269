// What must hold for every input; where it does not, the fuzzer has found something.
#pragma once

#include <cstdlib>

namespace fuzz {

inline void require(bool condition)
{
    if (!condition)
        std::abort();
}

} // namespace fuzz
