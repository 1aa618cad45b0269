// Threads of the C run-time library, so that it can clean up behind them.
#include <skuan/platform/thread.h>

#include <algorithm>
#include <climits>
#include <memory>
#include <process.h>
#include <utility>
#include <windows.h>

namespace skuan::platform {
namespace {

/// What the system and the run-time library put on a stack before the thread's own function.
constexpr std::size_t margin = 64 * 1024;

struct Entry
{
    void (*run)(void*);
    void* argument;
};

unsigned __stdcall body(void* given)
{
    const std::unique_ptr<Entry> entry(static_cast<Entry*>(given));
    entry->run(entry->argument);
    return 0;
}

} // namespace

struct Thread::State
{
    HANDLE handle = nullptr;
    unsigned id = 0;

    ~State()
    {
        if (handle)
            CloseHandle(handle);
    }
};

bool set_current_thread_priority(int priority)
{
    // Between the two ends the system knows the levels -2 to 2 only.
    if (priority >= highest_priority)
        priority = THREAD_PRIORITY_TIME_CRITICAL;
    else if (priority <= lowest_priority)
        priority = THREAD_PRIORITY_IDLE;
    else
        priority = std::clamp<int>(priority, THREAD_PRIORITY_LOWEST, THREAD_PRIORITY_HIGHEST);
    return SetThreadPriority(GetCurrentThread(), priority) != 0;
}

Thread::Thread() = default;

Thread::~Thread()
{
    join();
}

bool Thread::start(void (*run)(void*), void* argument, std::size_t stack_bytes)
{
    join();
    if (!run || stack_bytes > UINT_MAX - margin)
        return false;
    auto state = std::make_unique<State>(); // whatever may throw comes before the thread
    auto entry = std::make_unique<Entry>(Entry{run, argument});
    state->handle =
        reinterpret_cast<HANDLE>(_beginthreadex(nullptr, unsigned(stack_bytes + margin), body, entry.get(),
                                                STACK_SIZE_PARAM_IS_A_RESERVATION, &state->id));
    if (!state->handle)
        return false;
    entry.release(); // the thread's from here on
    state_ = std::move(state);
    return true;
}

void Thread::join()
{
    if (!state_)
        return;
    if (state_->id != GetCurrentThreadId())
        WaitForSingleObject(state_->handle, INFINITE);
    state_.reset();
}

} // namespace skuan::platform
