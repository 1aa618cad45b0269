// A thread whose stack and priority are chosen, which the standard's own cannot do.
#pragma once

#include <cstddef>
#include <memory>

namespace skuan::platform {

/// From -15 (idle) over 0 (normal) to 15 (time critical). Systems know fewer steps and round.
inline constexpr int lowest_priority = -15;
inline constexpr int highest_priority = 15;

/// Asks the system for `priority` (clipped to the range above) for the calling thread; true if it was
/// granted. Above 0 that often takes a privilege. A refusal changes nothing and is harmless.
bool set_current_thread_priority(int priority);

/// One thread. Owned and used by one thread at a time; `join` may also come from the thread itself.
class Thread
{
public:
    Thread();
    ~Thread(); ///< joins
    Thread(const Thread&) = delete;
    Thread& operator=(const Thread&) = delete;

    /// Starts `run(argument)` on a new thread, with at least `stack_bytes` of stack for `run` itself;
    /// what the system and its tools keep on a stack comes on top. Joins an earlier thread first.
    /// False if the system refuses: then nothing runs.
    bool start(void (*run)(void*), void* argument, std::size_t stack_bytes);

    /// Waits until the thread has ended; at once if there is none. Called by the thread itself, it
    /// lets the thread go on its own instead.
    void join();

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace skuan::platform
