// Pointers of each thread's own that serve to the thread's last instruction. A compiler's thread_local does
// not everywhere: where its data lies on the heap, that may be freed before the thread's last objects have
// ended.
#pragma once

namespace skuan::platform {

/// Whose pointer it is.
enum class ThreadPointer : unsigned { blocks, nodes };
inline constexpr unsigned thread_pointers = 2;

/// What the calling thread has set last; null on a new one. It may be asked for at any time.
void* thread_pointer(ThreadPointer which) noexcept;

/// When the thread ends, after its own code has returned, `at_end` is called with the value if that is not
/// null; once, so that what is set from then on stays. All threads give the same `at_end`. When the whole
/// process ends, it need not be called. False, and nothing is set, if the system has no room.
bool set_thread_pointer(ThreadPointer which, void* value, void (*at_end)(void*)) noexcept;

} // namespace skuan::platform
