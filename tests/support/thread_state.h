// Whether another thread sleeps, as the system tells it.
#pragma once

namespace support {

/// The calling thread, for others to ask about. Never 0.
unsigned long this_thread();

/// True while that thread of this process sleeps in the kernel; false while it runs or when it has ended.
bool sleeps(unsigned long thread);

} // namespace support
