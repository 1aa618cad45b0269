// Calls a function at the very end of a thread, when what libraries keep for it has been taken down.
#pragma once

#include <functional>

namespace support {

/// For the calling thread; before it first uses what `last` uses. The last call counts.
void at_thread_end(std::function<void()> last);

} // namespace support
